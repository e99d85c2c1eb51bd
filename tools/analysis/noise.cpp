// SPDX-License-Identifier: MIT
// The noise of an averaged spectrum: its level, and how far its maxima reach.
#include "analysis/noise.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tool {
namespace {

// The median of chi-square over its mean: that of a gamma distribution of the shape a is
// a - 1/3 + 8/(405 a) + ... (K. P. Choi, Proc. Amer. Math. Soc. 121, 1994), to 2 parts in 1000 at two degrees
// of freedom and better above.
double median_of_chi_square(double degrees) {
  const double a = degrees / 2;
  const double r = 1 / a;
  return 1 + r * (-1.0 / 3 + r * (8.0 / 405 + r * (184.0 / 25515 + r * (2248.0 / 3444525))));
}

// Of the greatest of K powers, and the least, each exponentially distributed with the mean 1.
double median_of_noise(const spectrum& s) {
  const auto count = static_cast<double>(s.segments);
  if (s.average == averaging::maximum) return -std::log1p(-std::exp2(-1 / count));
  if (s.average == averaging::minimum) return std::numbers::ln2 / count;
  return median_of_chi_square(s.degrees);
}

// v of the rate of crossings.
double spread_in_time(const spectrum& s) {
  const record window = window_points(s.segment, s.window);
  double sum = 0;
  double second = 0;
  const auto w = window.scalars();
  const double middle = static_cast<double>(w.size()) / 2;
  for (std::size_t i = 0; i < w.size(); ++i) {
    const double t = (static_cast<double>(i) - middle) / static_cast<double>(w.size());
    sum += w[i] * w[i];
    second += w[i] * w[i] * t * t;
  }
  return second / sum;
}

// The u of the equation, beyond its maximum: the logarithm of the rate falls there.
double crossing_level(double degrees, double log_factor, double p) {
  const double half = degrees / 2;
  const auto log_rate = [&](double x) {
    return log_factor + (half - 0.5) * std::log(x) - x - std::lgamma(half);
  };
  double low = std::max(half - 0.5, 1e-3);
  double high = 2 * low + 1;
  while (log_rate(high) > std::log(p)) high *= 2;
  for (int i = 0; i < 60; ++i) {
    const double middle = (low + high) / 2;
    (log_rate(middle) > std::log(p) ? low : high) = middle;
  }
  return 2 * high;
}

double median_of(const record& power, std::size_t from, std::size_t count) {
  record part;
  record median;
  require(dspu_subvec(&power, &part, static_cast<std::int32_t>(from), static_cast<std::int32_t>(count)));
  require(dsps_median(&part, &median));
  return median.data[0];
}

// Points of the neighbourhood: so many that its median is known to some percent, with few degrees of freedom
// too.
std::size_t neighbourhood(const spectrum& s) {
  const double bins = std::clamp(4096 / s.degrees, 128.0, 2048.0);
  return std::min(static_cast<std::size_t>(bins) * padding, std::size_t{s.power.points});
}

// What the noise just above a point leads to expect there when it goes as 1/f^a, 0 <= a <= 2, as flicker and
// drift do: below it there is none to compare with. What falls more steeply comes from another line.
double level_towards_zero(const spectrum& s, std::size_t point, std::size_t apart) {
  constexpr std::size_t reach = 2 * padding;
  constexpr double steepest = 3;  // as few powers show a slope of 2
  const std::size_t begin = point + apart;
  if (begin + 3 * reach > s.power.points) return 0;
  const double near = median_of(s.power, begin, reach);
  const double far = median_of(s.power, begin + reach, 2 * reach);
  if (far <= 0 || near <= far) return 0;
  const auto place = [&s](std::size_t i) {
    return static_cast<double>(s.offset() + std::max(i, std::size_t{1}));
  };
  const double middle = place(begin + reach / 2);
  const double slope = std::log(near / far) / std::log(place(begin + 2 * reach) / middle);
  return slope > steepest ? 0 : near * std::pow(middle / place(point), std::min(slope, 2.0));
}

}  // namespace

double degrees_of_freedom(std::span<const double> window, std::size_t hop, std::uint64_t segments) {
  const auto product = [window](std::size_t shift) {
    double sum = 0;
    for (std::size_t i = shift; i < window.size(); ++i) sum += window[i] * window[i - shift];
    return sum;
  };
  const double own = product(0);
  const auto count = static_cast<double>(segments);
  double correlated = 1;
  for (std::size_t j = 1; j * hop < window.size() && j < segments; ++j) {
    const double part = product(j * hop) / own;
    correlated += 2 * (1 - static_cast<double>(j) / count) * part * part;
  }
  return 2 * count / correlated;
}

double noise_threshold(const spectrum& s, double p) {
  const double bins = std::max(1.0, static_cast<double>(s.power.points) / padding);
  const double factor = std::log(bins) + 0.5 * std::log(4 * std::numbers::pi * spread_in_time(s));
  const auto count = static_cast<double>(s.segments);
  if (s.average == averaging::maximum) return crossing_level(2, factor, p / count) / 2;
  if (s.average == averaging::minimum) return crossing_level(2, factor, p) / 2 / count;
  return crossing_level(s.degrees, factor, p) / s.degrees;
}

noise_level::noise_level(const spectrum& s) {
  const std::size_t points = s.power.points;
  const std::size_t width = neighbourhood(s);
  const std::size_t count = 2 * ((points + width - 1) / width);
  const double correction = median_of_noise(s);
  medians_.resize(count + 1);
  step_ = static_cast<double>(points - 1) / static_cast<double>(count);
  for (std::size_t i = 0; i <= count; ++i) {
    const auto middle = static_cast<std::size_t>(static_cast<double>(i) * step_);
    const std::size_t from = std::min(middle - std::min(middle, width / 2), points - width);
    medians_.data[i] = median_of(s.power, from, width) / correction;
  }
}

double noise_level::at(std::size_t point) const {
  const double place = static_cast<double>(point) / step_;
  const auto left = std::min(static_cast<std::size_t>(place), std::size_t{medians_.points} - 2);
  const double part = place - static_cast<double>(left);
  return std::lerp(medians_.data[left], medians_.data[left + 1], std::min(part, 1.0));
}

double noise_beside(const spectrum& s, std::size_t point, std::size_t apart) {
  constexpr std::size_t reach = 8 * padding;
  const auto power = s.power.scalars();
  record near(2 * reach);
  std::size_t count = 0;
  for (std::size_t k = apart; k < apart + reach; ++k) {
    if (point >= k) near.data[count++] = power[point - k];
    if (point + k < power.size()) near.data[count++] = power[point + k];
  }
  const bool begins = !s.two_sided && s.offset() + point < apart + reach;
  const double rising = begins ? level_towards_zero(s, point, apart) : 0;
  return std::max(median_of(near, 0, count), rising) / median_of_noise(s);
}

double noise_floor(const spectrum& s) { return median_of(s.power, 0, s.power.points) / median_of_noise(s); }

}  // namespace tool
