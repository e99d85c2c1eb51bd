// Copying and appending.
#include <gtest/gtest.h>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Copy : public testing::Test {};
TYPED_TEST_SUITE(Copy, records, record_names);

TYPED_TEST(Copy, TakesShapeSpacingAndPointsButNotTheReservedWord) {
  using V = TypeParam;
  signal<V> src(noise<V>(10), true);
  src.delta = 0.5;
  src.reserved = 1;
  struct {
    std::int32_t count;
    std::uint32_t points;
  } const cases[] = {{-1, 0}, {0, 0}, {3, 3}, {5, 5}, {9, 5}};
  for (const auto& c : cases) {
    signal<V> dst{7, 7, 7};
    dst.reserved = 2;
    ASSERT_EQ(TWIN(_copy_at_most)(&dst, &src, c.count), 0);
    EXPECT_EQ(dst.points, c.points);
    EXPECT_EQ(dst.complex, 1);
    EXPECT_EQ(dst.delta, scalar<V>(0.5));
    EXPECT_EQ(dst.reserved, 2U);
    auto wanted = src.values();
    wanted.resize(2 * c.points);
    EXPECT_EQ(dst.values(), wanted);
  }
  signal<V> whole;
  ASSERT_EQ(TWIN(_copy)(&whole, &src), 0);
  EXPECT_EQ(whole.values(), src.values());
  EXPECT_NE(whole.data, src.data);
}

TYPED_TEST(Copy, OntoItselfChangesNothing) {
  using V = TypeParam;
  for (const bool lent : {false, true}) {
    signal<V> v(noise<V>(6), true);
    if (lent) v.lend();
    const auto before = v.values();
    EXPECT_EQ(TWIN(_copy)(&v, &v), 0);
    EXPECT_EQ(v.values(), before);
    EXPECT_EQ(TWIN(_copy_at_most)(&v, &v, 2), 0);
    EXPECT_EQ(v.points, 2U);
    EXPECT_EQ(v.data[3], before[3]);
  }
}

TYPED_TEST(Copy, FailsWithoutStorage) {
  using V = TypeParam;
  signal<V> src{1, 2, 3};
  signal<V> dst;
  const failing_records<V> none(0);
  EXPECT_EQ(TWIN(_copy)(&dst, &src), -1);
  EXPECT_EQ(TWIN(_append)(&dst, &src), -1);
  dst.points = 0;
}

TYPED_TEST(Copy, AppendJoinsEveryPairOfForms) {
  using V = TypeParam;
  struct {
    std::initializer_list<double> dst;
    bool dst_complex;
    std::initializer_list<double> src;
    bool src_complex;
    std::initializer_list<double> wanted;
    bool complex;
  } const cases[] = {{{1, 2}, false, {3}, false, {1, 2, 3}, false},
                     {{1, 2}, false, {3, 4}, true, {1, 0, 2, 0, 3, 4}, true},
                     {{1, 2}, true, {3, 4}, false, {1, 2, 3, 0, 4, 0}, true},
                     {{1, 2}, true, {3, 4}, true, {1, 2, 3, 4}, true},
                     {{}, false, {3, 4}, true, {3, 4}, true},
                     {{1}, false, {}, false, {1}, false}};
  for (const auto& c : cases) {
    for (const bool lent : {false, true}) {
      signal<V> dst(c.dst, c.dst_complex);
      const signal<V> src(c.src, c.src_complex);
      const signal<V> wanted(c.wanted, c.complex);
      dst.delta = 3;
      if (lent) dst.lend();
      ASSERT_EQ(TWIN(_append)(&dst, &src), 0);
      EXPECT_EQ(dst.complex != 0, c.complex);
      EXPECT_EQ(dst.values(), wanted.values());
      EXPECT_EQ(dst.delta, 3);
    }
  }
}

TYPED_TEST(Copy, AppendRefusesTheSameRecordAndAnUncountableLength) {
  using V = TypeParam;
  signal<V> v{1, 2};
  EXPECT_EQ(TWIN(_append)(&v, &v), -1);
  EXPECT_EQ(v.values(), (samples<V>{1, 2}));
  V huge_source{.delta = 1, .data = v.data, .alloc = 0, .points = 0x7fffffff, .complex = 0, .reserved = 0};
  signal<V> dst{1, 2};
  EXPECT_EQ(TWIN(_append)(&dst, &huge_source), -1);
  EXPECT_EQ(dst.data, nullptr);
  dst.points = 0;
}

}  // namespace
}  // namespace sigpak::test
