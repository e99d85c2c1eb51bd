// sin x with some 60 good bits, for what is built on it.
#pragma once

#include <cstdint>

#include "core/double_double.h"

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

// The Taylor series; the next terms are below 2^-62 of the result.
constexpr double_double sine_near_zero(double_double r) noexcept {
  const double s = r.hi * r.hi;
  double sum = 1.0 / 355687428096000;  // 1 / 17!, the last of the odd factorials
  sum = sum * s - 1.0 / 1307674368000;
  sum = sum * s + 1.0 / 6227020800;
  sum = sum * s - 1.0 / 39916800;
  sum = sum * s + 1.0 / 362880;
  sum = sum * s - 1.0 / 5040;
  sum = sum * s + 1.0 / 120;
  sum = sum * s - 1.0 / 6;
  return {r.hi, r.hi * (s * sum) + r.lo * (1 - s / 2)};
}

constexpr double_double cosine_near_zero(double_double r) noexcept {
  const double_double s = exact_product(r.hi, r.hi);
  double sum = -1.0 / 6402373705728000;  // -1 / 18!, the last of the even factorials
  sum = sum * s.hi + 1.0 / 20922789888000;
  sum = sum * s.hi - 1.0 / 87178291200;
  sum = sum * s.hi + 1.0 / 479001600;
  sum = sum * s.hi - 1.0 / 3628800;
  sum = sum * s.hi + 1.0 / 40320;
  sum = sum * s.hi - 1.0 / 720;
  sum = sum * s.hi + 1.0 / 24;
  const double_double top = fast_sum(1, -s.hi / 2);
  return {top.hi, top.lo + (s.hi * (s.hi * sum) - s.lo / 2 - r.hi * r.lo)};
}

// sin x for |x| <= sine_reduction_end.
constexpr double_double sine_parts(double x) noexcept {
  const reduced_angle angle = reduce_angle(x);
  const double_double y =
      (angle.quarter & 1) != 0 ? cosine_near_zero(angle.rest) : sine_near_zero(angle.rest);
  return (angle.quarter & 2) != 0 ? double_double{-y.hi, -y.lo} : y;
}

}  // namespace sigpak
