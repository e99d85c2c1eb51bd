// SPDX-License-Identifier: MIT
// Figures of merit of a window, from the points that the library gives.
#pragma once

#include <cmath>
#include <complex>
#include <numbers>
#include <utility>
#include <vector>

#include "sigpak.h"

namespace sigpak::test {

struct figures {
  double coherent_gain;    // mean of the window of peak 1
  double noise_bandwidth;  // bins
  double side_lobe;        // the highest one, dB below the main lobe
  double flatness;         // the largest deviation, dB, of a line up to half a bin beside its own
};

inline constexpr int figure_points = 2048;

// The points of a window whose peak is 1, its middle in place.
inline std::vector<double> unit_window(int window) {
  std::vector<double> points(figure_points, 1.0);
  dsp_vec v;
  dsp_init(&v);
  v.points = figure_points;
  v.data = points.data();
  dspi_window(&v, window, DSP_WINDOW_FLAG_PEAK | DSP_WINDOW_FLAG_NO_ROTATE);
  points.assign(v.data, v.data + figure_points);
  dsp_destroy(&v);
  return points;
}

// The spectrum of a window symmetric about its middle, real, at a frequency in bins.
class window_spectrum {
 public:
  explicit window_spectrum(std::vector<double> points) : points_(std::move(points)) {}

  double at(double bins) const {
    constexpr std::size_t middle = figure_points / 2;
    const double step = 2 * std::numbers::pi * bins / figure_points;
    const std::complex<double> turn = std::polar(1.0, step);
    std::complex<double> here = turn;
    double sum = points_[middle] + points_[0] * std::cos(static_cast<double>(middle) * step);
    for (std::size_t m = 1; m < middle; ++m) {
      sum += 2 * points_[middle + m] * here.real();
      here = {here.real() * turn.real() - here.imag() * turn.imag(),
              here.real() * turn.imag() + here.imag() * turn.real()};
    }
    return sum;
  }

 private:
  std::vector<double> points_;
};

inline double decibels(double ratio) { return 20 * std::log10(std::abs(ratio)); }

// The largest magnitude beyond the first minimum, relative to the one at 0.
inline double highest_side_lobe(const window_spectrum& w) {
  constexpr double step = 1.0 / 32;
  constexpr int steps = 1600;
  double before = std::abs(w.at(0));
  const double main_lobe = before;
  int i = 1;
  for (; i < steps; ++i) {
    const double here = std::abs(w.at(i * step));
    if (here > before && i * step > 0.75) break;
    before = here;
  }
  double best = 0;
  int peak = i;
  for (; i < steps; ++i) {
    const double here = std::abs(w.at(i * step));
    if (here > best) {
      best = here;
      peak = i;
    }
  }
  for (int fine = -32; fine <= 32; ++fine)
    best = std::fmax(best, std::abs(w.at((peak + fine / 32.0) * step)));
  return decibels(best / main_lobe);
}

inline double flatness(const window_spectrum& w) {
  const double centre = w.at(0);
  double worst = 0;
  for (int i = 1; i <= 64; ++i) {
    const double here = decibels(w.at(i / 128.0) / centre);
    if (std::abs(here) > std::abs(worst)) worst = here;
  }
  return worst;
}

inline figures figures_of(int window) {
  const window_spectrum spectrum(unit_window(window));
  figures f{};
  double scale = 0;
  dsp_window_scale(&scale, window, DSP_WINDOW_FLAG_MEAN, figure_points);
  dsp_window_enbw(&f.noise_bandwidth, window, figure_points);
  f.coherent_gain = 1 / scale;
  f.side_lobe = highest_side_lobe(spectrum);
  f.flatness = flatness(spectrum);
  return f;
}

}  // namespace sigpak::test
