// Operations on two records point by point: every pairing of forms, aliasing and ownership against long
// double.
#include <gtest/gtest.h>

#include <array>
#include <cstring>

#include "core/isa.h"
#include "elementwise/binary_support.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

template <class V> class Binary : public testing::Test {};
TYPED_TEST_SUITE(Binary, records, record_names);

// The value of one point, and the size of the terms that its rounding errors are measured by.
template <record V> struct definition {
  named_operation<V> of;
  wide (*value)(wide a, wide b, bool complex);
  long double (*terms)(wide a, wide b);
};

long double sum_of_sizes(wide a, wide b) { return std::abs(a) + std::abs(b); }
long double product_of_sizes(wide a, wide b) { return std::abs(a) * std::abs(b); }
long double quotient_of_sizes(wide a, wide b) { return 2 * std::abs(a) / std::abs(b); }
long double nothing(wide, wide) { return 0; }

bool smaller(wide a, wide b, bool complex) {
  return complex ? std::norm(a) < std::norm(b) : a.real() < b.real();
}

template <record V> std::vector<definition<V>> definitions() {
  return {
      {{"add", TWIN(b_add)}, [](wide a, wide b, bool) { return a + b; }, sum_of_sizes},
      {{"sub", TWIN(b_sub)}, [](wide a, wide b, bool) { return a - b; }, sum_of_sizes},
      {{"mul", TWIN(b_mul)}, [](wide a, wide b, bool) { return a * b; }, product_of_sizes},
      {{"conj_mul", TWIN(b_conj_mul)},
       [](wide a, wide b, bool) { return a * std::conj(b); },
       product_of_sizes},
      {{"div", TWIN(b_div)}, [](wide a, wide b, bool) { return a / b; }, quotient_of_sizes},
      {{"avg_add", blend<V>},
       [](wide a, wide b, bool) { return b + static_cast<long double>(blend_weight) * (a - b); },
       sum_of_sizes},
      {{"min", TWIN(b_min)}, [](wide a, wide b, bool c) { return smaller(a, b, c) ? a : b; }, nothing},
      {{"max", TWIN(b_max)}, [](wide a, wide b, bool c) { return smaller(b, a, c) ? a : b; }, nothing},
      {{"ritoc", TWIN(b_ritoc)},
       [](wide a, wide b, bool) {
         return wide{a.real(), b.real()};
       },
       nothing},
  };
}

template <record V> void check(const definition<V>& op, const pairing& p, index n) {
  SCOPED_TRACE(described(op.of.name, p, n));
  const bool joins = op.of.run == operation<V>(TWIN(b_ritoc));
  const bool complex = p.a_complex || p.b_complex;
  scene<V> s(p, n, n);
  if (joins && complex) {
    EXPECT_EQ(s.run(op.of.run), -1);
    return;
  }
  ASSERT_EQ(s.run(op.of.run), 0);
  ASSERT_EQ(s.out().points, static_cast<std::uint32_t>(n));
  EXPECT_EQ(s.out().complex, complex || joins ? 1 : 0);
  EXPECT_EQ(s.out().delta, s.mean_delta());
  for (index i = 0; i < n; ++i) {
    const wide a = s.a_values[static_cast<std::size_t>(i)];
    const wide b = s.b_values[static_cast<std::size_t>(i)];
    const long double bound = 3 * static_cast<long double>(unit_roundoff<V>) * op.terms(a, b);
    ASSERT_LE(std::abs(value_at(s.out(), i) - op.value(a, b, complex)), bound) << "point " << i;
  }
  EXPECT_TRUE(s.lent_untouched());
}

TYPED_TEST(Binary, EveryPairingOfFormsAliasesAndOwnersFollowsTheDefinition) {
  using V = TypeParam;
  for (const auto& op : definitions<V>()) {
    for (const auto& p : pairings()) {
      for (const index n : edge_sizes()) {
        if (n > 40 && n != 2049) continue;
        check<V>(op, p, n);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

// The bits of a result; every NaN counts as one.
template <record V>
samples<V> run_at(isa::level level, operation<V> run, const signal<V>& a, const signal<V>& b) {
  isa::force(level);
  signal<V> out;
  EXPECT_EQ(run(&a, &b, &out), 0);
  samples<V> values = out.values();
  for (auto& x : values) {
    if (std::isnan(x)) x = std::numeric_limits<scalar<V>>::quiet_NaN();
  }
  return values;
}

template <class T> bool same_bits(const std::vector<T>& a, const std::vector<T>& b) {
  return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0;
}

template <record V> samples<V> noise_and_awkward(index scalars, unsigned seed) {
  samples<V> x = noise<V>(scalars, seed);
  const samples<V> hard = awkward<V>();
  for (std::size_t i = 0; i < hard.size() * hard.size() && i < x.size() / 2; ++i) {
    x[i] = seed == 1 ? hard[i % hard.size()] : hard[i / hard.size()];
  }
  return x;
}

TYPED_TEST(Binary, EveryLevelGivesTheSameBits) {
  using V = TypeParam;
  const isa::level before = isa::current();
  constexpr index n = 701;
  for (const auto& op : binary_operations<V>()) {
    for (const bool a_complex : {false, true}) {
      for (const bool b_complex : {false, true}) {
        if ((a_complex || b_complex) && op.run == operation<V>(TWIN(b_ritoc))) continue;
        SCOPED_TRACE(testing::Message() << op.name << " " << a_complex << b_complex);
        const signal<V> a(noise_and_awkward<V>(a_complex ? 2 * n : n, 1), a_complex);
        const signal<V> b(noise_and_awkward<V>(b_complex ? 2 * n : n, 2), b_complex);
        const auto baseline = run_at<V>(isa::level::baseline, op.run, a, b);
        EXPECT_TRUE(same_bits(run_at<V>(isa::level::avx2, op.run, a, b), baseline));
        EXPECT_TRUE(same_bits(run_at<V>(isa::level::avx512, op.run, a, b), baseline));
      }
    }
  }
  isa::force(before);
}

TYPED_TEST(Binary, DifferentLengthsAreRefusedAndLeaveTheResultAlone) {
  using V = TypeParam;
  const signal<V> a{1, 2, 3};
  const signal<V> b{1, 2, 3, 4, 5};
  for (const auto& op : binary_operations<V>()) {
    const bool any_lengths = op.run == operation<V>(TWIN(b_add)) || op.run == operation<V>(TWIN(b_sub)) ||
                             op.run == operation<V>(TWIN(b_pmul));
    if (any_lengths) continue;
    SCOPED_TRACE(op.name);
    signal<V> out({9, 8}, true);
    out.delta = 3;
    EXPECT_EQ(op.run(&a, &b, &out), -1);
    EXPECT_EQ(op.run(&b, &a, &out), -1);
    EXPECT_EQ(out.delta, 3);
    EXPECT_EQ(out.points, 1U);
    EXPECT_EQ(out.complex, 1);
    EXPECT_EQ(out.values(), (samples<V>{9, 8}));
  }
}

TYPED_TEST(Binary, SumAndDifferencePadTheShorterOperand) {
  using V = TypeParam;
  for (const bool subtracts : {false, true}) {
    for (const auto& p : pairings()) {
      for (const auto& [n, m] : {std::array{3, 5}, {5, 3}, {0, 4}, {4, 0}, {1, 64}, {100, 7}}) {
        if (p.out == alias::both) continue;
        SCOPED_TRACE(described(subtracts ? "sub" : "add", p, n));
        scene<V> s(p, n, m);
        ASSERT_EQ(s.run(subtracts ? TWIN(b_sub) : TWIN(b_add)), 0);
        ASSERT_EQ(length(&s.out()), std::max(n, m));
        EXPECT_EQ(s.out().delta, s.mean_delta());
        s.a_values.resize(static_cast<std::size_t>(std::max(n, m)));
        s.b_values.resize(static_cast<std::size_t>(std::max(n, m)));
        for (index i = 0; i < std::max(n, m); ++i) {
          const wide a = s.a_values[static_cast<std::size_t>(i)];
          const wide b = s.b_values[static_cast<std::size_t>(i)];
          const long double bound = static_cast<long double>(unit_roundoff<V>) * sum_of_sizes(a, b);
          ASSERT_LE(std::abs(value_at(s.out(), i) - (subtracts ? a - b : a + b)), bound) << i;
        }
        EXPECT_TRUE(s.lent_untouched());
      }
    }
  }
}

// The operand is a record of its own over the storage that the result owns and outgrows.
TYPED_TEST(Binary, AnOperandMayBeAnotherRecordOverTheStorageOfTheResult) {
  using V = TypeParam;
  for (const index n : {1, 33, 20000}) {
    signal<V> out(noise<V>(n, 1));
    const samples<V> x = out.values();
    const signal<V> z(noise<V>(2 * n, 2), true);
    V view = out;
    view.alloc = 0;
    ASSERT_EQ(TWIN(b_add)(&view, &z, &out), 0);
    for (index i = 0; i < n; ++i) {
      ASSERT_EQ(out.data[2 * i], x[static_cast<std::size_t>(i)] + z.data[2 * i]);
      ASSERT_EQ(out.data[2 * i + 1], z.data[2 * i + 1]);
    }
  }
}

TYPED_TEST(Binary, AResultThatCannotBeSizedFails) {
  using V = TypeParam;
  const signal<V> a{1, 2, 3};
  const signal<V> b{4, 5, 6};
  for (const auto& op : binary_operations<V>()) {
    SCOPED_TRACE(op.name);
    signal<V> out;
    const failing_records<V> none(0);
    EXPECT_EQ(op.run(&a, &b, &out), -1);
    EXPECT_EQ(out.data, nullptr);
    EXPECT_EQ(out.alloc, 0);
  }
  const signal<V> longer{1, 2, 3, 4};
  for (const int allowed : {0, 1, 2}) {
    signal<V> out;
    const failing_records<V> few(allowed);
    EXPECT_EQ(TWIN(b_add)(&a, &longer, &out), -1) << allowed;
    EXPECT_EQ(TWIN(b_sub)(&longer, &a, &out), -1) << allowed;
  }
}

}  // namespace
}  // namespace sigpak::test
