// Sine, cosine, tangent, sin(x)/x, and points from polar form.
#include "kernels/elementary_sine.h"
#include "kernels/elementary_tables.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

SIGPAK_INLINE real sine(real x) {
  const angle a = reduce(x);
  return except(turned_sine(a, a.quarter), is_far(x), x, [](double u) { return __builtin_sin(u); });
}

SIGPAK_INLINE real cosine(real x) {
  const angle a = reduce(x);
  return except(turned_sine(a, a.quarter + 1), is_far(x), x, [](double u) { return __builtin_cos(u); });
}

SIGPAK_INLINE real tangent(real x) {
  const angle a = reduce(x);
  const sine_cosine y = both_parts(a);
  const mask odd = has_bit(a.quarter, 1);
  const parts above = {choose(odd, y.cosine.hi, y.sine.hi), choose(odd, y.cosine.lo, y.sine.lo)};
  const parts below = {choose(odd, y.sine.hi, y.cosine.hi), choose(odd, y.sine.lo, y.cosine.lo)};
  const real q = flip_sign(quotient(above, below), a.quarter << 63);
  // zero keeps its sign
  return except(choose(x == all(0), x, q), is_far(x), x, [](double u) { return __builtin_tan(u); });
}

// Below 2^-27 the quotient rounds to 1.
SIGPAK_INLINE real sine_quotient(real x) {
  const angle a = reduce(x);
  const sine_cosine y = both_parts(a);
  const mask odd = has_bit(a.quarter, 1);
  const parts above = {choose(odd, y.cosine.hi, y.sine.hi), choose(odd, y.cosine.lo, y.sine.lo)};
  const mask small = absolute(x) < all(0x1p-27);
  const real q = flip_sign(quotient(above, {choose(small, all(1), x), all(0)}), a.quarter << 62);
  return except(choose(small, all(1), q), is_far(x), x, [](double u) {
    const auto wide = static_cast<long double>(u);
    return static_cast<double>(__builtin_sinl(wide) / wide);
  });
}

SIGPAK_INLINE real sine_short(real x) {
  return except(sine_single(x), is_far(x), x, [](double u) { return __builtin_sin(u); });
}

SIGPAK_INLINE real cosine_short(real x) {
  return except(cosine_single(x), is_far(x), x, [](double u) { return __builtin_cos(u); });
}

SIGPAK_INLINE real tangent_short(real x) {
  const angle a = reduce(x);
  const real z = a.hi * a.hi;
  const real s = fma(a.hi * z, polynomial(sine_quarter_single_terms, z), a.hi);
  const real c = fma(z * z, polynomial(cosine_quarter_single_terms, z), fnma(all(0.5), z, all(1)));
  const mask odd = has_bit(a.quarter, 1);
  const real q = flip_sign(choose(odd, c, s) / choose(odd, s, c), a.quarter << 63);
  return except(choose(x == all(0), x, q), is_far(x), x, [](double u) { return __builtin_tan(u); });
}

SIGPAK_INLINE real sine_quotient_short(real x) {
  const mask zero = x == all(0);
  return choose(zero, all(1), sine_short(x) / choose(zero, all(1), x));
}

void sines(double* x, index n) { walk(x, n, sine); }
void sines(float* x, index n) { walk(x, n, sine_short); }
void cosines(double* x, index n) { walk(x, n, cosine); }
void cosines(float* x, index n) { walk(x, n, cosine_short); }
void tangents(double* x, index n) { walk(x, n, tangent); }
void tangents(float* x, index n) { walk(x, n, tangent_short); }
void sine_quotients(double* x, index n) { walk(x, n, sine_quotient); }
void sine_quotients(float* x, index n) { walk(x, n, sine_quotient_short); }

// size * part, rounded once; the sign is that of the plain product, which holds for infinite sizes too.
SIGPAK_INLINE real times(real size, parts part) {
  const real plain = size * part.hi;
  const real y = fma(size, part.hi, size * part.lo);
  return take_sign(choose(absolute(size) == all(__builtin_inf()), plain, y), plain);
}

SIGPAK_INLINE void rectangular(real& a, real& b) {
  const sine_cosine y = sine_and_cosine(b);
  b = times(a, y.sine);
  a = times(a, y.cosine);
}

SIGPAK_INLINE void rectangular_short(real& a, real& b) {
  const sine_cosine y = sine_and_cosine_single(b);
  b = a * y.sine.hi;
  a = a * y.cosine.hi;
}

void rectangular_points(double* z, index points) { walk_points(z, z, points, rectangular); }
void rectangular_points(float* z, index points) { walk_points(z, z, points, rectangular_short); }

}  // namespace

const kernels::circular_functions<double> circular_double = {sines, cosines, tangents, sine_quotients,
                                                             rectangular_points};
const kernels::circular_functions<float> circular_float = {sines, cosines, tangents, sine_quotients,
                                                           rectangular_points};

}  // namespace sigpak::SIGPAK_LEVEL
