// SPDX-License-Identifier: MIT
// Natural logarithms of vectors in two parts.
#pragma once

#include "kernels/elementary/coefficients.h"
#include "vectors/compare.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr double ln2_hi = 0x1.62e42fefa3800p-1;  // a multiple of 2^-42: k ln2_hi is exact
constexpr double ln2_lo = 0x1.ef35793c76730p-45;
constexpr double ln2_lo_single = 0x1.eebfc950c0e59p-45;  // chosen with the polynomial of single precision

// x = 2^k (1 + f), sqrt(1/2) <= 1 + f < sqrt 2, for normal x > 0.
struct reduced_log {
  real k;
  real f;
  real scale;  // 2^-k
};

SIGPAK_INLINE reduced_log reduce_log(real x) {
  constexpr unsigned long long root_half = 0x3fe6a09e667f3bcd;
  constexpr unsigned long long one = 0x3ff0000000000000;
  constexpr unsigned long long fraction = 0x000fffffffffffff;
  const words above = bits(x) + all_bits(one - root_half);
  const words exponent = above >> 52;
  const real k = from_bits(exponent | all_bits(0x4330000000000000)) - all(0x1p52 + 1023);
  const real m = from_bits((above & fraction) + all_bits(root_half));
  return {k, m - all(1), from_bits(all_bits(2 * one) - (above & ~fraction))};
}

// With s = f / (2 + f): ln(1 + f) = f - (f^2/2 - s (f^2/2 + R(s^2))), f - f^2/2 kept exactly. Source: the
// arrangement of fdlibm's logarithm; lo may reach 2^-5 of hi. What x leaves out adds `rest` to the logarithm.
SIGPAK_INLINE parts logarithm(reduced_log y, real rest) {
  const real s = y.f / (all(2) + y.f);
  const real z = s * s;
  const real half_f = all(0.5) * y.f;
  const real square = half_f * y.f;
  const real square_rest = product_rest(half_f, y.f, square);
  const real series = fma(s, fma(z, polynomial(logarithm_terms, z), square), rest);
  const parts near = fast_sum(y.f, -square);
  const parts top = fast_sum(y.k * all(ln2_hi), near.hi);
  return {top.hi, top.lo + (fma(y.k, all(ln2_lo), near.lo - square_rest) + series)};
}

SIGPAK_INLINE parts logarithm(real x) { return logarithm(reduce_log(x), all(0)); }

SIGPAK_INLINE real logarithm_single(reduced_log y, real rest) {
  const real s = y.f / (all(2) + y.f);
  const real z = s * s;
  const real square = (all(0.5) * y.f) * y.f;
  const real series = fma(s, fma(z, polynomial(logarithm_single_terms, z), square), rest - square);
  return fma(y.k, all(ln2_hi), y.f + fma(y.k, all(ln2_lo_single), series));
}

SIGPAK_INLINE real logarithm_single(real x) { return logarithm_single(reduce_log(x), all(0)); }

// ln(most^2 + least^2). Around 1 the leading parts of the sum cancel, and what it leaves out carries the
// digits; with x = 2^k (1 + f + lo) it adds lo / (1 + f) - lo^2 / 2, where farther from 1 a few digits are
// enough.
SIGPAK_INLINE parts logarithm_of_squares(real most, real least) {
  const parts aa = exact_product(most, most);
  const parts bb = exact_product(least, least);
  const parts top = fast_sum(aa.hi, bb.hi);
  const parts low = exact_sum(aa.lo, bb.lo);
  const parts middle = exact_sum(top.lo, low.hi);
  const parts sum = fast_sum(top.hi, middle.hi);
  const reduced_log y = reduce_log(sum.hi);
  const real lo = sum.lo * y.scale;
  const real slope =
      fnma(all(0.5), lo, y.f * fms(all(0.7), y.f, all(1)));  // 1 / (1 + f) - 1 is nearly f (0.7 f - 1)
  const parts leading = logarithm(y, fma(middle.lo + low.lo, y.scale, lo * slope));
  const parts with_lo = fast_sum(leading.hi, lo);
  return {with_lo.hi, with_lo.lo + leading.lo};
}

// The same from parts that are floats: their squares are exact.
SIGPAK_INLINE real logarithm_of_squares_single(real most, real least) {
  const parts sum = fast_sum(most * most, least * least);
  const reduced_log y = reduce_log(sum.hi);
  return logarithm_single(y, sum.lo * y.scale);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
