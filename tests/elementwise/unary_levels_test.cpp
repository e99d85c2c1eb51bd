// The two wide levels give the same bits, wherever in an array a sample stands.
#include <gtest/gtest.h>

#include <cstring>

#include "core/isa.h"
#include "elementwise/functions.h"

namespace sigpak::test {
namespace {

template <class V> class UnaryLevels : public testing::Test {};
TYPED_TEST_SUITE(UnaryLevels, records, record_names);

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

template <class T> void expect_same_bits(const std::vector<T>& a, const std::vector<T>& b, const char* name) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    // the sign and payload of a NaN are nobody's promise
    const bool same = std::memcmp(&a[i], &b[i], sizeof(T)) == 0 || (a[i] != a[i] && b[i] != b[i]);
    ASSERT_TRUE(same) << name << " at " << i << ": " << a[i] << " and " << b[i];
  }
}

TYPED_TEST(UnaryLevels, WideLevelsAgreeBitForBit) {
  using V = TypeParam;
  if (isa::widest() != isa::level::avx512) GTEST_SKIP() << "this processor has no two wide levels";
  for (const unary_function& f : unary_functions()) {
    samples<V> x = arguments<V>(f, 40003, 11);
    const auto strange = awkward<V>();
    x.insert(x.end(), strange.begin(), strange.end());
    const auto run = twin<V>(f.in_double, f.in_single);
    expect_same_bits(at_level<V>(isa::level::avx2, run, x, false),
                     at_level<V>(isa::level::avx512, run, x, false), f.name);
  }
}

TYPED_TEST(UnaryLevels, ResultsDoNotDependOnThePlaceInTheArray) {
  using V = TypeParam;
  for (const unary_function& f : unary_functions()) {
    const samples<V> x = arguments<V>(f, 1000, 5);
    const auto run = twin<V>(f.in_double, f.in_single);
    const samples<V> whole = at_level<V>(isa::current(), run, x, false);
    for (std::ptrdiff_t n = 1; n < 20; ++n) {
      const samples<V> part(x.end() - n, x.end());
      expect_same_bits(at_level<V>(isa::current(), run, part, false),
                       samples<V>(whole.end() - n, whole.end()), f.name);
    }
  }
}

}  // namespace
}  // namespace sigpak::test
