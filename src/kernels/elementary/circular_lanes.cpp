// Sine, cosine, tangent, sin(x)/x, and points from polar form.
#include "kernels/elementary/functions.h"
#include "kernels/elementary/sine.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

double plain_sine(double x) { return __builtin_sin(x); }
double plain_cosine(double x) { return __builtin_cos(x); }
double plain_tangent(double x) { return __builtin_tan(x); }
double plain_sine_quotient(double x) {
  const auto wide = static_cast<long double>(x);
  return static_cast<double>(__builtin_sinl(wide) / wide);
}

// A function of vectors for arguments that are not far, and of scalars for those that are.
template <real near(real x), double far(double x)> struct circular {
  SIGPAK_INLINE mask is_wild(real x) const { return is_far(x); }
  SIGPAK_INLINE real operator()(real x) const { return near(x); }
  SIGPAK_INLINE real careful(real x) const { return except(near(x), is_far(x), x, far); }
};

SIGPAK_INLINE real sine(real x) {
  const angle a = reduce(x);
  return turned_sine(a, a.quarter);
}

SIGPAK_INLINE real cosine(real x) {
  const angle a = reduce(x);
  return turned_sine(a, a.quarter + 1);
}

SIGPAK_INLINE real tangent(real x) {
  const angle a = reduce(x);
  const sine_cosine y = both_parts(a);
  const mask odd = has_bit(a.quarter, 1);
  const parts sine = fast_sum(y.sine.hi, y.sine.lo);
  const parts cosine = fast_sum(y.cosine.hi, y.cosine.lo);
  const parts above = choose(odd, cosine, sine);
  const parts below = choose(odd, sine, cosine);
  const real q = flip_sign(quotient(above, below), a.quarter << 63);
  return choose(x == all(0), x, q);  // zero keeps its sign
}

// Below 2^-27 the quotient rounds to 1.
SIGPAK_INLINE real sine_quotient(real x) {
  const angle a = reduce(x);
  const sine_cosine y = both_parts(a);
  const parts turned = choose(has_bit(a.quarter, 1), y.cosine, y.sine);
  const parts above = fast_sum(turned.hi, turned.lo);
  const mask small = absolute(x) < all(0x1p-27);
  const real q = flip_sign(quotient(above, {choose(small, all(1), x), all(0)}), a.quarter << 62);
  return choose(small, all(1), q);
}

SIGPAK_INLINE real tangent_short(real x) {
  const angle a = reduce_single(x);
  const real z = a.hi * a.hi;
  const real s = fma(a.hi * z, polynomial(sine_quarter_single_terms, z), a.hi);
  const real c = fma(z * z, polynomial(cosine_quarter_single_terms, z), fnma(all(0.5), z, all(1)));
  const mask odd = has_bit(a.quarter, 1);
  const real q = flip_sign(choose(odd, c, s) / choose(odd, s, c), a.quarter << 63);
  return choose(x == all(0), x, q);
}

SIGPAK_INLINE real sine_quotient_short(real x) {
  const mask zero = x == all(0);
  return choose(zero, all(1), sine_single(x) / choose(zero, all(1), x));
}

void sines(double* x, index n) { walk(x, n, circular<sine, plain_sine>{}); }
void sines(float* x, index n) { walk(x, n, circular<sine_single, plain_sine>{}); }
void cosines(double* x, index n) { walk(x, n, circular<cosine, plain_cosine>{}); }
void cosines(float* x, index n) { walk(x, n, circular<cosine_single, plain_cosine>{}); }
void tangents(double* x, index n) { walk(x, n, circular<tangent, plain_tangent>{}); }
void tangents(float* x, index n) { walk(x, n, circular<tangent_short, plain_tangent>{}); }
void sine_quotients(double* x, index n) { walk(x, n, circular<sine_quotient, plain_sine_quotient>{}); }
void sine_quotients(float* x, index n) { walk(x, n, circular<sine_quotient_short, plain_sine_quotient>{}); }

// size * part, rounded once, with the sign of the product of the leading parts where it vanishes.
SIGPAK_INLINE real times(real size, parts part) {
  return take_sign(fma(size, part.hi, size * part.lo), from_bits(bits(size) ^ bits(part.hi)));
}

template <class T> struct rectangular_form {
  // far phases, and infinite sizes, whose products have no rest
  SIGPAK_INLINE mask is_wild(real size, real phase) const {
    constexpr double to_end = 0x1p-994;
    return is_far(greater(absolute(size) * all(to_end), absolute(phase)));
  }
  SIGPAK_INLINE void operator()(real& a, real& b) const { turn(sine_and_cosine_for<T>(b), a, b); }
  SIGPAK_INLINE void careful(real& a, real& b) const {
    sine_cosine y = careful_sine_and_cosine<T>(b);
    const mask infinite = absolute(a) == all(__builtin_inf());
    y.sine = choose(infinite, {y.sine.hi, y.sine.hi}, y.sine);
    y.cosine = choose(infinite, {y.cosine.hi, y.cosine.hi}, y.cosine);
    turn(y, a, b);
  }

  SIGPAK_INLINE static void turn(sine_cosine y, real& a, real& b) {
    const real size = a;
    if constexpr (sizeof(T) == sizeof(float)) {
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
constexpr kernels::circular_functions<T> functions = {sines, cosines, tangents, sine_quotients,
                                                      rectangular_points<T>};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::circular_functions<double>) = SIGPAK_LEVEL::functions<double>;
SIGPAK_LEVEL_TABLE(kernels::circular_functions<float>) = SIGPAK_LEVEL::functions<float>;

}  // namespace sigpak
