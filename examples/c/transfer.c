/* The transfer function between two channels, and their coherence: noise into a filter, with noise of its own
   added behind it. H = S_ab / S_aa is not troubled by that; the coherence tells where it is. */
#include <math.h>
#include <sigpak.h>
#include <stdio.h>
#include <stdlib.h>

enum { block = 8192, blocks = 100, segment = 1024 };

/* Noise of the given deviation. */
static int noise(dsp_vec* v, double deviation) {
  v->points = block;
  return dspc_rand(v, DSP_RAND_NORMAL) != 0 || dspi_scale(v, deviation) != 0;
}

int main(void) {
  dsp_vec taps, in, out, disturbance, history, window, spectra, state;
  dsp_vec* const all[] = {&taps, &in, &out, &disturbance, &history, &window, &spectra, &state};
  for (int i = 0; i < 8; ++i) dsp_init(all[i]);

  taps.points = 31;
  window.points = segment;
  int failed = dsp_alloc(&taps) != 0 || dspc_fir(&taps, DSP_FIR_LOW_PASS, 0.1, 0) != 0 ||
               dspi_window_fir(&taps, 40, 1) != 0 || dspc_line(&window, 0, 1) != 0 ||
               dspi_window(&window, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE) != 0;
  failed = failed || noise(&in, 1); /* the first draw seeds the source from the time */
  srand(7);
  int32_t count = 0;
  for (int i = 0; i < blocks && !failed; ++i)
    failed =
        noise(&in, 1) || noise(&disturbance, 0.1) || dspd_fir(&in, &out, &taps, &history) != 0 ||
        dspb_add(&out, &disturbance, &out) != 0 ||
        dsph_dft(&in, &out, &spectra, &state, &window, DSP_AVG_MEAN | DSP_SPECTRUM_SQUARE, 0, &count, 0) != 0;

  /* Three runs of bins, complex: |A|^2, |B|^2, conj(A) B. */
  const int bins = segment / 2 + 1;
  printf("averages %d\n", (int)count);
  for (int k = 0; k < bins && !failed; k += 51) {
    const double aa = spectra.data[2 * k], bb = spectra.data[2 * (bins + k)];
    const double* ab = &spectra.data[2 * (2 * bins + k)];
    const double cross = ab[0] * ab[0] + ab[1] * ab[1];
    printf("f = %.3f  |H| = %.2f  coherence %.2f\n", k * spectra.delta, sqrt(cross) / aa, cross / (aa * bb));
  }
  for (int i = 0; i < 8; ++i) dsp_destroy(all[i]);
  return failed;
}
