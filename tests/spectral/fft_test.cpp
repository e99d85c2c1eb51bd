// The complex transform of power-of-two length.
#include <gtest/gtest.h>

#include "spectral/reference.h"
#include "spectral/tables.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

template <class V> class Fft : public testing::Test {};
TYPED_TEST_SUITE(Fft, records, record_names);

constexpr double error_limit = 1.5;

TEST(Reference, FollowsTheDefiningSum) {
  for (const std::size_t n : {1U, 2U, 3U, 5U, 7U, 8U, 12U, 31U, 60U, 64U, 128U}) {
    for (const bool inverse : {false, true}) {
      const auto noisy = noise<dsp_vec>(static_cast<index>(2 * n));
      exact_signal x;
      for (std::size_t i = 0; i < n; ++i) x.emplace_back(noisy[2 * i], noisy[2 * i + 1]);
      const auto wanted = direct_transform(x, inverse ? 1 : -1);
      const auto got = exact_transform(x, inverse);
      for (std::size_t i = 0; i < n; ++i) {
        const exact scaled = inverse ? wanted[i] : wanted[i] / static_cast<long double>(n);
        EXPECT_LT(std::abs(got[i] - scaled), 4e-18L * static_cast<long double>(n)) << n;
      }
    }
  }
}

TYPED_TEST(Fft, FollowsTheDefinition) {
  using V = TypeParam;
  for (index n = 1; n <= 8192; n *= 2) {
    for (const bool complex : {false, true}) {
      for (const bool inverse : {false, true}) {
        signal<V> v(noise<V>(complex ? 2 * n : n, 7), complex);
        const auto wanted = exact_transform(exact_points<V>(v), inverse);
        ASSERT_EQ(TWIN(i_fft)(&v, inverse ? -3 : 0), 0);
        EXPECT_EQ(v.points, n);
        EXPECT_EQ(v.complex, n == 1 ? complex : 1);
        EXPECT_LT(transform_error<V>(v, wanted, n), error_limit) << n << " inverse " << inverse;
      }
    }
  }
}

TYPED_TEST(Fft, StaysAccurateInLongTransforms) {
  using V = TypeParam;
  for (const index n : {index{1} << 15, index{1} << 18}) {
    signal<V> v(noise<V>(2 * n), true);
    const auto before = v.values();
    const auto wanted = exact_transform(exact_points<V>(v), false);
    ASSERT_EQ(TWIN(i_fft)(&v, 0), 0);
    EXPECT_LT(transform_error<V>(v, wanted, n), error_limit);
    ASSERT_EQ(TWIN(i_fft)(&v, 1), 0);
    EXPECT_LT(relative_l2(v.values(), before), 8 * unit_roundoff<V>);
  }
}

TYPED_TEST(Fft, KnownTransforms) {
  using V = TypeParam;
  struct {
    samples<V> in;
    int direction;
    samples<V> out;
  } const cases[] = {
      {{3, 1}, 0, {2, 0, 1, 0}},
      {{3, 1}, 1, {4, 0, 2, 0}},
      {{5, 5, 5, 5}, 0, {5, 0, 0, 0, 0, 0, 0, 0}},
      {{1, 0, 0, 0, 0, 0, 0, 0}, 0, {.125, 0, .125, 0, .125, 0, .125, 0, .125, 0, .125, 0, .125, 0, .125, 0}},
      {{0, 4, 0, 0}, 0, {1, 0, 0, -1, -1, 0, 0, 1}},
      {{0, 1, 0, 0}, 7, {1, 0, 0, 1, -1, 0, 0, -1}},
  };
  for (const auto& c : cases) {
    signal<V> v(c.in);
    ASSERT_EQ(TWIN(i_fft)(&v, c.direction), 0);
    EXPECT_EQ(v.values(), c.out);
  }
  signal<V> pair{1, 2, 3, 4, 5, 6, 7, 8};
  pair.complex = 1;
  pair.points = 2;
  ASSERT_EQ(TWIN(i_fft)(&pair, 0), 0);
  EXPECT_EQ(pair.values(), (samples<V>{2, 3, -1, -1}));
}

TYPED_TEST(Fft, TwoPointsAreScaledBeforeTheyAreAdded) {
  using V = TypeParam;
  constexpr auto most = std::numeric_limits<scalar<V>>::max();
  signal<V> v(samples<V>{most, most});
  ASSERT_EQ(TWIN(i_fft)(&v, 0), 0);
  EXPECT_EQ(v.values(), (samples<V>{most, 0, 0, 0}));
}

TYPED_TEST(Fft, SpacingBecomesThatOfTheOtherDomain) {
  using V = TypeParam;
  using T = scalar<V>;
  struct {
    index points;
    T before, after;
  } const cases[] = {{1024, T(0.001), T(1) / (1024 * T(0.001))},
                     {8, 0, huge<V>},
                     {1, 4, T(0.25)},
                     {1, 0, huge<V>},
                     {2, -0.25, -2},
                     {4, huge<V>, T(1) / (4 * huge<V>)}};
  for (const auto& c : cases) {
    for (const int direction : {0, 1}) {
      signal<V> v(noise<V>(c.points));
      v.delta = c.before;
      ASSERT_EQ(TWIN(i_fft)(&v, direction), 0);
      EXPECT_EQ(v.delta, c.after);
    }
  }
  signal<V> v{1, 2, 3, 4};
  v.delta = std::numeric_limits<T>::quiet_NaN();
  ASSERT_EQ(TWIN(i_fft)(&v, 0), 0);
  EXPECT_TRUE(std::isnan(v.delta));
}

TYPED_TEST(Fft, RefusesOtherLengthsUntouched) {
  using V = TypeParam;
  for (const index n : {0, 3, 6, 12, 1023, 1025}) {
    signal<V> v(noise<V>(n));
    v.delta = 3;
    const auto before = v.values();
    EXPECT_EQ(TWIN(i_fft)(&v, 0), -1) << n;
    EXPECT_EQ(TWIN(i_fft)(&v, 1), -1) << n;
    EXPECT_EQ(v.values(), before);
    EXPECT_EQ(v.complex, 0);
    EXPECT_EQ(v.delta, 3);
  }
  signal<V> negative;
  negative.points = 0x80000000U;
  EXPECT_EQ(TWIN(i_fft)(&negative, 0), -1);
}

TYPED_TEST(Fft, LentStorageIsUsedWhileItSuffices) {
  using V = TypeParam;
  for (const bool complex : {false, true}) {
    signal<V> v(noise<V>(32), complex);
    signal<V> owned(v.values(), complex);
    v.lend();
    const auto before = v.lent();
    ASSERT_EQ(TWIN(i_fft)(&v, 0), 0);
    ASSERT_EQ(TWIN(i_fft)(&owned, 0), 0);
    EXPECT_EQ(v.values(), owned.values());
    EXPECT_EQ(v.data == v.lent().data(), complex);
    EXPECT_EQ(v.lent() == before, !complex);
  }
}

TYPED_TEST(Fft, RebuiltTablesGiveTheSameBits) {
  using V = TypeParam;
  for (const index n : {4, 64, 4096}) {
    signal<V> first(noise<V>(n));
    signal<V> second(noise<V>(n));
    ASSERT_EQ(TWIN(i_fft)(&first, 0), 0);
    ASSERT_EQ(TWIN(_free_internal)(), 0);
    ASSERT_EQ(TWIN(i_fft)(&second, 0), 0);
    EXPECT_EQ(first.values(), second.values());
  }
}

TYPED_TEST(Fft, FailedTablesLeaveTheSamplesUntransformed) {
  using V = TypeParam;
  for (const index n : {128, 8192}) {
    for (const int direction : {0, 1}) {
      signal<V> wanted(noise<V>(2 * n), true);
      ASSERT_EQ(TWIN(i_fft)(&wanted, direction), 0);
      int allowed = 0;
      for (bool done = false; !done; ++allowed) {
        ASSERT_LT(allowed, 100);
        ASSERT_EQ(TWIN(_free_internal)(), 0);
        signal<V> v(noise<V>(2 * n), true);
        v.delta = 5;
        const auto before = v.values();
        {
          const failing_tables tables(allowed);
          done = TWIN(i_fft)(&v, direction) == 0;
        }
        if (done) continue;
        EXPECT_EQ(v.values(), before);
        EXPECT_EQ(v.delta, 5);
        ASSERT_EQ(TWIN(i_fft)(&v, direction), 0) << "what is built so far stays valid";
        EXPECT_EQ(v.values(), wanted.values());
      }
      EXPECT_GT(allowed, 1);
    }
  }
}

TYPED_TEST(Fft, FailedGrowth) {
  using V = TypeParam;
  for (const index n : {2, 16}) {
    signal<V> v(noise<V>(n));
    v.delta = 5;
    const failing_records<V> none(0);
    EXPECT_EQ(TWIN(i_fft)(&v, 0), -1);
    EXPECT_EQ(v.delta, 5);
    EXPECT_EQ(v.data, nullptr);
    v.points = 0;
  }
}

TYPED_TEST(Fft, TwiddlesAreTheNearestValues) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr long double slack = is_double<V> ? 0x1p-61L : 0x1p-51L;  // errors of the wider type
  for (const index n : {4, 8, 16, 1024, 65536}) {
    const T* const table = twiddles<T>(n);
    ASSERT_NE(table, nullptr);
    for (index k = 0; k < n / 4; ++k) {
      for (const index times : {1, 3}) {
        const exact w = exact_root(static_cast<std::size_t>(times * k), static_cast<std::size_t>(n), 1);
        const long double wanted[] = {w.real(), -(w.real() + w.imag()), w.imag() - w.real()};
        const T* const got = table + group * k + (times == 3 ? triple : 0);
        for (int i = 0; i < 3; ++i) {
          const T step = std::nextafter(std::abs(got[i]), T(4)) - std::abs(got[i]);
          EXPECT_LE(std::abs(static_cast<long double>(got[i]) - wanted[i]),
                    static_cast<long double>(step) / 2 + slack)
              << k;
        }
      }
    }
    const samples<V> first(table, table + group);
    EXPECT_EQ(first, (samples<V>{1, -1, -1, 1, -1, -1}));
    if (n < 8) continue;
    const samples<V> middle(table + group * (n / 8), table + group * (n / 8) + triple);
    EXPECT_EQ(middle, (samples<V>{T(0.7071067811865476), T(-1.4142135623730951), 0}));
  }
}

}  // namespace
}  // namespace sigpak::test
