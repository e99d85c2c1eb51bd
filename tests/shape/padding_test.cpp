// Zeros appended, inserted and written over; points cut off.
#include <gtest/gtest.h>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Padding : public testing::Test {};
TYPED_TEST_SUITE(Padding, records, record_names);

constexpr int plain = 2;
constexpr int placements[] = {0x000, 0x100, 0x200, 0x300};

// Where point i of the shorter record lies in the longer one, from the rules of the placements.
index place(int placement, index longer, index shorter, index i) {
  switch (placement) {
    case 0x100:
      return i + (longer - shorter) / 2 + (longer % 2 == 0 && shorter % 2 == 1 ? 1 : 0);
    case 0x200:
      return i + longer - shorter;
    case 0x300:
      return i < (shorter + 1) / 2 ? i : i + longer - shorter;
    default:
      return i;
  }
}

TYPED_TEST(Padding, ZeroClearsEveryScalarAndKeepsTheShape) {
  using V = TypeParam;
  for (const bool complex : {false, true}) {
    auto values = awkward<V>();
    values.resize(16);
    signal<V> v(values, complex);
    const auto points = v.points;
    v.delta = 3;
    ASSERT_EQ(TWIN(i_zero)(&v), 0);
    EXPECT_EQ(v.points, points);
    EXPECT_EQ(v.complex, complex ? 1 : 0);
    EXPECT_EQ(v.delta, 3);
    for (const auto x : v.values()) EXPECT_TRUE(x == 0 && !std::signbit(x));
  }
}

TYPED_TEST(Padding, InterleavedZerosFollowEveryPoint) {
  using V = TypeParam;
  for (const index n : edge_sizes()) {
    for (const bool complex : {false, true}) {
      for (const bool lent : {false, true}) {
        const index width = complex ? 2 : 1;
        signal<V> v(noise<V>(n * width), complex);
        v.delta = 3;
        if (lent) v.lend();
        const auto before = v.values();
        ASSERT_EQ(TWIN(i_zinter)(&v), 0);
        ASSERT_EQ(v.points, 2 * n);
        ASSERT_EQ(v.delta, scalar<V>(1.5));
        ASSERT_EQ(v.complex, complex ? 1 : 0);
        for (index i = 0; i < 2 * n * width; ++i) {
          const index point = i / width;
          const auto source = static_cast<std::size_t>(point / 2 * width + i % width);
          ASSERT_EQ(v.data[i], point % 2 == 0 ? before[source] : scalar<V>(0)) << n << ' ' << i;
        }
      }
    }
  }
}

TYPED_TEST(Padding, PlacedPaddingAndCuttingFollowTheRulesAndUndoEachOther) {
  using V = TypeParam;
  for (const int placement : placements) {
    for (const bool complex : {false, true}) {
      const index width = complex ? 2 : 1;
      for (index shorter = 0; shorter <= 9; ++shorter) {
        for (index longer = shorter; longer <= 20; ++longer) {
          signal<V> v(noise<V>(shorter * width), complex);
          if (longer % 2 != 0) v.lend();
          const auto before = v.values();
          ASSERT_EQ(TWIN(i_zpad2)(&v, static_cast<std::int32_t>(longer), placement | plain), 0);
          ASSERT_EQ(v.points, longer);
          samples<V> wanted(static_cast<std::size_t>(longer * width));
          for (index i = 0; i < shorter * width; ++i) {
            const index at = place(placement, longer, shorter, i / width) * width + i % width;
            wanted[static_cast<std::size_t>(at)] = before[static_cast<std::size_t>(i)];
          }
          ASSERT_EQ(v.values(), wanted) << placement << ' ' << shorter << ' ' << longer;
          ASSERT_EQ(TWIN(i_unzpad)(&v, static_cast<std::int32_t>(shorter), placement | plain), 0);
          ASSERT_EQ(v.values(), before) << placement << ' ' << shorter << ' ' << longer;
        }
      }
    }
  }
}

TYPED_TEST(Padding, CuttingKeepsThePointsThatPaddingWouldPlace) {
  using V = TypeParam;
  const auto before = noise<V>(300);
  for (const int placement : placements) {
    for (const std::int32_t n : {0, 1, 2, 7, 8, 149, 299}) {
      signal<V> v(before);
      ASSERT_EQ(TWIN(i_unzpad)(&v, n, placement | plain), 0);
      ASSERT_EQ(v.points, static_cast<std::uint32_t>(n));
      for (index i = 0; i < n; ++i) {
        ASSERT_EQ(v.data[i], before[static_cast<std::size_t>(place(placement, 300, n, i))]) << placement;
      }
    }
  }
}

TYPED_TEST(Padding, ScaleIsTheRatioOfTheLengthsOrItsRoot) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const int placement : placements) {
    for (const bool complex : {false, true}) {
      for (const int mode : {0, 1, 2}) {
        for (const bool growing : {true, false}) {
          const std::int32_t before = growing ? 6 : 13;
          const std::int32_t after = growing ? 13 : 6;
          signal<V> plain_record(noise<V>(before * (complex ? 2 : 1)), complex);
          signal<V> v(plain_record.values(), complex);
          const auto change = growing ? TWIN(i_zpad2) : TWIN(i_unzpad);
          ASSERT_EQ(change(&plain_record, after, placement | plain), 0);
          ASSERT_EQ(change(&v, after, placement | mode | 0x7ffff800), 0);
          const double ratio = static_cast<double>(after) / static_cast<double>(before);
          const auto factor = static_cast<T>(mode == 0 ? ratio : mode == 1 ? std::sqrt(ratio) : 1.0);
          auto wanted = plain_record.values();
          for (auto& x : wanted) x *= factor;
          EXPECT_EQ(v.values(), wanted) << placement << ' ' << mode << ' ' << growing;
        }
      }
    }
  }
}

TYPED_TEST(Padding, BadFlagsAreRefusedAfterGrowthButBeforeACut) {
  using V = TypeParam;
  for (const int flags : {3, 0x303, 0x400, 0x502, 0x700, 0x703}) {
    signal<V> v{1, 2, 3, 4, 5};
    EXPECT_EQ(TWIN(i_zpad2)(&v, 5, flags), 0) << "nothing to do";
    EXPECT_EQ(TWIN(i_unzpad)(&v, 10, flags), 0) << "nothing to do";
    EXPECT_EQ(TWIN(i_unzpad)(&v, 2, flags), -1);
    EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4, 5}));
    EXPECT_EQ(TWIN(i_zpad2)(&v, 8, flags), -1);
    EXPECT_EQ(v.points, 8U);
    EXPECT_EQ(v.data[4], 5);
  }
}

TYPED_TEST(Padding, NegativeLengths) {
  using V = TypeParam;
  signal<V> v{1, 2, 3};
  EXPECT_EQ(TWIN(i_zpad2)(&v, -1, plain), 0);
  EXPECT_EQ(v.points, 3U);
  EXPECT_EQ(TWIN(i_unzpad)(&v, -1, 0x300), 0);
  EXPECT_EQ(v.points, 0U);
  v.points = 0x80000000U;
  EXPECT_EQ(TWIN(i_unzpad)(&v, 0, 3), 0);
  EXPECT_EQ(v.points, 0x80000000U);
  EXPECT_EQ(TWIN(i_zpad2)(&v, 2, 0), 0);
  EXPECT_EQ(v.values(), (samples<V>{0, 0}));
}

TYPED_TEST(Padding, FailedGrowthLeavesTheNewShape) {
  using V = TypeParam;
  const failing_records<V> three(3);
  signal<V> padded{1, 2};
  signal<V> placed{1, 2};
  signal<V> interleaved{1, 2};
  EXPECT_EQ(TWIN(i_zpad)(&padded, 4), -1);
  EXPECT_EQ(TWIN(i_zpad2)(&placed, 4, 0), -1);
  EXPECT_EQ(TWIN(i_zinter)(&interleaved), -1);
  EXPECT_EQ(interleaved.delta, scalar<V>(0.5));
  for (V* v : {static_cast<V*>(&padded), static_cast<V*>(&placed), static_cast<V*>(&interleaved)}) {
    EXPECT_EQ(v->points, 4U);
    EXPECT_EQ(v->data, nullptr);
  }
}

TYPED_TEST(Padding, UncountableLengthsFail) {
  using V = TypeParam;
  signal<V> owner{1, 2};
  V v{.delta = 1, .data = owner.data, .alloc = 0, .points = 0x7fffffff, .complex = 0, .reserved = 0};
  EXPECT_EQ(TWIN(i_zinter)(&v), -1);
  EXPECT_EQ(v.points, 0xfffffffeU);
  EXPECT_EQ(v.data, nullptr);
}

}  // namespace
}  // namespace sigpak::test
