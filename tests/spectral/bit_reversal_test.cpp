// SPDX-License-Identifier: MIT
// The bit-reversal permutation and its lists.
#include <gtest/gtest.h>

#include "core/power_of_two.h"
#include "fft/baseline/bit_reversal.h"
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

// From single points past every change of method; other lengths are refused. Nothing but the data changes.
TYPED_TEST(BitReversal, MovesEveryPointToItsMirrorImage) {
  using V = TypeParam;
  for (const index n : {0,   1,   2,    3,    4,    6,    8,    12,    16,    32,    64,    128,
                        256, 512, 1000, 1024, 2048, 4096, 8192, 16384, 32768, 65536, 131072}) {
    const bool fits = is_power_of_two(n);
    for (const index width : {1, 2}) {
      const auto before = noise<V>(width * n);
      for (const bool scaled : {false, true}) {
        auto wanted = before;
        for (index i = 0; fits && i < width * n; ++i) {
          const index from =
              width * mirrored(static_cast<std::uint32_t>(i / width), address_bits(n)) + i % width;
          wanted[static_cast<std::size_t>(i)] =
              before[static_cast<std::size_t>(from)] / static_cast<scalar<V>>(scaled ? n : 1);
        }
        signal<V> v(before, width == 2);
        v.delta = 7;
        EXPECT_EQ((scaled ? TWIN(i_bitrev_scale) : TWIN(i_bitrev))(&v), fits ? 0 : -1);
        EXPECT_TRUE(same_bits(v.values(), wanted)) << n << " points of " << width;
        EXPECT_EQ(v.delta, 7);
      }
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
      ASSERT_NE(p[0], p[1]);
      ASSERT_EQ(p[1], mirrored(p[0], bits));
      ++seen.at(p[0]);
      ++seen.at(p[1]);
    }
    EXPECT_LE(words, n) << "the list fits its storage";
    for (const std::uint32_t* p = fixed_point_list<T>(bits); *p != end_of_fixed_points; ++p) {
      ASSERT_EQ(*p, mirrored(*p, bits));
      ++seen.at(*p);
    }
    EXPECT_EQ(seen, std::vector<int>(n, 1)) << bits;
  }
}

TYPED_TEST(BitReversal, FailedListsLeaveTheRecordAlone) {
  using V = TypeParam;
  for (const auto operation : {TWIN(i_bitrev), TWIN(i_bitrev_scale)}) {
    const int lists = failures_before_success<failing_tables>([operation] {
      EXPECT_EQ(TWIN(_free_internal)(), 0);
      signal<V> v{0, 1, 2, 3, 4, 5, 6, 7};
      const auto before = v.values();
      const status outcome = operation(&v);
      EXPECT_NE(outcome == ok, v.values() == before);
      return outcome;
    });
    EXPECT_EQ(lists, operation == TWIN(i_bitrev) ? 1 : 2) << "one allocation for each list";
  }
}

}  // namespace
}  // namespace sigpak::test
