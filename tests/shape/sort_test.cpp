// SPDX-License-Identifier: MIT
// The sort: a permutation, and in order.
#include <bit>

#include "kernels/order/order.h"
#include "shape/shape.h"
#include "support/failing.h"
#include "support/forms.h"
#include "vectors/levels.h"

namespace sigpak::test {
namespace {

template <class V> class Sort : public testing::Test {};
TYPED_TEST_SUITE(Sort, records, record_names);

// The points as words, so that NaN and the signs of zeros count.
template <record V> auto bag_of(const contents<V>& c) {
  using B = std::conditional_t<is_double<V>, std::uint64_t, std::uint32_t>;
  std::vector<std::pair<B, B>> bag;
  for (const auto& z : c.points) bag.emplace_back(std::bit_cast<B>(z.real()), std::bit_cast<B>(z.imag()));
  std::sort(bag.begin(), bag.end());
  return bag;
}

template <class T> T square(T x) {
  constexpr T h = guard<T>::huge;
  return std::abs(x) <= h ? x * x : h * h;
}

template <class T> bool real_in_order(T a, T b) {
  return a < b || (a == b && std::signbit(a) >= std::signbit(b)) || b != b;
}

// Magnitude, real part, imaginary part; NaN after the numbers of each part.
template <class T> bool complex_in_order(std::complex<T> a, std::complex<T> b) {
  const auto part = [](T x) { return std::pair(std::isnan(x), std::isnan(x) ? T(0) : x); };
  const auto key = [part](std::complex<T> z) {
    return std::tuple(square(z.real()) + square(z.imag()), part(z.real()), part(z.imag()));
  };
  return key(a) <= key(b);
}

// Noise made into runs of equal values, values of every size, the awkward values, or half of it NaN; mostly
// one value, or all but the last one; a rise, a fall, both; both zeros and a third value; sixteen values, or
// one more at the end.
enum class kind {
  noise,
  runs,
  sizes,
  awkward,
  mostly_one,
  all_but_last,
  rising,
  falling,
  pipe,
  zeros,
  sixteen,
  seventeen,
  half_nan
};
template <class V> void become(kind k, V& v) {
  using T = scalar<V>;
  const auto special = awkward<V>();
  for (index i = 0; i < scalars<V>(&v); ++i) {
    T& x = v.data[i];
    const int drawn = static_cast<int>(std::abs(x) * 4096);
    if (k == kind::runs) x = static_cast<T>(drawn % 5 - 2);
    if (k == kind::sizes) x = std::ldexp(x, drawn % 60 - 30);
    if (k == kind::awkward) x = special[static_cast<std::size_t>(drawn) % special.size()];
    if (k == kind::mostly_one && drawn % 64 != 0) x = 1;
    if (k == kind::all_but_last) x = i + 1 < scalars<V>(&v) ? T(1) : T(0);
    if (k == kind::pipe) x = static_cast<T>(std::min(i, scalars<V>(&v) - i));
    if (k == kind::zeros) x = drawn % 3 == 0 ? T(-1) : std::copysign(T(0), x);
    if (k == kind::sixteen || k == kind::seventeen) x = static_cast<T>(drawn % 16 - 8);
    if (k == kind::seventeen && i + 1 == scalars<V>(&v)) x = T(-8.5);
    if (k == kind::rising) x = static_cast<T>(i);
    if (k == kind::falling) x = -static_cast<T>(i);
    if (k == kind::half_nan && drawn % 2 != 0) x = std::numeric_limits<T>::quiet_NaN();
  }
}

TYPED_TEST(Sort, IsAPermutationInAscendingOrder) {
  using V = TypeParam;
  auto sizes = edge_sizes();
  sizes.insert(sizes.end(), {100, 299, 300, 301, 399, 400, 401, 30000});
  for (int k = 0; k <= static_cast<int>(kind::half_nan); ++k) {
    for_each_form<V>(sizes, [k](signal<V>& v) {
      become<V>(static_cast<kind>(k), v);
      const auto before = bag_of<V>(contents<V>(v));
      ASSERT_EQ(TWIN(i_sort)(&v), 0);
      const contents<V> got(v);
      ASSERT_EQ(bag_of(got), before) << k;
      for (std::size_t i = 1; i < got.points.size(); ++i) {
        const auto a = got.points[i - 1];
        const auto b = got.points[i];
        ASSERT_TRUE(got.complex ? complex_in_order(a, b) : real_in_order(a.real(), b.real()))
            << k << ' ' << i;
      }
    });
  }
}

TYPED_TEST(Sort, PutsTheWantedRanksInTheirPlacesAndWritesNothingBeside) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr index margin = 64;
  const T untouched = T(-1e6);
  for (const index n : {1, 2, 17, 64, 129, 300, 515, 1100, 9999}) {
    for (const auto& [first, end] :
         {std::pair<index, index>{0, n}, {0, 1}, {n - 1, n}, {n / 2, n / 2 + 1}, {n / 3, n / 3 + 2}}) {
      if (end > n) continue;
      for (const kind k :
           {kind::noise, kind::runs, kind::mostly_one, kind::sixteen, kind::seventeen, kind::pipe}) {
        signal<V> v(noise<V>(n));
        become<V>(k, v);
        samples<V> x(static_cast<std::size_t>(n + 2 * margin), untouched);
        std::copy_n(v.data, n, x.begin() + margin);
        samples<V> wanted = x;
        std::sort(wanted.begin() + margin, wanted.end() - margin);
        sort_ranks(x.data() + margin, n, first, end);
        ASSERT_TRUE(
            std::equal(x.begin() + margin + first, x.begin() + margin + end, wanted.begin() + margin + first))
            << n << ' ' << first;
        std::sort(x.begin() + margin, x.begin() + margin + first);
        std::sort(x.begin() + margin + end, x.end() - margin);
        ASSERT_EQ(x, wanted) << n << ' ' << first;
      }
    }
  }
}

TYPED_TEST(Sort, GoesOnWithoutPivotsAfterTheLevelsThatItMayTake) {
  using V = TypeParam;
  using T = scalar<V>;
  const auto* const wide = at_level<kernels::order_table<T>>();
  if (wide == nullptr) GTEST_SKIP() << "the baseline sorts by digits";
  for (const int levels : {0, 1, 2, 3}) {
    samples<V> x = noise<V>(3001);
    samples<V> wanted = x;
    std::sort(wanted.begin(), wanted.end());
    wide->sort(x.data(), 3001, {0, 3001}, levels);
    EXPECT_EQ(x, wanted) << levels;
  }
}

TYPED_TEST(Sort, NeedsNoMemory) {
  using V = TypeParam;
  for_each_form<V>({300, 401, 1000}, [](signal<V>& v) {
    signal<V> with_memory(v.values(), v.complex != 0);
    ASSERT_EQ(TWIN(i_sort)(&with_memory), 0);
    const failing_tables none(0);
    ASSERT_EQ(TWIN(i_sort)(&v), 0);
    EXPECT_EQ(v.values(), with_memory.values());
  });
}

TYPED_TEST(Sort, ComplexTiesAreSettledByRealThenImaginaryPart) {
  using V = TypeParam;
  const auto h = huge<V>;
  const std::pair<samples<V>, samples<V>> cases[] = {
      {{3, 0, 0, -3, 1, 1}, {1, 1, 0, -3, 3, 0}},
      {{0, 3, -0.0, 3, 0, -3, -0.0, -3}, {0, -3, 0, -3, 0, 3, 0, 3}},
      {{3, 4, -5, 0, 5, 0, 4, 3, -3, 4, -3, -4}, {-5, 0, -3, -4, -3, 4, 3, 4, 4, 3, 5, 0}},
      // beyond H only the tie-breaks tell the points apart
      {{h, 0, 10 * h, 0, -10 * h, 0, 2 * h, 0}, {-10 * h, 0, h, 0, 2 * h, 0, 10 * h, 0}}};
  for (const auto& [given, wanted] : cases) {
    signal<V> v(given, true);
    ASSERT_EQ(TWIN(i_sort)(&v), 0);
    EXPECT_EQ(v.values(), wanted);
  }
}

}  // namespace
}  // namespace sigpak::test
