// SPDX-License-Identifier: MIT
// Powers of e and of ten of vectors: a table of 2^(j/8), a short polynomial, and an exponent.
#pragma once

#include "kernels/elementary/coefficients.h"
#include "vectors/compare.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// 2^(j/8), and what the doubles leave out, from 60-digit arithmetic (scripts/elementary-tables eighths).
constexpr double eighth_powers[8] = {
    0x1.0000000000000p+0, 0x1.172b83c7d517bp+0, 0x1.306fe0a31b715p+0, 0x1.4bfdad5362a27p+0,
    0x1.6a09e667f3bcdp+0, 0x1.8ace5422aa0dbp+0, 0x1.ae89f995ad3adp+0, 0x1.d5818dcfba487p+0,
};
constexpr double eighth_power_rests[8] = {
    0x0.0p+0,
    -0x1.19041b9d78a76p-55,
    0x1.6f46ad23182e4p-55,
    0x1.d4397afec42e2p-56,
    -0x1.bdd3413b26456p-54,
    0x1.6e9f156864b27p-54,
    0x1.7a1cd345dcc81p-54,
    0x1.2ed02d75b3707p-55,
};

// The same times 2^200.
constexpr double lifted_eighth_powers[8] = {
    0x1.0000000000000p+200, 0x1.172b83c7d517bp+200, 0x1.306fe0a31b715p+200, 0x1.4bfdad5362a27p+200,
    0x1.6a09e667f3bcdp+200, 0x1.8ace5422aa0dbp+200, 0x1.ae89f995ad3adp+200, 0x1.d5818dcfba487p+200,
};
constexpr double lifted_eighth_power_rests[8] = {
    0x0.0p+0,
    -0x1.19041b9d78a76p+145,
    0x1.6f46ad23182e4p+145,
    0x1.d4397afec42e2p+144,
    -0x1.bdd3413b26456p+146,
    0x1.6e9f156864b27p+146,
    0x1.7a1cd345dcc81p+146,
    0x1.2ed02d75b3707p+145,
};

// Below these the results round to 0.
constexpr double vanishing_exponent = -750;
constexpr double vanishing_decimal_exponent = -326;
constexpr double vanishing_exponent_single = -105;
constexpr double vanishing_decimal_exponent_single = -46;

constexpr double ln10_hi = 0x1.26bb1bbb55516p+1;
constexpr double ln10_lo = -0x1.f48ad494ea3e9p-53;

// Eighths of a factor of two in e and in ten, and such an eighth as a power of either.
constexpr double eighths_in_e = 0x1.71547652b82fep+3;    // 8 / ln 2
constexpr double eighths_in_ten = 0x1.a934f0979a371p+4;  // 8 / log10 2
constexpr double eighth = 0x1.62e42fefa39efp-4;
constexpr double decimal_eighth = 0x1.34413509f79ffp-5;

// x = n eighths of ln 2 and r, |r| <= ln 2 / 16; n is in the low bits of shifted.
struct eighths {
  real shifted;
  real r;
};

// Such eighths as sums whose first part gives exact products with n: where products are not fused, by its 38
// bits.
constexpr double eighth_hi = has_fused_products ? eighth : 0x1.62e42fefap-4;
constexpr double eighth_lo = has_fused_products ? 0x1.abc9e3b39803fp-59 : 0x1.cf79abc9e3b3ap-43;
constexpr double decimal_eighth_hi = has_fused_products ? decimal_eighth : 0x1.34413509fp-5;
constexpr double decimal_eighth_lo = has_fused_products ? -0x1.9dc1da994fd21p-62 : 0x1.e7fbcc47c4acdp-43;

// What the first product leaves of x has at most 53 bits.
SIGPAK_INLINE eighths reduce_power(real x) {
  const real shifted = fma(x, all(eighths_in_e), all(to_integer));
  const real n = shifted - all(to_integer);
  return {shifted, fnma(n, all(eighth_lo), fnma(n, all(eighth_hi), x))};
}

SIGPAK_INLINE eighths reduce_decimal_power(real x) {
  const real shifted = fma(x, all(eighths_in_ten), all(to_integer));
  const real n = shifted - all(to_integer);
  const real t = fnma(n, all(decimal_eighth_lo), fnma(n, all(decimal_eighth_hi), x));
  return {shifted, fma(t, all(ln10_hi), t * all(ln10_lo))};
}

SIGPAK_INLINE real expm1_near_zero(real r) { return fma(r * r, polynomial(exponential_terms, r), r); }
SIGPAK_INLINE real expm1_near_zero_single(real r) {
  return fma(r * r, polynomial(exponential_single_terms, r), r);
}

// 2^(n/8 mod 1) e^r, the leading part from the table alone.
SIGPAK_INLINE parts mantissa(eighths x) {
  const words position = bits(x.shifted);
  const real root = look_up(eighth_powers, position);
  return {root, fma(root, expm1_near_zero(x.r), look_up(eighth_power_rests, position))};
}

SIGPAK_INLINE real power(eighths x) {
  const parts m = mantissa(x);
  return scale_eighths(m.hi + m.lo, x.shifted);
}

// The same from 2^-1000 on.
constexpr double least_normal_decimal_exponent = -300;
SIGPAK_INLINE real normal_power(eighths x) {
  const parts m = mantissa(x);
  return scale_normal_eighths(m.hi + m.lo, x.shifted);
}

// For single precision: one product reduces, and no exponent leaves the range of a double, so it joins the
// root.
SIGPAK_INLINE eighths reduce_power_single(real x) {
  const real shifted = fma(x, all(eighths_in_e), all(to_integer));
  return {shifted, fnma(shifted - all(to_integer), all(eighth), x)};
}

SIGPAK_INLINE eighths reduce_decimal_power_single(real x) {
  const real shifted = fma(x, all(eighths_in_ten), all(to_integer));
  return {shifted, fnma(shifted - all(to_integer), all(decimal_eighth), x) * all(ln10_hi)};
}

SIGPAK_INLINE real power_single(eighths x) {
  const words exponent = (bits(x.shifted) & ~7ULL) << 49;
  const real root = from_bits(bits(look_up(eighth_powers, bits(x.shifted))) + exponent);
  return fma(root, expm1_near_zero_single(x.r), root);
}

// 2^lift e^x in two parts, for |x| <= 700: the first may be 2^5 of the second only.
template <int lift = 0> SIGPAK_INLINE parts power_parts(eighths x) {
  const parts m = mantissa(x);
  const real exponent = power_of_two_eighths<lift>(x.shifted);
  return {m.hi * exponent, m.lo * exponent};
}

SIGPAK_INLINE real exponential(real x) { return power(reduce_power(at_least(x, vanishing_exponent))); }
SIGPAK_INLINE real exponential_single(real x) {
  return power_single(reduce_power_single(at_least(x, vanishing_exponent_single)));
}
SIGPAK_INLINE real exponential10(real x) {
  return power(reduce_decimal_power(at_least(x, vanishing_decimal_exponent)));
}
SIGPAK_INLINE real exponential10_single(real x) {
  return power_single(reduce_decimal_power_single(at_least(x, vanishing_decimal_exponent_single)));
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
