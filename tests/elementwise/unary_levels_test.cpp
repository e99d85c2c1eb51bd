// SPDX-License-Identifier: MIT
// The two wide levels give the same bits, wherever in an array a sample stands, and in single precision the
// baseline gives them too.
#include <gtest/gtest.h>

#include "core/isa.h"
#include "elementwise/functions.h"

namespace sigpak::test {
namespace {

template <class V> class UnaryLevels : public testing::Test {};
TYPED_TEST_SUITE(UnaryLevels, records, record_names);

constexpr isa::level least_wide = isa::levels[1];

// The results of f at one level; the level of the test is restored.
template <record V>
samples<V> at_level(isa::level level, std::int32_t (*run)(V*), const samples<V>& x, bool pairs) {
  const isa::level before = isa::current();
  isa::force(level);
  signal<V> v(x, pairs);
  EXPECT_EQ(run(&v), 0);
  isa::force(before);
  return v.values();
}

TYPED_TEST(UnaryLevels, LevelsAgreeBitForBit) {
  using V = TypeParam;
  constexpr isa::level narrow = is_double<V> ? least_wide : isa::level::baseline;
  if (isa::widest() <= narrow) GTEST_SKIP() << "this processor has no two such levels";
  for (const unary_function& f : unary_functions()) {
    samples<V> x = arguments<V>(f, 20003, 11);
    const auto strange = awkward<V>();
    x.insert(x.end(), strange.begin(), strange.end());
    const auto run = twin<V>(f.in_double, f.in_single);
    const samples<V> widest = at_level<V>(isa::widest(), run, x, false);
    for (const isa::level level : isa::levels) {
      if (level < narrow || level == isa::widest()) continue;
      ASSERT_TRUE(same_numbers(at_level<V>(level, run, x, false), widest)) << f.name;
    }
  }
}

// Points in every quarter, and every pair of strange components.
template <record V> samples<V> strange_points() {
  samples<V> z = points<V>(10001, 9);
  const auto strange = awkward<V>();
  for (const auto a : strange) {
    for (const auto b : strange) {
      z.push_back(a);
      z.push_back(b);
    }
  }
  return z;
}

TYPED_TEST(UnaryLevels, WideLevelsAgreeOnPointsBitForBit) {
  using V = TypeParam;
  if (isa::widest() <= least_wide) GTEST_SKIP() << "this processor has no two wide levels";
  const samples<V> z = strange_points<V>();
  std::vector<std::pair<const char*, std::int32_t (*)(V*)>> operations = {{"mag", TWIN(i_mag)},
                                                                          {"phase", TWIN(i_phase)}};
  for (const complex_function& f : complex_functions())
    operations.emplace_back(f.name, twin<V>(f.in_double, f.in_single));
  for (const auto& [name, run] : operations) {
    const auto widest = at_level<V>(isa::widest(), run, z, true);
    ASSERT_TRUE(same_numbers(at_level<V>(least_wide, run, z, true), widest)) << name;
  }
}

// Guards, zeros and infinities of the vectors are those of the plain formulas; only last digits may differ.
TYPED_TEST(UnaryLevels, WideLevelsKeepTheGuardsOfTheBaseline) {
  using V = TypeParam;
  constexpr double least = static_cast<double>(std::numeric_limits<scalar<V>>::denorm_min());
  const samples<V> z = strange_points<V>();
  for (const complex_function& f : complex_functions()) {
    const auto run = twin<V>(f.in_double, f.in_single);
    const samples<V> plain = at_level<V>(isa::level::baseline, run, z, true);
    const samples<V> wide = at_level<V>(isa::current(), run, z, true);
    for (std::size_t i = 0; i < z.size(); ++i) {
      const auto a = static_cast<double>(plain[i]);
      const auto b = static_cast<double>(wide[i]);
      if (a != a) {
        ASSERT_NE(b, b) << f.name << " at " << z[i & ~std::size_t(1)] << ", " << z[i | 1];
      } else {
        ASSERT_TRUE(a == b || std::abs(a - b) <= 8 * unit_roundoff<V> * std::abs(a) + least)
            << f.name << " at " << z[i & ~std::size_t(1)] << ", " << z[i | 1] << ": " << a << " and " << b;
        ASSERT_EQ(std::signbit(a), std::signbit(b))
            << f.name << " at " << z[i & ~std::size_t(1)] << ", " << z[i | 1];
      }
    }
  }
}

TYPED_TEST(UnaryLevels, MagnitudeAndPhaseAreThePolarForm) {
  using V = TypeParam;
  const samples<V> z = strange_points<V>();
  const samples<V> polar = at_level<V>(isa::current(), TWIN(i_rtop), z, true);
  const samples<V> size = at_level<V>(isa::current(), TWIN(i_mag), z, true);
  const samples<V> angle = at_level<V>(isa::current(), TWIN(i_phase), z, true);
  samples<V> joined;
  for (std::size_t i = 0; i < size.size(); ++i) {
    joined.push_back(size[i]);
    joined.push_back(angle[i]);
  }
  ASSERT_TRUE(same_numbers(joined, polar));
}

TYPED_TEST(UnaryLevels, ResultsDoNotDependOnThePlaceInTheArray) {
  using V = TypeParam;
  for (const unary_function& f : unary_functions()) {
    const samples<V> x = arguments<V>(f, 1000, 5);
    const auto run = twin<V>(f.in_double, f.in_single);
    const samples<V> whole = at_level<V>(isa::current(), run, x, false);
    for (std::ptrdiff_t n = 1; n < 20; ++n) {
      const samples<V> part(x.end() - n, x.end());
      ASSERT_TRUE(same_numbers(at_level<V>(isa::current(), run, part, false),
                               samples<V>(whole.end() - n, whole.end())))
          << f.name;
    }
  }
}

}  // namespace
}  // namespace sigpak::test
