// SPDX-License-Identifier: MIT
// Piecewise cubics and the intervals that targets fall into.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/record.h"

namespace sigpak {

inline constexpr index target_block = 256;
inline constexpr double infinity = std::numeric_limits<double>::infinity();

// n >= 2 knots; their values, or pairs of value and slope.
template <class T> struct curve {
  const T* x;  // null for multiples of the spacing
  double spacing;
  const T* y;
  bool pairs;
  index n;

  double knot(index i) const noexcept {
    return static_cast<double>(x != nullptr ? x[i] : static_cast<T>(static_cast<double>(i) * spacing));
  }
  double value(index i) const noexcept { return static_cast<double>(y[pairs ? 2 * i : i]); }
};

// What lies outside the knots.
enum class outside { goes_on, holds, wraps };

// Moves targets t to where the curve tells their values; beyond[i] becomes the distance from the end that
// holds, or the number of periods taken off.
template <class T>
void bring_inside(const curve<T>& c, outside rule, double* t, double* beyond, index count) noexcept {
  const double first = c.knot(0);
  const double last = c.knot(c.n - 1);
  const double period = last - first;
  if (rule == outside::holds) {
    for (index i = 0; i < count; ++i) {
      const double held = t[i] < first ? first : t[i] > last ? last : t[i];
      beyond[i] = t[i] - held;
      t[i] = held;
    }
  } else if (rule == outside::wraps) {
    for (index i = 0; i < count; ++i) {
      const double periods = t[i] < first || t[i] > last ? std::floor((t[i] - first) / period) : 0;
      const double moved = t[i] - periods * period;
      beyond[i] = periods;
      t[i] = moved < first ? first : moved > last ? last : moved;
    }
  }
}

// The last of the knots lowest .. lowest + count - 1 that is not beyond t, or the first of them.
template <class T> index knot_before(const T* x, double t, index lowest, index count) noexcept {
  while (count > 1) {
    const index half = count / 2;
    lowest += static_cast<double>(x[lowest + half]) <= t ? half : 0;
    count -= half;
  }
  return lowest;
}

// The intervals of a block of targets among regular knots: by a product, set right by a comparison where
// rounding has led to a neighbour.
template <class T>
void find_regular(const curve<T>& c, const double* t, index count, std::int32_t* interval) noexcept {
  const double per_spacing = 1 / c.spacing;
  const double spacing = c.spacing;
  const auto last = static_cast<double>(c.n - 2);
  for (index i = 0; i < count; ++i) {
    double u = t[i] * per_spacing;
    u = u > 0 ? u : 0;
    u = u < last ? u : last;
    const auto k = static_cast<double>(static_cast<std::int32_t>(u));
    const auto here = static_cast<double>(static_cast<T>(k * spacing));
    const auto next = static_cast<double>(static_cast<T>((k + 1) * spacing));
    const double early = (here > t[i] ? 1.0 : 0.0) * (k > 0 ? 1.0 : 0.0);
    const double late = (next <= t[i] ? 1.0 : 0.0) * (k < last ? 1.0 : 0.0);
    interval[i] = static_cast<std::int32_t>(k + late - early);
  }
}

struct target_range {
  double least;
  double most;
};

// NaN apart; in chains that do not wait for each other.
inline target_range range_of(const double* t, index count) noexcept {
  constexpr index chains = 16;
  double least[chains];
  double most[chains];
  std::fill_n(least, chains, infinity);
  std::fill_n(most, chains, -infinity);
  index i = 0;
  for (; i + chains <= count; i += chains) {
    for (index j = 0; j < chains; ++j) {
      least[j] = t[i + j] < least[j] ? t[i + j] : least[j];
      most[j] = t[i + j] > most[j] ? t[i + j] : most[j];
    }
  }
  target_range range = {infinity, -infinity};
  const auto include = [&range](double low, double high) {
    range.least = low < range.least ? low : range.least;
    range.most = high > range.most ? high : range.most;
  };
  for (; i < count; ++i) include(t[i], t[i]);
  for (index j = 0; j < chains; ++j) include(least[j], most[j]);
  return range;
}

// Among any knots: the range that the block spans, and in it searches side by side that take the same steps
// whatever the targets are. Neighbouring targets span few intervals.
template <class T>
void find_irregular(const curve<T>& c, const double* t, index count, std::int32_t* interval) noexcept {
  const target_range range = range_of(t, count);
  const index lowest = knot_before(c.x, range.least, 0, c.n - 1);
  const index highest = std::max(lowest, knot_before(c.x, range.most, 0, c.n - 1));
  for (index i = 0; i < count; ++i) interval[i] = static_cast<std::int32_t>(lowest);
  for (index left = highest - lowest + 1; left > 1;) {
    const index half = left / 2;
    const T* const x = c.x + half;
#pragma GCC ivdep
    for (index i = 0; i < count; ++i) {
      const std::int32_t k = interval[i];
      interval[i] = static_cast<double>(x[k]) <= t[i] ? k + static_cast<std::int32_t>(half) : k;
    }
    left -= half;
  }
}

template <class T>
void find_intervals(const curve<T>& c, const double* t, index count, std::int32_t* interval) noexcept {
  c.x == nullptr ? find_regular(c, t, count, interval) : find_irregular(c, t, count, interval);
}

// The cubic of an interval around its first knot, dt behind it:
// y0 + dt (s0 + v (a + v b)), v = dt / h, a = 3 d - 2 s0 - s1, b = s0 + s1 - 2 d, d the chord.
struct cubic {
  double y0;
  double s0;
  double a;
  double b;
};

constexpr cubic cubic_through(double y0, double y1, double s0, double s1, double per_length) noexcept {
  const double chord = (y1 - y0) * per_length;
  const double below0 = chord - s0;
  const double below1 = chord - s1;
  return {y0, s0, below0 + below0 + below1, -below0 - below1};
}

constexpr double value_of(cubic p, double dt, double v) noexcept {
  return p.y0 + dt * (p.s0 + v * (p.a + v * p.b));
}
constexpr double slope_of(cubic p, double v) noexcept { return p.s0 + v * (2 * p.a + v * (3 * p.b)); }
constexpr double curvature_of(cubic p, double v, double per_length) noexcept {
  return (2 * p.a + v * (6 * p.b)) * per_length;
}
constexpr double integral_of(cubic p, double dt, double v) noexcept {
  return dt * (p.y0 + dt * (p.s0 / 2 + v * (p.a / 3 + v * (p.b / 4))));
}

}  // namespace sigpak
