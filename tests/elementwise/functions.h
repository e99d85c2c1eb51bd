// SPDX-License-Identifier: MIT
// The real functions of the library beside their exact definitions, with the arguments worth trying.
#pragma once

#include <cmath>
#include <random>
#include <vector>

#include "elementwise/exact.h"
#include "support/signal.h"

namespace sigpak::test {

using exact_function = int (*)(mpfr_ptr, mpfr_srcptr, mpfr_rnd_t);

// The same to the digits of a long double.
using near_function = long double (*)(long double);

// One function of both records, the interval on which it follows its definition, and how arguments are drawn
// there: evenly, or with even exponents.
struct unary_function {
  const char* name;
  std::int32_t (*in_double)(dsp_vec*);
  std::int32_t (*in_single)(dspf_vec*);
  exact_function definition;
  near_function nearly;
  double low, high;
  double low_single, high_single;
  bool by_exponent;
};

inline int exact_sinc(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t mode) {
  if (mpfr_zero_p(x)) return mpfr_set_si(y, 1, mode);
  mpfr_sin(y, x, mode);
  return mpfr_div(y, y, x, mode);
}

inline int exact_decibels(mpfr_ptr y, mpfr_srcptr x, mpfr_rnd_t mode) {
  mpfr_log10(y, x, mode);
  return mpfr_mul_si(y, y, 20, mode);
}

inline long double near_sinc(long double x) { return x == 0 ? 1 : std::sin(x) / x; }
inline long double near_decibels(long double x) { return 20 * std::log10(x); }

inline std::int32_t decibels(dsp_vec* v) { return dspi_db(v, 20); }
inline std::int32_t decibels(dspf_vec* v) { return dspfi_db(v, 20); }

inline constexpr double most = std::numeric_limits<double>::max();
inline constexpr double least = std::numeric_limits<double>::min();
inline constexpr double most_single = double(std::numeric_limits<float>::max());
inline constexpr double least_single = double(std::numeric_limits<float>::min());

inline const std::vector<unary_function>& unary_functions() {
  static const std::vector<unary_function> all = {
      {"sqrt", dspi_sqrt, dspfi_sqrt, mpfr_sqrt, std::sqrt, 0, most, 0, most_single, true},
      {"exp", dspi_exp, dspfi_exp, mpfr_exp, std::exp, -750, 230.2585, -110, 34.5387, false},
      {"exp10", dspi_exp10, dspfi_exp10, mpfr_exp10, exp10l, -325, 100, -46, 15, false},
      {"log", dspi_log, dspfi_log, mpfr_log, std::log, least, most, least_single, most_single, true},
      {"log10", dspi_log10, dspfi_log10, mpfr_log10, std::log10, least, most, least_single, most_single,
       true},
      {"db, factor 20", decibels, decibels, exact_decibels, near_decibels, least, most, least_single,
       most_single, true},
      {"sin", dspi_sin, dspfi_sin, mpfr_sin, std::sin, -most, most, -most_single, most_single, true},
      {"cos", dspi_cos, dspfi_cos, mpfr_cos, std::cos, -most, most, -most_single, most_single, true},
      {"tan", dspi_tan, dspfi_tan, mpfr_tan, std::tan, -most, most, -most_single, most_single, true},
      {"sinc", dspi_sinc, dspfi_sinc, exact_sinc, near_sinc, -most, most, -most_single, most_single, true},
      {"atan", dspi_atan, dspfi_atan, mpfr_atan, std::atan, -most, most, -most_single, most_single, true},
      {"asin", dspi_asin, dspfi_asin, mpfr_asin, std::asin, -1, 1, -1, 1, true},
      {"acos", dspi_acos, dspfi_acos, mpfr_acos, std::acos, -1, 1, -1, 1, true},
      {"sinh", dspi_sinh, dspfi_sinh, mpfr_sinh, std::sinh, -230.2585, 230.2585, -34.5387, 34.5387, true},
      {"cosh", dspi_cosh, dspfi_cosh, mpfr_cosh, std::cosh, -230.2585, 230.2585, -34.5387, 34.5387, true},
      {"tanh", dspi_tanh, dspfi_tanh, mpfr_tanh, std::tanh, -most, most, -most_single, most_single, true},
  };
  return all;
}

template <record V> std::int32_t call(const unary_function& f, V* v) {
  return twin<V>(f.in_double, f.in_single)(v);
}

// `count` arguments of f: the ends, points around 1, halves, and multiples of pi / 2, then random ones, a
// third of them evenly spread over a moderate range when the rest have even exponents.
template <record V> samples<V> arguments(const unary_function& f, index count, unsigned seed) {
  using T = scalar<V>;
  const T low = static_cast<T>(is_double<V> ? f.low : f.low_single);
  const T high = static_cast<T>(is_double<V> ? f.high : f.high_single);
  samples<V> out = {low, high};
  const auto add = [&](T x) {
    if (x >= low && x <= high) out.push_back(x);
  };
  for (const double centre : {1.0, 0.5, 0.3, 2.0, 20.0, 1e-8, 0.6875, 1.375, 100.0}) {
    T up = static_cast<T>(centre);
    T down = up;
    for (int step = 0; step < 20; ++step, up = std::nextafter(up, high), down = std::nextafter(down, low)) {
      for (const T x : {up, -up, down, -down}) add(x);
    }
  }
  std::mt19937_64 engine(seed);
  for (int k = 1; k <= 800; k += watched() ? 40 : 1) {  // the first multiples of pi / 2, then some up to 2^31
    const T multiple =
        static_cast<T>((k <= 400 ? k : static_cast<int>(engine() % 1400000000)) * 1.5707963267948966);
    for (const T x : {std::nextafter(multiple, T(0)), multiple, std::nextafter(multiple, high)})
      add(x), add(-x);
  }
  std::uniform_real_distribution<double> unit(0, 1);
  const double top = std::min(std::log2(static_cast<double>(high)), is_double<V> ? 1023.999 : 127.999);
  const double bottom = is_double<V> ? -1074 : -149;
  while (std::ssize(out) < count) {
    const double u = unit(engine);
    const bool even = !f.by_exponent || engine() % 3 == 0;
    const double range = std::min(static_cast<double>(high), 40.0);
    const double even_low =
        f.by_exponent ? std::max(static_cast<double>(low), -range) : static_cast<double>(low);
    const double even_high = f.by_exponent ? range : static_cast<double>(high);
    const double x = even ? even_low + u * (even_high - even_low)
                          : std::exp2(bottom + u * (top - bottom)) * (engine() % 2 != 0 ? 1 : -1);
    add(static_cast<T>(x));
  }
  return out;
}

// In single precision the nearest float, in double within 0.8 ulp.
template <record V> void expect_exact(const unary_function& f, const samples<V>& x) {
  using T = scalar<V>;
  signal<V> v(x);
  ASSERT_EQ(call(f, static_cast<V*>(&v)), 0);
  for (std::size_t i = 0; i < x.size(); ++i) {
    const exact argument(static_cast<double>(x[i]));
    exact wanted;
    f.definition(wanted.get(), argument.get(), MPFR_RNDN);
    if constexpr (is_double<V>) {
      ASSERT_LE(ulps(v.data[i], wanted), 0.8) << f.name << " at " << x[i];
    } else {
      ASSERT_EQ(v.data[i], static_cast<T>(mpfr_get_flt(wanted.get(), MPFR_RNDN))) << f.name << " at " << x[i];
    }
  }
}

// Points of every size and direction, with many close to the unit circle, where ln |z| loses digits, some on
// the axes, and some too far out for the reduction of an angle.
template <record V> samples<V> points(index count, unsigned seed = 3) {
  using T = scalar<V>;
  std::mt19937_64 engine(seed);
  std::uniform_real_distribution<double> unit(-1, 1);
  samples<V> out;
  for (index i = 0; i < count; ++i) {
    const double angle = unit(engine) * 3.141592653589793;
    const double radius = i % 3 == 0   ? 1
                          : i % 3 == 1 ? 1 + unit(engine) * 1e-6
                                       : std::exp2(unit(engine) * 30);
    const T a = static_cast<T>(radius * std::cos(angle));
    const T b = static_cast<T>(radius * std::sin(angle) * (i % 23 == 0 ? 0x1p15 : 1));
    out.push_back(i % 17 == 0 ? T(0) : a);
    out.push_back(i % 19 == 0 && i % 17 != 0 ? T(0) : b);
  }
  return out;
}

inline void set_squared_magnitude(exact& s, const exact& a, const exact& b) {
  exact bb;
  mpfr_sqr(s.get(), a.get(), MPFR_RNDN);
  mpfr_sqr(bb.get(), b.get(), MPFR_RNDN);
  mpfr_add(s.get(), s.get(), bb.get(), MPFR_RNDN);
}

// One component of a complex function, set from the parts of its argument.
using exact_component = void (*)(exact& y, const exact& a, const exact& b);

struct exact_components {
  exact_component re, im;
};

// A function of complex records; the bounds are in ulp, below 1 in double precision where a component is
// rounded once, more where it takes a product that was rounded before. Definitions differ by precision where
// they take a constant of it.
struct complex_function {
  const char* name;
  std::int32_t (*in_double)(dsp_vec*);
  std::int32_t (*in_single)(dspf_vec*);
  exact_components definition, definition_single;
  double bound, bound_single;
  double largest;  // |re| of the arguments, where the results are limited
};

template <exact_function logarithm> void half_logarithm(exact& y, const exact& a, const exact& b) {
  exact square;
  set_squared_magnitude(square, a, b);
  logarithm(y.get(), square.get(), MPFR_RNDN);
  mpfr_div_2ui(y.get(), y.get(), 1, MPFR_RNDN);
}

inline void angle(exact& y, const exact& a, const exact& b) {
  mpfr_atan2(y.get(), b.get(), a.get(), MPFR_RNDN);
}

// The constants of single precision that definitions take as they are stored.
inline constexpr double ln10_single = double(2.3025851F);
inline constexpr double log10_e_single = double(0.4342945F);

template <int factor> void decimal_size(exact& y, const exact& a, const exact& b) {
  half_logarithm<mpfr_log10>(y, a, b);
  mpfr_mul_ui(y.get(), y.get(), factor, MPFR_RNDN);
}

template <int factor> void decimal_angle(exact& y, const exact& a, const exact& b) {
  exact ln10(10.0);
  mpfr_log(ln10.get(), ln10.get(), MPFR_RNDN);
  angle(y, a, b);
  mpfr_div(y.get(), y.get(), ln10.get(), MPFR_RNDN);
  mpfr_mul_ui(y.get(), y.get(), factor, MPFR_RNDN);
}

template <int factor> void decimal_angle_single(exact& y, const exact& a, const exact& b) {
  angle(y, a, b);
  mpfr_mul_d(y.get(), y.get(), factor * log10_e_single, MPFR_RNDN);
}

// sqrt((|z| + sign a) / 2)
inline void root_component(exact& y, const exact& a, const exact& b, int sign) {
  exact size;
  set_squared_magnitude(size, a, b);
  mpfr_sqrt(size.get(), size.get(), MPFR_RNDN);
  (sign > 0 ? mpfr_add : mpfr_sub)(size.get(), size.get(), a.get(), MPFR_RNDN);
  mpfr_div_2ui(size.get(), size.get(), 1, MPFR_RNDN);
  mpfr_sqrt(y.get(), size.get(), MPFR_RNDN);
}

inline void root_re(exact& y, const exact& a, const exact& b) { root_component(y, a, b, 1); }

inline void root_im(exact& y, const exact& a, const exact& b) {
  root_component(y, a, b, -1);
  mpfr_setsign(y.get(), y.get(), mpfr_signbit(b.get()), MPFR_RNDN);
}

template <exact_function turn> void exponential_component(exact& y, const exact& a, const exact& b) {
  exact size(bits_of_results);
  mpfr_exp(size.get(), a.get(), MPFR_RNDN);
  turn(y.get(), b.get(), MPFR_RNDN);
  mpfr_mul(y.get(), y.get(), size.get(), MPFR_RNDN);
}

// The angle is the product of b and a constant as a double.
template <exact_function turn, double ln10> void decimal_component(exact& y, const exact& a, const exact& b) {
  const exact angle(mpfr_get_d(b.get(), MPFR_RNDN) * ln10);
  exact size(bits_of_results);
  mpfr_exp10(size.get(), a.get(), MPFR_RNDN);
  turn(y.get(), angle.get(), MPFR_RNDN);
  mpfr_mul(y.get(), y.get(), size.get(), MPFR_RNDN);
}

inline void exact_magnitude(exact& y, const exact& a, const exact& b) {
  exact square;
  set_squared_magnitude(square, a, b);
  mpfr_sqrt(y.get(), square.get(), MPFR_RNDN);
}

// (a cos b, a sin b)
template <exact_function turn> void polar_component(exact& y, const exact& a, const exact& b) {
  turn(y.get(), b.get(), MPFR_RNDN);
  mpfr_mul(y.get(), y.get(), a.get(), MPFR_RNDN);
}

inline const std::vector<complex_function>& complex_functions() {
  constexpr double once = 0.999;
  constexpr double product = 1.4;
  constexpr double half = 0.501;
  constexpr double any = 1e300;
  constexpr double ln10 = 2.302585092994046;
  constexpr exact_components root = {root_re, root_im};
  constexpr exact_components log = {half_logarithm<mpfr_log>, angle};
  constexpr exact_components exp = {exponential_component<mpfr_cos>, exponential_component<mpfr_sin>};
  constexpr exact_components polar = {exact_magnitude, angle};
  constexpr exact_components rectangular = {polar_component<mpfr_cos>, polar_component<mpfr_sin>};
  static const std::vector<complex_function> all = {
      {"sqrt", dspi_sqrt, dspfi_sqrt, root, root, once, half, any},
      {"log", dspi_log, dspfi_log, log, log, once, half, any},
      {"log10",
       dspi_log10,
       dspfi_log10,
       {decimal_size<1>, decimal_angle<1>},
       {decimal_size<1>, decimal_angle_single<1>},
       product,
       half,
       any},
      {"db, factor 20",
       decibels,
       decibels,
       {decimal_size<20>, decimal_angle<20>},
       {decimal_size<20>, decimal_angle_single<20>},
       product,
       half,
       any},
      {"exp", dspi_exp, dspfi_exp, exp, exp, once, half, 30},
      {"exp10",
       dspi_exp10,
       dspfi_exp10,
       {decimal_component<mpfr_cos, ln10>, decimal_component<mpfr_sin, ln10>},
       {decimal_component<mpfr_cos, ln10_single>, decimal_component<mpfr_sin, ln10_single>},
       once,
       half,
       14},
      {"rtop", dspi_rtop, dspfi_rtop, polar, polar, once, half, any},
      {"ptor", dspi_ptor, dspfi_ptor, rectangular, rectangular, once, half, any},
  };
  return all;
}

template <record V> exact_components definition(const complex_function& f) {
  return is_double<V> ? f.definition : f.definition_single;
}

template <record V> std::int32_t call(const complex_function& f, V* v) {
  return twin<V>(f.in_double, f.in_single)(v);
}

}  // namespace sigpak::test
