/* A first program: the frequency of a tone. */
#include <math.h>
#include <sigpak.h>
#include <stdio.h>

int main(void) {
  const double rate = 8000, pi = acos(-1.0);
  dsp_vec v, peak;
  dsp_init(&v), dsp_init(&peak);
  v.points = 1024, v.delta = 1 / rate;
  if (dsp_alloc(&v) != 0) return 1;
  for (int i = 0; i < 1024; ++i) v.data[i] = 0.5 * sin(2 * pi * 1234.5 * i / rate);

  dspi_window(&v, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE);
  dspi_rfft(&v); /* 513 bins, v.delta is now their width in Hz */
  dspi_mag(&v);
  dsps_peak(&v, &peak, DSP_PEAK_PARABOLA, 0);
  printf("%.1f Hz\n", peak.data[1] * v.delta);

  dsp_destroy(&v), dsp_destroy(&peak);
  return 0;
}
