// Real records to half spectra and back.
#include <gtest/gtest.h>

#include "spectral/reference.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

template <class V> class RealFft : public testing::Test {};
TYPED_TEST_SUITE(RealFft, records, record_names);

constexpr double error_limit = 1.5;

// The spectrum whose lower half is given, as a real signal has it.
exact_signal whole_spectrum(const exact_signal& half) {
  exact_signal out = half;
  for (std::size_t k = half.size() - 1; k-- > 1;) out.push_back(std::conj(half[k]));
  return out;
}

exact_signal real_parts(exact_signal x) {
  for (auto& z : x) z = z.real();
  return x;
}

TYPED_TEST(RealFft, GivesTheLowerHalfOfTheSpectrum) {
  using V = TypeParam;
  for (index n = 2; n <= 1 << 15; n *= 2) {
    signal<V> v(noise<V>(n, 3));
    const auto wanted = exact_transform(exact_points<V>(v), false);
    ASSERT_EQ(TWIN(i_rfft)(&v), 0);
    ASSERT_EQ(v.points, n / 2 + 1);
    EXPECT_EQ(v.complex, 1);
    EXPECT_LT(transform_error<V>(v, wanted, n), error_limit) << n;
    EXPECT_EQ(v.data[1], 0);
    EXPECT_EQ(v.data[n + 1], 0);
  }
}

TYPED_TEST(RealFft, InverseTakesRealPartsOfTheWholeInverse) {
  using V = TypeParam;
  for (index n = 4; n <= 1 << 13; n *= 2) {
    for (const bool complex : {false, true}) {
      signal<V> v(noise<V>((n / 2 + 1) * (complex ? 2 : 1), 4), complex);
      const auto wanted = real_parts(exact_transform(whole_spectrum(exact_points<V>(v)), true));
      ASSERT_EQ(TWIN(i_irfft)(&v), 0);
      ASSERT_EQ(v.points, n);
      EXPECT_EQ(v.complex, 0);
      EXPECT_LT(transform_error<V>(v, wanted, n), error_limit) << n;
    }
  }
}

TYPED_TEST(RealFft, InverseGivesTheRecordBack) {
  using V = TypeParam;
  for (index n = 1; n <= 4096; n *= 2) {
    signal<V> v(noise<V>(n));
    v.delta = scalar<V>(0.125);
    const auto before = v.values();
    ASSERT_EQ(TWIN(i_rfft)(&v), 0);
    ASSERT_EQ(TWIN(i_irfft)(&v), 0);
    ASSERT_EQ(v.points, n);
    EXPECT_EQ(v.complex, 0);
    EXPECT_EQ(v.delta, scalar<V>(0.125));
    EXPECT_LT(relative_l2(v.values(), before), 6 * unit_roundoff<V>) << n;
  }
}

TYPED_TEST(RealFft, KnownTransforms) {
  using V = TypeParam;
  signal<V> pair{3, 1};
  ASSERT_EQ(TWIN(i_rfft)(&pair), 0);
  EXPECT_EQ(pair.values(), (samples<V>{2, 0, 1, 0}));
  signal<V> ramp{0, 1, 2, 3};
  ASSERT_EQ(TWIN(i_rfft)(&ramp), 0);
  EXPECT_EQ(ramp.values(), (samples<V>{1.5, 0, -.5, .5, -.5, 0}));
  signal<V> half({6, 9, -2, 2, -2, 9}, true);
  ASSERT_EQ(TWIN(i_irfft)(&half), 0);
  EXPECT_EQ(half.values(), (samples<V>{0, 4, 8, 12}));
  signal<V> two({3, 5, 1, 7}, true);
  ASSERT_EQ(TWIN(i_irfft)(&two), 0);
  EXPECT_EQ(two.values(), (samples<V>{4, 2}));
  signal<V> one({3, 5}, true);
  ASSERT_EQ(TWIN(i_irfft)(&one), 0);
  EXPECT_EQ(one.values(), (samples<V>{3}));
}

TYPED_TEST(RealFft, Refusals) {
  using V = TypeParam;
  for (const index n : {0, 3, 6, 1000}) {
    signal<V> v(noise<V>(n));
    const auto before = v.values();
    EXPECT_EQ(TWIN(i_rfft)(&v), -1);
    EXPECT_EQ(v.values(), before);
  }
  signal<V> complex(noise<V>(16), true);
  const auto before = complex.values();
  EXPECT_EQ(TWIN(i_rfft)(&complex), -1);
  EXPECT_EQ(complex.values(), before);
  for (const index points : {0, 4, 6}) {
    signal<V> v(noise<V>(2 * points), true);
    v.delta = 3;
    EXPECT_EQ(TWIN(i_irfft)(&v), -1);
    EXPECT_EQ(v.delta, 3);
  }
}

TYPED_TEST(RealFft, NanSpacingBecomesHugeForwardAndStaysInverse) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  for (const index n : {1, 2, 4, 32}) {
    for (const T delta : {nan, T(0)}) {
      signal<V> v(noise<V>(n));
      v.delta = delta;
      ASSERT_EQ(TWIN(i_rfft)(&v), 0);
      EXPECT_EQ(v.delta, huge<V>);
      v.delta = delta;
      ASSERT_EQ(TWIN(i_irfft)(&v), 0);
      EXPECT_TRUE(std::isnan(delta) ? std::isnan(v.delta) : v.delta == huge<V>);
    }
  }
}

TYPED_TEST(RealFft, LentStorageIsLeftBehind) {
  using V = TypeParam;
  signal<V> v(noise<V>(64));
  v.lend();
  auto before = v.lent();
  ASSERT_EQ(TWIN(i_rfft)(&v), 0);
  EXPECT_EQ(v.lent(), before);
  v.lend();
  before = v.lent();
  ASSERT_EQ(TWIN(i_irfft)(&v), 0);
  EXPECT_EQ(v.lent(), before);
  EXPECT_LT(relative_l2(v.values(), noise<V>(64)), 6 * unit_roundoff<V>);
}

TYPED_TEST(RealFft, FailedAllocationsLeaveTheSamples) {
  using V = TypeParam;
  for (const bool inverse : {false, true}) {
    const auto operation = inverse ? TWIN(i_irfft) : TWIN(i_rfft);
    const samples<V> before = noise<V>(inverse ? 66 : 64);
    int allowed = 0;
    for (bool done = false; !done; ++allowed) {
      ASSERT_LT(allowed, 50);
      ASSERT_EQ(TWIN(_free_internal)(), 0);
      signal<V> v(before, inverse);
      v.delta = 5;
      const auto points = v.points;
      {
        const failing_tables tables(allowed);
        done = operation(&v) == 0;
      }
      if (done) continue;
      EXPECT_EQ(v.points, points);
      EXPECT_EQ(v.values(), before);
      EXPECT_EQ(v.delta, 5);
    }
    EXPECT_GT(allowed, 1);
    signal<V> v(before, inverse);
    v.lend();
    const failing_records<V> none(0);
    EXPECT_EQ(operation(&v), -1);
    EXPECT_EQ(v.data, nullptr);
    v.points = 0;
  }
}

}  // namespace
}  // namespace sigpak::test
