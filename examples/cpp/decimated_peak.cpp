// The strongest line below an eighth of the rate in the first channel of a sound file: filtered and decimated
// by 4 as it is read, then long spectra of what is left. A Hann window places the line, a flat top tells its
// amplitude, between bins too.
#include <sndfile.h>
#include <cstdio>
#include <memory>
#include <sigpak.hpp>
#include <vector>

namespace {

constexpr int block = 4096, factor = 4;

using sound_file = std::unique_ptr<SNDFILE, int (*)(SNDFILE*)>;

sigpak::record low_pass() {
  sigpak::record taps(127);
  dspc_fir(taps, DSP_FIR_LOW_PASS, 0.4 / factor, 0);
  return dspi_window_fir(taps, 80, 1);
}

// The decimated recording.
sigpak::record decimated(SNDFILE* file, const SF_INFO& info) {
  const sigpak::record taps = low_pass();
  sigpak::record low, samples, history, phase;
  std::vector<double> frames(std::size_t(block * info.channels));
  while (const auto count = std::size_t(sf_readf_double(file, frames.data(), block))) {
    samples.resize(count);
    samples.set_delta(1.0 / info.samplerate);
    for (std::size_t i = 0; i < count; ++i) samples[i] = frames[i * std::size_t(info.channels)];
    dspd_fir(samples, samples, taps, &history);
    dsp_append(low, dspd_deci(samples, samples, factor, &phase));
  }
  low.set_delta(samples.delta());
  return low;
}

sigpak::record spectrum(sigpak::record v, int window) {
  return dspi_mag(dspi_rdft(dspi_window(v, window, DSP_WINDOW_FLAG_NO_ROTATE)));
}

}  // namespace

int main(int argc, char** argv) try {
  SF_INFO info = {};
  const sound_file file(argc == 2 ? sf_open(argv[1], SFM_READ, &info) : nullptr, &sf_close);
  if (!file) {
    std::fprintf(stderr, "usage: decimated_peak FILE: %s\n", sf_strerror(nullptr));
    return 2;
  }
  const sigpak::record low = decimated(file.get(), info);
  const sigpak::record narrow = spectrum(low, DSP_WINDOW_HANN), flat = spectrum(low, DSP_WINDOW_FLATTOP);
  // A bin above the first holds half the amplitude of its line.
  std::printf("%.1f Hz, amplitude %.3f\n", dsps_peak(narrow, DSP_PEAK_PARABOLA, 0)[1] * narrow.delta(),
              2 * dsps_max(flat)[0]);
} catch (const std::exception& error) {
  std::fprintf(stderr, "decimated_peak: %s\n", error.what());
  return 1;
}
