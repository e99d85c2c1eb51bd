// SPDX-License-Identifier: MIT
// Decimation of a stream, its phase kept from block to block.
#include "filters/streamed.h"

namespace sigpak::test {
namespace {

template <class V> class Decimate : public testing::Test {};
TYPED_TEST_SUITE(Decimate, records, record_names);

TYPED_TEST(Decimate, KeepsEveryPointOfThePhaseAndHandsItOn) {
  using V = TypeParam;
  struct {
    int factor;
    double start;
    std::initializer_list<double> kept;
    double next;
    double step;
  } const cases[] = {{3, 0, {0, 3, 6, 9}, 2, 3},
                     {3, 2, {2, 5, 8}, 1, 3},
                     {3, 1.6, {2, 5, 8}, 1, 3},
                     {3, 1.4, {1, 4, 7}, 0, 3},
                     {1, 0, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}, 0, 1},
                     {0, 8, {8, 9}, 0, 1},
                     {-5, 9, {9}, 0, 1},
                     {7, 10, {}, 0, 7},
                     {7, 25, {}, 15, 7},
                     {20, 4, {4}, 14, 20},
                     {4, -3, {0, 4, 8}, 2, 4},
                     {4, std::nan(""), {0, 4, 8}, 2, 4}};
  for (const auto& c : cases) {
    for (const bool in_place : {false, true}) {
      for (const bool lent : {false, true}) {
        signal<V> in{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
        in.delta = 0.5;
        if (lent) in.lend();
        signal<V> apart{7, 7, 7};
        V* const out = in_place ? static_cast<V*>(&in) : &apart;
        signal<V> state{c.start};
        ASSERT_EQ(TWIN(d_deci)(&in, out, c.factor, &state), 0);
        EXPECT_EQ(samples<V>(out->data, out->data + out->points), signal<V>(c.kept).values());
        EXPECT_EQ(out->delta, scalar<V>(0.5 * c.step));
        EXPECT_EQ(state.data[0], scalar<V>(c.next));
      }
    }
  }
}

TYPED_TEST(Decimate, AnySplitGivesTheWhole) {
  using V = TypeParam;
  const signal<V> in(noise<V>(2000), true);
  signal<V> whole;
  ASSERT_EQ(TWIN(d_deci)(&in, &whole, 7, nullptr), 0);
  for (const index block : {1, 3, 7, 10, 400}) {
    signal<V> state;
    const auto run = [&state](const V* part, V* out) { return TWIN(d_deci)(part, out, 7, &state); };
    EXPECT_EQ(in_blocks<V>(in, {block}, run), whole.values()) << block;
  }
}

}  // namespace
}  // namespace sigpak::test
