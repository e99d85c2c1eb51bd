// SPDX-License-Identifier: MIT
// Reversal, rotation, dropping of leading points, random permutation.
#include <cstdlib>

#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Order : public testing::Test {};
TYPED_TEST_SUITE(Order, records, record_names);

TYPED_TEST(Order, ReversalAndRotationMoveEveryPointToItsPlace) {
  using V = TypeParam;
  using C = contents<V>;
  expect_in_place<V>(TWIN(i_rev), [](C& c) { std::reverse(c.points.begin(), c.points.end()); });
  expect_in_place<V>(TWIN(i_swap_halves), [](C& c) {
    std::rotate(c.points.begin(), c.points.end() - std::ssize(c.points) / 2, c.points.end());
  });
  expect_in_place<V>(TWIN(i_swap_halves2), [](C& c) {
    std::rotate(c.points.begin(), c.points.begin() + std::ssize(c.points) / 2, c.points.end());
  });
}

TYPED_TEST(Order, ShiftDropsLeadingPointsWithoutAllocating) {
  using V = TypeParam;
  for (const std::uint32_t n : {0U, 1U, 5U, 9U, 10U, 11U, 0x7fffffffU, 0x80000000U, 0xffffffffU}) {
    const auto run = [n](V* v) {
      const failing_records none(0);
      return TWIN(i_shift)(v, n);
    };
    expect_in_place<V>(
        run, [n](contents<V>& c) { c.points.erase(c.points.begin(), c.points.begin() + std::min(n, 10U)); },
        {10});
  }
}

// From the formula of the 31-bit integer.
index drawn() {
  const int a = std::rand();
  const int b = std::rand();
  return ((a & 0x7FFF) << 16) | ((b & 1) << 15) | (std::rand() & 0x7FFF);
}

TYPED_TEST(Order, ShuffleSwapsAsDrawnAndDrawsNoMore) {
  using V = TypeParam;
  signal<V> first{1, 2};
  TWIN(i_shuffle)(&first);  // the library has seeded its generator; the seed is ours from here
  int next = 0;
  const auto run = [&next](V* v) {
    std::srand(v->points);
    const status s = TWIN(i_shuffle)(v);
    next = std::rand();
    return s;
  };
  const auto model = [&next](contents<V>& c) {
    const index n = std::ssize(c.points);
    std::srand(static_cast<unsigned>(n));
    for (auto p = c.points.begin(); c.points.end() - p > 1; ++p) {
      std::swap(*p, *(p + drawn() % (c.points.end() - p)));
    }
    EXPECT_EQ(std::rand(), next);
  };
  expect_in_place<V>(run, model, {0, 1, 2, 3, 50, 1000});
}

TYPED_TEST(Order, EmptyAndNegativeCountsAreLeftAlone) {
  using V = TypeParam;
  expect_empty_untouched<V>({TWIN(i_rev), TWIN(i_sort), TWIN(i_shuffle), TWIN(i_swap_halves),
                             TWIN(i_swap_halves2), TWIN(i_differ), TWIN(i_integ), TWIN(i_pdiffer),
                             [](V* v) { return TWIN(i_edge)(v, 3, 0); }});
  V negative{.delta = 1, .data = nullptr, .alloc = 0, .points = 0x80000000U, .complex = 0, .reserved = 0};
  EXPECT_EQ(TWIN(i_shift)(&negative, 1), 0);
  EXPECT_EQ(negative.points, 0U);
}

}  // namespace
}  // namespace sigpak::test
