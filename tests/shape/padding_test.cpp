// SPDX-License-Identifier: MIT
// Zeros appended, inserted and written over; points cut off.
#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Padding : public testing::Test {};
TYPED_TEST_SUITE(Padding, records, record_names);

// Where point i of the shorter record lies in the longer one, from the rules of the placements.
std::size_t place(int placement, std::size_t longer, std::size_t shorter, std::size_t i) {
  const std::size_t gap = longer - shorter;
  if (placement == 0x100) return i + gap / 2 + (longer % 2 == 0 && shorter % 2 == 1 ? 1 : 0);
  if (placement == 0x200) return i + gap;
  return placement == 0x300 && i >= (shorter + 1) / 2 ? i + gap : i;
}

TYPED_TEST(Padding, PlacedPaddingAndCuttingFollowTheRules) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const int placement : {0x000, 0x100, 0x200, 0x300}) {
    for (const int mode : {0, 1, 2}) {
      for (const std::int32_t n : {-1, 0, 1, 2, 5, 6, 7, 13, 20, 299}) {
        const std::int32_t flags = placement | mode | 0x7ffff800;  // the upper bits say nothing
        SCOPED_TRACE(testing::Message() << flags << " to " << n);
        const auto model = [=](contents<V>& c, bool grows) {
          const auto before = c.points;
          const auto target = static_cast<std::size_t>(std::max(n, 0));
          if (grows ? before.size() >= target : before.size() <= target) return;
          const double ratio = static_cast<double>(target) / static_cast<double>(before.size());
          const auto factor = static_cast<T>(mode == 0 ? ratio : mode == 1 ? std::sqrt(ratio) : 1.0);
          c.points.assign(target, 0);
          for (std::size_t i = 0; i < std::min(target, before.size()); ++i) {
            const auto at =
                place(placement, std::max(target, before.size()), std::min(target, before.size()), i);
            c.points[grows ? at : i] = before[grows ? i : at] * factor;
          }
        };
        const std::vector<index> sizes = {0, 1, 2, 3, 6, 7, 8, 9, 20, 21, 300};
        expect_in_place<V>([=](V* v) { return TWIN(i_zpad2)(v, n, flags); },
                           [=](contents<V>& c) { model(c, true); }, sizes);
        expect_in_place<V>([=](V* v) { return TWIN(i_unzpad)(v, n, flags); },
                           [=](contents<V>& c) { model(c, false); }, sizes);
      }
    }
  }
}

TYPED_TEST(Padding, InterleavedZerosFollowEveryPoint) {
  using V = TypeParam;
  expect_in_place<V>(TWIN(i_zinter), [](contents<V>& c) {
    c.delta /= 2;
    const auto before = std::exchange(c.points, {});
    for (const auto& z : before) c.points.insert(c.points.end(), {z, 0});
  });
}

TYPED_TEST(Padding, ZeroClearsEveryScalarAndKeepsTheShape) {
  using V = TypeParam;
  expect_in_place<V>(TWIN(i_zero), [](contents<V>& c) { c.points.assign(c.points.size(), 0); });
  signal<V> v(awkward<V>(), true);
  TWIN(i_zero)(&v);
  for (const auto x : v.values()) EXPECT_TRUE(x == 0 && !std::signbit(x));
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
  V negative{.delta = 1, .data = nullptr, .alloc = 0, .points = 0x80000000U, .complex = 0, .reserved = 0};
  EXPECT_EQ(TWIN(i_unzpad)(&negative, 0, 3), 0) << "nothing to do";
  EXPECT_EQ(negative.points, 0x80000000U);
}

TYPED_TEST(Padding, FailedGrowthLeavesTheNewShape) {
  using V = TypeParam;
  for (const int operation : {0, 1, 2}) {
    signal<V> v{1, 2};
    const failing_records none(0);
    EXPECT_EQ(operation == 0   ? TWIN(i_zpad)(&v, 4)
              : operation == 1 ? TWIN(i_zpad2)(&v, 4, 0)
                               : TWIN(i_zinter)(&v),
              -1);
    EXPECT_EQ(v.points, 4U);
    EXPECT_EQ(v.data, nullptr);
    EXPECT_EQ(v.delta, operation == 2 ? scalar<V>(0.5) : 1);
  }
  signal<V> owner{1, 2};
  V vast{.delta = 1, .data = owner.data, .alloc = 0, .points = 0x7fffffff, .complex = 0, .reserved = 0};
  EXPECT_EQ(TWIN(i_zinter)(&vast), -1) << "more points than can be counted";
  EXPECT_EQ(vast.points, 0xfffffffeU);
  EXPECT_EQ(vast.data, nullptr);
}

}  // namespace
}  // namespace sigpak::test
