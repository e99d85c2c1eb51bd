// SPDX-License-Identifier: MIT
// Sums side by side against the plain loops: the same bits at every level, whatever the size of the caches.
#include <gtest/gtest.h>

#include "core/isa.h"
#include "core/machine.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Levels : public testing::Test {};
TYPED_TEST_SUITE(Levels, records, record_names);

template <record V> using statistic = status (*)(const V*, V*);

// With the points in the opposite order, as they are or the first half of their scalars as a real record.
template <record V, bool real> status dot_with_reversed(const V* v, V* result) {
  samples<V> x(v->data, v->data + scalars<V>(v));
  std::reverse(x.begin(), x.end());
  signal<V> other(x, is_complex(v));
  if (real) other.complex = 0;
  return TWIN(bs_dot)(v, static_cast<const V*>(&other), result);
}

template <record V> std::vector<statistic<V>> blocked_statistics() {
  return {TWIN(s_sum),
          TWIN(s_mean),
          TWIN(s_magsq_sum),
          TWIN(s_rms),
          TWIN(s_pop_var),
          TWIN(s_skew),
          TWIN(s_excess),
          TWIN(s_hmean),
          TWIN(s_lin_regres2),
          dot_with_reversed<V, false>,
          dot_with_reversed<V, true>};
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

template <record V> samples<V> at_level(isa::level wanted, index last_cache, statistic<V> run, const V& v) {
  const isa::level before = isa::current();
  const machine::cache_sizes caches = machine::caches();
  isa::force(wanted);
  machine::cache_sizes forced = caches;
  forced.last = last_cache;
  machine::force(forced);
  signal<V> out;
  const status outcome = run(&v, &out);
  isa::force(before);
  machine::force(caches);
  return outcome == 0 ? out.values() : samples<V>{};
}

TYPED_TEST(Levels, SumsAgreeBitForBit) {
  using V = TypeParam;
  constexpr index usual = machine::usual_caches.last;
  std::vector<index> sizes{0, 1, 2, 3, 24, 25, 100};
  for (const index blocks : {1, 2, 3, 4, 8, 11, 16}) {
    for (const index around : {-1, 0, 1, 13, 1029}) sizes.push_back(2048 * blocks + around);
  }
  for (const index n : sizes) {
    for (const bool complex : {false, true}) {
      for (const int kind : {0, 1, 2, 3}) {
        if (watched() && (n + kind) % 4 != 0) continue;
        const index begin = (n + kind) % 9;  // the data may start anywhere
        signal<V> all(noise<V>((complex ? 2 * n : n) + begin, 7), false);
        roughen(all, kind);
        V v = all;
        v.data += begin;
        v.points = static_cast<std::uint32_t>(n);
        v.complex = complex ? 1 : 0;
        int number = 0;
        for (const auto run : blocked_statistics<V>()) {
          const samples<V> a = at_level<V>(isa::level::baseline, usual, run, v);
          const samples<V> b = at_level<V>(isa::current(), number % 2 == 0 ? usual : 8192, run, v);
          EXPECT_TRUE(same_numbers(a, b)) << number << ": " << n << " points, " << complex << ", " << kind;
          ++number;
        }
      }
    }
  }
}

}  // namespace
}  // namespace sigpak::test
