// Sums side by side against the plain loops: the same bits at every level.
#include <gtest/gtest.h>

#include <cstring>

#include "core/isa.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Levels : public testing::Test {};
TYPED_TEST_SUITE(Levels, records, record_names);

template <record V> using statistic = status (*)(const V*, V*);

template <record V> std::vector<statistic<V>> blocked_statistics() {
  const auto dot = [](const V* v, V* result) {
    samples<V> x(v->data, v->data + scalars<V>(v));
    std::reverse(x.begin(), x.end());
    const signal<V> other(x, is_complex(v));
    return TWIN(bs_dot)(v, static_cast<const V*>(&other), result);
  };
  return {TWIN(s_sum),      TWIN(s_mean), TWIN(s_magsq_sum), TWIN(s_rms),   TWIN(s_pop_var),
          TWIN(s_samp_var), TWIN(s_skew), TWIN(s_excess),    TWIN(s_hmean), dot};
}

// Not finite, or beyond the limits of a deviation, here and there.
template <record V> void roughen(signal<V>& v, int kind) {
  using T = scalar<V>;
  const T odd[] = {T(0),
                   -T(0),
                   guard<T>::huge * 3,
                   -guard<T>::huge * 3,
                   std::numeric_limits<T>::infinity(),
                   std::numeric_limits<T>::quiet_NaN()};
  const index n = scalars<V>(&v);
  for (index i = kind; kind > 0 && i < n; i += 997)
    v.data[i] = odd[static_cast<std::size_t>(i + kind) % (kind + 3)];
}

TYPED_TEST(Levels, SumsAgreeBitForBit) {
  using V = TypeParam;
  const isa::level wide = isa::current();
  for (const index blocks : {1, 2, 3, 4, 7, 8, 9, 11, 16, 19}) {
    for (const index around : {-1, 0, 5, 1029}) {
      for (const bool complex : {false, true}) {
        for (const int kind : {0, 1, 2, 3}) {
          const index n = 2048 * blocks + around;
          signal<V> v(noise<V>(complex ? 2 * n : n, 7), complex);
          roughen(v, kind);
          int number = 0;
          for (const auto run : blocked_statistics<V>()) {
            signal<V> plain;
            signal<V> lanes;
            isa::force(isa::level::baseline);
            const status expected = run(&v, &plain);
            isa::force(wide);
            ASSERT_EQ(run(&v, &lanes), expected);
            if (expected != 0) continue;
            const samples<V> a = plain.values();
            const samples<V> b = lanes.values();
            ASSERT_EQ(a.size(), b.size());
            for (std::size_t i = 0; i < a.size(); ++i) {
              if (a[i] != a[i] && b[i] != b[i]) continue;  // which NaN is nobody's promise
              EXPECT_EQ(std::memcmp(&a[i], &b[i], sizeof a[i]), 0)
                  << number << ": " << n << " points, " << complex << ", " << kind << ": " << a[i] << " "
                  << b[i];
            }
            ++number;
          }
        }
      }
    }
  }
}

}  // namespace
}  // namespace sigpak::test
