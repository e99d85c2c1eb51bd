// SPDX-License-Identifier: MIT
// The averaged spectrum of a signal: its powers, and all that gives them a meaning.
#include "analysis/spectrum.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tool {
namespace {

constexpr const char* averagings[] = {"mean", "exponential", "maximum", "minimum"};

}  // namespace

const char* averaging_name(averaging a) { return averagings[static_cast<std::size_t>(a)]; }

averaging averaging_named(const std::string& name) {
  const auto found = std::ranges::find(averagings, name);
  if (found == std::end(averagings)) throw data_error("there is no average \"" + name + '"');
  return static_cast<averaging>(found - averagings);
}

double spectrum::enbw() const {
  double bins = 1;
  dsp_window_enbw(&bins, window, static_cast<std::int32_t>(segment));
  return bins * resolution();
}

std::string spectrum::window_name() const {
  char text[64];
  return dsp_window_to_str(window, text, sizeof text) == 0 ? text : "";
}

double power_in(const spectrum& s, double from, double to) {
  double sum = 0;
  for (std::size_t i = 0; i < s.power.points; ++i) {
    const std::size_t place = s.offset() + i;
    const bool outer = !s.two_sided && (place == 0 || place + 1 == s.whole());
    const double middle = s.frequency(static_cast<double>(i));
    const double left = std::max(outer && place == 0 ? middle : middle - s.step() / 2, from);
    const double right = std::min(outer && place > 0 ? middle : middle + s.step() / 2, to);
    // an outer point has half the width, and the power of one frequency where the others have that of two
    if (left < right) sum += s.power.data[i] * (right - left) * (outer ? 2 : 1);
  }
  return sum / s.enbw();
}

void crop(spectrum& s, double from, double to) {
  constexpr double tolerance = 1e-9;  // in points
  const double last = static_cast<double>(s.power.points) - 1;
  const double low = std::max(0.0, std::ceil((from - s.first()) / s.step() - tolerance));
  const double high = std::min(last, std::floor((to - s.first()) / s.step() + tolerance));
  if (!(low <= high)) throw data_error("the spectrum has no point between --from and --to");
  require(dspu_subvec(&s.power, &s.power, static_cast<std::int32_t>(low),
                      static_cast<std::int32_t>(high - low + 1)));
  s.start += static_cast<std::int64_t>(low);
}

record window_points(std::size_t length, int window) {
  record v(length);
  std::ranges::fill(v.scalars(), 1.0);
  if (dspi_window(&v, window, DSP_WINDOW_FLAG_NO_ROTATE) != 0)
    throw data_error("the window cannot be made for " + std::to_string(length) + " points");
  return v;
}

record leakage_of(std::size_t segment, int window) {
  const record v = window_points(segment, window);
  record power;
  constexpr int powers = DSP_SPECTRUM_SQUARE | DSP_SPECTRUM_PAD4;
  require(dsph_dft(&v, nullptr, &power, nullptr, nullptr, powers, 0, nullptr, 0));
  const auto p = power.scalars();
  const double peak = 2 * p[0];  // the bin at 0 stands for one frequency
  double beyond = 0;
  for (std::size_t i = p.size(); i-- > 0;) {
    beyond = std::max(beyond, i == 0 ? 1 : p[i] / peak);
    p[i] = beyond;
  }
  return power;
}

}  // namespace tool
