// Logarithms and decibels, real and complex.
#include "core/guard.h"
#include "kernels/elementary_arctangent.h"
#include "kernels/elementary_log.h"
#include "kernels/elementary_tables.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <class T> SIGPAK_INLINE real huge() { return all(static_cast<double>(guard<T>::huge)); }
template <class T> SIGPAK_INLINE real tiny() { return all(static_cast<double>(guard<T>::tiny)); }
constexpr double most_finite = 0x1.fffffffffffffp+1023;

// Below T the floor; NaN and infinity pass as `passed`.
template <class T> SIGPAK_INLINE real guarded(real x, real y, double floor, real passed) {
  return choose(x < tiny<T>(), all(floor), choose(x <= all(most_finite), y, passed));
}

template <class T> void logarithms(T* x, index n, kernels::logarithm_constants c) {
  walk(
      x, n, [c](real u) __attribute__((always_inline)) {
        real y;
        if constexpr (sizeof(T) == sizeof(float)) {
          y = logarithm_single(u);
        } else {
          const parts ln = logarithm(u);
          y = ln.hi + ln.lo;
        }
        return guarded<T>(u, y, c.floor, u);
      });
}

// ln * (hi + lo of the scale), rounded once.
SIGPAK_INLINE real scaled(parts ln, parts scale) {
  const real top = ln.hi * scale.hi;
  return top + (fms(ln.hi, scale.hi, top) + fma(ln.hi, scale.lo, ln.lo * scale.hi));
}

template <class T> void scaled_logarithms(T* x, index n, kernels::logarithm_constants c) {
  walk(
      x, n, [c](real u) __attribute__((always_inline)) {
        real y;
        if constexpr (sizeof(T) == sizeof(float)) {
          y = logarithm_single(u) * all(c.scale);
        } else {
          y = scaled(logarithm(u), {all(c.scale), all(c.scale_rest)});
        }
        return guarded<T>(u, y, c.floor, u * all(c.scale));
      });
}

template <class T> SIGPAK_INLINE real clamp(real x) {
  return choose(x > huge<T>(), huge<T>(), choose(x < -huge<T>(), -huge<T>(), x));
}

// ln(a^2 + b^2) * scale and the angle, for points inside the limits; true lanes of the result are below T.
template <class T>
SIGPAK_INLINE mask logarithm_of_point(real a, real b, kernels::logarithm_constants c, real& size,
                                      real& angle) {
  real s;
  if constexpr (sizeof(T) == sizeof(float)) {
    const parts sum = exact_sum(a * a, b * b);
    s = sum.hi;
    size = logarithm_single(sum) * all(c.scale);
    angle = phase_single(b, a);
  } else {
    const square_sum sum = sum_of_squares(a, b);
    s = sum.hi;
    size = scaled(logarithm(sum), {all(c.scale), all(c.scale_rest)});
    angle = phase(b, a);
  }
  size = choose(s == s, size, s);  // NaN
  return s < tiny<T>();
}

// A point beyond H keeps its direction and counts as |z|^2 = H.
template <class T> void logarithm_points(T* z, index points, kernels::logarithm_constants c) {
  walk_points(
      z, z, points, [c](real & re, real & im) __attribute__((always_inline)) {
        const mask beyond = either(absolute(re) > huge<T>(), absolute(im) > huge<T>());
        real size;
        real angle;
        const mask below = logarithm_of_point<T>(clamp<T>(re), clamp<T>(im), c, size, angle);
        re = choose(beyond, all(c.ceiling), choose(below, all(c.floor), size));
        im = choose(below, all(0), angle);
      });
}

template <class T> void scaled_logarithm_points(T* z, index points, kernels::logarithm_constants c) {
  walk_points(
      z, z, points, [c](real & re, real & im) __attribute__((always_inline)) {
        real size;
        real angle;
        const mask below = logarithm_of_point<T>(clamp<T>(re), clamp<T>(im), c, size, angle);
        re = choose(below, all(c.floor), size);
        im = choose(below, all(0), angle * all(c.angle_scale));
      });
}

template <class T>
constexpr kernels::logarithm_functions<T> functions = {logarithms<T>, scaled_logarithms<T>,
                                                       logarithm_points<T>, scaled_logarithm_points<T>};

}  // namespace

const kernels::logarithm_functions<double> logarithm_double = functions<double>;
const kernels::logarithm_functions<float> logarithm_float = functions<float>;

}  // namespace sigpak::SIGPAK_LEVEL
