// A first program: the frequency of a tone.
#include <cmath>
#include <iostream>
#include <sigpak.hpp>

int main() {
  const double rate = 8000, pi = std::acos(-1.0);
  sigpak::record v(1024, 1 / rate);
  for (int i = 0; i < 1024; ++i) v[i] = 0.5 * std::sin(2 * pi * 1234.5 * i / rate);

  dspi_window(v, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_NO_ROTATE);
  dspi_mag(dspi_rfft(v));  // 513 bins, v.delta() is now their width in Hz
  const sigpak::record peak = dsps_peak(v, DSP_PEAK_PARABOLA, 0);
  std::cout << std::round(10 * peak[1] * v.delta()) / 10 << " Hz\n";
}
