// Differences, running integral, derivative of a polynomial, level crossings.
#include <gtest/gtest.h>

#include <span>

#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Calculus : public testing::Test {};
TYPED_TEST_SUITE(Calculus, records, record_names);

TYPED_TEST(Calculus, DifferencesAndIntegralFollowTheirDefinitions) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : edge_sizes()) {
    for (const bool complex : {false, true}) {
      const std::size_t width = complex ? 2 : 1;
      const T delta = T(0.3);
      const double factor = 1 / static_cast<double>(delta);
      const auto x = noise<V>(n * static_cast<index>(width));
      samples<V> differences(x.size());
      samples<V> integral(x.size());
      double sums[2] = {0, 0};
      for (std::size_t i = 0; i < x.size(); ++i) {
        const double previous = i < width ? 0.0 : static_cast<double>(x[i - width]);
        differences[i] = static_cast<T>((static_cast<double>(x[i]) - previous) * factor);
        sums[i % width] += static_cast<double>(x[i]);
        integral[i] = static_cast<T>(static_cast<double>(delta) * sums[i % width]);
      }
      signal<V> d(x, complex);
      signal<V> s(x, complex);
      d.delta = delta;
      s.delta = delta;
      if (n % 2 != 0) d.lend();
      ASSERT_EQ(TWIN(i_differ)(&d), 0);
      ASSERT_EQ(TWIN(i_integ)(&s), 0);
      ASSERT_EQ(d.values(), differences) << n;
      ASSERT_EQ(s.values(), integral) << n;
      ASSERT_EQ(d.delta, delta);
      ASSERT_EQ(s.delta, delta);
    }
  }
}

TYPED_TEST(Calculus, SmallRecordsReadAsWritten) {
  using V = TypeParam;
  const auto h = huge<V>;
  signal<V> v{1, 3, 6};
  v.delta = scalar<V>(0.5);
  TWIN(i_differ)(&v);
  EXPECT_EQ(v.values(), (samples<V>{2, 4, 6}));
  for (const double zero : {0.0, -0.0}) {
    signal<V> w{1, 3, 6};
    w.delta = static_cast<scalar<V>>(zero);
    TWIN(i_differ)(&w);
    EXPECT_EQ(w.values(), (samples<V>{h, 2 * h, 3 * h}));
  }
  signal<V> ones{1, 1, 1};
  ones.delta = scalar<V>(0.1);
  TWIN(i_integ)(&ones);
  EXPECT_EQ(ones.data[2], scalar<V>(0.30000000000000004));
}

TYPED_TEST(Calculus, DerivativeOfAPolynomial) {
  using V = TypeParam;
  for (const index n : edge_sizes()) {
    for (const bool complex : {false, true}) {
      const index width = complex ? 2 : 1;
      signal<V> v(noise<V>(n * width), complex);
      v.delta = 7;
      const auto before = v.values();
      ASSERT_EQ(TWIN(i_pdiffer)(&v), 0);
      ASSERT_EQ(v.points, n > 0 ? n - 1 : 0);
      ASSERT_EQ(v.delta, 7);
      for (index i = 0; i < (n - 1) * width; ++i) {
        const auto power = static_cast<scalar<V>>(i / width + 1);
        ASSERT_EQ(v.data[i], power * before[static_cast<std::size_t>(i + width)]) << n << ' ' << i;
      }
    }
  }
}

TYPED_TEST(Calculus, CrossingsOfALevel) {
  using V = TypeParam;
  const double nan = std::numeric_limits<double>::quiet_NaN();
  struct {
    std::initializer_list<double> x;
    int flags;
    double level;
    std::initializer_list<double> times;  // in samples
  } const cases[] = {
      {{0, 1, 0}, 3, 0.5, {0.5, 1.5}},
      {{0, 1, 0}, 1, 0.5, {0.5}},
      {{0, 1, 0}, 2, 0.5, {1.5}},
      {{0, 1, 0}, 0, 0.5, {}},
      {{0, 1, 0}, 4, 0.5, {}},
      {{0, 1, 0}, 7, 0.25, {0.25, 1.75}},
      {{0, 0.5, 1}, 1, 0.5, {1}},
      {{1, 0.5, 0}, 2, 0.5, {1}},
      {{1, 0.5, 1}, 3, 0.5, {1}},
      {{0.5, 0.5, 0.5}, 3, 0.5, {}},
      {{-1, 1, -1, 1, -1}, 3, 0, {0.5, 1.5, 2.5, 3.5}},
      {{0, nan, 1, 0, nan}, 3, 0.5, {2.5}},
      {{0, 1, 0}, 3, nan, {}},
      {{5}, 3, 5, {}},
  };
  for (const auto& c : cases) {
    for (const double delta : {1.0, 0.25, -2.0}) {
      signal<V> v(c.x);
      v.delta = static_cast<scalar<V>>(delta);
      ASSERT_EQ(TWIN(i_edge)(&v, c.flags, static_cast<scalar<V>>(c.level)), 0);
      signal<V> wanted(c.times);
      for (auto& t : std::span(wanted.data, wanted.points)) t *= static_cast<scalar<V>>(delta);
      EXPECT_EQ(v.values(), wanted.values());
      EXPECT_EQ(v.delta, 1);
    }
  }
}

TYPED_TEST(Calculus, CrossingsOfASineLieAtItsZeros) {
  using V = TypeParam;
  samples<V> x(1000);
  for (std::size_t i = 0; i < x.size(); ++i) {
    x[i] = static_cast<scalar<V>>(std::sin(0.1 * (static_cast<double>(i) - 0.5)));
  }
  signal<V> v(x);
  v.delta = scalar<V>(0.5);
  ASSERT_EQ(TWIN(i_edge)(&v, 3, 0), 0);
  ASSERT_EQ(v.points, 32U);  // 0.1 * 999.4 is 31.8 half turns; the first zero is at half a sample
  const double pi = std::acos(-1.0);
  for (std::uint32_t k = 0; k < v.points; ++k) {
    EXPECT_NEAR(static_cast<double>(v.data[k]), 0.5 * (0.5 + 10 * pi * k), 5e-4) << k;
  }
}

TYPED_TEST(Calculus, CrossingsRefuseComplexAndSkipEmptyRecords) {
  using V = TypeParam;
  signal<V> complex({0, 1, 2, -1}, true);
  complex.delta = 3;
  EXPECT_EQ(TWIN(i_edge)(&complex, 3, 0), -1);
  EXPECT_EQ(complex.values(), (samples<V>{0, 1, 2, -1}));
  EXPECT_EQ(complex.delta, 3);
  for (const std::uint32_t points : {0U, 0x80000000U}) {
    V v{.delta = 3, .data = nullptr, .alloc = 0, .points = points, .complex = 0, .reserved = 0};
    EXPECT_EQ(TWIN(i_edge)(&v, 3, 0), 0);
    EXPECT_EQ(TWIN(i_differ)(&v), 0);
    EXPECT_EQ(TWIN(i_integ)(&v), 0);
    EXPECT_EQ(TWIN(i_pdiffer)(&v), 0);
    EXPECT_EQ(v.points, points);
    EXPECT_EQ(v.delta, 3);
  }
}

}  // namespace
}  // namespace sigpak::test
