// SPDX-License-Identifier: MIT
// Creating, sizing, growing and releasing storage.
#include "support/failing.h"
#include "support/forms.h"

#ifdef __GLIBC__
#include <malloc.h>
#include <sys/resource.h>
#endif

namespace sigpak::test {
namespace {

template <class V> class Storage : public testing::Test {};
TYPED_TEST_SUITE(Storage, records, record_names);

TYPED_TEST(Storage, InitAndDestroyGiveTheSameRecord) {
  using V = TypeParam;
  V v{.delta = 5, .data = nullptr, .alloc = 7, .points = 3, .complex = 1, .reserved = 9};
  EXPECT_EQ(TWIN(_init)(&v), 0);
  for (const bool used : {false, true}) {
    if (used) {
      v = {.delta = 5, .data = nullptr, .alloc = 0, .points = 4, .complex = 1, .reserved = 9};
      EXPECT_EQ(TWIN(_alloc)(&v), 0);
      EXPECT_EQ(TWIN(_destroy)(&v), 0);
    }
    EXPECT_EQ(v.delta, 1);
    EXPECT_EQ(v.data, nullptr);
    EXPECT_EQ(v.alloc, 0);
    EXPECT_EQ(v.points, 0U);
    EXPECT_EQ(v.complex, 0);
    EXPECT_EQ(v.reserved, 0U);
  }
}

TYPED_TEST(Storage, CapacityGrowsToTheExactNeedAndNeverShrinks) {
  using V = TypeParam;
  signal<V> v;
  EXPECT_EQ(TWIN(_alloc)(&v), 0);
  EXPECT_EQ(v.data, nullptr) << "no points, no storage";
  v.points = 10;
  v.complex = 2;
  ASSERT_EQ(TWIN(_alloc)(&v), 0);
  EXPECT_EQ(v.alloc, 20);
  auto* const data = v.data;
  v.data[3] = 42;
  v.points = 15;
  v.complex = 0;
  EXPECT_EQ(TWIN(_alloc)(&v), 0);
  EXPECT_EQ(v.data, data);
  EXPECT_EQ(v.alloc, 20);
  v.points = 21;
  EXPECT_EQ(TWIN(_realloc)(&v, 15, 0), 0);
  EXPECT_EQ(v.alloc, 21);
  EXPECT_EQ(v.data[3], 42);
}

// Records that grow in turn drive each other about the heap; the largest are mappings.
TYPED_TEST(Storage, LargeBlocksBeginAtALineHoweverTheyGrow) {
  using V = TypeParam;
  constexpr std::uint32_t first = worth_a_line / sizeof(scalar<V>);
  signal<V> both[2];
  for (std::uint32_t points = first; points < 8U << 20; points += points / 3) {
    for (signal<V>& v : both) {
      const std::uint32_t old = v.points;
      v.points = points;
      ASSERT_EQ(TWIN(_realloc)(&v, old, 0), 0);
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(v.data) % 64, 0U) << points;
      for (std::uint32_t i = 0; i < old; i += 37) ASSERT_EQ(v.data[i], static_cast<scalar<V>>(i)) << points;
      for (std::uint32_t i = 0; i < points; ++i) v.data[i] = static_cast<scalar<V>>(i);
    }
  }
}

TYPED_TEST(Storage, LentStorageIsCopiedOutWhenItMustGrow) {
  using V = TypeParam;
  struct {
    std::uint32_t points;
    std::int32_t old_complex;
    std::size_t kept;
  } const cases[] = {{8, 0, 6}, {8, 1, 8}, {20, 1, 12}, {3, 0, 3}};
  for (const auto& c : cases) {
    for (const bool keep : {true, false}) {
      signal<V> v(noise<V>(12));
      v.lend();
      v.alloc = -3;
      const auto before = v.lent();
      v.points = c.points;
      ASSERT_EQ(keep ? TWIN(_realloc)(&v, 6, c.old_complex) : TWIN(_alloc)(&v), 0);
      EXPECT_NE(v.data, v.lent().data());
      EXPECT_EQ(v.alloc, static_cast<std::int32_t>(c.points));
      EXPECT_TRUE(!keep || std::equal(v.data, v.data + c.kept, before.begin()));
      EXPECT_EQ(v.lent(), before);
    }
  }
}

TYPED_TEST(Storage, AFailedOrUncountableSizingLeavesNoStorage) {
  using V = TypeParam;
  for (const std::uint32_t points : {4U, 0x40000000U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
    for (const bool keep : {false, true}) {
      signal<V> v{1, 2, 3};
      const failing_records rest(points == 4 ? 0 : 1);
      v.points = points;
      v.complex = 1;
      EXPECT_EQ(keep ? TWIN(_realloc)(&v, 3, 0) : TWIN(_alloc)(&v), -1) << points;
      EXPECT_EQ(v.data, nullptr);
      EXPECT_EQ(v.alloc, 0);
      EXPECT_EQ(v.points, points);
      v.points = 0;
    }
  }
}

#ifdef __GLIBC__

// More than the process may address, in a child of it; what the heap counts tells of a block that was kept.
TYPED_TEST(Storage, AFailedGrowthGivesTheOldBlockBack) {
  using V = TypeParam;
  if (watched()) GTEST_SKIP() << "there the allocator ends the process";
  const auto grow = [] {
    const auto in_use = [] { return mallinfo2().hblkhd + mallinfo2().uordblks; };
    const std::size_t before = in_use();
    V v{.delta = 1, .data = nullptr, .alloc = 0, .points = 1 << 20, .complex = 0, .reserved = 0};
    const bool held = TWIN(_alloc)(&v) == 0 && in_use() > before + (1 << 20);
    constexpr rlimit four_gigabytes = {std::uint64_t{4} << 30, std::uint64_t{4} << 30};
    setrlimit(RLIMIT_AS, &four_gigabytes);
    void* volatile const beyond = std::malloc(std::size_t{5} << 30);
    if (beyond != nullptr) std::_Exit(0);  // an emulator, which knows no limit
    v.points = std::numeric_limits<std::int32_t>::max();
    const bool refused = TWIN(_realloc)(&v, 1 << 20, 0) == -1 && v.data == nullptr && v.alloc == 0;
    std::_Exit(held && refused && in_use() < before + (1 << 20) ? 0 : 1);
  };
  EXPECT_EXIT(grow(), testing::ExitedWithCode(0), "");
}

#endif

TYPED_TEST(Storage, PadAppendsZerosAndNeverShortens) {
  using V = TypeParam;
  for (const std::int32_t n : {-1, 1, 4, 9}) {
    expect_in_place<V>([n](V* v) { return TWIN(i_zpad)(v, n); },
                       [n](contents<V>& c) {
                         if (n > 4) c.points.resize(9);
                       },
                       {4});
  }
}

}  // namespace
}  // namespace sigpak::test
