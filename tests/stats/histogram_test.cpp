// SPDX-License-Identifier: MIT
// Histograms: every edge counts where it belongs.
#include "stats/statistic.h"

namespace sigpak::test {
namespace {

template <class V> class Histogram : public testing::Test {};
TYPED_TEST_SUITE(Histogram, records, record_names);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TYPED_TEST(Histogram, CountsByHand) {
  using V = TypeParam;
  constexpr double h = wide(huge<V>);
  constexpr double epsilon = 2 * unit_roundoff<V>;
  struct {
    std::initializer_list<double> x;
    bool complex;
    double low, width;
    int bins;
    std::initializer_list<double> counts;
  } const cases[] = {{{0, 0.5, 1, 2}, false, 0, 1, 2, {2, 2}},
                     {{0, 0.5, 1, 2}, false, 0.5, 0.5, 3, {1, 1, 1}},
                     {{2 + 10 * epsilon, 2 + 40 * epsilon, -epsilon}, false, 0, 1, 2, {0, 1}},
                     {{3, 3, 3, 4, nan}, false, 3, 0, 2, {3, 0}},
                     {{nan, 5, -5, h, -3 * h}, false, -10, 5, 4, {0, 1, 0, 1}},
                     {{3, 4, 0, -1, nan, 0, 2 * h, 0}, true, 0, 1, 6, {0, 1, 0, 0, 0, 1}},
                     {{2 * h, 0}, true, 0, h, 1, {1}},
                     {{1, 2, 3}, false, 4, -1, 3, {0, 1, 2}},
                     {{1, 2, 3}, false, 0, 1, 0, {}},
                     {{1, 2, 3}, false, 0, 1, -4, {}},
                     {{}, false, 0, 1, 2, {0, 0}}};
  for (const auto& c : cases) {
    const signal<V> v(c.x, c.complex);
    signal<V> out({1, 2, 3, 4}, true);
    const auto low = static_cast<scalar<V>>(c.low);
    const auto width = static_cast<scalar<V>>(c.width);
    ASSERT_EQ(TWIN(s_hist)(&v, &out, low, width, c.bins), 0);
    EXPECT_EQ(out.values(), signal<V>(c.counts).values()) << c.low;
    EXPECT_EQ(out.complex, 0);
    EXPECT_EQ(out.delta, width);
  }
}

TYPED_TEST(Histogram, MayReplaceItsInput) {
  using V = TypeParam;
  signal<V> v({3, 4, 1, 0}, true);
  v.lend();
  ASSERT_EQ(TWIN(s_hist)(&v, &v, 0, 3, 2), 0);
  EXPECT_EQ(v.values(), (samples<V>{1, 1}));
  EXPECT_EQ(v.delta, 3);
  EXPECT_EQ(v.complex, 0);
  signal<V> kept{1, 2};
  const failing_records none(0);
  EXPECT_EQ(TWIN(s_hist)(&kept, &kept, 0, 1, 5), -1);
  EXPECT_EQ(kept.values(), (samples<V>{1, 2}));
}

// In single precision the number of bins itself rounds, up here, and so would the index.
TYPED_TEST(Histogram, IndexStaysInsideHugeRows) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr int bins = (1 << 24) + 3;
  const auto rounded = static_cast<T>(bins);
  const signal<V> v{wide(std::nextafter(rounded, T(0))), wide(rounded), wide(rounded) * (1 + 5e-16)};
  signal<V> out;
  ASSERT_EQ(TWIN(s_hist)(&v, &out, 0, 1, bins), 0);
  EXPECT_EQ(out.data[bins - 1], 3);
  const signal<V> beyond{bins * (1 + 1e-6)};
  ASSERT_EQ(TWIN(s_hist)(&beyond, &out, 0, 1, bins), 0);
  EXPECT_EQ(out.data[bins - 1], T(is_double<V> ? 0 : 1)) << "inside the tolerance of single precision only";
}

TYPED_TEST(Histogram, EverySampleInsideIsCountedOnce) {
  using V = TypeParam;
  const signal<V> v(noise<V>(5000, 3));
  signal<V> out;
  ASSERT_EQ(TWIN(s_hist)(&v, &out, scalar<V>(-1), scalar<V>(0.0625), 32), 0);
  samples<V> wanted(32, 0);
  for (const auto x : v.values()) wanted[static_cast<std::size_t>(std::floor((wide(x) + 1) * 16))] += 1;
  EXPECT_EQ(out.values(), wanted);
}

}  // namespace
}  // namespace sigpak::test
