// Arctangents of vectors: numerator and denominator are chosen before the one division.
#pragma once

#include "kernels/elementary_coefficients.h"
#include "kernels/elementary_lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr double pi_hi = 0x1.921fb54442d18p+1;
constexpr double pi_lo = 0x1.1a62633145c07p-53;
constexpr double tangent_eighth = 0x1.a827999fcef32p-2;     // tan(pi/8)
constexpr double tangent_3_eighths = 0x1.3504f333f9de6p+1;  // tan(3 pi/8)

// Magnitudes between which squares and quotients are safe from overflow and underflow.
constexpr double least_plain = 0x1p-500;
constexpr double most_plain = 0x1p500;

// The angle of (x, y) is base + atan(above / below), |above / below| <= tan(pi/8).
struct reduced_slope {
  parts above;
  parts below;
  parts base;
};

SIGPAK_INLINE parts pi_times(double quarters) { return {all(quarters * pi_hi), all(quarters * pi_lo)}; }

// For the upper half plane, of y >= 0; `left` where x is negative.
SIGPAK_INLINE reduced_slope reduce_slope(real y, real x, mask left) {
  const real zero = all(0);
  const mask steep = y > x * all(tangent_3_eighths);
  const mask middle = y > x * all(tangent_eighth);
  const parts above = choose(steep, {-x, zero}, choose(middle, exact_sum(y, -x), {y, zero}));
  const parts below = choose(steep, {y, zero}, choose(middle, exact_sum(y, x), {x, zero}));
  const parts flat_base = choose(left, pi_times(1), {zero, zero});
  const parts middle_base =
      choose(left, {all(0x1.2d97c7f3321d2p+1), all(0x1.a79394c9e8a0ap-54)}, pi_times(0.25));
  const parts base = choose(steep, pi_times(0.5), choose(middle, middle_base, flat_base));
  return {{choose(left, -above.hi, above.hi), choose(left, -above.lo, above.lo)}, below, base};
}

SIGPAK_INLINE real arctangent(reduced_slope s) {
  const real inverse = all(1) / s.below.hi;
  const real t = s.above.hi * inverse;
  const real t_rest = (fnma(t, s.below.hi, s.above.hi) + fnma(t, s.below.lo, s.above.lo)) * inverse;
  const real z = t * t;
  const parts sum = fast_sum(s.base.hi, t);
  const real rest = fnma(t_rest, z, t_rest) + (s.base.lo + sum.lo);
  return sum.hi + fma(t, z * polynomial(arctangent_terms, z), rest);
}

SIGPAK_INLINE real arctangent_single(reduced_slope s) {
  const real t = s.above.hi / s.below.hi;
  const real z = t * t;
  return s.base.hi + fma(t * z, polynomial(arctangent_single_terms, z), t);
}

// Neither too large, nor too small unless 0, for the plain formulas of points.
SIGPAK_INLINE mask is_plain(real a) {
  return either(both(a <= all(most_plain), opposite(a < all(least_plain))), a == all(0));
}

SIGPAK_INLINE mask is_negative(real x) { return has_bit(bits(x), sign_bit); }

template <class F> [[gnu::noinline]] void replace_lanes(real& w, real y, real x, int lanes, F f) {
  double from_y[lane_count];
  double from_x[lane_count];
  double to[lane_count];
  store(from_y, y);
  store(from_x, x);
  store(to, w);
  for (int i = 0; i < lane_count; ++i) {
    if ((lanes >> i & 1) != 0) to[i] = f(from_y[i], from_x[i]);
  }
  w = load<real>(to);
}
template <class F> SIGPAK_INLINE real except(real w, mask m, real y, real x, F f) {
  const int lanes = lanes_of(m);
  if (__builtin_expect(lanes != 0, 0)) replace_lanes(w, y, x, lanes, f);
  return w;
}

// atan2(y, x) as the C library defines it; the two zeros together go to the library too.
SIGPAK_INLINE real phase(real y, real x) {
  const real a = absolute(y);
  const real b = absolute(x);
  const real angle = arctangent(reduce_slope(a, b, is_negative(x)));
  const mask zero = both(a == all(0), b == all(0));
  const mask wild = either(opposite(both(is_plain(a), is_plain(b))), zero);
  return except(take_sign(angle, y), wild, y, x, [](double u, double v) { return __builtin_atan2(u, v); });
}

// For parts that come from floats: far from overflow, only zeros, infinities and NaN are special.
SIGPAK_INLINE real phase_single(real y, real x) {
  const real a = absolute(y);
  const real b = absolute(x);
  const real angle = arctangent_single(reduce_slope(a, b, is_negative(x)));
  const mask zero = both(a == all(0), b == all(0));
  const mask wild = either(opposite(both(a <= all(most_plain), b <= all(most_plain))), zero);
  return except(take_sign(angle, y), wild, y, x, [](double u, double v) { return __builtin_atan2(u, v); });
}

// |(a, b)|
SIGPAK_INLINE real magnitude(real a, real b) {
  const real u = absolute(a);
  const real v = absolute(b);
  const mask ordered = u < v;
  const real most = choose(ordered, v, u);
  const real least = choose(ordered, u, v);
  const real y = sqrt(fma(most, most, least * least));
  return except(y, opposite(either(is_plain(most), both(most == all(0), least == all(0)))), a, b,
                [](double p, double q) { return __builtin_hypot(p, q); });
}

SIGPAK_INLINE real magnitude_single(real a, real b) {
  const real infinite = all(__builtin_inf());
  const real y = sqrt(fma(a, a, b * b));
  return choose(either(absolute(a) == infinite, absolute(b) == infinite), infinite, y);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
