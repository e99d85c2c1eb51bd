/* The noise density of a signal in V/sqrt(Hz): white noise whose density is known, and a line of 10 mV rms.
 */
#include <math.h>
#include <sigpak.h>
#include <stdio.h>
#include <stdlib.h>

enum { samples = 1 << 20, segment = 4096 };

int main(void) {
  const double rate = 10000, deviation = 0.002;
  dsp_vec v, window, density, band, median;
  dsp_vec* const all[] = {&v, &window, &density, &band, &median};
  for (int i = 0; i < 5; ++i) dsp_init(all[i]);

  v.points = 1; /* the first draw seeds the source from the time; srand makes what follows repeat */
  int failed = dspc_rand(&v, DSP_RAND_NORMAL) != 0;
  srand(1);
  v.points = samples, v.delta = 1 / rate;
  failed = failed || dspc_rand(&v, DSP_RAND_NORMAL) != 0 || dspi_scale(&v, deviation) != 0 ||
           dspi_addcos(&v, 0, 1000, 0.010 * sqrt(2.0), 0) != 0;

  /* A window as a record: ones, multiplied. */
  window.points = segment, window.delta = v.delta;
  failed = failed || dspc_line(&window, 0, 1) != 0 ||
           dspi_window(&window, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE) != 0;

  const int power_density = DSP_AVG_MEAN | DSP_SPECTRUM_SQUARE | DSP_SPECTRUM_CENTRE | DSP_SPECTRUM_DENSITY;
  failed = failed || dsph_dft(&v, NULL, &density, NULL, &window, power_density, 0, NULL, 0) != 0;

  /* The density of a line depends on the resolution; its power does not: the bins around it, times their
   * width. */
  const int line = (int)(1000 / density.delta + 0.5);
  double power = 0;
  for (int k = line - 3; k <= line + 3 && !failed; ++k) power += density.data[k] * density.delta;

  failed = failed || dspu_subvec(&density, &band, 100, 1900) != 0 || dspi_sqrt(&band) != 0 ||
           dsps_median(&band, &median) != 0;
  if (!failed) {
    printf("floor %.2f uV/sqrt(Hz), exactly %.2f\n", 1e6 * median.data[0], 1e6 * deviation * sqrt(2 / rate));
    printf("line %.2f mV rms\n", 1e3 * sqrt(power));
  }
  for (int i = 0; i < 5; ++i) dsp_destroy(all[i]);
  return failed;
}
