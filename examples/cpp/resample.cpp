// A stream from 44.1 kHz to 48 kHz, block by block: 48000 / 44100 = 160 / 147.
#include <cmath>
#include <cstdio>
#include <sigpak.hpp>

int main() {
  const int up = 160, down = 147, block = 1024, blocks = 43;
  const double delta = 1 / 44100.0, pi = std::acos(-1.0);

  sigpak::record taps, out, state, stream(0, 1 / 48000.0);
  dspc_rsmp(taps, up, down, 0.9, 100);
  for (int i = 0; i < blocks; ++i) {
    sigpak::record in(block, delta);
    dspc_cos(in, 997, 2 * pi * 997 * i * block * delta);
    dsp_append(stream, dspd_rsmp(&in, out, taps, up, down, &state));
  }
  // Without a block the stream ends: the samples that waited come out.
  dsp_append(stream, dspd_rsmp(nullptr, out, taps, up, down, &state));
  std::printf("%d samples at 44.1 kHz, %zu at %.1f kHz\n", blocks * block, stream.points(),
              1e-3 / stream.delta());

  std::printf("rms %.3f, ", dsps_rms(stream)[0]);  // 1 / sqrt 2 of a cosine
  dspi_mag(dspi_rdft(dspi_window(stream, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE)));
  std::printf("%.1f Hz\n", dsps_peak(stream, DSP_PEAK_PARABOLA, 0)[1] * stream.delta());
}
