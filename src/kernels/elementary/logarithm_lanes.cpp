// SPDX-License-Identifier: MIT
// Logarithms and decibels, real and complex.
#include "core/guard.h"
#include "kernels/elementary/arctangent.h"
#include "kernels/elementary/functions.h"
#include "kernels/elementary/logarithm.h"
#include "kernels/elementary/logarithm_quick.h"
#include "kernels/elementary/walk.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <class T> SIGPAK_INLINE real huge() { return all(wide_guard<T>::huge); }
template <class T> SIGPAK_INLINE real tiny() { return all(static_cast<double>(guard<T>::tiny)); }
constexpr double most_finite = 0x1.fffffffffffffp+1023;

// Below T the floor; NaN and infinity pass as `passed`.
template <class T> SIGPAK_INLINE real guarded(real x, real y, double floor, real passed) {
  return choose(x < tiny<T>(), all(floor), choose(x <= all(most_finite), y, passed));
}

// The last bit set: what is rounded to a float later then never lies on a boundary between two.
SIGPAK_INLINE real beside_boundaries(real x) { return from_bits(bits(x) | all_bits(1)); }

template <class T> struct logarithm_of {
  kernels::logarithm_constants c;
  double precise(double x) const requires(is_single<T>) {
    return x < static_cast<double>(guard<T>::tiny) ? c.floor : kernels::precise_log(x);
  }
  SIGPAK_INLINE real operator()(real x) const {
    if constexpr (is_single<T>) {
      return guarded<T>(x, beside_boundaries(logarithm_single(x)), c.floor, x);
    } else {
      const parts ln = logarithm(x);
      return guarded<T>(x, ln.hi + ln.lo, c.floor, x);
    }
  }
};

// value * (hi + lo of the scale), rounded once. The corrections of a zero are subtracted, as +0: it keeps its
// sign.
SIGPAK_INLINE real scaled(parts value, double hi, double lo) {
  const real top = value.hi * all(hi);
  return top - (remainder(top, value.hi, all(hi)) - fma(value.hi, all(lo), value.lo * all(hi)));
}

template <class T> struct scaled_logarithm_of {
  kernels::logarithm_constants c;
  double precise(double x) const requires(is_single<T>) {
    return x < static_cast<double>(guard<T>::tiny) ? c.floor
                                                   : kernels::precise_scaled_log(x, c.scale, c.scale_rest);
  }
  SIGPAK_INLINE real operator()(real x) const {
    if constexpr (is_single<T>) {
      const real y = beside_boundaries(logarithm_single(x) * all(c.scale));
      return guarded<T>(x, y, c.floor, x * all(c.scale));
    } else {
      return guarded<T>(x, scaled(logarithm(x), c.scale, c.scale_rest), c.floor, x * all(c.scale));
    }
  }
};

template <class T> void logarithms(T* x, index n, kernels::logarithm_constants c) {
  if constexpr (is_single<T>) {
    walk_quickly(x, n, quick_logarithm<logarithm_of<T>>{{c}});
  } else {
    walk(x, n, logarithm_of<T>{c});
  }
}

template <class T> void scaled_logarithms(T* x, index n, kernels::logarithm_constants c) {
  if constexpr (is_single<T>) {
    walk_quickly(x, n, quick_scaled_logarithm<scaled_logarithm_of<T>>{{c}});
  } else {
    walk(x, n, scaled_logarithm_of<T>{c});
  }
}

// The points whose squared magnitude is near T or below, or with a part beyond H, are left to a function of
// one point.
template <class T> constexpr double least_logarithm_argument = is_single<T> ? 0x1p-62 : least_plain;

template <class T, bool scales_angle> struct logarithm_of_point {
  kernels::logarithm_constants c;
  kernels::plain_logarithm plain;

  SIGPAK_INLINE mask is_wild(real a, real b) const {
    return is_outside(absolute(a) + absolute(b), least_logarithm_argument<T>, wide_guard<T>::huge);
  }
  SIGPAK_INLINE void operator()(real& a, real& b) const {
    const ordered_point z = in_order(a, b);
    if constexpr (is_single<T>) {
      const real angle = phase_single(z, a);
      b = scales_angle ? flip_sign(angle * all(c.angle_scale), bits(b)) : take_sign(angle, b);
      a = logarithm_of_squares_single(z.most, z.least) * all(c.scale);
    } else {
      const parts angle = phase(z, a);
      if constexpr (scales_angle) {
        b = flip_sign(scaled(angle, c.angle_scale, c.angle_scale_rest), bits(b));
      } else {
        b = take_sign(angle.hi + angle.lo, b);
      }
      const parts ln = logarithm_of_squares(z.most, z.least);
      a = scales_angle ? scaled(ln, c.scale, c.scale_rest) : (ln.hi + ln.lo) * all(c.scale);
    }
  }
  SIGPAK_INLINE void careful(real& a, real& b) const {
    const real x = a;
    const real y = b;
    (*this)(a, b);
    except(a, b, is_wild(x, y), x, y, [this](double u, double v) {
      double w[2] = {u, v};
      plain(w, c);
      return point{w[0], w[1]};
    });
  }
};

template <class T>
void logarithm_points(T* z, index points, kernels::logarithm_constants c, kernels::plain_logarithm plain) {
  walk_points(z, z, points, logarithm_of_point<T, false>{c, plain});
}

template <class T>
void scaled_logarithm_points(T* z, index points, kernels::logarithm_constants c,
                             kernels::plain_logarithm plain) {
  walk_points(z, z, points, logarithm_of_point<T, true>{c, plain});
}

template <class T>
constexpr kernels::logarithm_functions<T> functions = {where_faster<T>(logarithms<T>), scaled_logarithms<T>,
                                                       logarithm_points<T>, scaled_logarithm_points<T>};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::logarithm_functions<double>) = SIGPAK_LEVEL::functions<double>;
SIGPAK_LEVEL_TABLE(kernels::logarithm_functions<float>) = SIGPAK_LEVEL::functions<float>;

}  // namespace sigpak
