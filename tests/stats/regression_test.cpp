// SPDX-License-Identifier: MIT
// Regression: a certified set, exact lines, and the fixed values of degenerate records.
#include "stats/statistic.h"

namespace sigpak::test {
namespace {

template <class V> class Regression : public testing::Test {};
TYPED_TEST_SUITE(Regression, records, record_names);

template <record V> samples<V> regression(const V& v) { return result_of<V>(TWIN(s_lin_regres2), v); }

using points = std::vector<std::complex<long double>>;

// The line of y on x, whose residuals are summed one by one, as the seven numbers say it.
std::vector<long double> exact_line(const points& z, bool turned) {
  const auto n = static_cast<long double>(z.size());
  const auto x = [turned](std::complex<long double> p) { return turned ? p.imag() : p.real(); };
  const auto y = [turned](std::complex<long double> p) { return turned ? p.real() : p.imag(); };
  long double mx = 0, my = 0, mean_square = 0, xx = 0, xy = 0, residual = 0;
  for (const auto p : z) mx += x(p) / n, my += y(p) / n, mean_square += x(p) * x(p) / n;
  for (const auto p : z) xx += (x(p) - mx) * (x(p) - mx), xy += (x(p) - mx) * (y(p) - my);
  for (const auto p : z) {
    const long double rest = y(p) - my - xy / xx * (x(p) - mx);
    if (n > 2) residual += rest * rest / (n - 2);
  }
  const long double variance = residual / xx;
  return {xy / xx,        my - xy / xx * mx,           residual, variance, variance * mean_square,
          -variance * mx, -mx / std::sqrt(mean_square)};
}

// All twenty numbers.
std::vector<long double> exact_regression(const points& z) {
  const auto n = static_cast<long double>(z.size());
  std::complex<long double> mean = 0;
  for (const auto p : z) mean += p;
  mean /= n;
  long double xx = 0, yy = 0, xy = 0;
  for (const auto p : z) {
    const auto d = p - mean;
    xx += d.real() * d.real(), yy += d.imag() * d.imag(), xy += d.real() * d.imag();
  }
  auto all = exact_line(z, false);
  const auto other = exact_line(z, true);
  all.insert(all.end(), other.begin(), other.end());
  all.insert(all.end(),
             {mean.real(), mean.imag(), xx / (n - 1), yy / (n - 1), xy / (n - 1), xy / std::sqrt(xx * yy)});
  return all;
}

template <record V> void expect_regression(const V& v, const points& z, double relative, double absolute) {
  const auto got = regression<V>(v);
  const auto wanted = exact_regression(z);
  ASSERT_EQ(got.size(), wanted.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    const auto exact = static_cast<double>(wanted[i]);
    EXPECT_NEAR(wide(got[i]), exact, absolute + (relative + unit_roundoff<V>)*std::abs(exact))
        << z.size() << " points, number " << i;
  }
  EXPECT_EQ(result_of<V>(TWIN(s_lin_regres), v), (samples<V>{got[0], got[1]}));
}

// Norris of the NIST Statistical Reference Datasets, https://www.itl.nist.gov/div898/strd: tenths of x, y.
constexpr int norris[] = {2,    1,    3374, 3388, 1182, 1181, 8846, 8880, 101,  92,   2265, 2281,
                          6663, 6685, 9963, 9985, 4486, 4491, 7770, 7789, 5582, 5592, 4,    3,
                          6,    1,    7755, 7781, 6669, 6688, 3380, 3393, 4475, 4489, 116,  108,
                          5560, 5577, 2281, 2283, 9958, 9980, 8876, 8888, 1202, 1196, 3,    3,
                          3,    6,    5568, 5576, 3391, 3393, 8872, 8880, 9990, 9985, 7790, 7789,
                          111,  102,  1183, 1176, 2292, 2289, 6691, 6684, 4489, 4492, 5,    2};

TYPED_TEST(Regression, CertifiedSet) {
  using V = TypeParam;
  samples<V> pairs;
  for (const int tenths : norris) pairs.push_back(static_cast<scalar<V>>(tenths / 10.0));
  const signal<V> v(pairs, true);
  expect_regression<V>(v, wide_points<V>(v), 1e-9, 0);
  const auto got = regression<V>(v);
  EXPECT_NEAR(wide(got[0]), 1.00211681802045, is_double<V> ? 1e-14 : 2e-7);
  EXPECT_NEAR(wide(got[1]), -0.262323073774029, is_double<V> ? 1e-12 : 4e-6);
}

TYPED_TEST(Regression, LongDoubleDefinition) {
  using V = TypeParam;
  for (const index n : {2, 3, 100, 2049, 20000}) {
    const signal<V> v(noise<V>(2 * n, 9), true);
    expect_regression<V>(v, wide_points<V>(v), 0, 1e-12);
  }
  signal<V> samples_over_time{1, 3, 5};
  for (const double delta : {1.0, 0.0, 0.25, -2.0}) {
    samples_over_time.delta = static_cast<scalar<V>>(delta);
    const long double t = delta == 0 ? 1 : delta;
    expect_regression<V>(samples_over_time, {{0, 1}, {t, 3}, {2 * t, 5}}, 8 * unit_roundoff<V>,
                         8 * unit_roundoff<V>);
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
