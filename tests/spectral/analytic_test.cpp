// The Hilbert transform and the analytic signal.
#include <gtest/gtest.h>

#include "spectral/reference.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

template <class V> class Analytic : public testing::Test {};
TYPED_TEST_SUITE(Analytic, records, record_names);

constexpr double error_limit = 8;  // two transforms
const index lengths[] = {2, 3, 4, 5, 6, 7, 8, 15, 16, 17, 30, 64, 100, 101, 256};

// Every bin times the factor for its frequency's sign.
exact_signal filtered(const exact_signal& x, exact zero, exact positive, exact middle, exact negative) {
  const std::size_t n = x.size();
  exact_signal bins = exact_transform(x, false);
  for (std::size_t k = 0; k < n; ++k) {
    bins[k] = times(bins[k], k == 0 ? zero : 2 * k < n ? positive : 2 * k == n ? middle : negative);
  }
  return exact_transform(bins, true);
}

TYPED_TEST(Analytic, HilbertTurnsEveryFrequencyByAQuarter) {
  using V = TypeParam;
  for (const index n : lengths) {
    for (const bool complex : {false, true}) {
      signal<V> v(noise<V>(complex ? 2 * n : n), complex);
      const auto wanted = filtered(exact_points<V>(v), {0, 0}, {0, -1}, {0, 0}, {0, 1});
      ASSERT_EQ(TWIN(i_hilbert)(&v), 0);
      ASSERT_EQ(v.points, n);
      EXPECT_EQ(v.complex != 0, complex);
      if (n > 2) {
        EXPECT_LT(transform_error<V>(v, wanted, n), error_limit) << n;
      }
    }
  }
}

TYPED_TEST(Analytic, SignalHasNoNegativeFrequencies) {
  using V = TypeParam;
  for (const index n : lengths) {
    for (const bool complex : {false, true}) {
      signal<V> v(noise<V>(complex ? 2 * n : n), complex);
      const auto wanted = filtered(exact_points<V>(v), {1, 0}, {2, 0}, {1, 0}, {0, 0});
      ASSERT_EQ(TWIN(i_analytic)(&v), 0);
      ASSERT_EQ(v.points, n);
      EXPECT_EQ(v.complex, 1);
      EXPECT_LT(transform_error<V>(v, wanted, n), error_limit) << n;
    }
  }
}

TYPED_TEST(Analytic, CosinesBecomeSinesAndTurningPhasors) {
  using V = TypeParam;
  for (const index n : {16, 21}) {
    for (index k = 1; 2 * k < n; ++k) {
      signal<V> h(samples<V>(static_cast<std::size_t>(n)));
      signal<V> a(samples<V>(static_cast<std::size_t>(n)));
      const auto root = [&](index i) {
        return exact_root(static_cast<std::size_t>(k * i), static_cast<std::size_t>(n), 1);
      };
      for (index i = 0; i < n; ++i) h.data[i] = a.data[i] = static_cast<scalar<V>>(root(i).real());
      ASSERT_EQ(TWIN(i_hilbert)(&h), 0);
      ASSERT_EQ(TWIN(i_analytic)(&a), 0);
      for (index i = 0; i < n; ++i) {
        EXPECT_NEAR(h.data[i], static_cast<double>(root(i).imag()), 16 * unit_roundoff<V>);
        EXPECT_NEAR(a.data[2 * i], static_cast<double>(root(i).real()), 16 * unit_roundoff<V>);
        EXPECT_NEAR(a.data[2 * i + 1], static_cast<double>(root(i).imag()), 16 * unit_roundoff<V>);
      }
    }
  }
}

TYPED_TEST(Analytic, ConstantsAndTheMiddleFrequency) {
  using V = TypeParam;
  signal<V> constant{3, 3, 3, 3};
  ASSERT_EQ(TWIN(i_hilbert)(&constant), 0);
  EXPECT_EQ(constant.values(), (samples<V>{0, 0, 0, 0}));
  signal<V> level{3, 3, 3, 3};
  ASSERT_EQ(TWIN(i_analytic)(&level), 0);
  EXPECT_EQ(level.values(), (samples<V>{3, 0, 3, 0, 3, 0, 3, 0}));
  signal<V> fastest{1, -1, 1, -1};
  ASSERT_EQ(TWIN(i_hilbert)(&fastest), 0);
  EXPECT_EQ(fastest.values(), (samples<V>{0, 0, 0, 0}));
  signal<V> kept{1, -1};
  ASSERT_EQ(TWIN(i_analytic)(&kept), 0);
  EXPECT_EQ(kept.values(), (samples<V>{1, 0, -1, 0}));
}

TYPED_TEST(Analytic, OnePointAndNone) {
  using V = TypeParam;
  for (const bool complex : {false, true}) {
    signal<V> h(complex ? samples<V>{3, 4} : samples<V>{3}, complex);
    signal<V> a(h.values(), complex);
    ASSERT_EQ(TWIN(i_hilbert)(&h), 0);
    EXPECT_EQ(h.values(), samples<V>(complex ? 2 : 1));
    ASSERT_EQ(TWIN(i_analytic)(&a), 0);
    EXPECT_EQ(a.values(), (samples<V>{3, complex ? scalar<V>(4) : scalar<V>(0)}));
    signal<V> none;
    none.complex = complex;
    none.delta = 3;
    EXPECT_EQ(TWIN(i_hilbert)(&none), 0);
    EXPECT_EQ(TWIN(i_analytic)(&none), 0);
    EXPECT_EQ(none.delta, 3);
    EXPECT_EQ(none.complex != 0, complex);
  }
}

TYPED_TEST(Analytic, HilbertOfOneLentPointWritesNothingBeyond) {
  using V = TypeParam;
  scalar<V> buffer[] = {5, 7};
  V v;
  TWIN(_init)(&v);
  v.data = buffer;
  v.points = 1;
  ASSERT_EQ(TWIN(i_hilbert)(&v), 0);
  EXPECT_EQ(buffer[0], 0);
  EXPECT_EQ(buffer[1], 7);
}

TYPED_TEST(Analytic, SpacingGoesThereAndBack) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const auto operation : {TWIN(i_hilbert), TWIN(i_analytic)}) {
    for (const bool complex : {false, true}) {
      for (const index n : {1, 4, 6}) {
        for (const T delta : {T(0.25), T(0), std::numeric_limits<T>::quiet_NaN()}) {
          signal<V> v(noise<V>(complex ? 2 * n : n), complex);
          v.delta = delta;
          ASSERT_EQ(operation(&v), 0);
          if (delta == T(0.25)) {
            EXPECT_NEAR(v.delta, delta, unit_roundoff<V>);
          } else if (n == 4 && std::isnan(delta)) {
            EXPECT_TRUE(std::isnan(v.delta));
          } else {
            EXPECT_EQ(v.delta, T(1) / (static_cast<T>(n) * huge<V>));
          }
        }
      }
    }
  }
}

TYPED_TEST(Analytic, FailedAllocations) {
  using V = TypeParam;
  for (const auto operation : {TWIN(i_hilbert), TWIN(i_analytic)}) {
    for (const index n : {1024, 1000}) {
      int allowed = 0;
      for (bool done = false; !done; ++allowed) {
        ASSERT_LT(allowed, 50);
        ASSERT_EQ(TWIN(_free_internal)(), 0);
        signal<V> v(noise<V>(n));
        const failing_tables tables(allowed);
        done = operation(&v) == 0;
      }
      EXPECT_GT(allowed, 1);
      ASSERT_EQ(TWIN(_free_internal)(), 0);
      signal<V> v(noise<V>(n));
      const failing_records<V> none(0);
      EXPECT_EQ(operation(&v), -1);
      if (v.data == nullptr) v.points = 0;
    }
  }
}

}  // namespace
}  // namespace sigpak::test
