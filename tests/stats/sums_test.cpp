// SPDX-License-Identifier: MIT
// Sums in blocks, to the last bit, and what is made of them.
#include "stats/statistic.h"

namespace sigpak::test {
namespace {

template <class V> class Sums : public testing::Test {};
TYPED_TEST_SUITE(Sums, records, record_names);

TYPED_TEST(Sums, EveryBlockIsSummedInOrder) {
  using V = TypeParam;
  using T = scalar<V>;
  std::vector<index> sizes{0, 1, 2, 3, 7, 63};
  for (const index blocks : {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 31}) {
    for (const index around : {-1, 0, 1, 700}) sizes.push_back(2048 * blocks + around);
  }
  for_each_form<V>(sizes, [](signal<V>& v) {
    // Terms of very different magnitude, so that any other order of additions shows.
    for (index i = 0; i < scalars<V>(&v); ++i)
      v.data[i] = std::ldexp(v.data[i], static_cast<int>(i * 7 % 41) - 20);
    const auto& points = contents<V>(v).points;
    const auto n = static_cast<double>(std::max<std::size_t>(points.size(), 1));
    const auto stored = [&v](pair z) {
      samples<V> out{static_cast<T>(z.real()), static_cast<T>(z.imag())};
      out.resize(v.complex != 0 ? 2 : 1);
      return out;
    };
    const pair sum = plain_blocks(points, [](pair z) { return z; });
    const double squares = plain_blocks(points, [](pair z) { return pair(std::norm(z)); }).real();
    EXPECT_EQ(result_of<V>(TWIN(s_sum), v), stored(sum));
    EXPECT_EQ(result_of<V>(TWIN(s_mean), v), stored(sum * (1.0 / n)));
    EXPECT_EQ(result_of<V>(TWIN(s_magsq_sum), v), samples<V>{static_cast<T>(squares)});
    EXPECT_EQ(result_of<V>(TWIN(s_rms), v), samples<V>{static_cast<T>(std::sqrt(squares / n))});
  });
}

TYPED_TEST(Sums, ResultMayBeTheInput) {
  using V = TypeParam;
  signal<V> v({1, 2, 3, 6}, true);
  v.delta = scalar<V>(0.25);
  v.lend();
  ASSERT_EQ(TWIN(s_sum)(&v, &v), 0);
  EXPECT_EQ(v.delta, scalar<V>(0.25));
  EXPECT_EQ(v.values(), (samples<V>{4, 8}));
  EXPECT_EQ(v.lent(), (samples<V>{1, 2, 3, 6})) << "lent storage has no capacity that the result could use";
}

TYPED_TEST(Sums, SquaresAreLimitedSumsAreNot) {
  using V = TypeParam;
  constexpr double h = wide(huge<V>);
  const signal<V> v{3.0 * h, -2.0 * h};
  expect_values<V>(result_of<V>(TWIN(s_sum), v), {wide(v.data[0]) + wide(v.data[1])}, 0, "sum");
  expect_values<V>(result_of<V>(TWIN(s_magsq_sum), v), {2.0 * h * h}, 0, "squares");
  expect_values<V>(result_of<V>(TWIN(s_rms), v), {h}, 0, "root of the mean square");
  EXPECT_TRUE(std::isnan(result_of<V>(TWIN(s_magsq_sum), signal<V>({0, std::nan("")}, true))[0]));
}

}  // namespace
}  // namespace sigpak::test
