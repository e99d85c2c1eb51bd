// Interleaving, inner products and products of polynomials.
#include <gtest/gtest.h>

#include "elementwise/binary_support.h"
#include "support/failing.h"

namespace sigpak::test {
namespace {

template <class V> class BinaryProducts : public testing::Test {};
TYPED_TEST_SUITE(BinaryProducts, records, record_names);

TYPED_TEST(BinaryProducts, InterleavingAlternatesThePoints) {
  using V = TypeParam;
  for (const auto& p : pairings()) {
    for (const index n : edge_sizes()) {
      SCOPED_TRACE(described("inter", p, n));
      scene<V> s(p, n, n);
      ASSERT_EQ(s.run(TWIN(b_inter)), 0);
      ASSERT_EQ(length(&s.out()), 2 * n);
      EXPECT_EQ(s.out().complex, p.a_complex || p.b_complex ? 1 : 0);
      EXPECT_EQ(s.out().delta, s.mean_delta() / 2);
      for (index i = 0; i < n; ++i) {
        ASSERT_EQ(value_at(s.out(), 2 * i), s.a_values[static_cast<std::size_t>(i)]);
        ASSERT_EQ(value_at(s.out(), 2 * i + 1), s.b_values[static_cast<std::size_t>(i)]);
      }
      EXPECT_TRUE(s.lent_untouched());
    }
  }
}

TYPED_TEST(BinaryProducts, InnerProductOfEveryPairing) {
  using V = TypeParam;
  for (const auto& p : pairings()) {
    for (const index n : edge_sizes()) {
      SCOPED_TRACE(described("dot", p, n));
      scene<V> s(p, n, n);
      const auto delta = s.out().delta;
      ASSERT_EQ(s.run(TWIN(bs_dot)), 0);
      ASSERT_EQ(s.out().points, 1U);
      EXPECT_EQ(s.out().complex, p.a_complex || p.b_complex ? 1 : 0);
      EXPECT_EQ(s.out().delta, delta);
      wide wanted = 0;
      long double terms = 0;
      for (std::size_t i = 0; i < s.a_values.size(); ++i) {
        wanted += s.a_values[i] * s.b_values[i];
        terms += std::abs(s.a_values[i] * s.b_values[i]);
      }
      const long double sums = is_double<V> ? std::min<long double>(static_cast<long double>(n), 40) : 0;
      const auto u = static_cast<long double>(unit_roundoff<V>);
      const long double bound = u * (std::abs(wanted) + 0x1p-20L * terms) + u * sums * terms;
      ASSERT_LE(std::abs(value_at(s.out(), 0) - wanted), bound);
      EXPECT_TRUE(s.lent_untouched());
    }
  }
}

// Block totals, not one running sum: the small products of the second block survive beside the first.
TYPED_TEST(BinaryProducts, InnerProductsAddUpInBlocks) {
  using V = TypeParam;
  const double big = is_double<V> ? 0x1p53 : 0x1p24;
  samples<V> x(4096, scalar<V>(0));
  x[0] = static_cast<scalar<V>>(big);
  for (std::size_t i = 2048; i < 4096; ++i) x[i] = 1;
  const signal<V> a(x);
  const signal<V> ones(samples<V>(4096, scalar<V>(1)));
  signal<V> out;
  ASSERT_EQ(TWIN(bs_dot)(&a, &ones, &out), 0);
  EXPECT_EQ(out.data[0], static_cast<scalar<V>>(big + 2048));
}

TYPED_TEST(BinaryProducts, PolynomialProductOfEveryPairing) {
  using V = TypeParam;
  for (const auto& p : pairings()) {
    for (const index n : {0, 1, 2, 3, 17, 40}) {
      for (const index m : {0, 1, 2, 5, 16, 33}) {
        SCOPED_TRACE(described("pmul", p, n));
        scene<V> s(p, n, m);
        ASSERT_EQ(s.run(TWIN(b_pmul)), 0);
        const auto na = static_cast<index>(s.a_values.size());
        const auto nb = static_cast<index>(s.b_values.size());
        ASSERT_EQ(length(&s.out()), na > 0 && nb > 0 ? na + nb - 1 : 0);
        EXPECT_EQ(s.out().complex, p.a_complex || p.b_complex ? 1 : 0);
        EXPECT_EQ(s.out().delta, s.mean_delta());
        for (index k = 0; k < length(&s.out()); ++k) {
          wide wanted = 0;
          long double terms = 0;
          for (index i = std::max<index>(0, k - nb + 1); i <= std::min(k, na - 1); ++i) {
            const wide term =
                s.a_values[static_cast<std::size_t>(i)] * s.b_values[static_cast<std::size_t>(k - i)];
            wanted += term;
            terms += std::abs(term);
          }
          const long double bound = 8 * static_cast<long double>(unit_roundoff<V>) * terms;
          ASSERT_LE(std::abs(value_at(s.out(), k) - wanted), bound) << k;
        }
        EXPECT_TRUE(s.lent_untouched());
      }
    }
  }
}

// From zero by rising index of a, product after product.
TYPED_TEST(BinaryProducts, PolynomialProductsAddInTheOrderOfTheFirstFactor) {
  using V = TypeParam;
  using T = scalar<V>;
  const T big = is_double<V> ? T(0x1p53) : T(0x1p24);
  const signal<V> a(samples<V>{big, 1, -big, 1});
  const signal<V> ones{1, 1, 1, 1};
  signal<V> out;
  ASSERT_EQ(TWIN(b_pmul)(&a, &ones, &out), 0);
  EXPECT_EQ(out.values(), (samples<V>{big, big, 0, 1, 1 - big + 1, 1 - big, 1}));
}

TYPED_TEST(BinaryProducts, ResultsTooLongToCountFail) {
  using V = TypeParam;
  // The operands are never read: the size is refused first.
  scalar<V> cell = 0;
  V vast{};
  TWIN(_init)(&vast);
  vast.data = &cell;
  vast.points = 0x7fffffff;
  for (const auto run : {operation<V>(TWIN(b_pmul)), operation<V>(TWIN(b_inter))}) {
    signal<V> out{1, 2, 3};
    EXPECT_EQ(run(&vast, &vast, &out), -1);
    EXPECT_EQ(out.data, nullptr);
    EXPECT_EQ(out.alloc, 0);
  }
}

TYPED_TEST(BinaryProducts, AProductInPlaceNeedsItsTemporary) {
  using V = TypeParam;
  signal<V> a{1, 2};
  const signal<V> b{1, 1, 1};
  {
    const failing_records<V> none(0);
    EXPECT_EQ(TWIN(b_pmul)(&a, &b, &a), -1);
  }
  EXPECT_EQ(a.values(), (samples<V>{1, 2}));
}

}  // namespace
}  // namespace sigpak::test
