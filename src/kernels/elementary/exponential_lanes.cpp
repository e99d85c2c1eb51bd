// SPDX-License-Identifier: MIT
// Powers of e and of ten, real and complex, and the hyperbolic functions.
#include "core/guard.h"
#include "kernels/elementary/functions.h"
#include "kernels/elementary/power.h"
#include "kernels/elementary/power_quick.h"
#include "kernels/elementary/sine.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The limits of a precision, in every lane.
template <class T> SIGPAK_INLINE real huge() { return all(wide_guard<T>::huge); }
template <class T> SIGPAK_INLINE real log_huge() { return all(wide_guard<T>::log_huge); }
template <class T> SIGPAK_INLINE real log10_huge() { return all(wide_guard<T>::log10_huge); }

template <class T> SIGPAK_INLINE real guarded_exp(real x) {
  real y;
  if constexpr (is_single<T>) {
    y = exponential_single(x);
  } else {
    y = exponential(x);
  }
  return choose(x > log_huge<T>(), huge<T>(), y);
}

// H is the power at its limit, so that the lesser of them serves beyond.
template <class T> SIGPAK_INLINE real guarded_exp10(real x) {
  const real limited = at_most(x, 1 + wide_guard<T>::log10_huge);
  real y;
  if constexpr (is_single<T>) {
    y = exponential10_single(limited);
  } else {
    y = exponential10(limited);
  }
  return at_most(y, wide_guard<T>::huge);
}

using kernels::precise_cosh;
using kernels::precise_exp;
using kernels::precise_exp10;
using kernels::precise_sinh;
using kernels::precise_tanh;

void exponentials(double* x, index n) { walk(x, n, everywhere<guarded_exp<double>>{}); }
void exponentials(float* x, index n) {
  walk_quickly(x, n, quick_power<natural_base, everywhere_single<guarded_exp<float>, precise_exp>>{});
}

// A sample below -H stops the pass: it and everything after it stay as they are.
template <class T, class F> struct stopped : F {
  SIGPAK_INLINE mask is_wild(real x) const { return x < -huge<T>(); }
  SIGPAK_INLINE real careful(real x) const { return (*this)(x); }
};

// Powers from 1e-300 on; those below are left to the longer way.
struct decimal_power {
  SIGPAK_INLINE mask is_wild(real x) const { return x < all(least_normal_decimal_exponent); }
  SIGPAK_INLINE real operator()(real x) const {
    const real limited = at_most(x, 1 + guard<double>::log10_huge);
    return at_most(normal_power(reduce_decimal_power(limited)), guard<double>::huge);
  }
  SIGPAK_INLINE real careful(real x) const { return guarded_exp10<double>(x); }
};

template <class T, class F> SIGPAK_INLINE bool walk_to_stop(T* x, index n, F f) {
  index i = 0;
  for (index count = lane_count; count == lane_count; i += count) {
    i = walk_vectors(x, i, n, f);
    count = 0;
    while (i + count < n && count < lane_count && !(x[i + count] < -guard<T>::huge)) ++count;
    if (count > 0) walk_some(x + i, count, f);
  }
  return i == n;
}

void exponentials10(double* x, index n) { walk_to_stop(x, n, decimal_power{}); }
void exponentials10(float* x, index n) {
  const auto f =
      quick_power<decimal_base, stopped<float, everywhere_single<guarded_exp10<float>, precise_exp10>>>{};
  walk_quickly(x, n, f,
               [=](index from, index to) SIGPAK_LAMBDA { return walk_to_stop(x + from, to - from, f); });
}

// Keeps the product with the sine of a subnormal angle normal.
constexpr int size_lift = 200;

// The size of e^z as a scaled sum: size * 2^floor(n / 8 - size_lift), with n in the low bits of shifted.
struct scaled_size {
  parts size;
  real shifted;
};

template <class T> SIGPAK_INLINE scaled_size size_of(eighths x) {
  if constexpr (is_single<T>) {
    const real root = look_up(lifted_eighth_powers, bits(x.shifted));
    return {{fma(root, expm1_near_zero_single(x.r), root), all(0)}, x.shifted};
  } else {
    const words position = bits(x.shifted);
    const real root = look_up(lifted_eighth_powers, position);
    const real rest = look_up(lifted_eighth_power_rests, position);
    return {{root, fma(root, expm1_near_zero(x.r), rest)}, x.shifted};
  }
}

SIGPAK_INLINE scaled_size limit(scaled_size s, mask m, real limit) {
  return {choose(m, {limit, all(0)}, s.size), choose(m, all(to_integer + 8 * size_lift), s.shifted)};
}

// size * part, rounded once but for the scaling of subnormal results; with the sign of the product of the
// leading parts.
template <class T> SIGPAK_INLINE real times(scaled_size s, parts part) {
  if constexpr (is_single<T>) {
    return scale_eighths<size_lift>(s.size.hi * part.hi, s.shifted);
  } else {
    const parts factor = closed(part);
    const real rest = fma(s.size.hi, factor.lo, s.size.lo * (factor.hi + factor.lo));
    const real y = rounded_sum(s.size.hi, factor.hi, rest);
    return scale_eighths<size_lift>(take_sign(y, from_bits(bits(s.size.hi) ^ bits(part.hi))), s.shifted);
  }
}

// e^(a + i b), or the same of base ten; a far angle is left to the C library.
template <class T, class Size> struct turned_power {
  SIGPAK_INLINE mask is_wild(real, real b) const { return is_far(Size::angle(b)); }
  SIGPAK_INLINE void operator()(real& a, real& b) const {
    turn(sine_and_cosine_for<T>(Size::angle(b)), Size::of(a), a, b);
  }
  SIGPAK_INLINE void careful(real& a, real& b) const {
    turn(careful_sine_and_cosine<T>(Size::angle(b)), Size::of(a), a, b);
  }

  SIGPAK_INLINE static void turn(sine_cosine y, scaled_size s, real& a, real& b) {
    a = times<T>(s, y.cosine);
    b = times<T>(s, y.sine);
  }
};

template <class T> struct natural_size {
  SIGPAK_INLINE static real angle(real b) { return b; }
  SIGPAK_INLINE static scaled_size of(real a) {
    const scaled_size e = size_of<T>(reduce_power(at_least(a, vanishing_exponent)));
    return limit(e, a > log_huge<T>(), huge<T>());
  }
};

template <class T> struct decimal_size {
  SIGPAK_INLINE static real angle(real b) {
    return b * all(is_single<T> ? static_cast<double>(2.3025851F) : ln10_hi);
  }
  SIGPAK_INLINE static scaled_size of(real a) {
    const scaled_size e = size_of<T>(reduce_decimal_power(at_least(a, vanishing_decimal_exponent)));
    const scaled_size above = limit(e, a > log10_huge<T>(), huge<T>());
    return limit(above, a < -huge<T>(), -huge<T>());
  }
};

template <class T> void exponential_points(T* z, index points) {
  walk_points(z, z, points, turned_power<T, natural_size<T>>{});
}

template <class T> void exponential10_points(T* z, index points) {
  walk_points(z, z, points, turned_power<T, decimal_size<T>>{});
}

// e^a / 2 and e^-a / 2 side by side, a >= 0.
struct exponential_pair {
  parts up;
  parts down;
};

SIGPAK_INLINE exponential_pair half_exponentials(real a) {
  const eighths x = reduce_power(a);
  return {power_parts<-1>(x), power_parts<-1>({all(2 * to_integer) - x.shifted, -x.r})};
}

// Up to 1/2 a polynomial: the difference of the exponentials would lose digits.
SIGPAK_INLINE real sinh_double(real x) {
  const real a = absolute(x);
  const real z = x * x;
  const real near = fma(x * z, polynomial(sinh_terms, z), x);
  const exponential_pair e = half_exponentials(at_most(a, guard<double>::log_huge));
  const parts top = fast_sum(e.up.hi, -e.down.hi);
  const real far = top.hi + (top.lo + (e.up.lo - e.down.lo));
  const real limited = choose(a > log_huge<double>(), huge<double>(), far);
  return take_sign(choose(a <= all(0.5), near, limited), x);
}

SIGPAK_INLINE real cosh_double(real x) {
  const real a = absolute(x);
  const exponential_pair e = half_exponentials(at_most(a, guard<double>::log_huge));
  const parts top = fast_sum(e.up.hi, e.down.hi);
  return choose(a > log_huge<double>(), huge<double>(), top.hi + (top.lo + (e.up.lo + e.down.lo)));
}

// Up to 0.55 a polynomial, then 1 - 2 / (e^2x + 1), which is 1 from 20 on.
SIGPAK_INLINE real tanh_double(real x) {
  const real a = absolute(x);
  const real z = x * x;
  const real near = fma(x * z, polynomial(tanh_terms, z), x);
  const parts e = power_parts(reduce_power(all(2) * at_most(a, 22)));
  const parts top = fast_sum(e.hi, all(1));
  const parts sum = fast_sum(top.hi, top.lo + e.lo);
  const real whole = all(2) / sum.hi;
  const real rest = shortened(whole);
  const real correction = (whole * all(0.5)) * fnma(rest, sum.lo, remainder_of_short(all(2), rest, sum.hi));
  const parts y = fast_sum(all(1), -rest);
  return take_sign(choose(a <= all(0.55), near, y.hi + (y.lo - correction)), x);
}

// `near` up to the end of its interval, with the sign of x either way.
SIGPAK_INLINE real near_or(real x, real near, real far, double end) {
  return take_sign(choose(absolute(x) <= all(end), near, far), x);
}

// The argument whose hyperbolic sine lies closer above it than half a float by less than a double can tell.
constexpr double closest_sinh = 0x1.250bfep-11;

// For single precision, from one exponential and its reciprocal.
SIGPAK_INLINE real sinh_single(real x) {
  const real a = absolute(x);
  const real z = x * x;
  const real series = fma(x * z, polynomial(sinh_single_terms, z), x);
  const real near = choose(a == all(closest_sinh), x, series);
  const real e = exponential_single(at_most(a, guard<double>::log_huge));
  const real far = all(0.5) * (e - all(1) / e);
  return near_or(x, near, choose(a > log_huge<float>(), huge<float>(), far), 0.5);
}

SIGPAK_INLINE real cosh_single(real x) {
  const real a = absolute(x);
  const real e = exponential_single(at_most(a, guard<double>::log_huge));
  return choose(a > log_huge<float>(), huge<float>(), all(0.5) * (e + all(1) / e));
}

SIGPAK_INLINE real tanh_single(real x) {
  const real z = x * x;
  const real near = fma(x * z, polynomial(tanh_single_terms, z), x);
  const real e = exponential_single(all(2) * at_most(absolute(x), 22));
  return near_or(x, near, all(1) - all(2) / (e + all(1)), 0.55);
}

void hyperbolic_sines(double* x, index n) { walk(x, n, everywhere<sinh_double>{}); }
void hyperbolic_sines(float* x, index n) { walk(x, n, everywhere_single<sinh_single, precise_sinh>{}); }
void hyperbolic_cosines(double* x, index n) { walk(x, n, everywhere<cosh_double>{}); }
void hyperbolic_cosines(float* x, index n) {
  using f = everywhere_single<cosh_single, precise_cosh>;
#if defined(SIGPAK_HAS_FLOAT_TABLES)
  walk(x, n, f{});
#else
  walk_quickly(x, n, quick_hyperbolic_cosine<f>{});
#endif
}
void hyperbolic_tangents(double* x, index n) { walk(x, n, everywhere<tanh_double>{}); }
void hyperbolic_tangents(float* x, index n) { walk(x, n, everywhere_single<tanh_single, precise_tanh>{}); }

template <class T>
constexpr kernels::exponential_functions<T> functions = {where_faster<T>(exponentials),
                                                         exponentials10,
                                                         exponential_points<T>,
                                                         exponential10_points<T>,
                                                         hyperbolic_sines,
                                                         hyperbolic_cosines,
                                                         hyperbolic_tangents};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::exponential_functions<double>) = SIGPAK_LEVEL::functions<double>;
SIGPAK_LEVEL_TABLE(kernels::exponential_functions<float>) = SIGPAK_LEVEL::functions<float>;

}  // namespace sigpak
