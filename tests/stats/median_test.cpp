// SPDX-License-Identifier: MIT
// The median against the middle of the sorted points, to the bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "kernels/order/order.h"
#include "support/failing.h"
#include "support/signal.h"
#include "vectors/levels.h"

namespace sigpak::test {
namespace {

template <class V> class Median : public testing::Test {};
TYPED_TEST_SUITE(Median, records, record_names);

// Smooth, in steps, both zeros, mostly one value, rising, few NaN, mostly NaN.
template <record V> samples<V> shaped(index n, int kind) {
  using T = scalar<V>;
  auto x = noise<V>(n, static_cast<unsigned>(kind));
  for (std::size_t i = 0; i < x.size(); ++i) {
    const int drawn = static_cast<int>(std::abs(x[i]) * 1024);
    if (kind == 1) x[i] = static_cast<T>(drawn % 7);
    if (kind == 2) x[i] = drawn % 5 < 3 ? std::copysign(T(0), x[i]) : x[i];
    if (kind == 3 && drawn % 4 != 0) x[i] = T(2);
    if (kind == 4) x[i] = static_cast<T>(i);
    if ((kind == 5 && i % 9973 == 3) || (kind == 6 && drawn % 8 != 0))
      x[i] = std::numeric_limits<T>::quiet_NaN();
  }
  return x;
}

template <class T> T mean(T a, T b) {
  return static_cast<T>((static_cast<double>(a) + static_cast<double>(b)) * 0.5);
}

TYPED_TEST(Median, IsTheMiddleOfTheSortedPoints) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {1,   2,   3,   5,   15,  16,  17,  31,  32,  33,   63,    65,
                        127, 128, 129, 255, 256, 257, 300, 511, 513, 4097, 70000, 200001}) {
    for (int kind = 0; kind <= 6; ++kind) {
      signal<V> v(shaped<V>(n, kind));
      const samples<V> before = v.values();
      signal<V> out;
      ASSERT_EQ(TWIN(s_median)(&v, &out), 0);
      const samples<V> after = v.values();
      ASSERT_EQ(std::memcmp(before.data(), after.data(), before.size() * sizeof(T)), 0);
      ASSERT_EQ(TWIN(i_sort)(&v), 0);
      const T upper = v.data[n / 2];
      const T expected = n % 2 != 0 ? upper : mean(v.data[n / 2 - 1], upper);
      EXPECT_TRUE(std::memcmp(&expected, out.data, sizeof(T)) == 0 ||
                  (expected != expected && out.data[0] != out.data[0]))
          << n << ' ' << kind << ' ' << expected << ' ' << out.data[0];
    }
  }
}

TYPED_TEST(Median, OfManyPointsIsFoundWithoutACopyOfThem) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const bool ties : {false, true}) {
    for (unsigned seed = 1; seed <= 8; ++seed) {
      samples<V> x = noise<V>(70000, seed);
      if (ties) std::ranges::for_each(x, [](T& a) { a = std::floor(4 * a); });
      const signal<V> v(x);
      signal<V> out{9};
      const failing_records only_the_bracket(1);
      EXPECT_EQ(TWIN(s_median)(&v, &out), 0) << seed;
      std::ranges::sort(x);
      EXPECT_EQ(out.data[0], (x[34999] + x[35000]) * T(0.5)) << seed;
    }
  }
}

// A sample misses the middle once in 500 times.
TYPED_TEST(Median, IsFoundWhereASampleMissesIt) {
  using V = TypeParam;
  const unsigned samples_drawn = watched() ? 100 : 1500;
  for (unsigned seed = 1; seed <= samples_drawn; ++seed) {
    samples<V> x = noise<V>(2561, seed);
    const signal<V> v(x);
    signal<V> out{0};
    ASSERT_EQ(TWIN(s_median)(&v, &out), 0);
    std::ranges::nth_element(x, x.begin() + 1280);
    ASSERT_EQ(out.data[0], x[1280]) << seed;
  }
}

TYPED_TEST(Median, IsSearchedInRegistersByAnyRankThatTheyHaveRoomFor) {
  using V = TypeParam;
  using T = scalar<V>;
  const auto* const wide = at_level<kernels::order_table<T>>();
  if (wide == nullptr) GTEST_SKIP() << "the baseline has no such vectors";
  for (const index n : {1, 2, 7, 16, 31, 48, 65, 100, 128, 200, 256}) {
    samples<V> x = noise<V>(n);
    x[static_cast<std::size_t>(n / 3)] = std::numeric_limits<T>::infinity();
    samples<V> sorted = x;
    std::ranges::sort(sorted);
    T found[2];
    const index most = wide->most_short / 2;
    for (index rank = std::max(n - most, index{0}); rank < std::min(n, most + 1); ++rank) {
      ASSERT_TRUE(wide->find_rank(x.data(), n, rank, found));
      ASSERT_EQ(found[1], sorted[static_cast<std::size_t>(rank)]) << n << ' ' << rank;
      ASSERT_TRUE(rank == 0 || found[0] == sorted[static_cast<std::size_t>(rank - 1)]) << n << ' ' << rank;
    }
    x.back() = std::numeric_limits<T>::quiet_NaN();
    EXPECT_FALSE(n <= 2 * most && wide->find_rank(x.data(), n, n / 2, found)) << n;
  }
}

TYPED_TEST(Median, OfComplexPointsIsByMagnitudeAndNeedsMemory) {
  using V = TypeParam;
  const signal<V> pairs({3, 0, 0, -3, 1, 1, 0, 9}, true);
  signal<V> out{9};
  {
    const failing_records none(0);
    EXPECT_EQ(TWIN(s_median)(&pairs, &out), -1);
    EXPECT_EQ(out.values(), samples<V>{9}) << "without memory the result stays";
  }
  EXPECT_EQ(TWIN(s_median)(&pairs, &out), 0);
  EXPECT_EQ(out.values(), (samples<V>{1.5, -1.5})) << "(0, -3) and (3, 0)";
  for (const bool complex : {false, true}) {
    const signal<V> nothing({}, complex);
    EXPECT_EQ(TWIN(s_median)(&nothing, &out), 0);
    EXPECT_EQ(out.values(), samples<V>(complex ? 2 : 1)) << "of nothing";
  }
}

}  // namespace
}  // namespace sigpak::test
