// Errors of the elementary functions against arithmetic of 320 bits.
#include <gtest/gtest.h>

#include "elementwise/functions.h"

namespace sigpak::test {
namespace {

template <record V> inline constexpr double bound = is_double<V> ? 0.999 : 0.501;

template <class V> class UnaryAccuracy : public testing::Test {};
TYPED_TEST_SUITE(UnaryAccuracy, records, record_names);

TYPED_TEST(UnaryAccuracy, RealFunctionsStayWithinTheirBound) {
  using V = TypeParam;
  for (const unary_function& f : unary_functions()) {
    SCOPED_TRACE(f.name);
    const samples<V> x = arguments<V>(f, 6000, 7);
    signal<V> v(x);
    ASSERT_EQ(call(f, static_cast<V*>(&v)), 0);
    for (std::size_t i = 0; i < x.size(); ++i) {
      const exact argument(static_cast<double>(x[i]));
      exact wanted;
      f.definition(wanted.get(), argument.get(), MPFR_RNDN);
      ASSERT_LE(ulps(v.data[i], wanted), bound<V>) << "at " << x[i];
    }
  }
}

// Points of every size and direction, with many close to the unit circle, where ln |z| loses digits, and some
// on the axes.
template <record V> samples<V> points(index count) {
  using T = scalar<V>;
  std::mt19937_64 engine(3);
  std::uniform_real_distribution<double> unit(-1, 1);
  samples<V> out;
  for (index i = 0; i < count; ++i) {
    const double angle = unit(engine) * 3.141592653589793;
    const double radius = i % 3 == 0   ? 1
                          : i % 3 == 1 ? 1 + unit(engine) * 1e-6
                                       : std::exp2(unit(engine) * 30);
    const T a = static_cast<T>(radius * std::cos(angle));
    const T b = static_cast<T>(radius * std::sin(angle));
    out.push_back(i % 17 == 0 ? T(0) : a);
    out.push_back(i % 19 == 0 && i % 17 != 0 ? T(0) : b);
  }
  return out;
}

void set_squared_magnitude(exact& s, const exact& a, const exact& b) {
  exact bb;
  mpfr_sqr(s.get(), a.get(), MPFR_RNDN);
  mpfr_sqr(bb.get(), b.get(), MPFR_RNDN);
  mpfr_add(s.get(), s.get(), bb.get(), MPFR_RNDN);
}

// One component of a complex function, set from the parts of its argument.
using exact_component = void (*)(exact& y, const exact& a, const exact& b);

template <record V> struct complex_function {
  const char* name;
  std::int32_t (*run)(V*);
  exact_component re, im;
  double allowed;  // in ulp: 1 where the result is rounded once, more for rounded products
};

template <exact_function logarithm> void half_logarithm(exact& y, const exact& a, const exact& b) {
  set_squared_magnitude(y, a, b);
  logarithm(y.get(), y.get(), MPFR_RNDN);
  mpfr_div_2ui(y.get(), y.get(), 1, MPFR_RNDN);
}

void angle(exact& y, const exact& a, const exact& b) { mpfr_atan2(y.get(), b.get(), a.get(), MPFR_RNDN); }

void decimal_angle(exact& y, const exact& a, const exact& b) {
  exact ln10(10);
  mpfr_log(ln10.get(), ln10.get(), MPFR_RNDN);
  angle(y, a, b);
  mpfr_div(y.get(), y.get(), ln10.get(), MPFR_RNDN);
}

// sqrt((|z| + sign a) / 2)
void root_component(exact& y, const exact& a, const exact& b, int sign) {
  set_squared_magnitude(y, a, b);
  mpfr_sqrt(y.get(), y.get(), MPFR_RNDN);
  (sign > 0 ? mpfr_add : mpfr_sub)(y.get(), y.get(), a.get(), MPFR_RNDN);
  mpfr_div_2ui(y.get(), y.get(), 1, MPFR_RNDN);
  mpfr_sqrt(y.get(), y.get(), MPFR_RNDN);
}

void root_re(exact& y, const exact& a, const exact& b) { root_component(y, a, b, 1); }

void root_im(exact& y, const exact& a, const exact& b) {
  root_component(y, a, b, -1);
  mpfr_setsign(y.get(), y.get(), mpfr_signbit(b.get()), MPFR_RNDN);
}

template <exact_function turn> void exponential_component(exact& y, const exact& a, const exact& b) {
  exact size;
  mpfr_exp(size.get(), a.get(), MPFR_RNDN);
  turn(y.get(), b.get(), MPFR_RNDN);
  mpfr_mul(y.get(), y.get(), size.get(), MPFR_RNDN);
}

template <record V> std::vector<complex_function<V>> complex_functions() {
  const double once = bound<V>;
  const double product = is_double<V> ? 2 : 0.501;
  const double constant_of_the_precision = is_double<V> ? 2 : 1.1;
  return {
      {"sqrt", TWIN(i_sqrt), root_re, root_im, once},
      {"log", TWIN(i_log), half_logarithm<mpfr_log>, angle, once},
      {"log10", TWIN(i_log10), half_logarithm<mpfr_log10>, decimal_angle, constant_of_the_precision},
      {"exp", TWIN(i_exp), exponential_component<mpfr_cos>, exponential_component<mpfr_sin>, product},
  };
}

TYPED_TEST(UnaryAccuracy, ComplexFunctionsStayWithinTheirBounds) {
  using V = TypeParam;
  const samples<V> z = points<V>(4000);
  for (const auto& f : complex_functions<V>()) {
    SCOPED_TRACE(f.name);
    signal<V> v(z, true);
    ASSERT_EQ(f.run(&v), 0);
    for (std::size_t i = 0; i < z.size(); i += 2) {
      if (z[i] > 30 && f.re == exponential_component<mpfr_cos>) continue;  // limited there
      const exact a(static_cast<double>(z[i]));
      const exact b(static_cast<double>(z[i + 1]));
      exact re;
      exact im;
      f.re(re, a, b);
      f.im(im, a, b);
      ASSERT_LE(ulps(v.data[i], re), f.re == half_logarithm<mpfr_log10> ? bound<V> : f.allowed)
          << "re at " << z[i] << ", " << z[i + 1];
      ASSERT_LE(ulps(v.data[i + 1], im), f.allowed) << "im at " << z[i] << ", " << z[i + 1];
    }
  }
}

TYPED_TEST(UnaryAccuracy, PowersOfTenAndTheirLogarithmsAreExact) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr int most_exact = is_double<V> ? 22 : 10;
  double power = 1;
  for (int k = 0; k <= most_exact; ++k, power *= 10) {
    signal<V> p{static_cast<double>(k)};
    ASSERT_EQ(TWIN(i_exp10)(&p), 0);
    EXPECT_EQ(p.data[0], static_cast<T>(power));
    ASSERT_EQ(TWIN(i_log10)(&p), 0);
    EXPECT_EQ(p.data[0], static_cast<T>(k));
    signal<V> d{power};
    ASSERT_EQ(TWIN(i_db)(&d, T(20)), 0);
    EXPECT_EQ(d.data[0], static_cast<T>(20 * k));
  }
}

}  // namespace
}  // namespace sigpak::test
