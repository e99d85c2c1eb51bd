// Natural logarithms of vectors in two parts.
#pragma once

#include "kernels/elementary_coefficients.h"
#include "kernels/elementary_lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr double ln2_hi = 0x1.62e42fefa3800p-1;  // a multiple of 2^-42: k ln2_hi is exact
constexpr double ln2_lo = 0x1.ef35793c76730p-45;

// x = 2^k (1 + f), sqrt(1/2) <= 1 + f < sqrt 2, for normal x > 0.
struct reduced_log {
  real k;
  real f;
};

SIGPAK_INLINE reduced_log reduce_log(real x) {
  constexpr unsigned long long root_half = 0x3fe6a09e667f3bcd;
  constexpr unsigned long long one = 0x3ff0000000000000;
  const words above = bits(x) + all_bits(one - root_half);
  const words exponent = above >> 52;
  const real k = from_bits(exponent | all_bits(0x4330000000000000)) - all(0x1p52 + 1023);
  const real m = from_bits((above & 0x000fffffffffffffULL) + all_bits(root_half));
  return {k, m - all(1)};
}

// With s = f / (2 + f): ln(1 + f) = f - (f^2/2 - s (f^2/2 + R(s^2))), f - f^2/2 kept exactly. Source: the
// arrangement of fdlibm's logarithm; lo may reach 2^-5 of hi.
SIGPAK_INLINE parts logarithm(real x) {
  const reduced_log y = reduce_log(x);
  const real s = y.f / (all(2) + y.f);
  const real z = s * s;
  const real half_f = all(0.5) * y.f;
  const real square = half_f * y.f;
  const real square_rest = fms(half_f, y.f, square);
  const real series = s * fma(z, polynomial(logarithm_terms, z), square);
  const parts near = fast_sum(y.f, -square);
  const parts top = fast_sum(y.k * all(ln2_hi), near.hi);
  return {top.hi, top.lo + (fma(y.k, all(ln2_lo), near.lo - square_rest) + series)};
}

SIGPAK_INLINE real logarithm_single(real x) {
  const reduced_log y = reduce_log(x);
  const real s = y.f / (all(2) + y.f);
  const real z = s * s;
  const real square = (all(0.5) * y.f) * y.f;
  const real series = fms(s, fma(z, polynomial(logarithm_single_terms, z), square), square);
  return fma(y.k, all(ln2_hi), y.f + fma(y.k, all(ln2_lo), series));
}

// a^2 + b^2 = hi + lo + rest, exactly but for the rounding of `rest`.
struct square_sum {
  real hi;
  real lo;
  real rest;
};

SIGPAK_INLINE square_sum sum_of_squares(real a, real b) {
  const parts aa = exact_product(a, a);
  const parts bb = exact_product(b, b);
  const parts top = exact_sum(aa.hi, bb.hi);
  const parts low = exact_sum(aa.lo, bb.lo);
  const parts middle = exact_sum(top.lo, low.hi);
  const parts sum = fast_sum(top.hi, middle.hi);
  return {sum.hi, sum.lo, middle.lo + low.lo};
}

// Around 1 the leading parts cancel, and lo and rest carry the digits: ln s = ln hi + (lo + rest) / hi, with
// lo / hi = lo + lo (1 - hi) / hi.
SIGPAK_INLINE parts logarithm(square_sum s) {
  const parts leading = logarithm(s.hi);
  const mask near = both(s.hi <= all(2), all(0.5) <= s.hi);
  const parts sum = exact_sum(leading.hi, choose(near, s.lo, all(0)));
  const real left = choose(near, fma(s.lo, all(1) - s.hi, s.rest), s.lo);
  return {sum.hi, sum.lo + (leading.lo + left / s.hi)};
}

// The same from parts that are floats: their squares are exact.
SIGPAK_INLINE real logarithm_single(parts s) { return logarithm_single(s.hi) + s.lo / s.hi; }

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
