// SPDX-License-Identifier: MIT
// Arctangents of vectors: numerator and denominator are chosen before the one division.
#pragma once

#include "kernels/elementary/coefficients.h"
#include "vectors/compare.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr double pi_hi = 0x1.921fb54442d18p+1;
constexpr double pi_lo = 0x1.1a62633145c07p-53;
constexpr double tangent_eighth = 0x1.a827999fcef32p-2;  // tan(pi/8)

// Sums of magnitudes between which squares and quotients of the parts of a point neither overflow nor lose
// digits below the smallest normal number.
constexpr double least_plain = 0x1p-500;
constexpr double most_plain = 0x1p500;

SIGPAK_INLINE mask is_negative(real x) { return has_bit(bits(x), sign_bit); }

// The magnitudes of the parts of a point in order, with their sum.
struct ordered_point {
  real most;
  real least;
  real sum;
  mask steep;  // |y| > |x|
};

SIGPAK_INLINE ordered_point in_order(real x, real y) {
  const real a = absolute(x);
  const real b = absolute(y);
  return {greater(a, b), lesser(a, b), a + b, a < b};
}

// For magnitudes between the limits above; NaN, infinity and the zero point are wild.
SIGPAK_INLINE mask is_wild_point(real x, real y) {
  return is_outside(absolute(x) + absolute(y), least_plain, most_plain);
}

// The angle in quarters of pi, counted from where the quotient vanishes: with t in the first octant the angle
// is t, pi/2 - t, pi/2 + t or pi - t, and beyond the middle of an octant t counts from pi/4.
struct octant {
  mask middle;
  mask reversed;
  real quarters;
};

SIGPAK_INLINE octant octant_of(mask steep, mask left, mask middle) {
  const real base = choose(steep, all(2), choose(left, all(4), all(0)));
  return {middle, exclusive(steep, left), choose(middle, choose(left, all(3), all(1)), base)};
}

SIGPAK_INLINE octant right_octant_of(mask steep, mask middle) {
  return {middle, steep, choose(middle, all(1), choose(steep, all(2), all(0)))};
}

// octant + atan(least / most), 0 <= least <= most, in two parts: from 1/2 on least - most is exact.
SIGPAK_INLINE parts arctangent(real least, real most, real sum, octant where) {
  const real above = choose(where.middle, least - most, least);
  const real below = choose(where.middle, sum, most);
  const real below_rest = choose(where.middle, least - (sum - most), all(0));
  const real inverse = all(1) / below;
  const real t = above * inverse;
  const real t_rest = fnma(t, below_rest, remainder(above, t, below)) * inverse;
  const real z = t * t;
  const words sign = only(where.reversed, sign_bit);
  const real turned = flip_sign(t, sign);
  const real hi = fma(where.quarters, all(0.25 * pi_hi), turned);
  const real hi_rest = fma(where.quarters, all(0.25 * pi_hi), -hi) + turned;
  const real rest = fma(t, z * polynomial(arctangent_terms, z), fnma(t_rest, z, t_rest));
  return {hi, flip_sign(rest, sign) + fma(where.quarters, all(0.25 * pi_lo), hi_rest)};
}

SIGPAK_INLINE mask is_middle(real least, real most) { return most < least + least; }

SIGPAK_INLINE real arctangent_single(real least, real most, octant where) {
  const real above = choose(where.middle, least - most, least);
  const real below = choose(where.middle, least + most, most);
  const real t = above / below;
  const real z = t * t;
  const real y = fma(t * z, polynomial(arctangent_single_terms, z), t);
  return fma(where.quarters, all(0.25 * pi_hi), flip_sign(y, only(where.reversed, sign_bit)));
}

SIGPAK_INLINE mask is_middle_single(real least, real most) { return most * all(tangent_eighth) < least; }

// The magnitude of the phase of (x, .), and what it leaves out, for points that are not wild.
SIGPAK_INLINE parts phase(ordered_point z, real x) {
  const mask middle = is_middle(z.least, z.most);
  return arctangent(z.least, z.most, z.sum, octant_of(z.steep, is_negative(x), middle));
}

SIGPAK_INLINE real phase_single(ordered_point z, real x) {
  const mask middle = is_middle_single(z.least, z.most);
  return arctangent_single(z.least, z.most, octant_of(z.steep, is_negative(x), middle));
}

template <class T> SIGPAK_INLINE real phase_for(ordered_point z, real x, real y) {
  if constexpr (is_single<T>) {
    return take_sign(phase_single(z, x), y);
  } else {
    const parts angle = phase(z, x);
    return take_sign(angle.hi + angle.lo, y);
  }
}

// most^2 + least^2, nearly exactly.
SIGPAK_INLINE parts sum_of_squares(real most, real least) {
  if constexpr (has_fused_products) {
    const real square = least * least;
    const real sum = fma(most, most, square);
    return {sum, (fms(most, most, sum) + square) + fms(least, least, square)};
  }
  const parts large = square_parts(most);
  const parts small = square_parts(least);
  const parts sum = fast_sum(large.hi, small.hi);
  return {sum.hi, sum.lo + (large.lo + small.lo)};
}

// sqrt(most^2 + least^2), corrected by what the sum of the squares and the root have lost.
SIGPAK_INLINE real magnitude(ordered_point z) {
  const parts sum = sum_of_squares(z.most, z.least);
  const real y = sqrt(sum.hi);
  const real rest = remainder(sum.hi, y) + sum.lo;
  return fma(rest, all(0.5) * rough_inverse(y), y);
}

SIGPAK_INLINE real magnitude_single(ordered_point z) { return sqrt(fma(z.most, z.most, z.least * z.least)); }

template <class T> SIGPAK_INLINE real magnitude_for(ordered_point z) {
  if constexpr (is_single<T>) {
    return magnitude_single(z);
  } else {
    return magnitude(z);
  }
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
