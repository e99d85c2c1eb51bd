// The transforms of any length.
#include <gtest/gtest.h>

#include "spectral/reference.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

template <class V> class Dft : public testing::Test {};
TYPED_TEST_SUITE(Dft, records, record_names);

constexpr double error_limit = 4;

// Small ones, the neighbours of powers of two, primes, and many factors.
const index lengths[] = {1,  2,  3,  4,  5,  6,   7,   9,   10,  11,  12,  15,  17,  18,  31,
                         33, 60, 63, 64, 65, 100, 127, 129, 255, 257, 480, 513, 719, 720, 1025};

TYPED_TEST(Dft, FollowsTheDefinition) {
  using V = TypeParam;
  for (const index n : lengths) {
    for (const bool complex : {false, true}) {
      for (const int direction : {0, -2}) {
        signal<V> v(noise<V>(complex ? 2 * n : n, 9), complex);
        const auto wanted = exact_transform(exact_points<V>(v), direction != 0);
        ASSERT_EQ(TWIN(i_dft)(&v, direction), 0);
        ASSERT_EQ(v.points, n);
        EXPECT_EQ(v.complex, n > 1 || complex);
        EXPECT_LT(transform_error<V>(v, wanted, n), error_limit) << n << " direction " << direction;
      }
    }
  }
}

TYPED_TEST(Dft, StaysAccurateInALongPrimeTransform) {
  using V = TypeParam;
  constexpr index n = 10007;
  signal<V> v(noise<V>(2 * n), true);
  const auto wanted = exact_transform(exact_points<V>(v), false);
  ASSERT_EQ(TWIN(i_dft)(&v, 0), 0);
  EXPECT_LT(transform_error<V>(v, wanted, n), error_limit);
}

TYPED_TEST(Dft, DoesNotDependOnTheCallsBefore) {
  using V = TypeParam;
  const auto transformed = [](index n, int direction) {
    signal<V> v(noise<V>(n));
    EXPECT_EQ(TWIN(i_dft)(&v, direction), 0);
    return v.values();
  };
  for (const int direction : {0, 1}) {
    ASSERT_EQ(TWIN(_free_internal)(), 0);
    const auto fresh = transformed(77, direction);
    for (int i = 0; i < 5; ++i) transformed(77, i & 1);
    transformed(1001, 1);
    EXPECT_EQ(transformed(77, direction), fresh);
    transformed(77, 1 - direction);
    EXPECT_EQ(transformed(77, direction), fresh);
  }
}

TYPED_TEST(Dft, SpacingFollowsTheRuleOfItsLength) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  for (const index n : {0, 1, 3, 4, 12}) {
    const T count = static_cast<T>(n > 1 ? n : 1);
    for (const int direction : {0, 1}) {
      for (const T delta : {T(0.75), T(-3), T(0), nan}) {
        signal<V> v(noise<V>(n));
        v.delta = delta;
        ASSERT_EQ(TWIN(i_dft)(&v, direction), 0);
        if (n == 4 && std::isnan(delta)) {
          EXPECT_TRUE(std::isnan(v.delta)) << "the power-of-two transform keeps it";
        } else {
          EXPECT_EQ(v.delta, delta == 0 || std::isnan(delta) ? huge<V> : T(1) / (count * delta)) << n;
        }
      }
    }
  }
}

TYPED_TEST(Dft, RealSpectraGoToTheirHalfAndBack) {
  using V = TypeParam;
  for (const index n : lengths) {
    signal<V> v(noise<V>(n, 5));
    const auto before = v.values();
    const auto wanted = exact_transform(exact_points<V>(v), false);
    ASSERT_EQ(TWIN(i_rdft)(&v), 0);
    ASSERT_EQ(v.points, n / 2 + 1);
    EXPECT_EQ(v.complex, n > 1);
    EXPECT_LT(transform_error<V>(v, wanted, n), error_limit) << n;
    ASSERT_EQ(TWIN(i_irdft)(&v, n & 1 ? 5 : 0), 0);
    ASSERT_EQ(v.points, n);
    EXPECT_EQ(v.complex, 0);
    EXPECT_EQ(v.delta, 1);
    EXPECT_LT(relative_l2(v.values(), before), 32 * unit_roundoff<V>) << n;
  }
}

TYPED_TEST(Dft, InverseIgnoresWhatNoRealSignalHas) {
  using V = TypeParam;
  for (const bool odd : {false, true}) {
    for (const index half : {2, 3, 5, 6, 7}) {
      signal<V> v(noise<V>(2 * half), true);
      exact_signal whole = exact_points<V>(v);
      for (std::size_t k = whole.size() - (odd ? 0 : 1); k-- > 1;) whole.push_back(std::conj(whole[k]));
      auto wanted = exact_transform(whole, true);
      for (auto& z : wanted) z = z.real();
      ASSERT_EQ(TWIN(i_irdft)(&v, odd), 0);
      ASSERT_EQ(v.points, whole.size());
      EXPECT_LT(transform_error<V>(v, wanted, v.points), error_limit) << half;
    }
  }
}

TYPED_TEST(Dft, EmptyAndRefused) {
  using V = TypeParam;
  signal<V> v;
  EXPECT_EQ(TWIN(i_rdft)(&v), 0);
  EXPECT_EQ(TWIN(i_irdft)(&v, 0), 0);
  EXPECT_EQ(TWIN(i_irdft)(&v, 1), 0);
  EXPECT_EQ(v.points, 0U);
  for (const index n : {3, 8}) {
    signal<V> complex(noise<V>(2 * n), true);
    const auto before = complex.values();
    EXPECT_EQ(TWIN(i_rdft)(&complex), -1);
    EXPECT_EQ(complex.values(), before);
  }
}

TYPED_TEST(Dft, LentInputIsReadWhole) {
  using V = TypeParam;
  for (const bool complex : {false, true}) {
    signal<V> owned(noise<V>(22), complex);
    signal<V> lent(owned.values(), complex);
    lent.lend();
    ASSERT_EQ(TWIN(i_dft)(&owned, 0), 0);
    ASSERT_EQ(TWIN(i_dft)(&lent, 0), 0);
    EXPECT_EQ(lent.values(), owned.values());
  }
}

TYPED_TEST(Dft, RecoversFromEveryFailedAllocation) {
  using V = TypeParam;
  constexpr index n = 1003;  // 17 * 59: by the chirp, with tables, at every level
  const auto transformed = [](index points) {
    signal<V> v(noise<V>(points));
    EXPECT_EQ(TWIN(i_dft)(&v, 0), 0);
    return v.values();
  };
  const auto wanted = transformed(n);
  const auto shorter = transformed(77);
  const auto attempts = [&](auto fail) {
    int allowed = 0;
    for (bool done = false; !done; ++allowed) {
      EXPECT_EQ(TWIN(_free_internal)(), 0);
      EXPECT_EQ(transformed(77), shorter);
      signal<V> v(noise<V>(n));
      v.delta = 5;
      done = fail(allowed, &v) == 0;
      EXPECT_EQ(v.delta == 5, !done);
      if (v.data == nullptr) v.points = 0;
      EXPECT_EQ(transformed(77), shorter) << "tables of a failed length do not pass for the last one";
      EXPECT_EQ(transformed(n), wanted);
    }
    return allowed;
  };
  EXPECT_GT(attempts([](int allowed, V* v) {
              const failing_tables tables(allowed);
              return TWIN(i_dft)(v, 0);
            }),
            2);
  EXPECT_GT(attempts([](int allowed, V* v) {
              const failing_records<V> records(allowed);
              return TWIN(i_dft)(v, 0);
            }),
            3);
  ASSERT_EQ(TWIN(_free_internal)(), 0);
}

}  // namespace
}  // namespace sigpak::test
