// Operations on two records point by point: every pairing of forms, aliasing and ownership against long
// double.
#include <gtest/gtest.h>

#include <complex>

#include "support/signal.h"

namespace sigpak::test {
namespace {

using wide = std::complex<long double>;

template <class V> class Binary : public testing::Test {};
TYPED_TEST_SUITE(Binary, records, record_names);

template <record V> using operation = std::int32_t (*)(const V*, const V*, V*);

// The definition of one point, and the size of the terms that its rounding errors are measured by.
template <record V> struct definition {
  const char* name;
  operation<V> run;
  wide (*value)(wide a, wide b);
  long double (*terms)(wide a, wide b);
};

long double sum_of_sizes(wide a, wide b) { return std::abs(a) + std::abs(b); }
long double product_of_sizes(wide a, wide b) { return std::abs(a) * std::abs(b); }

constexpr double blend_weight = 0.375;

template <record V> std::vector<definition<V>> definitions() {
  return {
      {"mul", TWIN(b_mul), [](wide a, wide b) { return a * b; }, product_of_sizes},
      {"conj_mul", TWIN(b_conj_mul), [](wide a, wide b) { return a * std::conj(b); }, product_of_sizes},
      {"avg_add",
       [](const V* a, const V* b, V* out) {
         return TWIN(b_avg_add)(a, b, out, static_cast<scalar<V>>(blend_weight));
       },
       [](wide a, wide b) { return b + static_cast<long double>(blend_weight) * (a - b); }, sum_of_sizes},
  };
}

template <record V> wide value_at(const V& v, index i) {
  if (!is_complex(&v)) return {static_cast<long double>(v.data[i]), 0};
  return {static_cast<long double>(v.data[2 * i]), static_cast<long double>(v.data[2 * i + 1])};
}

template <record V> std::vector<wide> wide_values(const V& v) {
  std::vector<wide> out;
  for (index i = 0; i < length(&v); ++i) out.push_back(value_at(v, i));
  return out;
}

enum class alias { none, a, b, both };

struct pairing {
  bool a_complex;
  bool b_complex;
  alias out;
  bool lent;
};

std::vector<pairing> pairings() {
  std::vector<pairing> all;
  for (const bool a : {false, true}) {
    for (const bool b : {false, true}) {
      for (const alias out : {alias::none, alias::a, alias::b, alias::both}) {
        if (out == alias::both && a != b) continue;
        for (const bool lent : {false, true}) all.push_back({a, b, out, lent});
      }
    }
  }
  return all;
}

// Runs one operation in one pairing; every point of the result must be within the bound of its definition.
template <record V> void check(const definition<V>& op, const pairing& p, index n) {
  SCOPED_TRACE(testing::Message() << op.name << " a_complex " << p.a_complex << " b_complex " << p.b_complex
                                  << " alias " << static_cast<int>(p.out) << " lent " << p.lent << " n "
                                  << n);
  signal<V> a(noise<V>(n * (p.a_complex ? 2 : 1), 1), p.a_complex);
  signal<V> b(noise<V>(n * (p.b_complex ? 2 : 1), 2), p.b_complex);
  signal<V> c{7, 8, 9, 10};
  a.delta = 2;
  b.delta = p.out == alias::both ? 2 : 5;
  V* const first = &a;
  V* const second = p.out == alias::both ? first : &b;
  V* const out = p.out == alias::none ? &c : p.out == alias::b ? second : first;
  if (p.lent) static_cast<signal<V>*>(out)->lend();
  const samples<V> lent_before = p.lent ? static_cast<signal<V>*>(out)->lent() : samples<V>{};
  const auto wa = wide_values(*first);
  const auto wb = wide_values(*second);
  ASSERT_EQ(op.run(first, second, out), 0);
  ASSERT_EQ(out->points, static_cast<std::uint32_t>(n));
  EXPECT_EQ(out->complex, p.a_complex || p.b_complex ? 1 : 0);
  EXPECT_EQ(out->delta, p.out == alias::both ? 2 : 3.5);
  for (index i = 0; i < n; ++i) {
    const auto at = static_cast<std::size_t>(i);
    const wide wanted = op.value(wa[at], wb[at]);
    const long double bound = 3 * static_cast<long double>(unit_roundoff<V>) * op.terms(wa[at], wb[at]);
    ASSERT_LE(std::abs(value_at(*out, i) - wanted), bound) << "point " << i;
  }
  if (p.lent) {
    EXPECT_EQ(static_cast<signal<V>*>(out)->lent(), lent_before);
  }
}

TYPED_TEST(Binary, EveryPairingOfFormsAliasesAndOwnersFollowsTheDefinition) {
  using V = TypeParam;
  for (const auto& op : definitions<V>()) {
    for (const auto& p : pairings()) {
      for (const index n : edge_sizes()) {
        if (n > 70 && n != 2049) continue;
        check<V>(op, p, n);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

}  // namespace
}  // namespace sigpak::test
