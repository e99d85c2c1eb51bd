// Elementary functions of single precision where a double leaves open to which float a result rounds: so
// single precision is correctly rounded whatever the last digits of the C library.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>

#include "elementwise/in_place.h"

namespace sigpak {

// f(x) rounded to odd: rounding it once more to a float gives the float nearest to f(x).
double precise_exp(double x) noexcept;
double precise_exp10(double x) noexcept;
double precise_log(double x) noexcept;
double precise_scaled_log(double x, double scale, double scale_rest) noexcept;  // ln x times the sum of both
double precise_atan(double x) noexcept;
double precise_asin(double x) noexcept;
double precise_acos(double x) noexcept;
double precise_sinh(double x) noexcept;
double precise_cosh(double x) noexcept;
double precise_tanh(double x) noexcept;

// Whether numbers within the error of y, which is that of a C library with some to spare, round to two
// floats.
constexpr bool is_between_floats(double y) noexcept {
  constexpr double error = 0x1p-48;
  return (static_cast<float>(y * (1 - error)) != static_cast<float>(y * (1 + error))) & (y == y);
}

// A cheap necessary condition of the same is that this is negative: the last 29 bits of a double, which a
// normal float has not, lie near the middle of their range, or y is smaller than the normal floats. Sums and
// bits alone, which the narrowest vectors have for 64 bits.
constexpr std::int64_t distance_from_doubt(double y) noexcept {
  constexpr std::int64_t unit = std::int64_t{1} << 29;
  constexpr std::int64_t doubt = 1 << 5;  // 2^-48 of y in the last places of y, at most
  constexpr auto least_normal = std::bit_cast<std::int64_t>(0x1p-126);
  constexpr std::int64_t magnitude = std::numeric_limits<std::int64_t>::max();
  const auto bits = std::bit_cast<std::int64_t>(y) & magnitude;
  return (((bits + (unit / 2 + doubt)) & (unit - 1)) - (2 * doubt + 1)) | (bits - least_normal);
}

// Replaces every x by f(x), computed in double and rounded once; in single precision by precise(x) where f(x)
// leaves the rounding open. In blocks, as the compiler takes several results at a time to find those.
template <class T, class F, class Precise> void map_nearest(T* x, index n, F f, Precise precise) noexcept {
  if constexpr (sizeof(T) == sizeof(double)) {
    map(x, n, f);
  } else {
    constexpr index block = 64;
    double y[block];
    for (; n > 0; x += block, n -= block) {
      const index count = n < block ? n : block;
      for (index i = 0; i < count; ++i) y[i] = f(static_cast<double>(x[i]));
      std::int64_t open = 0;
      for (index i = 0; i < count; ++i) open |= distance_from_doubt(y[i]);
      for (index i = 0; open < 0 && i < count; ++i) {
        if (is_between_floats(y[i])) y[i] = precise(static_cast<double>(x[i]));
      }
      for (index i = 0; i < count; ++i) x[i] = static_cast<T>(y[i]);
    }
  }
}

// The same for a function that no compiler takes several at a time: the test hides behind its latency.
template <class T, class F, class Precise>
void map_nearest_one_by_one(T* x, index n, F f, Precise precise) noexcept {
  if constexpr (sizeof(T) == sizeof(double)) {
    map(x, n, f);
  } else {
    map(x, n, [=](double u) {
      const double y = f(u);
      return distance_from_doubt(y) < 0 && is_between_floats(y) ? precise(u) : y;
    });
  }
}

}  // namespace sigpak
