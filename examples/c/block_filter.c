/* A filter on a stream: every block goes on where the one before it ended, because the caller keeps the
   history. The blocks filtered one by one are the stream filtered as a whole. */
#include <math.h>
#include <sigpak.h>
#include <stdio.h>

enum { total = 48000, block = 1000 };

int main(void) {
  const double rate = 48000;
  dsp_vec taps, signal, whole, part, history, joined, rms;
  dsp_vec* const all[] = {&taps, &signal, &whole, &part, &history, &joined, &rms};
  for (int i = 0; i < 7; ++i) dsp_init(all[i]);

  /* 100 Hz with a disturbance at 5 kHz; a low-pass of 1 kHz, 80 dB down. */
  signal.points = total, signal.delta = 1 / rate;
  taps.points = 201;
  int failed = dspc_cos(&signal, 100, 0) != 0 || dspi_addcos(&signal, 0, 5000, 1, 0) != 0 ||
               dsp_alloc(&taps) != 0 || dspc_fir(&taps, DSP_FIR_LOW_PASS, 1000 / rate, 0) != 0 ||
               dspi_window_fir(&taps, 80, 1) != 0;

  for (int start = 0; start < total && !failed; start += block)
    failed = dspu_subvec(&signal, &part, start, block) != 0 || dspd_fir(&part, &part, &taps, &history) != 0 ||
             dsp_append(&joined, &part) != 0;

  failed = failed || dspd_fir(&signal, &whole, &taps, NULL) != 0 || dspb_sub(&whole, &joined, &part) != 0 ||
           dsps_rms(&part, &rms) != 0;
  if (!failed) printf("blocks and whole differ by less than 1e-15: %s\n", rms.data[0] < 1e-15 ? "yes" : "no");
  failed = failed || dspi_shift(&joined, 200) != 0 || dsps_rms(&joined, &rms) != 0;
  if (!failed) printf("rms of what is left: %.4f\n", rms.data[0]); /* 1 / sqrt 2 of the cosine at 100 Hz */

  for (int i = 0; i < 7; ++i) dsp_destroy(all[i]);
  return failed;
}
