// Inverse circular functions, and the polar form of points.
#include "kernels/elementary_arctangent.h"
#include "kernels/elementary_tables.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Beyond this the arctangent rounds to pi / 2.
constexpr double steepest = 0x1p60;

SIGPAK_INLINE real arctangent_of(real x) {
  return take_sign(arctangent(reduce_slope(at_most(absolute(x), steepest), all(1), mask{})), x);
}

SIGPAK_INLINE real arctangent_of_single(real x) {
  return take_sign(arctangent_single(reduce_slope(at_most(absolute(x), steepest), all(1), mask{})), x);
}

// asin(root) = hi + lo + rest, where hi + lo is the root of z with the digits beyond a double.
struct half_angle {
  real hi;
  real lo;
  real rest;
};

// For |x| <= 1/2 the angle of x itself, above half of acos |x|, whose sine is sqrt((1 - |x|) / 2).
SIGPAK_INLINE half_angle reduce_arcsine(real a, mask large) {
  const real z = choose(large, fnma(all(0.5), a, all(0.5)), a * a);
  const real root = sqrt(z);
  const real root_rest = fnma(root, root, z) * (all(0.5) / at_least(root, least_plain));
  const real hi = choose(large, root, a);
  return {hi, choose(large, root_rest, all(0)), hi * (z * polynomial(arcsine_terms, z))};
}

SIGPAK_INLINE real arcsine(real x) {
  const real a = absolute(x);
  const mask large = a > all(0.5);
  const half_angle h = reduce_arcsine(a, large);
  const parts sum = fast_sum(all(0.5 * pi_hi), all(-2) * h.hi);
  const real from_quarter = sum.hi + fnma(all(2), h.lo + h.rest, sum.lo + all(0.5 * pi_lo));
  const real y = choose(large, from_quarter, h.hi + h.rest);
  return choose(a > all(1), all(0), take_sign(y, x));
}

SIGPAK_INLINE real arccosine(real x) {
  const real a = absolute(x);
  const mask large = a > all(0.5);
  const mask negative = is_negative(x);
  const half_angle h = reduce_arcsine(a, large);
  // large: 2 h, from pi when x is negative; else pi / 2 -+ h
  const real factor = choose(large, all(2), all(-1));
  const real turn = choose(negative, -factor, factor);
  const parts zero = {all(0), all(0)};
  const parts base = choose(large, choose(negative, pi_times(1), zero), pi_times(0.5));
  const parts sum = fast_sum(base.hi, turn * h.hi);
  const real y = sum.hi + fma(turn, h.lo + h.rest, sum.lo + base.lo);
  return choose(a > all(1), all(0), y);
}

SIGPAK_INLINE real reduced_arcsine_single(real a, mask large) {
  const real z = choose(large, fnma(all(0.5), a, all(0.5)), a * a);
  const real root = choose(large, sqrt(z), a);
  return fma(root * z, polynomial(arcsine_single_terms, z), root);
}

SIGPAK_INLINE real arcsine_single(real x) {
  const real a = absolute(x);
  const mask large = a > all(0.5);
  const real h = reduced_arcsine_single(a, large);
  const real y = choose(large, fnma(all(2), h, all(0.5 * pi_hi)), h);
  return choose(a > all(1), all(0), take_sign(y, x));
}

SIGPAK_INLINE real arccosine_single(real x) {
  const real a = absolute(x);
  const mask large = a > all(0.5);
  const mask negative = is_negative(x);
  const real h = reduced_arcsine_single(a, large);
  const real factor = choose(large, all(2), all(-1));
  const real base = choose(large, choose(negative, all(pi_hi), all(0)), all(0.5 * pi_hi));
  return choose(a > all(1), all(0), fma(choose(negative, -factor, factor), h, base));
}

void arctangents(double* x, index n) { walk(x, n, arctangent_of); }
void arctangents(float* x, index n) { walk(x, n, arctangent_of_single); }
void arcsines(double* x, index n) { walk(x, n, arcsine); }
void arcsines(float* x, index n) { walk(x, n, arcsine_single); }
void arccosines(double* x, index n) { walk(x, n, arccosine); }
void arccosines(float* x, index n) { walk(x, n, arccosine_single); }

// The zero point has phase 0 whatever the signs of its zeros.
SIGPAK_INLINE real phase_of_point(real a, real b) {
  return choose(both(a == all(0), b == all(0)), all(0), phase(b, a));
}
SIGPAK_INLINE real phase_of_point_single(real a, real b) {
  return choose(both(a == all(0), b == all(0)), all(0), phase_single(b, a));
}

void magnitudes(const double* z, double* out, index points) { walk_packing(z, out, points, magnitude); }
void magnitudes(const float* z, float* out, index points) { walk_packing(z, out, points, magnitude_single); }
void phases(const double* z, double* out, index points) { walk_packing(z, out, points, phase_of_point); }
void phases(const float* z, float* out, index points) { walk_packing(z, out, points, phase_of_point_single); }

void polar(double* z, index points) {
  walk_points(
      z, z, points, [](real & a, real & b) __attribute__((always_inline)) {
        const real angle = phase_of_point(a, b);
        a = magnitude(a, b);
        b = angle;
      });
}

void polar(float* z, index points) {
  walk_points(
      z, z, points, [](real & a, real & b) __attribute__((always_inline)) {
        const real angle = phase_of_point_single(a, b);
        a = magnitude_single(a, b);
        b = angle;
      });
}

template <class T>
constexpr kernels::inverse_functions<T> functions = {arctangents, arcsines, arccosines,
                                                     magnitudes,  phases,   polar};

}  // namespace

const kernels::inverse_functions<double> inverse_double = functions<double>;
const kernels::inverse_functions<float> inverse_float = functions<float>;

}  // namespace sigpak::SIGPAK_LEVEL
