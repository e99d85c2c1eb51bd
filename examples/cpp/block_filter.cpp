// A filter on a stream: every block goes on where the one before it ended, because the caller keeps the
// history. The blocks filtered one by one are the stream filtered as a whole.
#include <cstdio>
#include <sigpak.hpp>

int main() {
  const double rate = 48000;
  const int total = 48000, block = 1000;

  // 100 Hz with a disturbance at 5 kHz; a low-pass of 1 kHz, 80 dB down.
  sigpak::record signal(total, 1 / rate), taps(201);
  dspi_addcos(dspc_cos(signal, 100, 0), 0, 5000, 1, 0);
  dspi_window_fir(dspc_fir(taps, DSP_FIR_LOW_PASS, 1000 / rate, 0), 80, 1);

  sigpak::record joined, history;
  for (int start = 0; start < total; start += block) {
    const sigpak::record part = dspu_subvec(signal, start, block);
    dsp_append(joined, dspd_fir(part, taps, &history));
  }

  const sigpak::record whole = dspd_fir(signal, taps, nullptr);
  const bool same = dsps_rms(dspb_sub(whole, joined))[0] < 1e-15;
  std::printf("blocks and whole differ by less than 1e-15: %s\n", same ? "yes" : "no");
  dspi_shift(joined, 200);
  std::printf("rms of what is left: %.4f\n", dsps_rms(joined)[0]);  // 1 / sqrt 2 of the cosine at 100 Hz
}
