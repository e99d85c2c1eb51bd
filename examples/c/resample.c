/* A stream from 44.1 kHz to 48 kHz, block by block: 48000 / 44100 = 160 / 147. */
#include <math.h>
#include <sigpak.h>
#include <stdio.h>

enum { up = 160, down = 147, block = 1024, blocks = 43 };

int main(void) {
  dsp_vec taps, in, out, state, stream, peak;
  dsp_vec* const all[] = {&taps, &in, &out, &state, &stream, &peak};
  for (int i = 0; i < 6; ++i) dsp_init(all[i]);

  int failed = dspc_rsmp(&taps, up, down, 0.9, 100) != 0;
  for (int i = 0; i <= blocks && !failed; ++i) {
    in.points = block, in.delta = 1 / 44100.0;
    failed = dspc_cos(&in, 997, 2 * acos(-1.0) * 997 * i * block * in.delta) != 0 ||
             /* without a block the stream ends: the samples that waited come out */
             dspd_rsmp(i < blocks ? &in : NULL, &out, &taps, up, down, &state) != 0 ||
             dsp_append(&stream, &out) != 0;
    if (out.points > 0) stream.delta = out.delta;
  }
  if (!failed)
    printf("%d samples at 44.1 kHz, %u at %.1f kHz\n", blocks * block, stream.points, 1e-3 / stream.delta);

  failed = failed || dsps_rms(&stream, &peak) != 0;
  if (!failed) printf("rms %.3f, ", peak.data[0]); /* 1 / sqrt 2 of a cosine */
  failed = failed || dspi_window(&stream, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE) != 0 ||
           dspi_rdft(&stream) != 0 || dspi_mag(&stream) != 0 ||
           dsps_peak(&stream, &peak, DSP_PEAK_PARABOLA, 0) != 0;
  if (!failed) printf("%.1f Hz\n", peak.data[1] * stream.delta);

  for (int i = 0; i < 6; ++i) dsp_destroy(all[i]);
  return failed;
}
