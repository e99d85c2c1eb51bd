// The cosine transform and its inverse.
#include <gtest/gtest.h>

#include "spectral/reference.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

template <class V> class Dct : public testing::Test {};
TYPED_TEST_SUITE(Dct, records, record_names);

const index lengths[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 16, 17, 31, 32, 60, 64, 127, 128, 200, 255, 256};

exact_signal cosine_sums(const exact_signal& x) {
  const std::size_t n = x.size();
  exact_signal out(n);
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t i = 0; i < n; ++i) out[k] += x[i] * exact_root((2 * i + 1) * k, 4 * n, 1).real();
    out[k] /= static_cast<long double>(n);
  }
  return out;
}

TYPED_TEST(Dct, IsTheMeanOfCosineProducts) {
  using V = TypeParam;
  for (const index n : lengths) {
    signal<V> v(noise<V>(n));
    v.delta = scalar<V>(0.5);
    const auto wanted = cosine_sums(exact_points<V>(v));
    ASSERT_EQ(TWIN(i_dct)(&v, 2), 0) << "only bit 0 counts";
    EXPECT_EQ(v.points, n);
    EXPECT_EQ(v.complex, 0);
    EXPECT_EQ(v.delta, scalar<V>(2) / static_cast<scalar<V>>(n));
    EXPECT_LT(transform_error<V>(v, wanted, n), 4) << n;
  }
}

TYPED_TEST(Dct, InverseGivesTheRecordBack) {
  using V = TypeParam;
  for (const index n : lengths) {
    for (const bool lent : {false, true}) {
      signal<V> v(noise<V>(n));
      if (lent) v.lend();
      const auto* const data = v.data;
      const auto before = v.values();
      ASSERT_EQ(TWIN(i_dct)(&v, 0), 0);
      ASSERT_EQ(TWIN(i_dct)(&v, 1), 0);
      EXPECT_EQ(v.data, data) << "in place";
      EXPECT_LT(relative_l2(v.values(), before), 32 * unit_roundoff<V>) << n;
      EXPECT_EQ(v.delta, 1);
    }
  }
}

TYPED_TEST(Dct, InverseOfUnitsAreCosines) {
  using V = TypeParam;
  for (const index n : {5, 6, 8, 12}) {
    for (index k = 0; k < n; ++k) {
      signal<V> v(samples<V>(static_cast<std::size_t>(n)));
      v.data[k] = 1;
      ASSERT_EQ(TWIN(i_dct)(&v, 1), 0);
      for (index i = 0; i < n; ++i) {
        const exact w =
            exact_root(static_cast<std::size_t>((2 * i + 1) * k), static_cast<std::size_t>(4 * n), 1);
        EXPECT_NEAR(v.data[i], static_cast<double>(w.real() * (k == 0 ? 1 : 2)), 16 * unit_roundoff<V>) << n;
      }
    }
  }
}

TYPED_TEST(Dct, SpacingRefusalAndEmpty) {
  using V = TypeParam;
  for (const scalar<V> delta : {scalar<V>(0), std::numeric_limits<scalar<V>>::quiet_NaN()}) {
    for (const index n : {1, 4, 6}) {
      signal<V> v(noise<V>(n));
      v.delta = delta;
      ASSERT_EQ(TWIN(i_dct)(&v, 0), 0);
      EXPECT_EQ(v.delta, huge<V>);
    }
  }
  signal<V> complex(noise<V>(8), true);
  const auto before = complex.values();
  EXPECT_EQ(TWIN(i_dct)(&complex, 0), -1);
  EXPECT_EQ(TWIN(i_dct)(&complex, 1), -1);
  EXPECT_EQ(complex.values(), before);
  signal<V> empty;
  empty.delta = 3;
  EXPECT_EQ(TWIN(i_dct)(&empty, 0), 0);
  EXPECT_EQ(TWIN(i_dct)(&empty, 1), 0);
  EXPECT_EQ(empty.delta, 3);
}

TYPED_TEST(Dct, FailedAllocationsLeaveTheRecord) {
  using V = TypeParam;
  for (const int flags : {0, 1}) {
    for (const index n : {1000, 1024}) {
      signal<V> wanted(noise<V>(n));
      ASSERT_EQ(TWIN(i_dct)(&wanted, flags), 0);
      const auto attempts = [&](auto fail) {
        int allowed = 0;
        for (bool done = false; !done; ++allowed) {
          EXPECT_EQ(TWIN(_free_internal)(), 0);
          signal<V> v(noise<V>(n));
          const auto before = v.values();
          done = fail(allowed, &v) == 0;
          EXPECT_EQ(v.values() == before, !done);
          EXPECT_EQ(v.delta == 1, !done);
          signal<V> next(noise<V>(n));
          EXPECT_EQ(TWIN(i_dct)(&next, flags), 0);
          EXPECT_EQ(next.values(), wanted.values());
        }
        return allowed;
      };
      EXPECT_GT(attempts([&](int allowed, V* v) {
                  const failing_tables tables(allowed);
                  return TWIN(i_dct)(v, flags);
                }),
                2);
      EXPECT_GT(attempts([&](int allowed, V* v) {
                  const failing_records<V> records(allowed);
                  return TWIN(i_dct)(v, flags);
                }),
                1);
      ASSERT_EQ(TWIN(_free_internal)(), 0);
    }
  }
}

}  // namespace
}  // namespace sigpak::test
