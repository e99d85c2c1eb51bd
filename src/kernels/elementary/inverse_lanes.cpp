// SPDX-License-Identifier: MIT
// Inverse circular functions, and the polar form of points.
#include "core/kept_errno.h"
#include "kernels/elementary/arcsine_quick.h"
#include "kernels/elementary/arctangent.h"
#include "kernels/elementary/functions.h"
#include "kernels/elementary/walk.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Beyond this the arctangent rounds to pi / 2.
constexpr double steepest = 0x1p60;

SIGPAK_INLINE real arctangent_of(real x) {
  const real a = at_most(absolute(x), steepest);
  const real most = at_least(a, 1);
  const real least = at_most(a, 1);
  const parts y = arctangent(least, most, a + all(1), right_octant_of(all(1) < a, is_middle(least, most)));
  return take_sign(y.hi + y.lo, x);
}

SIGPAK_INLINE real arctangent_of_single(real x) {
  const real a = at_most(absolute(x), steepest);
  const real most = at_least(a, 1);
  const real least = at_most(a, 1);
  const mask middle = is_middle_single(least, most);
  return take_sign(arctangent_single(least, most, right_octant_of(all(1) < a, middle)), x);
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
  const real root_rest = (all(0.5) * remainder(z, root)) * rough_inverse(at_least(root, least_plain));
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
  const real quarter_turns = choose(large, choose(negative, all(2), all(0)), all(1));
  const parts base = {quarter_turns * all(0.5 * pi_hi), quarter_turns * all(0.5 * pi_lo)};
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

// pi / 2 rounded up: with this neighbour every float rounds right, with the nearest double two do not.
constexpr double half_pi_above = 0x1.921fb54442d19p+0;

SIGPAK_INLINE real arccosine_single(real x) {
  const real a = absolute(x);
  const mask large = a > all(0.5);
  const mask negative = is_negative(x);
  const real h = reduced_arcsine_single(a, large);
  const real factor = choose(large, all(2), all(-1));
  const real base = choose(large, choose(negative, all(pi_hi), all(0)), all(half_pi_above));
  return choose(a > all(1), all(0), fma(choose(negative, -factor, factor), h, base));
}

void arctangents(double* x, index n) { walk(x, n, everywhere<arctangent_of>{}); }
void arctangents(float* x, index n) {
  using f = everywhere_single<arctangent_of_single, kernels::precise_atan>;
  walk_quickly(x, n, quick_angle<quick_arctangent_of, domain::finite, f>{});
}
void arcsines(double* x, index n) { walk(x, n, everywhere<arcsine>{}); }
void arcsines(float* x, index n) {
  using f = everywhere_single<arcsine_single, kernels::precise_asin>;
  walk_quickly(x, n, quick_angle<quick_arcsine_of, domain::to_one, f>{});
}
void arccosines(double* x, index n) { walk(x, n, everywhere<arccosine>{}); }
void arccosines(float* x, index n) {
  using f = everywhere_single<arccosine_single, kernels::precise_acos>;
  walk_quickly(x, n, quick_angle<quick_arccosine_of, domain::to_one, f>{});
}

// The polar form of a point that is not for vectors. The zero point has phase 0 whatever the signs of its
// zeros.
point plain_polar(double a, double b) {
  const kept_errno kept;
  const double phase = a == 0 && b == 0 ? 0 : __builtin_atan2(b, a);
  return {kept.computed(__builtin_hypot(a, b)), kept.computed(phase)};
}

template <class T> struct polar_form {
  SIGPAK_INLINE mask is_wild(real a, real b) const { return is_wild_point(a, b); }
  SIGPAK_INLINE void operator()(real& a, real& b) const {
    const ordered_point z = in_order(a, b);
    b = phase_for<T>(z, a, b);
    a = magnitude_for<T>(z);
  }
  SIGPAK_INLINE void careful(real& a, real& b) const {
    const real x = a;
    const real y = b;
    (*this)(a, b);
    except(a, b, is_wild(x, y), x, y, plain_polar);
  }
};

template <class T> struct magnitude_of_point {
  SIGPAK_INLINE mask is_wild(real a, real b) const { return is_wild_point(a, b); }
  SIGPAK_INLINE real operator()(real a, real b) const { return magnitude_for<T>(in_order(a, b)); }
  SIGPAK_INLINE real careful(real a, real b) const {
    polar_form<T>{}.careful(a, b);
    return a;
  }
};

template <class T> struct phase_of_point {
  SIGPAK_INLINE mask is_wild(real a, real b) const { return is_wild_point(a, b); }
  SIGPAK_INLINE real operator()(real a, real b) const { return phase_for<T>(in_order(a, b), a, b); }
  SIGPAK_INLINE real careful(real a, real b) const {
    polar_form<T>{}.careful(a, b);
    return b;
  }
};

template <class T> void magnitudes(const T* z, T* out, index points) {
  walk_packing(z, out, points, magnitude_of_point<T>{});
}
template <class T> void phases(const T* z, T* out, index points) {
  walk_packing(z, out, points, phase_of_point<T>{});
}
template <class T> void polar(T* z, index points) { walk_points(z, z, points, polar_form<T>{}); }

template <class T>
constexpr kernels::inverse_functions<T> functions = {where_faster<T>(arctangents),
                                                     where_faster<T>(arcsines),
                                                     where_faster<T>(arccosines),
                                                     magnitudes<T>,
                                                     phases<T>,
                                                     polar<T>};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::inverse_functions<double>) = SIGPAK_LEVEL::functions<double>;
SIGPAK_LEVEL_TABLE(kernels::inverse_functions<float>) = SIGPAK_LEVEL::functions<float>;

}  // namespace sigpak
