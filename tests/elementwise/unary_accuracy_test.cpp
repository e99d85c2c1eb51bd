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

TYPED_TEST(UnaryAccuracy, ComplexFunctionsStayWithinTheirBounds) {
  using V = TypeParam;
  const samples<V> z = points<V>(4000);
  for (const complex_function& f : complex_functions()) {
    SCOPED_TRACE(f.name);
    signal<V> v(z, true);
    ASSERT_EQ(call(f, static_cast<V*>(&v)), 0);
    for (std::size_t i = 0; i < z.size(); i += 2) {
      if (std::abs(static_cast<double>(z[i])) > f.largest) continue;
      const exact a(static_cast<double>(z[i]));
      const exact b(static_cast<double>(z[i + 1]));
      exact re;
      exact im;
      definition<V>(f).re(re, a, b);
      definition<V>(f).im(im, a, b);
      const double most = is_double<V> ? f.bound : f.bound_single;
      ASSERT_LE(ulps(v.data[i], re), most) << "re at " << z[i] << ", " << z[i + 1];
      ASSERT_LE(ulps(v.data[i + 1], im), most) << "im at " << z[i] << ", " << z[i + 1];
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
