// Piecewise cubics and the intervals that targets fall into.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/record.h"

namespace sigpak {

inline constexpr index target_block = 256;

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
    const bool early = static_cast<double>(static_cast<T>(k * spacing)) > t[i] && k > 0;
    const bool late = static_cast<double>(static_cast<T>((k + 1) * spacing)) <= t[i] && k < last;
    interval[i] = static_cast<std::int32_t>(k + (late ? 1.0 : 0.0) - (early ? 1.0 : 0.0));
  }
}

// Among any knots: the range that the block spans, and in it searches side by side that take the same steps
// whatever the targets are. Neighbouring targets span few intervals.
template <class T>
void find_irregular(const curve<T>& c, const double* t, index count, std::int32_t* interval) noexcept {
  double least = std::numeric_limits<double>::infinity();
  double most = -least;
  for (index i = 0; i < count; ++i) {
    least = t[i] < least ? t[i] : least;
    most = t[i] > most ? t[i] : most;
  }
  const index lowest = knot_before(c.x, least, 0, c.n - 1);
  const index highest = std::max(lowest, knot_before(c.x, most, 0, c.n - 1));
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
