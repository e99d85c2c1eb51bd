// The sort: a permutation, and in order.
#include <gtest/gtest.h>

#include <bit>

#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Sort : public testing::Test {};
TYPED_TEST_SUITE(Sort, records, record_names);

template <class T> using bits_of = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;

// The points as words, in an order of their own: equal for two records that are permutations of each other.
template <record V> auto contents(const samples<V>& x, bool pairs) {
  using B = bits_of<scalar<V>>;
  std::vector<std::pair<B, B>> words;
  const std::size_t width = pairs ? 2 : 1;
  for (std::size_t i = 0; i < x.size(); i += width) {
    words.emplace_back(std::bit_cast<B>(x[i]), pairs ? std::bit_cast<B>(x[i + 1]) : B(0));
  }
  std::sort(words.begin(), words.end());
  return words;
}

template <class T> T square(T x) {
  constexpr T h = guard<T>::huge;
  return std::abs(x) <= h ? x * x : h * h;
}

// 1 and -1 as a three-way comparison says; NaN compare equal.
template <class T> int sign_of_difference(T a, T b) { return a > b ? 1 : a < b ? -1 : 0; }

template <class T> int compare_points(const T* a, const T* b) {
  const int by_magnitude = sign_of_difference(square(a[0]) + square(a[1]), square(b[0]) + square(b[1]));
  if (by_magnitude != 0) return by_magnitude;
  const int by_real = sign_of_difference(a[0], b[0]);
  return by_real != 0 ? by_real : sign_of_difference(a[1], b[1]);
}

// Runs of equal values, of every sign and size, and the awkward values when asked for.
template <record V> samples<V> mixture(index count, int kind) {
  using T = scalar<V>;
  auto x = noise<V>(count, static_cast<unsigned>(count + kind));
  const auto special = awkward<V>();
  for (std::size_t i = 0; i < x.size(); ++i) {
    const int drawn = static_cast<int>(std::abs(x[i]) * 4096);
    if (kind == 1) x[i] = static_cast<T>(drawn % 5 - 2);
    if (kind == 2) x[i] = std::ldexp(x[i], drawn % 60 - 30);
    if (kind == 3) x[i] = special[static_cast<std::size_t>(drawn) % special.size()];
    if (kind == 4) x[i] = static_cast<T>(i);
    if (kind == 5) x[i] = -static_cast<T>(i);
    if (kind == 6 && drawn % 2 != 0) x[i] = std::numeric_limits<T>::quiet_NaN();
  }
  return x;
}

TYPED_TEST(Sort, RealRecordsAscendWithNanLast) {
  using V = TypeParam;
  auto sizes = edge_sizes();
  sizes.push_back(100000);
  for (const index n : sizes) {
    for (int kind = 0; kind <= 6; ++kind) {
      signal<V> v(mixture<V>(n, kind));
      const auto before = v.values();
      ASSERT_EQ(TWIN(i_sort)(&v), 0);
      const auto after = v.values();
      ASSERT_EQ(contents<V>(after, false), contents<V>(before, false)) << n << ' ' << kind;
      for (std::size_t i = 1; i < after.size(); ++i) {
        const auto a = after[i - 1];
        const auto b = after[i];
        ASSERT_TRUE(a < b || (a == b && std::signbit(a) >= std::signbit(b)) || b != b) << n << ' ' << kind;
        ASSERT_FALSE(a != a && b == b) << n << ' ' << kind;
      }
    }
  }
}

TYPED_TEST(Sort, ComplexRecordsAscendByGuardedMagnitude) {
  using V = TypeParam;
  for (const index n : edge_sizes()) {
    for (int kind = 0; kind <= 6; ++kind) {
      signal<V> v(mixture<V>(2 * n, kind), true);
      const auto before = v.values();
      ASSERT_EQ(TWIN(i_sort)(&v), 0);
      ASSERT_EQ(contents<V>(v.values(), true), contents<V>(before, true)) << n << ' ' << kind;
      for (index i = 1; i < n; ++i) {
        const auto* const a = v.data + 2 * (i - 1);
        const auto* const b = a + 2;
        const bool has_nan = a[0] != a[0] || a[1] != a[1] || b[0] != b[0] || b[1] != b[1];
        ASSERT_LE(sign_of_difference(square(a[0]) + square(a[1]), square(b[0]) + square(b[1])), 0);
        ASSERT_TRUE(has_nan || compare_points(a, b) <= 0) << n << ' ' << kind << ' ' << i;
      }
    }
  }
}

TYPED_TEST(Sort, ComplexTiesAreSettledByRealThenImaginaryPart) {
  using V = TypeParam;
  const double h = static_cast<double>(huge<V>);
  struct {
    std::initializer_list<double> given;
    std::initializer_list<double> wanted;
  } const cases[] = {
      {{3, 0, 0, -3, 1, 1}, {1, 1, 0, -3, 3, 0}},
      {{0, 3, -0.0, 3, 0, -3, -0.0, -3}, {0, -3, 0, -3, 0, 3, 0, 3}},
      {{3, 4, -5, 0, 5, 0, 4, 3, -3, 4, -3, -4}, {-5, 0, -3, -4, -3, 4, 3, 4, 4, 3, 5, 0}},
      // beyond H only the tie-breaks tell the points apart
      {{h, 0, 10 * h, 0, -10 * h, 0, 2 * h, 0}, {-10 * h, 0, h, 0, 2 * h, 0, 10 * h, 0}},
  };
  for (const auto& c : cases) {
    signal<V> v(c.given, true);
    const signal<V> wanted(c.wanted, true);
    ASSERT_EQ(TWIN(i_sort)(&v), 0);
    EXPECT_EQ(v.values(), wanted.values());
  }
}

}  // namespace
}  // namespace sigpak::test
