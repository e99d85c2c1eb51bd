// SPDX-License-Identifier: MIT
// Errors of the elementary functions against arithmetic of 320 bits.
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>

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
    const samples<V> x = arguments<V>(f, watched() ? 600 : 6000, 7);
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
  const samples<V> z = points<V>(watched() ? 400 : 4000);
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

// Arguments whose result lies so close to a boundary between two floats that a double of ordinary care misses
// it: those that exhaustive_single has found for one or another way to compute. Each fills whole vectors.
TEST(UnarySingle, ClosestArgumentsAreCorrectlyRounded) {
  const struct {
    const char* name;
    std::vector<float> x;
  } closest[] = {
      {"exp",
       {0x1.344e9cp-5F, 0x1.036492p+1F, -0x1.d2259ap+3F, -0x1.65cf3p+6F, 0x1.7396a6p+1F, -0x1.07babcp+5F,
        0x1.03e4f4p-7F, 0x1.90bf98p-7F, 0x1.f077cep-7F, 0x1.4e692cp-7F, 0x1.8b155p-7F, 0x1.006cfap-7F}},
      {"exp10",
       {-0x1.c303eep-5F, -0x1.94685ap-4F, 0x1.5d4344p-3F, -0x1.a4c2fep+3F, 0x1.028914p-7F, 0x1.0548b2p-7F,
        0x1.3152fcp-7F, 0x1.63b08p-7F, 0x1.54241ep-7F, 0x1.0c176p-7F, 0x1.1c395ep-7F}},
      {"log",
       {0x1.2f1fd6p+3F, 0x1.bacb4ap+25F, 0x1.b121a6p+76F, 0x1.6351d8p+95F, 0x1.d1309cp+62F, 0x1.827a74p-7F,
        0x1.bd5c8ep-1F, 0x1.4cd816p+0F, 0x1.2793ecp-7F, 0x1.6eb94ap-7F, 0x1.63b08p-7F}},
      {"log10",
       {0x1.9a99dp-107F, 0x1.fddcf4p-98F, 0x1.292424p-33F, 0x1.bfbc36p-1F, 0x1.0acfc8p+67F, 0x1.d2b98p-7F,
        0x1.305242p-1F, 0x1.2124fep-7F, 0x1.494912p-7F}},
      {"db, factor 20", {0x1.6da4dcp-74F}},
      {"atan",
       {0x1.1ad646p-4F, 0x1.390a9ap+4F, 0x1.06bdbcp-7F, 0x1.00eaa4p-7F, 0x1.46cf46p+21F, 0x1.c3c4e4p+22F,
        0x1.e00a3p+25F}},
      {"asin",
       {0x1.6fe272p-2F, 0x1.7136c8p-2F, 0x1.9b7b4p-2F, 0x1.e5af18p-2F, 0x1.107434p-1F, 0x1.1e686p-7F,
        0x1.2fb712p-7F}},
      {"acos",
       {0x1.110b46p-26F, 0x1.04c444p-12F, -0x1.bbbd2ep-24F, 0x1.5011ap-7F, 0x1.b6353p-6F, 0x1.569b32p-5F}},
      {"sinh", {0x1.250bfep-11F, 0x1.322898p+0F, 0x1.595ba8p+0F}},
      {"cosh", {0x1.c12a5p-5F, 0x1.6181a6p+3F, 0x1.f1bb4ep+3F}},
      {"tanh", {0x1.dc0accp-2F}},
  };
  for (const auto& [name, x] : closest) {
    const auto is_named = [name = std::string_view(name)](const auto& f) { return f.name == name; };
    const auto f = std::ranges::find_if(unary_functions(), is_named);
    ASSERT_NE(f, unary_functions().end());
    samples<dspf_vec> repeated;
    for (const float a : x) repeated.insert(repeated.end(), 37, a);
    expect_exact<dspf_vec>(*f, repeated);
  }
}

// The parts of products and reciprocals against what their definitions let through, in units of rounding.
TYPED_TEST(UnaryAccuracy, ProductsOfPointsStayWithinTheirBounds) {
  using V = TypeParam;
  using T = scalar<V>;
  using wide = long double;
  const T p = T(1.25L / 3);
  const T q = T(-0.7L / 3);
  const samples<V> z = points<V>(watched() ? 400 : 4000, 5);
  signal<V> square(z, true);
  signal<V> scaled(z, true);
  signal<V> inverse(z, true);
  ASSERT_EQ(TWIN(i_square)(&square), 0);
  ASSERT_EQ(TWIN(i_cscale)(&scaled, p, q), 0);
  ASSERT_EQ(TWIN(i_recip)(&inverse), 0);
  const auto expect = [](T got, wide wanted, wide bound) {
    ASSERT_LE(std::abs(static_cast<wide>(got) - wanted),
              bound * static_cast<wide>(unit_roundoff<V>) * 1.001L);
  };
  for (std::size_t i = 0; i < z.size(); i += 2) {
    SCOPED_TRACE(i / 2);
    const wide a = z[i];
    const wide b = z[i + 1];
    const wide size = a * a + b * b;
    expect(square.data[i], a * a - b * b, 2 * std::max(a * a, b * b));
    expect(square.data[i + 1], 2 * a * b, std::abs(2 * a * b));
    expect(scaled.data[i], a * p - b * q, 2 * (std::abs(a * p) + std::abs(b * q)));
    expect(scaled.data[i + 1], b * p + a * q, 2 * (std::abs(b * p) + std::abs(a * q)));
    if (size == 0) continue;
    expect(inverse.data[i], a / size, 4 * std::abs(a / size));
    expect(inverse.data[i + 1], -b / size, 4 * std::abs(b / size));
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
