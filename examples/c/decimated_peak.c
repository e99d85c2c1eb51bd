/* The strongest line below an eighth of the rate in the first channel of a sound file: filtered and decimated
   by 4 as it is read, then long spectra of what is left. A Hann window places the line, a flat top tells its
   amplitude, between bins too. */
#include <sigpak.h>
#include <sndfile.h>
#include <stdio.h>
#include <stdlib.h>

enum { block = 4096, factor = 4, taps_count = 127 };

/* Appends the decimated recording to low. */
static int decimate(SNDFILE* file, const SF_INFO* info, const dsp_vec* taps, dsp_vec* low) {
  dsp_vec samples, filtered, history, phase;
  dsp_init(&samples), dsp_init(&filtered), dsp_init(&history), dsp_init(&phase);
  double* frames = malloc(sizeof *frames * block * (size_t)info->channels);
  int failed = frames == NULL;
  samples.points = block, samples.delta = 1.0 / info->samplerate;
  failed = failed || dsp_alloc(&samples) != 0;

  sf_count_t count;
  while (!failed && (count = sf_readf_double(file, frames, block)) > 0) {
    for (sf_count_t i = 0; i < count; ++i) samples.data[i] = frames[i * info->channels];
    samples.points = (uint32_t)count;
    failed = dspd_fir(&samples, &filtered, taps, &history) != 0 ||
             dspd_deci(&filtered, &filtered, factor, &phase) != 0 || dsp_append(low, &filtered) != 0;
    low->delta = filtered.delta;
  }
  free(frames);
  dsp_destroy(&samples), dsp_destroy(&filtered), dsp_destroy(&history), dsp_destroy(&phase);
  return failed ? -1 : 0;
}

/* peak = (height, position) of the greatest bin under a window. */
static int find_peak(const dsp_vec* v, int32_t window, int32_t flags, dsp_vec* spectrum, dsp_vec* peak) {
  return dsp_copy(spectrum, v) != 0 || dspi_window(spectrum, window, DSP_WINDOW_FLAG_NO_ROTATE) != 0 ||
         dspi_rdft(spectrum) != 0 || dspi_mag(spectrum) != 0 || dsps_peak(spectrum, peak, flags, 0) != 0;
}

int main(int argc, char** argv) {
  SF_INFO info = {0};
  SNDFILE* file = argc == 2 ? sf_open(argv[1], SFM_READ, &info) : NULL;
  if (file == NULL) {
    fprintf(stderr, "usage: decimated_peak FILE: %s\n", sf_strerror(NULL));
    return 2;
  }
  dsp_vec taps, low, spectrum, peak;
  dsp_init(&taps), dsp_init(&low), dsp_init(&spectrum), dsp_init(&peak);
  taps.points = taps_count;
  int failed = dsp_alloc(&taps) != 0 || dspc_fir(&taps, DSP_FIR_LOW_PASS, 0.4 / factor, 0) != 0 ||
               dspi_window_fir(&taps, 80, 1) != 0 || decimate(file, &info, &taps, &low) != 0;

  failed = failed || find_peak(&low, DSP_WINDOW_HANN, DSP_PEAK_PARABOLA, &spectrum, &peak);
  if (!failed) printf("%.1f Hz, ", peak.data[1] * spectrum.delta);
  failed = failed || find_peak(&low, DSP_WINDOW_FLATTOP, DSP_PEAK_SAMPLE, &spectrum, &peak);
  if (!failed)
    printf("amplitude %.3f\n", 2 * peak.data[0]); /* a bin above the first holds half of its line */

  dsp_destroy(&taps), dsp_destroy(&low), dsp_destroy(&spectrum), dsp_destroy(&peak);
  sf_close(file);
  return failed;
}
