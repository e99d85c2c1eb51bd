// SPDX-License-Identifier: MIT
// Regression: a certified set, exact lines, and the fixed values of degenerate records.
#include "stats/certified.h"
#include "stats/statistic.h"

namespace sigpak::test {
namespace {

template <class V> class Regression : public testing::Test {};
TYPED_TEST_SUITE(Regression, records, record_names);

template <record V> samples<V> regression(const V& v) { return result_of<V>(TWIN(s_lin_regres2), v); }

TYPED_TEST(Regression, CertifiedSet) {
  using V = TypeParam;
  samples<V> pairs;
  for (const int tenths : certified::norris) pairs.push_back(static_cast<scalar<V>>(tenths / 10.0));
  const signal<V> v(pairs, true);
  const auto got = regression<V>(v);
  const auto& wanted = is_double<V> ? certified::norris_double : certified::norris_float;
  expect_values<V>(got, {std::begin(wanted), std::end(wanted)}, 1e-9, "");
  EXPECT_EQ(result_of<V>(TWIN(s_lin_regres), v), (samples<V>{got[0], got[1]}));
}

TYPED_TEST(Regression, SamplesOverTime) {
  using V = TypeParam;
  signal<V> v{1, 3, 5};
  for (const double delta : {1.0, 0.0, 0.25, -2.0}) {
    const double t = delta == 0 ? 1 : delta;
    v.delta = static_cast<scalar<V>>(delta);
    const auto got = regression<V>(v);
    const double spread = -(t / std::sqrt(t * t * (1 + 2.0 / 3)));
    const double wanted[] = {2 / t,  1,
                             0,      0,
                             0,      0,
                             spread, t / 2,
                             -t / 2, 0,
                             0,      0,
                             0,      -3 / std::sqrt(9 + 8.0 / 3),
                             t,      3,
                             t * t,  4,
                             2 * t,  t > 0 ? 1.0 : -1.0};
    for (std::size_t i = 0; i < 20; ++i)
      EXPECT_NEAR(wide(got[i]), wanted[i], 8 * unit_roundoff<V> * (1 + std::abs(wanted[i]))) << i;
  }
}

TYPED_TEST(Regression, LongRecordsAgreeWithLongDouble) {
  using V = TypeParam;
  for (const index n : {2, 3, 100, 2049, 20000}) {
    const signal<V> v(noise<V>(2 * n, 9), true);
    const auto z = wide_points<V>(v);
    std::complex<long double> mean = 0;
    for (const auto p : z) mean += p / static_cast<long double>(n);
    long double xx = 0;
    long double yy = 0;
    long double xy = 0;
    for (const auto p : z) {
      const auto d = p - mean;
      xx += d.real() * d.real() / n;
      yy += d.imag() * d.imag() / n;
      xy += d.real() * d.imag() / n;
    }
    const auto got = regression<V>(v);
    const long double residual = n < 3 ? 0 : (yy - xy * xy / xx) * n / (n - 2.0L);
    const std::pair<std::size_t, long double> checks[] = {
        {0, xy / xx},           {1, mean.imag() - xy / xx * mean.real()},
        {2, residual},          {3, residual / n / xx},
        {7, xy / yy},           {8, mean.real() - xy / yy * mean.imag()},
        {16, xx * n / (n - 1)}, {19, xy / std::sqrt(xx * yy)}};
    for (const auto& [entry, exact] : checks) {
      const auto wanted = static_cast<double>(exact);
      EXPECT_NEAR(wide(got[entry]), wanted, 1e-12 + std::abs(wanted) * unit_roundoff<V>) << n << " " << entry;
    }
  }
}

// Equal abscissae leave no slope, whatever the rounding of their centre makes of them.
TYPED_TEST(Regression, VerticalAndHorizontalLines) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr double h = wide(huge<V>);
  for (const double level : {0.0, 0.1, 0.7, 3.3, -1e6 / 7, 1e-9 / 3}) {
    for (const int n : {2, 3, 10, 5000}) {
      samples<V> pairs;
      for (int i = 0; i < n; ++i) pairs.insert(pairs.end(), {static_cast<T>(level), static_cast<T>(i)});
      const auto got = regression<V>(signal<V>(pairs, true));
      const T freedom = n < 3 ? T(0) : static_cast<T>(n / (n - 2.0));
      EXPECT_TRUE(got[0] == huge<V> && got[1] == huge<V> && got[16] == 0 && got[19] == 0)
          << level << " " << n;
      EXPECT_NEAR(wide(got[3]), wide(freedom) * h, 1e-6 * h);
      EXPECT_NEAR(wide(got[7]), 0, 1e-9) << "of x on y the line is level";
      EXPECT_NEAR(wide(got[8]), level, 1e-6 * std::abs(level));
    }
  }
}

TYPED_TEST(Regression, FewerThanTwoPoints) {
  using V = TypeParam;
  const struct {
    std::initializer_list<double> data;
    bool complex;
    double x, y;
  } cases[] = {{{}, false, 0, 0}, {{}, true, 0, 0}, {{7}, false, 0, 7}, {{0.1, -3}, true, 0.1, -3}};
  for (const auto& c : cases) {
    signal<V> v(c.data, c.complex);
    v.delta = 2;
    ASSERT_EQ(TWIN(s_lin_regres2)(&v, &v), 0) << "the result may be the input";
    samples<V> wanted(20, 0);
    wanted[1] = wanted[15] = static_cast<scalar<V>>(c.y);
    wanted[8] = wanted[14] = static_cast<scalar<V>>(c.x);
    EXPECT_EQ(v.values(), wanted);
    EXPECT_EQ(v.complex, 0);
  }
}

TYPED_TEST(Regression, TinySpreadsStillCorrelate) {
  using V = TypeParam;
  EXPECT_NEAR(wide(regression<V>(signal<V>({0, 0, 1e-17, 1e-17, 2e-17, 2e-17}, true))[19]), 1, 1e-6);
  if constexpr (is_double<V>) {
    EXPECT_NEAR(regression<V>(signal<V>({0, 0, 1e-120, 2e-120, 2e-120, 1e-120}, true))[19], 0.5, 1e-12);
  }
}

}  // namespace
}  // namespace sigpak::test
