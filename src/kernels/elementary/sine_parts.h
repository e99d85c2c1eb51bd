// SPDX-License-Identifier: MIT
// sin x and cos x with some 60 good bits, for what is built on it.
#pragma once

#include <cmath>
#include <cstdint>

#include "core/double_double.h"
#include "kernels/elementary/far_angle.h"

namespace sigpak {

inline constexpr double sine_reduction_end = 0x1p20;  // the multiples of pi / 2 that reduce exactly below

// x = quarter * pi / 2 + (hi + lo), |hi| <= pi / 4 (1 + 2^-20).
struct reduced_angle {
  std::int64_t quarter;
  double_double rest;
};

constexpr reduced_angle reduce_angle(double x) noexcept {
  constexpr double per_quarter = 0x1.45f306dc9c883p-1;  // 2 / pi
  constexpr double part1 = 0x1.921fb544p+0;             // pi / 2 in pieces of 33 bits, the last one full
  constexpr double part2 = 0x1.0b4611a6p-34;
  constexpr double part3 = 0x1.3198a2e037073p-69;
  constexpr double to_integer = 0x1.8p52;
  const double n = (x * per_quarter + to_integer) - to_integer;
  const double first = x - n * part1;
  const double_double second = exact_sum(first, -(n * part2));
  const double_double rest = fast_sum(second.hi, second.lo - n * part3);
  return {static_cast<std::int64_t>(n), rest};
}

// The same of any x, hi + lo within 2^-72 of it. The error of the pieces is 2^-102, which matters beside the
// few x that are very close to a multiple of pi / 2.
inline reduced_angle reduce_any_angle(double x) noexcept {
  if (std::abs(x) <= sine_reduction_end) [[likely]] {
    const reduced_angle near = reduce_angle(x);
    if (near.quarter == 0 || std::abs(near.rest.hi) > 0x1p-30) [[likely]]
      return near;
  }
  const kernels::far_angle far = kernels::reduce_far(x);
  return {far.quarter, {far.hi, far.lo}};
}

// The Taylor series of (sin r - r) / r^3 + 1 / 8 and (cos r - 1 + r^2 / 2) / r^4 in r^2, highest coefficient
// first; the next terms are below 2^-62 of the results. The eighth is taken away again without a rounding,
// and what is left is rounded at a quarter of the size.
inline constexpr double sine_series[8] = {
    1.0 / 355687428096000, -1.0 / 1307674368000, 1.0 / 6227020800, -1.0 / 39916800,
    1.0 / 362880,          -1.0 / 5040,          1.0 / 120,        -1.0 / 24};
inline constexpr double cosine_series[8] = {
    -1.0 / 6402373705728000, 1.0 / 20922789888000, -1.0 / 87178291200, 1.0 / 479001600,
    -1.0 / 3628800,          1.0 / 40320,          -1.0 / 720,         1.0 / 24};

// In two chains, which overlap.
constexpr double series(const double (&c)[8], double s) noexcept {
  const double ss = s * s;
  const double even = ((c[1] * ss + c[3]) * ss + c[5]) * ss + c[7];
  const double odd = ((c[0] * ss + c[2]) * ss + c[4]) * ss + c[6];
  return even + s * odd;
}

constexpr double_double sine_near_zero(double_double r) noexcept {
  const double_double s = square(r.hi);
  const double cubic = s.hi * series(sine_series, s.hi) - s.hi / 8;
  const double rest = (r.lo - r.lo * (s.hi / 2)) - r.hi * (s.lo * (1.0 / 6));
  return fast_sum(r.hi, r.hi * cubic + rest);
}

constexpr double_double cosine_near_zero(double_double r) noexcept {
  const double_double s = square(r.hi);
  const double_double top = fast_sum(1, -s.hi / 2);
  return fast_sum(top.hi, s.hi * (s.hi * series(cosine_series, s.hi)) + (top.lo - s.lo / 2 - r.hi * r.lo));
}

// sin x of any x.
inline double_double sine_parts(double x) noexcept {
  const reduced_angle angle = reduce_any_angle(x);
  const double_double y =
      (angle.quarter & 1) != 0 ? cosine_near_zero(angle.rest) : sine_near_zero(angle.rest);
  return (angle.quarter & 2) != 0 ? -y : y;
}

struct sine_cosine {
  double_double sine;
  double_double cosine;
};

// Of any x.
inline sine_cosine sine_and_cosine(double x) noexcept {
  const reduced_angle angle = reduce_any_angle(x);
  sine_cosine y = {sine_near_zero(angle.rest), cosine_near_zero(angle.rest)};
  if (x == 0) y.sine = {x, 0};  // with its sign
  if ((angle.quarter & 1) != 0) y = {y.cosine, -y.sine};
  if ((angle.quarter & 2) != 0) y = {-y.sine, -y.cosine};
  return y;
}

}  // namespace sigpak
