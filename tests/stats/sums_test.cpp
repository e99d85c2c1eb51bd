// Sums in blocks, to the last bit, and what is made of them.
#include <gtest/gtest.h>

#include "stats/wide.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Sums : public testing::Test {};
TYPED_TEST_SUITE(Sums, records, record_names);

// The definition, transcribed: blocks of 2048 points from zero, each then added to the total.
template <class Term> double plain_blocks(index points, Term term) {
  double total = 0;
  for (index begin = 0; begin < points; begin += 2048) {
    double block = 0;
    for (index i = begin; i < std::min(points, begin + 2048); ++i) block += term(i);
    total += block;
  }
  return total;
}

std::vector<index> block_sizes() {
  std::vector<index> sizes{0, 1, 2, 3, 7, 63};
  for (const index blocks : {1, 2, 3, 4, 5, 7, 8, 9, 15, 16, 31}) {
    for (const index around : {-1, 0, 1, 700}) sizes.push_back(2048 * blocks + around);
  }
  return sizes;
}

// Terms of very different magnitude, so that any other order of additions shows.
template <record V> samples<V> rough(index count) {
  samples<V> x = noise<V>(count, 3);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = std::ldexp(x[i], static_cast<int>(i * 7 % 41) - 20);
  return x;
}

TYPED_TEST(Sums, EveryBlockIsSummedInOrder) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : block_sizes()) {
    const samples<V> x = rough<V>(2 * n);
    const signal<V> real(samples<V>(x.begin(), x.begin() + n));
    const signal<V> pairs(x, true);
    signal<V> out;
    const auto re = [&](index i) { return wide(pairs.data[2 * i]); };
    const auto im = [&](index i) { return wide(pairs.data[2 * i + 1]); };
    const auto value = [&](index i) { return wide(real.data[i]); };
    const double reciprocal = n > 0 ? 1.0 / static_cast<double>(n) : 1.0;

    ASSERT_EQ(TWIN(s_sum)(&real, &out), 0);
    EXPECT_EQ(out.values(), samples<V>{static_cast<T>(plain_blocks(n, value))}) << n;
    ASSERT_EQ(TWIN(s_mean)(&real, &out), 0);
    EXPECT_EQ(out.values(), samples<V>{static_cast<T>(plain_blocks(n, value) * reciprocal)}) << n;
    ASSERT_EQ(TWIN(s_sum)(&pairs, &out), 0);
    EXPECT_EQ(out.values(),
              (samples<V>{static_cast<T>(plain_blocks(n, re)), static_cast<T>(plain_blocks(n, im))}))
        << n;
    ASSERT_EQ(TWIN(s_magsq_sum)(&real, &out), 0);
    EXPECT_EQ(out.complex, 0);
    EXPECT_EQ(out.data[0], static_cast<T>(plain_blocks(n, [&](index i) { return value(i) * value(i); })));
    ASSERT_EQ(TWIN(s_magsq_sum)(&pairs, &out), 0);
    const double squares = plain_blocks(n, [&](index i) { return re(i) * re(i) + im(i) * im(i); });
    EXPECT_EQ(out.values(), samples<V>{static_cast<T>(squares)}) << n;
    ASSERT_EQ(TWIN(s_rms)(&pairs, &out), 0);
    EXPECT_EQ(out.data[0], static_cast<T>(n > 0 ? std::sqrt(squares / static_cast<double>(n)) : 0.0)) << n;
  }
}

TYPED_TEST(Sums, ResultKeepsItsSpacingAndMayBeTheInput) {
  using V = TypeParam;
  using T = scalar<V>;
  signal<V> v({1, 2, 3, 6}, true);
  signal<V> out{9, 9, 9};
  v.delta = T(0.25);
  out.delta = T(0.5);
  ASSERT_EQ(TWIN(s_mean)(&v, &out), 0);
  EXPECT_EQ(out.delta, T(0.5));
  EXPECT_EQ(out.values(), (samples<V>{2, 4}));
  v.lend();
  ASSERT_EQ(TWIN(s_sum)(&v, &v), 0);
  EXPECT_EQ(v.delta, T(0.25));
  EXPECT_EQ(v.values(), (samples<V>{4, 8}));
  EXPECT_EQ(v.lent(), (samples<V>{1, 2, 3, 6})) << "lent storage has no capacity that the result could use";
}

TYPED_TEST(Sums, SquaresAreLimitedSumsAreNot) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr double h = wide(huge<V>);
  const signal<V> v{3.0 * h, -2.0 * h};
  signal<V> out;
  ASSERT_EQ(TWIN(s_sum)(&v, &out), 0);
  EXPECT_EQ(out.data[0], static_cast<T>(static_cast<double>(v.data[0]) + static_cast<double>(v.data[1])));
  ASSERT_EQ(TWIN(s_magsq_sum)(&v, &out), 0);
  EXPECT_EQ(out.data[0], static_cast<T>(2.0 * h * h));
  ASSERT_EQ(TWIN(s_rms)(&v, &out), 0);
  EXPECT_EQ(out.data[0], static_cast<T>(std::sqrt(2.0 * h * h / 2.0)));
  const signal<V> broken({0, std::nan("")}, true);
  ASSERT_EQ(TWIN(s_magsq_sum)(&broken, &out), 0);
  EXPECT_TRUE(std::isnan(out.data[0]));
}

}  // namespace
}  // namespace sigpak::test
