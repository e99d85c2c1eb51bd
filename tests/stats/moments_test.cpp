// SPDX-License-Identifier: MIT
// Variance, skewness and kurtosis: long double, and the fixed values of degenerate records.
#include "stats/statistic.h"

namespace sigpak::test {
namespace {

template <class V> class Moments : public testing::Test {};
TYPED_TEST_SUITE(Moments, records, record_names);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// Around the exact mean of the values as stored, within a relative error of the variances, and an absolute
// one of the shapes beside their roundoff.
template <record V> void expect_moments(const V& v, double relative, double absolute) {
  const auto points = wide_points<V>(v);
  const auto n = static_cast<long double>(points.size());
  std::complex<long double> mean = 0;
  for (const auto z : points) mean += z;
  mean /= n;
  long double m2 = 0, m3 = 0, m4 = 0;  // of the real part beyond the second
  for (const auto z : points) {
    const long double d = z.real() - mean.real();
    m2 += std::norm(z - mean) / n;
    m3 += d * d * d / n;
    m4 += d * d * d * d / n;
  }
  const auto expect = [&](auto run, long double wanted) {
    expect_values<V>(result_of<V>(run, v), {static_cast<double>(wanted)}, relative, "");
  };
  expect(TWIN(s_pop_var), m2);
  expect(TWIN(s_samp_var), m2 * n / (n - 1));
  expect(TWIN(s_pop_stddev), std::sqrt(m2));
  expect(TWIN(s_samp_stddev), std::sqrt(m2 * n / (n - 1)));
  if (v.complex != 0) return;
  const auto skew = static_cast<double>(m2 > 0 ? m3 / (m2 * std::sqrt(m2)) : 0);
  const auto excess = static_cast<double>(m2 > 0 ? m4 / (m2 * m2) - 3 : -3);
  EXPECT_NEAR(wide(result_of<V>(TWIN(s_skew), v)[0]), skew, absolute + 4 * unit_roundoff<V>);
  EXPECT_NEAR(wide(result_of<V>(TWIN(s_excess), v)[0]), excess, absolute + 4 * unit_roundoff<V>);
}

TYPED_TEST(Moments, AreThoseOfTheDefinition) {
  using V = TypeParam;
  for_each_form<V>({2, 3, 5, 64, 2047, 2048, 2049, 20001}, [](signal<V>& v) {
    for (index i = 0; i < scalars<V>(&v); ++i) v.data[i] = v.data[i] * v.data[i] * v.data[i] + scalar<V>(3);
    expect_moments<V>(v, 1e-12, 1e-11);
  });
}

// NumAcc1 to NumAcc4 of the NIST Statistical Reference Datasets, https://www.itl.nist.gov/div898/strd: an odd
// number of values that hardly deviate from one far from 0.
TYPED_TEST(Moments, OfValuesFarFromZeroLoseNoDigits) {
  using V = TypeParam;
  const std::tuple<index, double, double> sets[] = {
      {3, 10000002, 1}, {1001, 1.2, 0.1}, {1001, 1000000.2, 0.1}, {1001, 10000000.2, 0.1}};
  for (const auto& [n, middle, step] : sets) {
    SCOPED_TRACE(middle);
    signal<V> v(samples<V>(static_cast<std::size_t>(n), static_cast<scalar<V>>(middle)));
    for (index i = 1; i < n; ++i) v.data[i] = static_cast<scalar<V>>(middle + (i % 2 == 0 ? step : -step));
    expect_moments<V>(v, 1e-11, 2e-7);
  }
}

// From the sums of deviations and of their squares, in the order of their blocks.
TYPED_TEST(Moments, VarianceToTheLastBit) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {1, 2, 2047, 2048, 4097, 2048 * 8, 2048 * 15 + 3}) {
    const signal<V> v(noise<V>(n, 7));
    const T c = (v.data[n - 1] + v.data[n / 2] + v.data[0]) * static_cast<T>(0.3333333333333333);
    const pair sums = plain_blocks(v.values(), [c](pair x) {
      const double d = x.real() - wide(c);
      return pair(d, d * d);
    });
    const double r = 1.0 / static_cast<double>(n);
    const double variance = sums.imag() * r - sums.real() * r * (sums.real() * r);
    EXPECT_EQ(result_of<V>(TWIN(s_pop_var), v), samples<V>{static_cast<T>(variance)}) << n;
  }
}

TYPED_TEST(Moments, FixedValuesOfDegenerateRecordsAndLimitedDeviations) {
  using V = TypeParam;
  constexpr double h = wide(huge<V>);
  struct {
    std::initializer_list<double> x;
    double variance, sample, skew, excess;
  } const cases[] = {{{}, 0, 0, 0, -3},
                     {{3}, 0, 0, 0, -3},
                     {{2, 4}, 1, 2, 0, -2},
                     {{1, 1, 1, 1}, 0, 0, 0, -3},
                     {{1, nan}, nan, nan, nan, nan}};
  for (const auto& c : cases) {
    const signal<V> v(c.x);
    const auto expect = [&v](auto run, double wanted) {
      const double got = wide(result_of<V>(run, v)[0]);
      EXPECT_TRUE(std::abs(got - wanted) <= 1e-15 + 1e-6 * std::abs(wanted) ||
                  (got != got && wanted != wanted));
    };
    expect(TWIN(s_pop_var), c.variance);
    expect(TWIN(s_samp_var), c.sample);
    expect(TWIN(s_pop_stddev), std::sqrt(c.variance));
    expect(TWIN(s_samp_stddev), std::sqrt(c.sample));
    expect(TWIN(s_skew), c.skew);
    expect(TWIN(s_excess), c.excess);
  }
  // The centre is 4 H; the deviations -4 H, -4 H, 8 H are limited to -H, -H, H.
  const signal<V> v{0, 0, 12 * h};
  expect_values<V>(result_of<V>(TWIN(s_pop_var), v), {h * h * (1 - 1.0 / 9)}, 1e-6, "limited");
}

TYPED_TEST(Moments, ShapeOfComplexRecordsIsRefused) {
  using V = TypeParam;
  expect_complex_refused<V>([](V* v) { return TWIN(s_skew)(v, v); });
  expect_complex_refused<V>([](V* v) { return TWIN(s_excess)(v, v); });
}

}  // namespace
}  // namespace sigpak::test
