// SPDX-License-Identifier: MIT
// What the elementary functions need of the vectors of a level beyond arithmetic. Everything here gives the
// same bits at every level. The vector header of the level gives
//   mask                  of comparisons < <= > == not_at_most is_outside has_bit
//   both either exclusive opposite lanes_of       of masks
//   choose(m, a, b)       a where m holds, else b; only(m, bits) for bits and zero
//   lesser greater        with NaN the second operand, so that at_least and at_most keep it
//   take_sign sqrt look_up scale_eighths scale_normal_eighths split_pairs join_pairs
#pragma once

#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// 2^(floor(n / 8) + lift), -8000 < n < 8000; shifted is n + to_integer.
template <int lift = 0> SIGPAK_INLINE real power_of_two_eighths(real shifted) {
  return from_bits(((bits(shifted) & ~7ULL) << 49) +
                   all_bits(static_cast<unsigned long long>(1023 + lift) << 52));
}

// Highest coefficient first. Long ones as an even and an odd half, side by side.
template <int terms> SIGPAK_INLINE real polynomial(const double (&coefficients)[terms], real x) {
  if constexpr (terms < (has_fused_products ? 7 : 4)) {
    real sum = all(coefficients[0]);
    unroll<terms - 1>([&](auto k) SIGPAK_LAMBDA { sum = fma(sum, x, all(coefficients[k + 1])); });
    return sum;
  } else {
    const real square = x * x;
    real even = all(coefficients[(terms - 1) % 2]);
    real odd = all(coefficients[terms % 2]);
    unroll<(terms - 1) / 2>([&](auto k) SIGPAK_LAMBDA {
      even = fma(even, square, all(coefficients[2 * k + 2 + (terms - 1) % 2]));
    });
    unroll<terms / 2 - 1>(
        [&](auto k) SIGPAK_LAMBDA { odd = fma(odd, square, all(coefficients[2 * k + 2 + terms % 2])); });
    return fma(odd, x, even);
  }
}

// hi + lo of two vectors, unevaluated.
struct parts {
  real hi;
  real lo;
};

SIGPAK_INLINE parts choose(mask m, parts yes, parts no) {
  return {choose(m, yes.hi, no.hi), choose(m, yes.lo, no.lo)};
}

// a + b exactly, when a is 0 or not the smaller in magnitude.
SIGPAK_INLINE parts fast_sum(real a, real b) {
  const real sum = a + b;
  return {sum, b - (sum - a)};
}

SIGPAK_INLINE parts exact_sum(real a, real b) {
  const real sum = a + b;
  const real b_part = sum - a;
  return {sum, (a - (sum - b_part)) + (b - b_part)};
}

// a without its lower 27 bits: the product of two such numbers is exact. Rounded there, which may overflow,
// it leaves no more than 26.
SIGPAK_INLINE real upper_half(real a) { return from_bits(bits(a) & ~0x7ffffffULL); }
SIGPAK_INLINE real rounded_half(real a) { return from_bits((bits(a) + all_bits(1 << 26)) & ~0x7ffffffULL); }

// a * b - product, where product is a * b rounded, by halves of the factors.
SIGPAK_INLINE real product_rest(real a, real b, real product, real a_hi, real b_hi) {
  const real a_lo = a - a_hi;
  const real b_lo = b - b_hi;
  return ((a_hi * b_hi - product) + a_hi * b_lo + a_lo * b_hi) + a_lo * b_lo;
}

// The same, without fused products within 2^-105 of the product.
SIGPAK_INLINE real product_rest(real a, real b, real product) {
  if constexpr (has_fused_products) return fms(a, b, product);
  return product_rest(a, b, product, upper_half(a), upper_half(b));
}

// For factors that are not among the largest numbers.
SIGPAK_INLINE parts exact_product(real a, real b) {
  const real product = a * b;
  if constexpr (has_fused_products) return {product, fms(a, b, product)};
  return {product, product_rest(a, b, product, rounded_half(a), rounded_half(b))};
}

// a^2 in two parts; without fused products within 2^-79 of it.
SIGPAK_INLINE parts square_parts(real a) {
  const real product = a * a;
  if constexpr (has_fused_products) return {product, fms(a, a, product)};
  const real a_hi = upper_half(a);
  return {product, (a_hi * a_hi - product) + (a - a_hi) * (a + a_hi)};
}

// c - a * b and c - a^2, nearly exactly, where the product is close to c.
SIGPAK_INLINE real remainder(real c, real a, real b) {
  if constexpr (has_fused_products) return fnma(a, b, c);
  const real product = a * b;
  return (c - product) - product_rest(a, b, product);
}
SIGPAK_INLINE real remainder(real c, real a) {
  if constexpr (has_fused_products) return fnma(a, a, c);
  const parts product = square_parts(a);
  return (c - product.hi) - product.lo;
}

// a whose rest is up to 2^-3 of it, for a product that is rounded nearly once: fused ones take it as it is.
SIGPAK_INLINE parts closed(parts a) { return has_fused_products ? a : fast_sum(a.hi, a.lo); }

// a * b + c, rounded nearly as if once.
SIGPAK_INLINE real rounded_sum(real a, real b, real c) {
  if constexpr (has_fused_products) return fma(a, b, c);
  const real product = a * b;
  return product + (product_rest(a, b, product) + c);
}

// 1 / x for positive normal x to some 6 bits, enough where it multiplies what a rounding has left over: the
// difference of the bits, and one step of Newton.
SIGPAK_INLINE real rough_inverse(real x) {
  const real y = from_bits(all_bits(0x7fde623822fc16e6) - bits(x));
  return y * fnma(x, y, all(2));
}

// A quotient q with digits few enough for products with halves to be exact, and c - q * b where that is
// small: what a division needs, cheaper than the remainder above without fused products.
SIGPAK_INLINE real shortened(real q) { return has_fused_products ? q : upper_half(q); }
SIGPAK_INLINE real remainder_of_short(real c, real q, real b) {
  if constexpr (has_fused_products) return fnma(q, b, c);
  const real b_hi = upper_half(b);
  return (c - q * b_hi) - q * (b - b_hi);
}

// The same of a divisor without a rest.
SIGPAK_INLINE real quotient(parts n, real d) {
  const real inverse = all(1) / d;
  const real q = shortened(n.hi * inverse);
  return fma(remainder_of_short(n.hi, q, d) + n.lo, inverse, q);
}

// n / d with one division; the error beyond the final rounding is near 2^-100, or 2^-78 of a shortened
// quotient.
SIGPAK_INLINE real quotient(parts n, parts d) {
  const real inverse = all(1) / d.hi;
  const real q = shortened(n.hi * inverse);
  return fma(remainder_of_short(n.hi, q, d.hi) + fnma(q, d.lo, n.lo), inverse, q);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
