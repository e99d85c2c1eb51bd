// SPDX-License-Identifier: MIT
// Sines and cosines of vectors: reduction by multiples of pi / 2, then polynomials.
#pragma once

#include "kernels/elementary/circular.h"
#include "kernels/elementary/coefficients.h"
#include "kernels/elementary/walk.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Beyond this the functions of single numbers take over.
constexpr double reduction_end = has_fused_products ? 0x1p30 : 0x1p20;

constexpr double two_over_pi = 0x1.45f306dc9c883p-1;
constexpr double half_pi_hi = 0x1.921fb54442d18p+0;  // pi / 2 in three doubles
constexpr double half_pi_mid = 0x1.1a62633145c07p-54;
constexpr double half_pi_lo = -0x1.f1976b7ed8fbcp-110;

// x = quarter * pi / 2 + hi + lo, |hi| <= pi / 4; the quarter is in the low bits.
struct angle {
  real hi;
  real lo;
  words quarter;
};

// pi / 2 in pieces of 33 bits, the last one full: where products are not fused, those of the first three with
// multiples up to 2^20 are exact. What each difference starts from is a multiple of the last place of the
// product, so that a fast sum keeps all of it.
constexpr double half_pi_pieces[] = {0x1.921fb544p+0, 0x1.0b4611a6p-34, 0x1.3198a2ep-69,
                                     0x1.b839a252049c1p-104};

SIGPAK_INLINE parts take_quarters(real x, real n) {
  const real first = x - n * all(half_pi_pieces[0]);
  const parts second = fast_sum(first, -(n * all(half_pi_pieces[1])));
  const parts third = fast_sum(second.hi, -(n * all(half_pi_pieces[2])));
  const real step = (n * all(half_pi_pieces[3]) - second.lo) - third.lo;
  const real hi = third.hi - step;  // with the sign of a zero
  return {hi, (third.hi - hi) - step};
}

// x - n * quarters * pi / 2 for single precision, which needs no more than the double.
SIGPAK_INLINE real take_quarters_single(real x, real n, double quarters) {
  if constexpr (has_fused_products) {
    return fnma(n, all(quarters * half_pi_mid), fnma(n, all(quarters * half_pi_hi), x));
  }
  real rest = x;
  unroll<3>([&](auto i) SIGPAK_LAMBDA { rest = rest - n * all(quarters * half_pi_pieces[i]); });
  return rest;
}

// The first product is exact for |x| <= 2^38: the multiple of pi / 2 that it takes away has at most 53 bits
// left.
SIGPAK_INLINE angle reduce(real x) {
  const real shifted = fma(x, all(two_over_pi), all(to_integer));
  const real n = shifted - all(to_integer);
  if constexpr (!has_fused_products) {
    const parts rest = take_quarters(x, n);
    return {rest.hi, rest.lo, bits(shifted)};
  }
  const real first = fnma(n, all(half_pi_hi), x);
  const real step = n * all(half_pi_mid);
  const real step_rest = fms(n, all(half_pi_mid), step);
  const real hi = first - step;
  const real lo = ((first - hi) - step) - fma(n, all(half_pi_lo), step_rest);
  return {hi, lo, bits(shifted)};
}

// For single precision, whose results need no rest of the angle.
SIGPAK_INLINE angle reduce_single(real x) {
  const real shifted = fma(x, all(two_over_pi), all(to_integer));
  const real n = shifted - all(to_integer);
  return {take_quarters_single(x, n, 1), all(0), bits(shifted)};
}

// What the sine takes of the rest of hi^2: hi^3 / 6. Where fused products save other roundings it is not
// worth its price.
SIGPAK_INLINE real cubic_share(real hi, real square_rest) { return (all(1.0 / 6) * hi) * square_rest; }

// sin(a + quarter pi / 2), where `quarter` adds to what a holds: one polynomial, its coefficients chosen per
// lane.
SIGPAK_INLINE real turned_sine(angle a, words quarter) {
  const mask odd = has_bit(quarter, 1);
  const real z = a.hi * a.hi;
  real p = choose(odd, all(cosine_terms[0]), all(sine_terms[0]));
  unroll<5>([&](auto k) SIGPAK_LAMBDA {
    p = fma(p, z, choose(odd, all(cosine_terms[k + 1]), all(sine_terms[k + 1])));
  });
  const real half = z * all(0.5);
  const real top = all(1) - half;
  real sine_rest = fnma(half, a.lo, a.lo);  // lo cos(hi)
  if constexpr (!has_fused_products) sine_rest = sine_rest - cubic_share(a.hi, square_parts(a.hi).lo);
  const real cosine_rest = fnma(a.hi, a.lo, (all(1) - top) - half);  // -lo sin(hi), and what top left out
  const real base = choose(odd, top, a.hi);
  const real y = base + fma(choose(odd, z, a.hi), z * p, choose(odd, cosine_rest, sine_rest));
  return flip_sign(take_sign(y, base), quarter << 62);
}

// Sine and cosine of the reduced angle itself, each as a leading double and the rest, up to 2^-3 of it.
struct sine_cosine {
  parts sine;
  parts cosine;
};

// `of_rest` is how much the cosine takes of what the rounding of hi^2 left out: a half is its own share.
SIGPAK_INLINE sine_cosine both_parts(angle a, double of_rest = 0.5) {
  const auto [z, square_rest] = square_parts(a.hi);
  const real half = z * all(0.5);
  const real top = all(1) - half;
  const real cubic = fms(z, polynomial(lifted_sine_terms, z), all(0.125) * z);
  const real cosine_rest = fnma(all(of_rest), square_rest, fnma(a.hi, a.lo, (all(1) - top) - half));
  real sine_rest = fnma(half, a.lo, a.lo);
  if constexpr (!has_fused_products) sine_rest = sine_rest - cubic_share(a.hi, square_rest);
  return {{a.hi, fma(a.hi, cubic, sine_rest)}, {top, fma(z, z * polynomial(cosine_terms, z), cosine_rest)}};
}

// For single precision: x = n pi + r, |r| <= pi / 2, and one polynomial.
SIGPAK_INLINE real half_turn_sine(real r, words turns, const double (&terms)[7]) {
  const real z = r * r;
  const real y = fma(r * z, polynomial(terms, z), r);
  return flip_sign(take_sign(y, r), turns << 63);
}

SIGPAK_INLINE real sine_single(real x) {
  const real shifted = fma(x, all(two_over_pi / 2), all(to_integer));
  const real n = shifted - all(to_integer);
  return half_turn_sine(take_quarters_single(x, n, 2), bits(shifted), sine_single_terms);
}

// cos x = -sin(x - pi / 2): the nearest odd multiple of pi / 2 takes the place of the multiple of pi, and one
// more turns the sign.
SIGPAK_INLINE real cosine_single(real x) {
  const real shifted = fma(x, all(two_over_pi / 2), all(-0.5)) + all(to_integer + 1);
  const real n = (shifted - all(to_integer + 1)) + all(0.5);
  return half_turn_sine(take_quarters_single(x, n, 2), bits(shifted), cosine_single_terms);
}

SIGPAK_INLINE mask is_far(real x) { return not_at_most(absolute(x), reduction_end); }

SIGPAK_INLINE parts flip_sign(parts a, words sign) { return {flip_sign(a.hi, sign), flip_sign(a.lo, sign)}; }

// sin x and cos x, each with what its leading double leaves out.
SIGPAK_INLINE sine_cosine sine_and_cosine(real x) {
  const angle a = reduce(x);
  const sine_cosine y = both_parts(a);
  const mask odd = has_bit(a.quarter, 1);
  const parts sine = flip_sign(choose(odd, y.cosine, y.sine), a.quarter << 62);
  const parts cosine = flip_sign(choose(odd, y.sine, y.cosine), (a.quarter + 1) << 62);
  return {sine, cosine};
}

// The same for single precision, where the leading doubles are enough.
SIGPAK_INLINE sine_cosine sine_and_cosine_single(real x) {
  const angle a = reduce_single(x);
  const real z = a.hi * a.hi;
  const real s = take_sign(fma(a.hi * z, polynomial(sine_quarter_single_terms, z), a.hi), a.hi);
  const real c = fma(z * z, polynomial(cosine_quarter_single_terms, z), fnma(all(0.5), z, all(1)));
  const mask odd = has_bit(a.quarter, 1);
  const real sine = flip_sign(choose(odd, c, s), a.quarter << 62);
  const real cosine = flip_sign(choose(odd, s, c), (a.quarter + 1) << 62);
  return {{sine, all(0)}, {cosine, all(0)}};
}

template <class T> SIGPAK_INLINE sine_cosine sine_and_cosine_for(real x) {
  if constexpr (is_single<T>) {
    return sine_and_cosine_single(x);
  } else {
    return sine_and_cosine(x);
  }
}

// For all finite x.
template <class T> SIGPAK_INLINE sine_cosine careful_sine_and_cosine(real x) {
  const sine_cosine y = sine_and_cosine_for<T>(x);
  double from[lane_count];
  double to[4][lane_count];
  store(from, x);
  store(to[0], y.sine.hi);
  store(to[1], y.sine.lo);
  store(to[2], y.cosine.hi);
  store(to[3], y.cosine.lo);
  const int lanes = lanes_of(is_far(x));
  for (int i = 0; i < lane_count; ++i) {
    if ((lanes >> i & 1) == 0) continue;
    const kernels::both_sines far = kernels::careful_sine_and_cosine(from[i]);
    to[0][i] = far.sine;
    to[1][i] = far.sine_rest;
    to[2][i] = far.cosine;
    to[3][i] = far.cosine_rest;
  }
  return {{load<real>(to[0]), load<real>(to[1])}, {load<real>(to[2]), load<real>(to[3])}};
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
