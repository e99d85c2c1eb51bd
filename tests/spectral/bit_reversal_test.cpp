// The bit-reversal permutation and its lists.
#include <gtest/gtest.h>

#include "spectral/tables.h"
#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class BitReversal : public testing::Test {};
TYPED_TEST_SUITE(BitReversal, records, record_names);

std::uint32_t mirrored(std::uint32_t i, int bits) {
  std::uint32_t out = 0;
  for (; bits > 0; --bits, i >>= 1) out = out << 1 | (i & 1U);
  return out;
}

TYPED_TEST(BitReversal, MovesEveryPointToItsMirrorImage) {
  using V = TypeParam;
  for (int bits = 0; bits <= 13; ++bits) {
    const std::size_t n = std::size_t{1} << bits;
    for (const std::size_t w : {1U, 2U}) {
      signal<V> v(noise<V>(static_cast<index>(w * n)), w == 2);
      signal<V> scaled(v.values(), w == 2);
      v.delta = scaled.delta = 7;
      const auto before = v.values();
      ASSERT_EQ(TWIN(i_bitrev)(&v), 0);
      ASSERT_EQ(TWIN(i_bitrev_scale)(&scaled), 0);
      auto wanted = before;
      auto wanted_scaled = before;
      for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t part = 0; part < w; ++part) {
          const auto x = before[w * mirrored(static_cast<std::uint32_t>(i), bits) + part];
          wanted[w * i + part] = x;
          wanted_scaled[w * i + part] = x / static_cast<scalar<V>>(n);
        }
      }
      EXPECT_EQ(v.values(), wanted) << n;
      EXPECT_EQ(scaled.values(), wanted_scaled) << n;
      EXPECT_EQ(v.delta, 7);
      EXPECT_EQ(scaled.delta, 7);
      ASSERT_EQ(TWIN(i_bitrev)(&v), 0);
      EXPECT_EQ(v.values(), before);
    }
  }
}

TYPED_TEST(BitReversal, ListsHoldEveryIndexOnce) {
  using T = scalar<TypeParam>;
  for (int bits = 0; bits <= 15; ++bits) {
    const std::size_t n = std::size_t{1} << bits;
    std::vector<int> seen(n);
    std::size_t words = 1;
    for (const std::uint32_t* p = swap_list<T>(bits); *p != 0; p += 2, words += 2) {
      ASSERT_LT(p[0], n);
      EXPECT_NE(p[0], p[1]);
      EXPECT_EQ(p[1], mirrored(p[0], bits));
      ++seen[p[0]];
      ++seen[p[1]];
    }
    EXPECT_LE(words, n) << "the list fits its storage";
    std::size_t fixed = 0;
    for (const std::uint32_t* p = fixed_point_list<T>(bits); *p != end_of_fixed_points; ++p, ++fixed) {
      ASSERT_LT(*p, n);
      EXPECT_EQ(*p, mirrored(*p, bits));
      ++seen[*p];
    }
    EXPECT_EQ(fixed, std::size_t{1} << (bits + 1) / 2);
    EXPECT_EQ(seen, std::vector<int>(n, 1)) << bits;
  }
}

TYPED_TEST(BitReversal, RefusesOtherLengthsUntouched) {
  using V = TypeParam;
  for (const index n : {0, 3, 6, 12, 1000}) {
    signal<V> v(noise<V>(n));
    const auto before = v.values();
    EXPECT_EQ(TWIN(i_bitrev)(&v), -1);
    EXPECT_EQ(TWIN(i_bitrev_scale)(&v), -1);
    EXPECT_EQ(v.values(), before);
  }
}

TYPED_TEST(BitReversal, FailedListsLeaveTheRecordAlone) {
  using V = TypeParam;
  for (const auto operation : {TWIN(i_bitrev), TWIN(i_bitrev_scale)}) {
    int allowed = 0;
    for (bool done = false; !done; ++allowed) {
      ASSERT_LT(allowed, 10);
      ASSERT_EQ(TWIN(_free_internal)(), 0);
      signal<V> v{0, 1, 2, 3, 4, 5, 6, 7};
      const auto before = v.values();
      {
        const failing_tables tables(allowed);
        done = operation(&v) == 0;
      }
      if (!done) {
        EXPECT_EQ(v.values(), before);
      }
    }
    EXPECT_EQ(allowed, operation == TWIN(i_bitrev) ? 3 : 5) << "two allocations for each list";
  }
}

}  // namespace
}  // namespace sigpak::test
