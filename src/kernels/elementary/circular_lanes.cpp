// SPDX-License-Identifier: MIT
// Sine, cosine, tangent, sin(x)/x, and points from polar form.
#include "kernels/elementary/functions.h"
#include "kernels/elementary/sine.h"
#include "kernels/elementary/sine_quick.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// A function of vectors for arguments that are not far, and of scalars for those that are.
template <real near(real x), double far(double x) noexcept> struct circular {
  SIGPAK_INLINE mask is_wild(real x) const { return is_far(x); }
  SIGPAK_INLINE real operator()(real x) const { return near(x); }
  SIGPAK_INLINE real careful(real x) const { return except(near(x), is_far(x), x, far); }
};

// The same in single precision.
template <real near(real x), double far(double x) noexcept> struct circular_single : circular<near, far> {
  static double precise(double x) { return far(x); }
};

SIGPAK_INLINE real sine(real x) {
  const angle a = reduce(x);
  return turned_sine(a, a.quarter);
}

SIGPAK_INLINE real cosine(real x) {
  const angle a = reduce(x);
  return turned_sine(a, a.quarter + 1);
}

// A sixth of the rest of hi^2 belongs to the sine. In the quotient the cosine can make up for it: with
// 1/6 hi / tan hi, between 0.131 and 0.167, less, and the former where it counts.
SIGPAK_INLINE real tangent(real x) {
  const angle a = reduce(x);
  const sine_cosine y = both_parts(a, 0.5 - 0.135);
  const mask odd = has_bit(a.quarter, 1);
  const parts sine = fast_sum(y.sine.hi, y.sine.lo);
  const parts cosine = fast_sum(y.cosine.hi, y.cosine.lo);
  const parts above = choose(odd, cosine, sine);
  const parts below = choose(odd, sine, cosine);
  const real q = flip_sign(quotient(above, below), a.quarter << 63);
  return choose(x == all(0), x, q);  // zero keeps its sign
}

// Even, and 1 to the last digit below 2^-27.
SIGPAK_INLINE real sine_quotient(real x) {
  const real size = at_least(absolute(x), 0x1p-27);
  const angle a = reduce(size);
  const sine_cosine both = both_parts(a);
  const parts y = choose(has_bit(a.quarter, 1), both.cosine, both.sine);
  return flip_sign(quotient(fast_sum(y.hi, y.lo), size), a.quarter << 62);
}

// With the sine's terms of double precision: with its own, 14 floats are on the wrong side of the middle of
// two.
SIGPAK_INLINE real tangent_single(real x) {
  const angle a = reduce_single(x);
  const real z = a.hi * a.hi;
  const real s = take_sign(fma(a.hi * z, polynomial(sine_terms, z), a.hi), a.hi);
  const real c = fma(z * z, polynomial(cosine_quarter_single_terms, z), fnma(all(0.5), z, all(1)));
  const mask odd = has_bit(a.quarter, 1);
  return flip_sign(choose(odd, c, s) / choose(odd, s, c), a.quarter << 63);
}

SIGPAK_INLINE real sine_quotient_single(real x) {
  const mask zero = x == all(0);
  return choose(zero, all(1), sine_single(x) / choose(zero, all(1), x));
}

using kernels::careful_cosine;
using kernels::careful_sine;
using kernels::careful_sine_quotient;
using kernels::careful_tangent;

void sines(double* x, index n) { walk(x, n, circular<sine, careful_sine<double>>{}); }
void sines(float* x, index n) {
  walk_quickly(x, n, quick_circular<quick_sine_of, circular_single<sine_single, careful_sine<float>>>{});
}
void cosines(double* x, index n) { walk(x, n, circular<cosine, careful_cosine<double>>{}); }
void cosines(float* x, index n) {
  walk_quickly(x, n,
               quick_circular<quick_cosine_of, circular_single<cosine_single, careful_cosine<float>>>{});
}
void tangents(double* x, index n) { walk(x, n, circular<tangent, careful_tangent<double>>{}); }
void tangents(float* x, index n) { walk(x, n, circular_single<tangent_single, careful_tangent<float>>{}); }
void sine_quotients(double* x, index n) {
  walk(x, n, circular<sine_quotient, careful_sine_quotient<double>>{});
}
void sine_quotients(float* x, index n) {
  walk_quickly(x, n,
               quick_sine_quotient<circular_single<sine_quotient_single, careful_sine_quotient<float>>>{});
}

// size * part, rounded once, with the sign of the product of the leading parts where it vanishes.
SIGPAK_INLINE real times(real size, parts part) {
  const parts factor = closed(part);
  return take_sign(rounded_sum(size, factor.hi, size * factor.lo), from_bits(bits(size) ^ bits(part.hi)));
}

template <class T> struct rectangular_form {
  // far phases, and infinite sizes, whose products have no rest
  SIGPAK_INLINE mask is_wild(real size, real phase) const {
    constexpr double to_end = 0x1p-994;
    return is_far(greater(absolute(size) * all(to_end), absolute(phase)));
  }
  SIGPAK_INLINE void operator()(real& a, real& b) const { turn(sine_and_cosine_for<T>(b), a, b); }
  SIGPAK_INLINE void careful(real& a, real& b) const {
    const sine_cosine y = careful_sine_and_cosine<T>(b);
    const real size = a;
    turn(y, a, b);
    const mask infinite = absolute(size) == all(__builtin_inf());
    a = choose(infinite, size * y.cosine.hi, a);
    b = choose(infinite, size * y.sine.hi, b);
  }

  SIGPAK_INLINE static void turn(sine_cosine y, real& a, real& b) {
    const real size = a;
    if constexpr (is_single<T>) {
      a = size * y.cosine.hi;
      b = size * y.sine.hi;
    } else {
      a = times(size, y.cosine);
      b = times(size, y.sine);
    }
  }
};

template <class T> void rectangular_points(T* z, index points) {
  walk_points(z, z, points, rectangular_form<T>{});
}

template <class T>
constexpr kernels::circular_functions<T> functions = {sines, cosines, where_faster<T>(tangents),
                                                      sine_quotients, rectangular_points<T>};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::circular_functions<double>) = SIGPAK_LEVEL::functions<double>;
SIGPAK_LEVEL_TABLE(kernels::circular_functions<float>) = SIGPAK_LEVEL::functions<float>;

}  // namespace sigpak
