// The noise density of a signal in V/sqrt(Hz): white noise whose density is known, and a line of 10 mV rms.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sigpak.hpp>

int main() {
  const double rate = 10000, deviation = 0.002;

  sigpak::record v(1 << 20, 1 / rate);
  dspc_rand(
      v, DSP_RAND_NORMAL);  // the first draw seeds the source from the time; srand makes what follows repeat
  std::srand(1);
  dspi_scale(dspc_rand(v, DSP_RAND_NORMAL), deviation);
  dspi_addcos(v, 0, 1000, 0.010 * std::sqrt(2.0), 0);

  // A window as a record: ones, multiplied.
  sigpak::record window(4096, v.delta());
  dspi_window(dspi_offset(window, 1), DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE);

  sigpak::record density;
  const int flags = DSP_AVG_MEAN | DSP_SPECTRUM_SQUARE | DSP_SPECTRUM_CENTRE | DSP_SPECTRUM_DENSITY;
  dsph_dft(v, nullptr, density, nullptr, &window, flags, 0, nullptr, 0);

  // The density of a line depends on the resolution; its power does not: the bins around it, times their
  // width.
  const auto line = int(std::lround(1000 / density.delta()));
  const double power = dsps_sum(dspu_subvec(density, line - 3, 7))[0] * density.delta();

  const sigpak::record floor = dsps_median(dspu_sqrt(dspu_subvec(density, 100, 1900)));
  std::printf("floor %.2f uV/sqrt(Hz), exactly %.2f\n", 1e6 * floor[0],
              1e6 * deviation * std::sqrt(2 / rate));
  std::printf("line %.2f mV rms\n", 1e3 * std::sqrt(power));
}
