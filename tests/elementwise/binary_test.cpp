// SPDX-License-Identifier: MIT
// Operations on two records: every pairing of forms, aliasing and ownership against long double; guards,
// ties, orders of addition, and one result at every level.
#include "core/isa.h"
#include "core/machine.h"
#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Binary : public testing::Test {};
TYPED_TEST_SUITE(Binary, records, record_names);

using wide = std::complex<long double>;
using list = std::vector<wide>;

// A result in long double, each value with the size of the terms that its rounding errors are measured by.
struct expected {
  list values;
  std::vector<long double> sizes;
  void add(wide value, long double size) {
    values.push_back(value);
    sizes.push_back(size);
  }
};

enum class spacing { mean, half_mean, kept };

template <record V> using runner = std::int32_t (*)(const V*, const V*, V*);
template <record V> struct operation {
  const char* name;
  runner<V> run;
  expected (*model)(const list& a, const list& b, bool complex);
  bool any_lengths = false;
  spacing delta = spacing::mean;
  bool joins_reals = false;  // into complex points
};

// value(a, b, complex) of every pair of points, the shorter operand lengthened with zeros.
template <auto value, auto size> expected pointwise(const list& a, const list& b, bool complex) {
  expected out;
  for (std::size_t i = 0; i < std::max(a.size(), b.size()); ++i) {
    const wide x = i < a.size() ? a[i] : 0;
    const wide y = i < b.size() ? b[i] : 0;
    out.add(value(x, y, complex), size(x, y));
  }
  return out;
}

constexpr auto sum_of_sizes = [](wide a, wide b) { return 3 * (std::abs(a) + std::abs(b)); };
constexpr auto product_of_sizes = [](wide a, wide b) { return 3 * std::abs(a) * std::abs(b); };
constexpr auto quotient_of_sizes = [](wide a, wide b) { return 6 * std::abs(a) / std::abs(b); };
constexpr auto nothing = [](wide, wide) { return 0.0L; };

bool smaller(wide a, wide b, bool complex) {
  return complex ? std::norm(a) < std::norm(b) : a.real() < b.real();
}

expected interleaved(const list& a, const list& b, bool) {
  expected out;
  for (std::size_t i = 0; i < a.size(); ++i) {
    out.add(a[i], 0);
    out.add(b[i], 0);
  }
  return out;
}

// Singles are summed in double.
template <bool is_double> expected inner_product(const list& a, const list& b, bool) {
  wide sum = 0;
  long double terms = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    sum += a[i] * b[i];
    terms += std::abs(a[i] * b[i]);
  }
  const long double roundings = is_double ? std::min<long double>(static_cast<long double>(a.size()), 40) : 0;
  expected out;
  out.add(sum, std::abs(sum) + (roundings + 0x1p-20L) * terms);
  return out;
}

expected polynomial_product(const list& a, const list& b, bool) {
  if (a.empty() || b.empty()) return {};
  const std::size_t n = a.size() + b.size() - 1;
  expected out{list(n), std::vector<long double>(n)};
  for (std::size_t i = 0; i < a.size(); ++i) {
    for (std::size_t k = 0; k < b.size(); ++k) {
      out.values[i + k] += a[i] * b[k];
      out.sizes[i + k] += 8 * std::abs(a[i] * b[k]);
    }
  }
  return out;
}

template <record V> std::int32_t blend(const V* a, const V* b, V* out) {
  return TWIN(b_avg_add)(a, b, out, scalar<V>(0.375));
}

template <record V> std::vector<operation<V>> operations() {
  return {{"add", TWIN(b_add), pointwise<[](wide a, wide b, bool) { return a + b; }, sum_of_sizes>, true},
          {"sub", TWIN(b_sub), pointwise<[](wide a, wide b, bool) { return a - b; }, sum_of_sizes>, true},
          {"mul", TWIN(b_mul), pointwise<[](wide a, wide b, bool) { return a * b; }, product_of_sizes>},
          {"conj_mul", TWIN(b_conj_mul),
           pointwise<[](wide a, wide b, bool) { return a * std::conj(b); }, product_of_sizes>},
          {"div", TWIN(b_div), pointwise<[](wide a, wide b, bool) { return a / b; }, quotient_of_sizes>},
          {"avg_add", blend<V>,
           pointwise<[](wide a, wide b, bool) { return b + 0.375L * (a - b); }, sum_of_sizes>},
          {"min", TWIN(b_min),
           pointwise<[](wide a, wide b, bool c) { return smaller(a, b, c) ? a : b; }, nothing>},
          {"max", TWIN(b_max),
           pointwise<[](wide a, wide b, bool c) { return smaller(b, a, c) ? a : b; }, nothing>},
          {"ritoc", TWIN(b_ritoc),
           pointwise<[](wide a, wide b, bool) { return wide(a.real(), b.real()); }, nothing>, false,
           spacing::mean, true},
          {"inter", TWIN(b_inter), interleaved, false, spacing::half_mean},
          {"dot", TWIN(bs_dot), inner_product<is_double<V>>, false, spacing::kept},
          {"pmul", TWIN(b_pmul), polynomial_product, true}};
}

enum class alias { none, a, b, both };

// One operation on n and m points of noise; a lent result must leave its buffer as it was.
template <record V>
void check(const operation<V>& op, bool a_complex, bool b_complex, alias to, bool lent, index n, index m) {
  SCOPED_TRACE(testing::Message() << op.name << ' ' << a_complex << b_complex << " alias "
                                  << static_cast<int>(to) << " lent " << lent << ' ' << n << ' ' << m);
  signal<V> a(noise<V>(a_complex ? 2 * n : n, 1), a_complex);
  signal<V> other(noise<V>(b_complex ? 2 * m : m, 2), b_complex);
  signal<V> free{7, 8, 9, 10};
  signal<V>& b = to == alias::both ? a : other;
  signal<V>& out = to == alias::none ? free : to == alias::b ? b : a;
  a.delta = 2;
  other.delta = 5;
  if (lent) out.lend();
  const auto lent_before = out.lent();
  const contents<V> before(out);
  const bool complex = a.complex != 0 || b.complex != 0;
  const list a_points = wide_points<V>(a);
  const list b_points = wide_points<V>(b);
  const scalar<V> mean = (a.delta + b.delta) / 2;
  const scalar<V> deltas[] = {mean, mean / 2, before.delta};
  const bool refused = (a.points != b.points && !op.any_lengths) || (op.joins_reals && complex);
  ASSERT_EQ(op.run(&a, &b, &out), refused ? -1 : 0);
  if (refused) return expect_equal(contents<V>(out), before);
  EXPECT_EQ(out.complex != 0, complex || op.joins_reals);
  EXPECT_EQ(out.delta, deltas[static_cast<int>(op.delta)]);
  const auto wanted = op.model(a_points, b_points, complex);
  const list got = wide_points<V>(out);
  ASSERT_EQ(got.size(), wanted.values.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    const auto bound = static_cast<long double>(unit_roundoff<V>) * wanted.sizes[i];
    ASSERT_LE(std::abs(got[i] - wanted.values[i]), bound) << i;
  }
  EXPECT_EQ(out.lent(), lent_before);
}

TYPED_TEST(Binary, EveryPairingOfFormsAliasesAndOwnersFollowsTheDefinition) {
  using V = TypeParam;
  std::vector<std::pair<index, index>> lengths = {{3, 5},  {5, 3},   {0, 4},      {4, 0},
                                                  {1, 64}, {100, 7}, {2049, 2049}};
  for (index n = 0; n <= 40; n += watched() && n >= 17 ? 6 : 1) lengths.emplace_back(n, n);
  for (const auto& op : operations<V>()) {
    for (const auto& [n, m] : lengths) {
      if (n > 1000 && op.model == polynomial_product) continue;
      for (int k = 0; k < 32; ++k) {
        check<V>(op, (k & 1) != 0, (k & 2) != 0, static_cast<alias>(k >> 3), (k & 4) != 0, n, m);
        if (testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

TYPED_TEST(Binary, OperandsOfNegativeCountsAreEmptyInEitherOrder) {
  using V = TypeParam;
  const signal<V> two{1, 2};
  for (const auto run : {runner<V>(TWIN(b_add)), runner<V>(TWIN(b_sub))}) {
    for (const std::uint32_t first : {0U, 2U, 0xfffffffdU, 0x80000000U}) {
      for (const std::uint32_t second : {0U, 2U, 0xfffffffdU, 0x80000000U}) {
        V a = two;
        V b = two;
        a.points = first;
        b.points = second;
        signal<V> out{7, 7, 7};
        EXPECT_EQ(run(&a, &b, &out), 0) << first << ' ' << second;
        EXPECT_EQ(out.points, first == 2 || second == 2 ? 2U : 0U) << first << ' ' << second;
      }
    }
  }
}

// Of the record that it replaces, not of the operands.
template <record V> struct asked_to_grow {
  static inline std::pair<std::uint32_t, std::int32_t> shape;
  asked_to_grow() {
    TWIN(_lib_realloc)
    (
        [](V* v, std::uint32_t points, std::int32_t complex) {
          shape = {points, complex};
          v->data = static_cast<scalar<V>*>(std::realloc(v->data, 64 * sizeof(scalar<V>)));
          return ok;
        },
        nullptr);
  }
  ~asked_to_grow() { TWIN(_lib_realloc)(nullptr, nullptr); }
};

TYPED_TEST(Binary, JoiningPartsGrowsTheResultWithItsContents) {
  using V = TypeParam;
  const signal<V> parts{1, 2, 3};
  const asked_to_grow<V> watch;
  for (const bool lent : {false, true}) {
    signal<V> out({5, 6, 7, 8}, true);
    if (lent) out.lend();
    ASSERT_EQ(TWIN(b_ritoc)(&parts, &parts, &out), 0);
    EXPECT_EQ(watch.shape, std::pair(2U, 1));
    EXPECT_EQ(out.values(), (samples<V>{1, 1, 2, 2, 3, 3}));
  }
}

TYPED_TEST(Binary, EveryLevelAndCacheGivesTheSameBits) {
  using V = TypeParam;
  const isa::level before = isa::current();
  const machine::cache_sizes caches = machine::caches();
  for (const auto& op : operations<V>()) {
    for (int k = 0; k < (op.joins_reals ? 1 : 4); ++k) {
      auto x = noise<V>(1402, 1);
      auto y = noise<V>(1402, 2);
      const auto hard = awkward<V>();
      for (std::size_t i = 0; i < hard.size() * hard.size(); ++i) {
        x[i] = hard[i % hard.size()];
        y[i] = hard[i / hard.size()];
      }
      x.resize(k % 2 != 0 ? 1402 : 701);
      y.resize(k > 1 ? 1402 : 701);
      std::vector<samples<V>> bits;
      for (int i = 0; i < 2 * std::ssize(isa::levels); ++i) {
        isa::force(isa::levels[i / 2]);
        machine::cache_sizes forced = caches;
        if (i % 2 != 0) forced.last = machine::way_bytes + 1;
        machine::force(forced);
        signal<V> out;
        const signal<V> a(x, k % 2 != 0);
        const signal<V> b(y, k > 1);
        ASSERT_EQ(op.run(&a, &b, &out), 0);
        bits.push_back(out.values());
      }
      for (const auto& b : bits) EXPECT_TRUE(same_numbers(b, bits[0])) << op.name << k;
    }
  }
  isa::force(before);
  machine::force(caches);
}

TYPED_TEST(Binary, GuardsAndTies) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T h = huge<V>;
  constexpr T least = std::numeric_limits<T>::denorm_min();
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  constexpr T inf = std::numeric_limits<T>::infinity();
  const T up = std::nextafter(h, inf);
  const T third = 1 / T(3);
  const T square = 343 * (1 / T(49));  // products with the reciprocal differ from quotients in the last place
  struct {
    runner<V> run;
    int forms;  // 1 with a complex, 2 with b complex
    samples<V> a;
    samples<V> b;
    samples<V> wanted;
  } const cases[] = {
      {TWIN(b_div),
       0,
       {1, -1, 1, 0, -T(0), -2, nan, 0, inf},
       {0, 0, -T(0), 0, 0, 4, 0, nan, 2},
       {h, h, h, 0, 0, T(-0.5), h, nan, inf}},
      {TWIN(b_div),
       1,
       {0, 0, 0, -1, 3, -6, 5, 7},
       {0, 0, 4, 3},
       {0, 0, h, h, T(0.75), T(-1.5), 5 * third, 7 * third}},
      {TWIN(b_div), 2, {1, 0, -6, 49}, {0, 0, 0, 0, 0, 2, 7, 0}, {h, h, 0, 0, 0, 3, square, 0}},
      // also divisors whose squares underflow
      {TWIN(b_div),
       3,
       {0, 0, 0, 0, 1, -1, 0, 5, 5, 10, 1, 0, 49, 0},
       {0, 0, least, 0, 0, least, 0, 0, 1, 2, nan, 0, 0, 7},
       {0, 0, h, h, h, h, h, h, 5, 0, nan, nan, 0, -square}},
      // ties go to b, sign and all
      {TWIN(b_min),
       0,
       {1, -3, nan, 2, 2 * h, 0, -T(0)},
       {2, 2, 2, nan, 3 * h, -T(0), 0},
       {1, -3, 2, nan, 2 * h, -T(0), 0}},
      {TWIN(b_max),
       0,
       {1, -3, nan, 2, 3 * h, 0, -T(0)},
       {2, 2, 2, nan, 2 * h, -T(0), 0},
       {2, 2, 2, nan, 3 * h, -T(0), 0}},
      // magnitudes, not values; what is beyond H counts as H, what is at H as its square
      {TWIN(b_min), 1, {-3, 4}, {-6}, {-3, 4}},
      {TWIN(b_min), 2, {-3, -1}, {0, 1, 0, 2}, {0, 1, -1, 0}},
      {TWIN(b_min),
       3,
       {3, 4, -3, 4, 3, nan, 1, 1, up, nan, h, 0, up, 0, 0, up},
       {0, -4, 5, 0, 9, 9, nan, 0, h, h, up, 0, 0, -up, h, 0},
       {0, -4, 5, 0, 9, 9, nan, 0, up, nan, up, 0, 0, -up, 0, up}},
      {TWIN(b_max), 1, {0, -2}, {1}, {0, -2}},
      {TWIN(b_max), 2, {-3}, {0, 1}, {-3, 0}},
      {TWIN(b_max),
       3,
       {3, 4, -3, 4, 3, nan, h, 0, 0, -up, up, 1},
       {0, -4, 5, 0, 1, 1, up, 0, 1, 1, 1, up},
       {3, 4, 5, 0, 1, 1, h, 0, 0, -up, 1, up}}};
  for (const auto& c : cases) {
    const signal<V> a(c.a, c.forms % 2 != 0);
    const signal<V> b(c.b, c.forms > 1);
    signal<V> out;
    ASSERT_EQ(c.run(&a, &b, &out), 0);
    EXPECT_TRUE(same_numbers(out.values(), c.wanted)) << &c - cases;
  }
}

TYPED_TEST(Binary, TheEndsOfTheWeightedMeanAndTheMeanOfEqualValuesAreCopies) {
  using V = TypeParam;
  auto y = noise<V>(64, 2);
  for (std::size_t i = 0; i < y.size(); i += 3) y[i] *= huge<V>;
  const signal<V> a(noise<V>(64, 1));
  const signal<V> b(y);
  const std::tuple<const V*, const V*, double, samples<V>> cases[] = {
      {&a, &b, 1, a.values()}, {&a, &b, 0, y}, {&a, &a, 0.3, a.values()}};
  for (const auto& [first, second, weight, wanted] : cases) {
    signal<V> out;
    ASSERT_EQ(TWIN(b_avg_add)(first, second, &out, static_cast<scalar<V>>(weight)), 0);
    EXPECT_EQ(out.values(), wanted);
  }
}

// The small products of the second block survive beside the first; products of polynomials are summed from
// zero by rising index of a.
TYPED_TEST(Binary, OrdersOfAddition) {
  using V = TypeParam;
  const scalar<V> big = is_double<V> ? scalar<V>(0x1p53) : scalar<V>(0x1p24);
  samples<V> x(4096);
  x[0] = big;
  std::fill(x.begin() + 2048, x.end(), scalar<V>(1));
  const signal<V> blocks(x);
  const signal<V> ones(samples<V>(4096, 1));
  signal<V> out;
  ASSERT_EQ(TWIN(bs_dot)(&blocks, &ones, &out), 0);
  EXPECT_EQ(out.data[0], big + 2048);
  const signal<V> a(samples<V>{big, 1, -big, 1});
  const signal<V> four{1, 1, 1, 1};
  ASSERT_EQ(TWIN(b_pmul)(&a, &four, &out), 0);
  EXPECT_EQ(out.values(), (samples<V>{big, big, 0, 1, 1 - big + 1, 1 - big, 1}));
}

// The operand is a record of its own over the storage that the result owns and outgrows.
TYPED_TEST(Binary, AnOperandMayBeAnotherRecordOverTheStorageOfTheResult) {
  using V = TypeParam;
  for (const index n : {1, 33, 20000}) {
    signal<V> out(noise<V>(n, 1));
    const signal<V> z(noise<V>(2 * n, 2), true);
    auto wanted = contents<V>(z).points;
    for (std::size_t i = 0; i < wanted.size(); ++i) wanted[i] += out.data[i];
    V view = out;
    view.alloc = 0;
    ASSERT_EQ(TWIN(b_add)(&view, &z, &out), 0);
    EXPECT_EQ(contents<V>(out).points, wanted);
  }
}

TYPED_TEST(Binary, ResultsThatCannotBeSizedFail) {
  using V = TypeParam;
  scalar<V> cell = 0;
  const V vast{.delta = 1, .data = &cell, .alloc = 0, .points = 0x7fffffff, .complex = 0, .reserved = 0};
  for (const auto run : {runner<V>(TWIN(b_pmul)), runner<V>(TWIN(b_inter))}) {
    signal<V> out{1, 2, 3};
    EXPECT_EQ(run(&vast, &vast, &out), -1) << "too long to count";
    EXPECT_EQ(out.data, nullptr);
  }
  signal<V> x{1, 2};
  const failing_records none(0);
  EXPECT_EQ(TWIN(b_pmul)(&x, &x, &x), -1) << "a product in place needs its temporary";
  EXPECT_EQ(x.values(), (samples<V>{1, 2}));
}

}  // namespace
}  // namespace sigpak::test
