// SPDX-License-Identifier: MIT
// What a window does to lines and noise.
#include "analysis/window_figures.h"

#include <algorithm>
#include <cmath>

#include "analysis/spectrum.h"

namespace tool {
namespace {

// Points of the transform for one of the window: the greatest that side lobes fall short of between two is
// 0.03 dB.
constexpr std::size_t fine = 32;

// The powers of the window's spectrum over that at 0, `fine` of them to a bin.
record response_of(int window, std::size_t points) {
  record v = window_points(points, window);
  require(dspi_zpad(&v, static_cast<std::int32_t>(fine * points)));
  require(dspi_rdft(&v));
  require(dspi_magsq(&v));
  require(dspi_scale(&v, 1 / v.data[0]));
  return v;
}

double decibels(double power) { return 10 * std::log10(std::max(power, 1e-308)); }

}  // namespace

window_figures figures_of(int window, std::size_t points) {
  window_figures f{};
  double scale = 1;
  require(dsp_window_scale(&scale, window, DSP_WINDOW_FLAG_MEAN, static_cast<std::int32_t>(points)));
  f.coherent_gain = 1 / scale;
  require(dsp_window_enbw(&f.enbw, window, static_cast<std::int32_t>(points)));
  const record response = response_of(window, points);
  const auto power = response.scalars();
  f.scallop = -decibels(power[std::min(fine / 2, power.size() - 1)]);
  std::size_t at = fine;  // beyond what ripples there are on a flat top
  while (at + 1 < power.size() && power[at + 1] < power[at]) ++at;
  f.side_lobe = decibels(*std::max_element(power.begin() + static_cast<std::ptrdiff_t>(at), power.end()));
  return f;
}

}  // namespace tool
