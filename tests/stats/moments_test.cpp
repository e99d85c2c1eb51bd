// SPDX-License-Identifier: MIT
// Variance, skewness and kurtosis: certified sets, long double, and the fixed values of degenerate records.
#include "stats/certified.h"
#include "stats/statistic.h"

namespace sigpak::test {
namespace {

template <class V> class Moments : public testing::Test {};
TYPED_TEST_SUITE(Moments, records, record_names);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct exact {
  double mean, variance, deviation, skew, excess, median, squares;
};

struct certified_set {
  const char* name;
  std::vector<double> values;
  exact as_double, as_float;
};

std::vector<double> scaled(const auto& integers, double unit) {
  std::vector<double> out;
  for (const int i : integers) out.push_back(i / unit);
  return out;
}

// The middle value, then `low` and `high` in turn.
std::vector<double> alternating(double middle, double low, double high) {
  std::vector<double> out{middle};
  for (int i = 1; i < 1001; ++i) out.push_back(i % 2 == 1 ? low : high);
  return out;
}

const std::vector<certified_set>& certified_sets() {
  static const std::vector<certified_set> sets{
      {"Lottery",
       scaled(certified::lottery, 1),
       {518.958715596330275, 84698.4157267906741, 291.699727470969084, -0.0926882314503554,
        -1.1927809417579536, 522.5, 77175611},
       {518.958715596330275, 84698.4157267906741, 291.699727470969084, -0.0926882314503554,
        -1.1927809417579536, 522.5, 77175611}},
      {"Mavro",
       scaled(certified::mavro, 1e5),
       {2.00185599999999997, 1.80464000000027395e-7, 0.00042912345400308, 0.62541807014318536,
        -0.8583840278192478, 2.0018, 200.371381259999994},
       {2.00185598850250244, 1.80471941098403476e-7, 0.00042913289542651, 0.62544766632250005,
        -0.8584221619207062, 2.0018000602722168, 200.371378958763614}},
      {"Michelso",
       scaled(certified::michelso, 100),
       {299.8524, 0.00618023999999982, 0.07901054781905066, -0.018259613963091, 0.26353053231147781, 299.85,
        8991146.7966},
       {299.852400207519531, 0.00618050346849486, 0.07901223194201931, -0.0182437667608517,
        0.26352560044945587, 299.850006103515625, 8991146.80907139275}},
      {"NumAcc1",
       {10000001, 10000003, 10000002},
       {10000002, 0.66666666666666666, 1, 0, -1.5, 10000002, 300000120000014},
       {10000002, 0.66666666666666666, 1, 0, -1.5, 10000002, 300000120000014}},
      {"NumAcc2",
       alternating(1.2, 1.1, 1.3),
       {1.2, 0.00999000999000998, 0.1, 0, -1.999, 1.2, 1451.44000000000015},
       {1.19999998813861614, 0.00999000284459931, 0.09999996423721315, 0, -1.999, 1.20000004768371582,
        1451.43996435165547}},
      {"NumAcc3",
       alternating(1000000.2, 1000000.1, 1000000.3),
       {1000000.20000000001, 0.00999000999698793, 0.10000000003492459, 0, -1.999, 1000000.2,
        1001000400400050.06},
       {1000000.21871878121, 0.008781256830083, 0.09375520298582413, 0.00096239556192576, -1.9992092133909665,
        1000000.1875, 1001000437875056.67}},
      {"NumAcc4",
       alternating(10000000.2, 10000000.1, 10000000.3),
       {10000000.2000000001, 0.00999001010165705, 0.10000000055879354, 0, -1.999, 10000000.1999999993,
        1.00100004004000053e17},
       {10000000, 0, 0, 0, -3, 10000000, 1001e14}}};
  return sets;
}

TYPED_TEST(Moments, CertifiedSets) {
  using V = TypeParam;
  for (const auto& set : certified_sets()) {
    const signal<V> v(samples<V>(set.values.begin(), set.values.end()));
    const exact& e = is_double<V> ? set.as_double : set.as_float;
    const double n = static_cast<double>(set.values.size());
    const auto expect = [&](auto run, double wanted, double relative) {
      expect_values<V>(result_of<V>(run, v), {wanted}, relative, set.name);
    };
    expect(TWIN(s_mean), e.mean, 1e-14);
    expect(TWIN(s_pop_var), e.variance, 1e-11);
    expect(TWIN(s_samp_var), e.variance * (n / (n - 1)), 1e-11);
    expect(TWIN(s_pop_stddev), std::sqrt(e.variance), 1e-11);
    expect(TWIN(s_samp_stddev), e.deviation, 1e-11);
    expect(TWIN(s_median), e.median, 1e-16);
    expect(TWIN(s_magsq_sum), e.squares, 5e-14);
    expect(TWIN(s_rms), std::sqrt(e.squares / n), 5e-14);
    EXPECT_NEAR(wide(result_of<V>(TWIN(s_skew), v)[0]), e.skew, 1e-8 + std::abs(e.skew) * unit_roundoff<V>);
    EXPECT_NEAR(wide(result_of<V>(TWIN(s_excess), v)[0]), e.excess, 2e-7) << set.name;
  }
}

TYPED_TEST(Moments, LongDoubleDefinition) {
  using V = TypeParam;
  for_each_form<V>({2, 3, 5, 64, 2047, 2048, 2049, 20001}, [](signal<V>& v) {
    for (index i = 0; i < scalars<V>(&v); ++i) v.data[i] = v.data[i] * v.data[i] * v.data[i] + scalar<V>(3);
    const auto points = wide_points<V>(v);
    const auto n = static_cast<long double>(points.size());
    std::complex<long double> mean = 0;
    for (const auto z : points) mean += z / n;
    long double m2 = 0, m3 = 0, m4 = 0;  // of the real part beyond the second
    for (const auto z : points) {
      const long double d = z.real() - mean.real();
      m2 += std::norm(z - mean) / n;
      m3 += d * d * d / n;
      m4 += d * d * d * d / n;
    }
    const auto expect = [&v](auto run, long double wanted, double relative) {
      expect_values<V>(result_of<V>(run, v), {static_cast<double>(wanted)}, relative, "");
    };
    expect(TWIN(s_pop_var), m2, 1e-12);
    expect(TWIN(s_samp_var), m2 * n / (n - 1), 1e-12);
    expect(TWIN(s_pop_stddev), std::sqrt(m2), 1e-12);
    expect(TWIN(s_samp_stddev), std::sqrt(m2 * n / (n - 1)), 1e-12);
    if (v.complex != 0) return;
    EXPECT_NEAR(wide(result_of<V>(TWIN(s_skew), v)[0]), static_cast<double>(m3 / (m2 * std::sqrt(m2))),
                1e-11 + 4 * unit_roundoff<V>);
    EXPECT_NEAR(wide(result_of<V>(TWIN(s_excess), v)[0]), static_cast<double>(m4 / (m2 * m2) - 3),
                1e-11 + 4 * unit_roundoff<V>);
  });
}

// The definition of the variance, transcribed, in the order of its blocks.
TYPED_TEST(Moments, VarianceToTheLastBit) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {1, 2, 2047, 2048, 4097, 2048 * 8, 2048 * 15 + 3}) {
    const signal<V> v(noise<V>(n, 7));
    const T c = (v.data[n - 1] + v.data[n / 2] + v.data[0]) * static_cast<T>(0.3333333333333333);
    double s1 = 0;
    double s2 = 0;
    for (index begin = 0; begin < n; begin += 2048) {
      double b1 = 0;
      double b2 = 0;
      for (index i = begin; i < std::min(n, begin + 2048); ++i) {
        const double d = wide(v.data[i]) - wide(c);
        b1 += d;
        b2 += d * d;
      }
      s1 += b1;
      s2 += b2;
    }
    const double r = 1.0 / static_cast<double>(n);
    const double variance = s2 * r - s1 * r * (s1 * r);
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
