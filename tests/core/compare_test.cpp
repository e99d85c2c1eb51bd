// Ordering of records.
#include <gtest/gtest.h>

#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Compare : public testing::Test {};
TYPED_TEST_SUITE(Compare, records, record_names);

TYPED_TEST(Compare, FirstDifferenceBeyondTheToleranceDecides) {
  using V = TypeParam;
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  struct {
    std::initializer_list<double> a;
    bool a_complex;
    std::initializer_list<double> b;
    bool b_complex;
    double tolerance;
    int order;
  } const cases[] = {{{1, 2, 3}, false, {1, 2, 3}, false, 0, 0}, {{1, 3, 0}, false, {1, 2, 9}, false, 0, 1},
                     {{1, 2}, false, {1, 2.5}, false, 0.5, 0},   {{1, 2}, false, {1, 2.5}, false, 0.25, -1},
                     {{1, 2}, true, {1, 3}, true, 0, -1},        {{1}, false, {1, 2}, true, 0, -1},
                     {{1}, false, {1, -2}, true, 0, 1},          {{2}, false, {1, 9}, true, 0, 1},
                     {{1, 2}, true, {1}, false, 0, 1},           {{1, -2}, true, {1}, false, 0, -1},
                     {{1, -2}, true, {1}, false, 2, 0},          {{nan, 2}, false, {1, 1}, false, 0, 1},
                     {{nan}, false, {1}, false, 0, 0},           {{}, false, {}, true, 0, 0}};
  for (const auto& c : cases) {
    const signal<V> a(c.a, c.a_complex);
    const signal<V> b(c.b, c.b_complex);
    std::int32_t order = 5;
    ASSERT_EQ(TWIN(_cmp)(&a, &b, static_cast<scalar<V>>(c.tolerance), &order), 0);
    EXPECT_EQ(order, c.order);
  }
}

TYPED_TEST(Compare, SpacingComesFirstAndLengthsMustAgree) {
  using V = TypeParam;
  signal<V> a{1, 2};
  signal<V> b{5, 6};
  std::int32_t order = 5;
  a.delta = 2;
  ASSERT_EQ(TWIN(_cmp)(&a, &b, scalar<V>(0.5), &order), 0);
  EXPECT_EQ(order, 1);
  ASSERT_EQ(TWIN(_cmp)(&b, &a, scalar<V>(0.5), &order), 0);
  EXPECT_EQ(order, -1);
  const signal<V> shorter{1};
  order = 5;
  EXPECT_EQ(TWIN(_cmp)(&a, &shorter, scalar<V>(9), &order), -1);
  EXPECT_EQ(order, 5);
  EXPECT_EQ(TWIN(_cmp)(&a, &a, scalar<V>(0), &order), 0);
  EXPECT_EQ(order, 0);
}

}  // namespace
}  // namespace sigpak::test
