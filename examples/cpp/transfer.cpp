// The transfer function between two channels, and their coherence: noise into a filter, with noise of its own
// added behind it. H = S_ab / S_aa is not troubled by that; the coherence tells where it is.
#include <cstdio>
#include <cstdlib>
#include <sigpak.hpp>

namespace {

sigpak::record noise(double deviation) {
  sigpak::record v(8192);
  return dspi_scale(dspc_rand(v, DSP_RAND_NORMAL), deviation);
}

}  // namespace

int main() {
  sigpak::record taps(31), window(1024);
  dspi_window_fir(dspc_fir(taps, DSP_FIR_LOW_PASS, 0.1, 0), 40, 1);
  dspi_window(dspi_offset(window, 1), DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE);

  noise(1);  // the first draw seeds the source from the time
  std::srand(7);
  sigpak::record spectra, state, history;
  std::int32_t count = 0;
  for (int i = 0; i < 100; ++i) {
    const sigpak::record in = noise(1), disturbance = noise(0.1);
    const sigpak::record out = dspb_add(dspd_fir(in, taps, &history), disturbance);
    dsph_dft(in, &out, spectra, &state, &window, DSP_AVG_MEAN | DSP_SPECTRUM_SQUARE, 0, &count, 0);
  }

  // Three runs of bins, complex: |A|^2, |B|^2, conj(A) B.
  const std::size_t bins = spectra.points() / 3;
  std::printf("averages %d\n", int(count));
  for (std::size_t k = 0; k < bins; k += 51) {
    const double aa = spectra.complexes()[k].real(), bb = spectra.complexes()[bins + k].real();
    const double cross = std::norm(spectra.complexes()[2 * bins + k]);
    std::printf("f = %.3f  |H| = %.2f  coherence %.2f\n", double(k) * spectra.delta(), std::sqrt(cross) / aa,
                cross / (aa * bb));
  }
}
