// Rotation by half the length.
#include <gtest/gtest.h>

#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Rotate : public testing::Test {};
TYPED_TEST_SUITE(Rotate, records, record_names);

TYPED_TEST(Rotate, EveryPointGoesToItsPlace) {
  using V = TypeParam;
  for (const index n : edge_sizes()) {
    for (const bool complex : {false, true}) {
      for (const bool left : {false, true}) {
        const index width = complex ? 2 : 1;
        signal<V> v(noise<V>(n * width), complex);
        if (n % 3 == 0) v.lend();
        const auto before = v.values();
        ASSERT_EQ(left ? TWIN(i_swap_halves2)(&v) : TWIN(i_swap_halves)(&v), 0);
        for (index i = 0; i < n; ++i) {
          const index from = (i + (left ? n / 2 : n - n / 2)) % n;
          for (index part = 0; part < width; ++part) {
            ASSERT_EQ(v.data[i * width + part], before[static_cast<std::size_t>(from * width + part)])
                << n << ' ' << i;
          }
        }
        left ? TWIN(i_swap_halves)(&v) : TWIN(i_swap_halves2)(&v);
        ASSERT_EQ(v.values(), before) << n;
      }
    }
  }
}

TYPED_TEST(Rotate, SmallRecordsReadAsWritten) {
  using V = TypeParam;
  signal<V> right{1, 2, 3, 4, 5};
  signal<V> left{1, 2, 3, 4, 5};
  TWIN(i_swap_halves)(&right);
  TWIN(i_swap_halves2)(&left);
  EXPECT_EQ(right.values(), (samples<V>{4, 5, 1, 2, 3}));
  EXPECT_EQ(left.values(), (samples<V>{3, 4, 5, 1, 2}));
}

}  // namespace
}  // namespace sigpak::test
