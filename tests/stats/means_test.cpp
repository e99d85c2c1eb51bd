// Geometric mean, harmonic mean, median.
#include <gtest/gtest.h>

#include <complex>

#include "stats/wide.h"
#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Means : public testing::Test {};
TYPED_TEST_SUITE(Means, records, record_names);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TYPED_TEST(Means, RealValuesByHand) {
  using V = TypeParam;
  constexpr double h = wide(huge<V>);
  struct {
    std::initializer_list<double> x;
    double geometric, harmonic, median;
  } const cases[] = {{{}, 0, 0, 0},
                     {{5}, 5, 5, 5},
                     {{1, 0, 2}, 0, 0, 1},
                     {{1, -1}, 0, h, 0},
                     {{-2, -8}, 4, -3.2, -5},
                     {{-2, 8}, 0, -16.0 / 3, 3},
                     {{3, 1, 2, 4}, std::pow(24, 0.25), 1.92, 2.5},
                     {{3, 1, 2}, std::cbrt(6), 18.0 / 11, 2},
                     {{1e-20, 1e-20, 1e20, 1e20}, 1, 2e-20, 5e19},
                     {{1e-25, 1e-25}, is_double<V> ? 1e-25 : 0, 1e-25, 1e-25},
                     {{1, nan, -0.0}, 0, 0, nan}};
  for (const auto& c : cases) {
    const signal<V> v(c.x);
    signal<V> out({9, 9}, true);
    out.delta = 3;
    const double tolerance = 4 * unit_roundoff<V>;
    ASSERT_EQ(TWIN(s_gmean)(&v, &out), 0);
    EXPECT_NEAR(wide(out.data[0]), c.geometric, (tolerance + 1e-14) * c.geometric);
    EXPECT_EQ(out.complex, 0);
    ASSERT_EQ(TWIN(s_hmean)(&v, &out), 0);
    EXPECT_NEAR(wide(out.data[0]), c.harmonic, tolerance * std::abs(c.harmonic));
    ASSERT_EQ(TWIN(s_median)(&v, &out), 0);
    EXPECT_EQ(out.delta, 3);
    if (!std::isnan(c.median)) {
      EXPECT_NEAR(wide(out.data[0]), c.median, tolerance * std::abs(c.median));
    }
  }
}

TYPED_TEST(Means, ComplexRootOfTheProductAndReciprocals) {
  using V = TypeParam;
  using complex = std::complex<double>;
  const std::vector<std::vector<complex>> cases{
      {{3, 4}}, {{0, 1}, {0, 1}}, {{1, 1}, {2, -1}, {-0.5, 3}}, {{-1, 0}, {1, 0}}, {{5, -2}, {1e-3, 7}}};
  for (const auto& z : cases) {
    signal<V> v;
    v.complex = 1;
    v.points = static_cast<std::uint32_t>(z.size());
    ASSERT_EQ(TWIN(_alloc)(&v), 0);
    complex product = 1;
    complex reciprocals = 0;
    for (std::size_t i = 0; i < z.size(); ++i) {
      v.data[2 * i] = static_cast<scalar<V>>(z[i].real());
      v.data[2 * i + 1] = static_cast<scalar<V>>(z[i].imag());
      product *= z[i];
      reciprocals += 1.0 / z[i];
    }
    const auto n = static_cast<double>(z.size());
    signal<V> out;
    ASSERT_EQ(TWIN(s_gmean)(&v, &out), 0);
    ASSERT_EQ(out.complex, 1);
    const complex root = std::pow(product, 1 / n);
    EXPECT_LT(std::abs(complex(wide(out.data[0]), wide(out.data[1])) - root),
              8 * unit_roundoff<V> * std::abs(root));
    ASSERT_EQ(TWIN(s_hmean)(&v, &out), 0);
    const complex harmonic = std::abs(reciprocals) > 0 ? n / reciprocals : complex(0);
    EXPECT_LT(std::abs(complex(wide(out.data[0]), wide(out.data[1])) - harmonic),
              8 * unit_roundoff<V> * std::abs(harmonic) + 1e-300);
  }
}

TYPED_TEST(Means, ComplexGuards) {
  using V = TypeParam;
  constexpr double h = wide(huge<V>);
  struct {
    std::initializer_list<double> z;
    double geometric[2], harmonic[2];
  } const cases[] = {{{}, {0, 0}, {0, 0}},
                     {{0, 0, 1, 1}, {0, 0}, {2, 2}},
                     {{3 * h, 0}, {3 * h, 0}, {h, 0}},
                     {{0, 0}, {0, 0}, {0, 0}}};
  for (const auto& c : cases) {
    const signal<V> v(c.z, true);
    signal<V> out;
    ASSERT_EQ(TWIN(s_gmean)(&v, &out), 0);
    for (int part = 0; part < 2; ++part) {
      EXPECT_NEAR(wide(out.data[part]), c.geometric[part], 1e-5 * c.geometric[0]);
    }
    ASSERT_EQ(TWIN(s_hmean)(&v, &out), 0);
    for (int part = 0; part < 2; ++part) {
      EXPECT_NEAR(wide(out.data[part]), c.harmonic[part], 1e-5 * c.harmonic[0]);
    }
  }
}

TYPED_TEST(Means, HarmonicMeanOfManyBlocks) {
  using V = TypeParam;
  for (const index n : {2047, 2048, 2049, 2048 * 9 + 5}) {
    samples<V> x = noise<V>(n, 5);
    long double wanted = 0;
    for (auto& value : x) wanted += 1 / static_cast<long double>(value += 2);
    wanted = static_cast<long double>(n) / wanted;
    signal<V> v(x);
    signal<V> out;
    ASSERT_EQ(TWIN(s_hmean)(&v, &out), 0);
    EXPECT_NEAR(wide(out.data[0]), static_cast<double>(wanted), 2e-14 + 3 * unit_roundoff<V>);
    v.data[n - 1] = 0;
    ASSERT_EQ(TWIN(s_hmean)(&v, &out), 0);
    EXPECT_EQ(out.data[0], 0);
  }
}

TYPED_TEST(Means, MedianIsTheMiddleOfTheSortedCopy) {
  using V = TypeParam;
  for (const index n : edge_sizes()) {
    if (n == 0) continue;
    samples<V> x = noise<V>(n, 11);
    const signal<V> v(x);
    signal<V> out;
    ASSERT_EQ(TWIN(s_median)(&v, &out), 0);
    EXPECT_EQ(v.values(), x) << "the input stays";
    std::sort(x.begin(), x.end());
    const auto middle = static_cast<std::size_t>(n / 2);
    const double wanted = n % 2 != 0 ? wide(x[middle]) : (wide(x[middle - 1]) + wide(x[middle])) * 0.5;
    EXPECT_EQ(out.values(), samples<V>{static_cast<scalar<V>>(wanted)});
  }
  const signal<V> pairs({3, 0, 0, -3, 1, 1, 0, 9}, true);
  signal<V> out;
  ASSERT_EQ(TWIN(s_median)(&pairs, &out), 0);
  EXPECT_EQ(out.values(), (samples<V>{1.5, -1.5})) << "(0, -3) and (3, 0), by magnitude";
}

TYPED_TEST(Means, MedianWithoutMemoryLeavesTheResult) {
  using V = TypeParam;
  const signal<V> v{3, 1, 2};
  signal<V> out{9};
  {
    const failing_records<V> none(0);
    EXPECT_EQ(TWIN(s_median)(&v, &out), -1);
  }
  EXPECT_EQ(out.values(), samples<V>{9});
}

}  // namespace
}  // namespace sigpak::test
