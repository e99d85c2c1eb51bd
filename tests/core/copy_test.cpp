// SPDX-License-Identifier: MIT
// Copying, appending and ordering.
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Copy : public testing::Test {};
TYPED_TEST_SUITE(Copy, records, record_names);

TYPED_TEST(Copy, TakesShapeSpacingAndPointsButNotTheReservedWord) {
  using V = TypeParam;
  for (const std::int32_t count : {-1, 0, 3, 5, 9}) {
    for_each_form<V>({5}, [count](signal<V>& src) {
      contents<V> wanted(src);
      signal<V> dst{7, 7, 7};
      dst.reserved = 2;
      ASSERT_EQ(TWIN(_copy)(&dst, &src), 0);
      expect_equal(contents<V>(dst), wanted);
      EXPECT_NE(dst.data, src.data);
      ASSERT_EQ(TWIN(_copy)(&src, &src), 0);
      expect_equal(contents<V>(src), wanted);
      ASSERT_EQ(TWIN(_copy_at_most)(&dst, &src, count), 0);
      ASSERT_EQ(TWIN(_copy_at_most)(&src, &src, count), 0);
      wanted.points.resize(static_cast<std::size_t>(std::clamp(count, 0, 5)));
      expect_equal(contents<V>(dst), wanted);
      expect_equal(contents<V>(src), wanted);
      EXPECT_EQ(dst.reserved, 2U);
    });
  }
}

// A copy moves out of storage that its source lent it; storage that it owns and lends to the source stays.
TYPED_TEST(Copy, IsIndependentOfTheSourceWhateverItWasLent) {
  using V = TypeParam;
  for (const bool owned : {false, true}) {
    for (const std::int32_t count : {-1, 0, 2, 4}) {
      signal<V> storage{1, 2, 3, 4};
      V view = storage;
      view.alloc = owned ? 0 : -1;
      V* const dst = owned ? &storage : &view;
      const V* const src = owned ? &view : &storage;
      ASSERT_EQ(count == 4 ? TWIN(_copy)(dst, src) : TWIN(_copy_at_most)(dst, src, count), 0);
      EXPECT_EQ(dst->points, static_cast<std::uint32_t>(std::max(count, 0)));
      EXPECT_EQ(dst->data == src->data, owned);
      if (owned) continue;
      ASSERT_EQ(TWIN(u_subvec)(&storage, &view, 1, 3), 0);
      EXPECT_EQ(storage.values(), (samples<V>{1, 2, 3, 4}));
      TWIN(_destroy)(&view);
    }
  }
}

TYPED_TEST(Copy, OntoItselfKeepsANegativeCount) {
  using V = TypeParam;
  signal<V> v{1, 2};
  for (const std::uint32_t points : {0x80000000U, 0xfffffffdU}) {
    v.points = points;
    EXPECT_EQ(TWIN(_copy)(&v, &v), 0);
    EXPECT_EQ(v.points, points);
  }
}

TYPED_TEST(Copy, AppendJoinsEveryPairOfForms) {
  using V = TypeParam;
  for_each_form<V>({0, 3}, [](signal<V>& src) {
    expect_in_place<V>([&src](V* v) { return TWIN(_append)(v, &src); },
                       [&src](contents<V>& c) {
                         const contents<V> more(src);
                         c.points.insert(c.points.end(), more.points.begin(), more.points.end());
                         c.complex = c.complex || more.complex;
                       },
                       {0, 1, 2});
    signal<V> v{1, 2};
    EXPECT_EQ(TWIN(_append)(&v, &v), -1);
    EXPECT_EQ(v.values(), (samples<V>{1, 2}));
  });
}

TYPED_TEST(Copy, WhatIsTooLongToCountIsNotAppended) {
  using V = TypeParam;
  scalar<V> cell = 0;
  const V vast{.delta = 1, .data = &cell, .alloc = 0, .points = 0x7fffffff, .complex = 0, .reserved = 0};
  signal<V> dst{1, 2};
  EXPECT_EQ(TWIN(_append)(&dst, &vast), -1);
  EXPECT_EQ(dst.data, nullptr);
  dst.points = 0;
}

TYPED_TEST(Copy, TheFirstDifferenceBeyondTheToleranceOrders) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  struct {
    samples<V> a;
    bool a_complex;
    samples<V> b;
    bool b_complex;
    T tolerance;
    int order;
  } const cases[] = {{{1, 2, 3}, false, {1, 2, 3}, false, 0, 0}, {{1, 3, 0}, false, {1, 2, 9}, false, 0, 1},
                     {{1, 2}, false, {1, 2.5}, false, 0.5, 0},   {{1, 2}, false, {1, 2.5}, false, 0.25, -1},
                     {{1, 2}, true, {1, 3}, true, 0, -1},        {{1}, false, {1, 2}, true, 0, -1},
                     {{1}, false, {1, -2}, true, 0, 1},          {{2}, false, {1, 9}, true, 0, 1},
                     {{1, 2}, true, {1}, false, 0, 1},           {{1, -2}, true, {1}, false, 0, -1},
                     {{1, -2}, true, {1}, false, 2, 0},          {{nan, 2}, false, {1, 1}, false, 0, 1},
                     {{nan}, false, {1}, false, 0, 0},           {{}, false, {}, true, 0, 0}};
  for (const auto& c : cases) {
    signal<V> a(c.a, c.a_complex);
    const signal<V> b(c.b, c.b_complex);
    std::int32_t order = 5;
    ASSERT_EQ(TWIN(_cmp)(&a, &b, c.tolerance, &order), 0);
    EXPECT_EQ(order, c.order) << &c - cases;
    for (const T delta : {T(4), T(-4)}) {  // the spacing comes first
      a.delta = delta;
      ASSERT_EQ(TWIN(_cmp)(&a, &b, c.tolerance, &order), 0);
      EXPECT_EQ(order, delta > 0 ? 1 : -1);
    }
    a.points += 1;
    EXPECT_EQ(TWIN(_cmp)(&a, &b, T(9), &order), -1) << "lengths must agree";
    EXPECT_EQ(order, -1);
    a.points = 0;
  }
}

TYPED_TEST(Copy, OfLongRecordsTheFirstDifferenceIsFoundAtAnyPlace) {
  using V = TypeParam;
  using T = scalar<V>;
  for_each_form<V>({31, 32, 33, 70}, [](signal<V>& a) {
    samples<V> values = a.values();
    const T nan = std::numeric_limits<T>::quiet_NaN();
    const auto order_to = [&](T tolerance) {
      signal<V> b(values, a.complex != 0);
      b.delta = a.delta;
      std::int32_t order = 5;
      EXPECT_EQ(TWIN(_cmp)(&a, &b, tolerance, &order), 0);
      return order;
    };
    for (std::size_t place = 0; place < values.size(); ++place) {
      values = a.values();
      values[place] += T(8);
      values.back() -= place + 1 < values.size() ? T(8) : T(0);
      EXPECT_EQ(order_to(0), -1) << place;
      EXPECT_EQ(order_to(9), 0) << place;
      values[place] = nan;  // as good as equal
      EXPECT_EQ(order_to(0), place + 1 < values.size() ? 1 : 0) << place;
    }
  });
}

}  // namespace
}  // namespace sigpak::test
