// Reversal, dropping of leading points, random permutation.
#include <gtest/gtest.h>

#include <cstdlib>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Order : public testing::Test {};
TYPED_TEST_SUITE(Order, records, record_names);

TYPED_TEST(Order, ReversalMirrorsThePoints) {
  using V = TypeParam;
  for (const index n : edge_sizes()) {
    for (const bool complex : {false, true}) {
      const index width = complex ? 2 : 1;
      signal<V> v(noise<V>(n * width), complex);
      if (n % 2 != 0) v.lend();
      const auto before = v.values();
      ASSERT_EQ(TWIN(i_rev)(&v), 0);
      for (index i = 0; i < n * width; ++i) {
        const index from = (n - 1 - i / width) * width + i % width;
        ASSERT_EQ(v.data[i], before[static_cast<std::size_t>(from)]) << n << ' ' << i;
      }
    }
  }
}

TYPED_TEST(Order, ShiftDropsLeadingPoints) {
  using V = TypeParam;
  for (const bool complex : {false, true}) {
    for (const std::uint32_t n : {0U, 1U, 5U, 9U, 10U, 11U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
      for (const bool lent : {false, true}) {
        signal<V> v(noise<V>(complex ? 20 : 10), complex);
        v.delta = 0.25;
        auto wanted = v.values();
        wanted.erase(wanted.begin(), wanted.begin() + std::min(n, 10U) * (complex ? 2 : 1));
        if (lent) v.lend();
        const failing_records<V> none(0);
        EXPECT_EQ(TWIN(i_shift)(&v, n), 0);
        EXPECT_EQ(v.points, n < 10 ? 10 - n : 0U);
        EXPECT_EQ(v.values(), wanted);
        EXPECT_EQ(v.complex, complex ? 1 : 0);
        EXPECT_EQ(v.delta, scalar<V>(0.25));
      }
    }
  }
}

// The draws of the permutation, from the formula of the 31-bit integer.
index drawn() {
  const int a = std::rand();
  const int b = std::rand();
  const int c = std::rand();
  return ((a & 0x7FFF) << 16) | ((b & 1) << 15) | (c & 0x7FFF);
}

TYPED_TEST(Order, ShuffleSwapsAsDrawn) {
  using V = TypeParam;
  signal<V> first{1, 2};
  TWIN(i_shuffle)(&first);  // the library has seeded its generator; the seed is ours from here
  for (const index n : {0, 1, 2, 3, 50, 1000}) {
    for (const bool complex : {false, true}) {
      const index width = complex ? 2 : 1;
      signal<V> v(noise<V>(n * width), complex);
      auto wanted = v.values();
      std::srand(static_cast<unsigned>(n));
      ASSERT_EQ(TWIN(i_shuffle)(&v), 0);
      const int next = std::rand();
      std::srand(static_cast<unsigned>(n));
      for (index i = 0; i + 1 < n; ++i) {
        const index j = i + drawn() % (n - i);
        for (index part = 0; part < width; ++part) {
          std::swap(wanted[static_cast<std::size_t>(i * width + part)],
                    wanted[static_cast<std::size_t>(j * width + part)]);
        }
      }
      EXPECT_EQ(v.values(), wanted) << n;
      EXPECT_EQ(std::rand(), next) << "no draw more, none less";
    }
  }
}

TYPED_TEST(Order, EmptyAndNegativeCountsAreLeftAlone) {
  using V = TypeParam;
  for (const std::uint32_t points : {0U, 0x80000000U, 0xffffffffU}) {
    V v{.delta = 1, .data = nullptr, .alloc = 0, .points = points, .complex = 0, .reserved = 0};
    EXPECT_EQ(TWIN(i_rev)(&v), 0);
    EXPECT_EQ(TWIN(i_sort)(&v), 0);
    EXPECT_EQ(TWIN(i_shuffle)(&v), 0);
    EXPECT_EQ(TWIN(i_swap_halves)(&v), 0);
    EXPECT_EQ(TWIN(i_swap_halves2)(&v), 0);
    EXPECT_EQ(v.points, points);
    EXPECT_EQ(TWIN(i_shift)(&v, 1), 0);
    EXPECT_EQ(v.points, 0U);
  }
}

}  // namespace
}  // namespace sigpak::test
