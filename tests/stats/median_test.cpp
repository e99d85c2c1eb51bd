// SPDX-License-Identifier: MIT
// The median against the middle of the sorted points, to the bit.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "support/failing.h"
#include "support/signal.h"

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

TYPED_TEST(Median, IsTheMiddleOfTheSortedPoints) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {1, 2, 3, 4, 5, 64, 299, 300, 511, 512, 513, 4097, 8191, 8192, 70000, 200001}) {
    for (int kind = 0; kind <= 6; ++kind) {
      signal<V> v(shaped<V>(n, kind));
      const samples<V> before = v.values();
      signal<V> out;
      ASSERT_EQ(TWIN(s_median)(&v, &out), 0);
      const samples<V> after = v.values();
      ASSERT_EQ(std::memcmp(before.data(), after.data(), before.size() * sizeof(T)), 0);
      ASSERT_EQ(TWIN(i_sort)(&v), 0);
      const double upper = static_cast<double>(v.data[n / 2]);
      const double lower = n % 2 != 0 ? upper : static_cast<double>(v.data[n / 2 - 1]);
      const T expected = static_cast<T>(n % 2 != 0 ? upper : (lower + upper) * 0.5);
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
}

}  // namespace
}  // namespace sigpak::test
