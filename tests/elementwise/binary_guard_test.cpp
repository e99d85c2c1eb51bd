// Where the binary operations leave plain arithmetic: zero divisors, ties, NaN, and values about H.
#include <gtest/gtest.h>

#include "elementwise/binary_support.h"

namespace sigpak::test {
namespace {

template <class V> class BinaryGuard : public testing::Test {};
TYPED_TEST_SUITE(BinaryGuard, records, record_names);

// One point by one point; two values make a complex operand.
template <class T> struct example {
  std::vector<T> a;
  std::vector<T> b;
  std::vector<T> wanted;
};

template <record V> void check(operation<V> run, const std::vector<example<scalar<V>>>& examples) {
  for (std::size_t k = 0; k < examples.size(); ++k) {
    const auto& e = examples[k];
    const signal<V> a(e.a, e.a.size() == 2);
    const signal<V> b(e.b, e.b.size() == 2);
    signal<V> out;
    ASSERT_EQ(run(&a, &b, &out), 0);
    const samples<V> got = out.values();
    ASSERT_EQ(got.size(), e.wanted.size()) << "example " << k;
    for (std::size_t i = 0; i < got.size(); ++i) {
      if (std::isnan(e.wanted[i])) {
        EXPECT_TRUE(std::isnan(got[i])) << "example " << k;
      } else {
        EXPECT_EQ(got[i], e.wanted[i]) << "example " << k;
      }
    }
  }
}

template <class T> constexpr T nan = std::numeric_limits<T>::quiet_NaN();
template <class T> constexpr T inf = std::numeric_limits<T>::infinity();

TYPED_TEST(BinaryGuard, Division) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T h = huge<V>;
  constexpr T least = std::numeric_limits<T>::denorm_min();
  check<V>(TWIN(b_div), {{{1}, {0}, {h}},
                         {{-1}, {0}, {h}},
                         {{1}, {-T(0)}, {h}},
                         {{0}, {0}, {0}},
                         {{-T(0)}, {0}, {0}},
                         {{-2}, {4}, {T(-0.5)}},
                         {{nan<T>}, {0}, {h}},
                         {{0}, {nan<T>}, {nan<T>}},
                         {{inf<T>}, {2}, {inf<T>}},
                         {{0, 0}, {0}, {0, 0}},
                         {{0, -1}, {0}, {h, h}},
                         {{3, -6}, {4}, {T(0.75), T(-1.5)}},
                         {{1}, {0, 0}, {h, h}},
                         {{0}, {0, 0}, {0, 0}},
                         {{-6}, {0, 2}, {0, 3}},
                         {{0, 0}, {0, 0}, {0, 0}},
                         {{0, 0}, {least, 0}, {h, h}},  // the squares underflow, the divisor is not zero
                         {{1, -1}, {0, least}, {h, h}},
                         {{0, 5}, {0, 0}, {h, h}},
                         {{5, 10}, {1, 2}, {5, 0}},
                         {{1, 0}, {nan<T>, 0}, {nan<T>, nan<T>}}});
  // Products with the reciprocal, which differ from quotients in the last place.
  const T third = 1 / T(3);
  check<V>(TWIN(b_div), {{{5, 7}, {3}, {5 * third, 7 * third}},
                         {{49, 0}, {0, 7}, {0, -343 * (1 / T(49))}},
                         {{49}, {7, 0}, {343 * (1 / T(49)), 0}}});
}

TYPED_TEST(BinaryGuard, MinimumAndMaximum) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T h = huge<V>;
  const T beyond = std::nextafter(h, inf<T>);
  check<V>(TWIN(b_min), {{{1}, {2}, {1}},
                         {{-3}, {2}, {-3}},
                         {{nan<T>}, {2}, {2}},
                         {{2}, {nan<T>}, {nan<T>}},
                         {{2 * h}, {3 * h}, {2 * h}},
                         {{3, 4}, {0, -4}, {0, -4}},
                         {{-3, 4}, {5, 0}, {5, 0}},  // a tie
                         {{-3, 4}, {-6}, {-3, 4}},   // magnitudes, not values
                         {{-3}, {0, 1}, {0, 1}},
                         {{-1}, {0, 2}, {-1, 0}},
                         {{3, nan<T>}, {9, 9}, {9, 9}},
                         {{1, 1}, {nan<T>, 0}, {nan<T>, 0}},
                         {{beyond, nan<T>}, {h, h}, {beyond, nan<T>}},  // H against H^2
                         {{h, 0}, {beyond, 0}, {beyond, 0}},            // H^2 against H
                         {{beyond, 0}, {0, -beyond}, {0, -beyond}},
                         {{0, beyond}, {h, 0}, {0, beyond}}});
  check<V>(TWIN(b_max), {{{1}, {2}, {2}},
                         {{-3}, {2}, {2}},
                         {{nan<T>}, {2}, {2}},
                         {{2}, {nan<T>}, {nan<T>}},
                         {{3 * h}, {2 * h}, {3 * h}},
                         {{3, 4}, {0, -4}, {3, 4}},
                         {{-3, 4}, {5, 0}, {5, 0}},
                         {{-3}, {0, 1}, {-3, 0}},
                         {{0, -2}, {1}, {0, -2}},
                         {{3, nan<T>}, {1, 1}, {1, 1}},
                         {{h, 0}, {beyond, 0}, {h, 0}},
                         {{0, -beyond}, {1, 1}, {0, -beyond}},
                         {{beyond, 1}, {1, beyond}, {1, beyond}}});
  // Ties of zeros and of equal sizes go to b, sign and all.
  for (const auto run : {operation<V>(TWIN(b_min)), operation<V>(TWIN(b_max))}) {
    for (const T first : {T(0), -T(0)}) {
      const signal<V> a(samples<V>{first});
      const signal<V> b(samples<V>{-first});
      signal<V> out;
      ASSERT_EQ(run(&a, &b, &out), 0);
      EXPECT_EQ(std::signbit(out.data[0]), std::signbit(-first));
    }
  }
}

TYPED_TEST(BinaryGuard, TheEndsOfTheWeightedMeanAreCopies) {
  using V = TypeParam;
  using T = scalar<V>;
  const samples<V> x = noise<V>(64, 1);
  samples<V> y = noise<V>(64, 2);
  for (std::size_t i = 0; i < y.size(); i += 3) y[i] *= huge<V>;
  const signal<V> a(x);
  const signal<V> b(y);
  signal<V> out;
  ASSERT_EQ(TWIN(b_avg_add)(&a, &b, &out, T(1)), 0);
  EXPECT_EQ(out.values(), x);
  ASSERT_EQ(TWIN(b_avg_add)(&a, &b, &out, T(0)), 0);
  EXPECT_EQ(out.values(), y);
  ASSERT_EQ(TWIN(b_avg_add)(&a, &a, &out, T(0.3)), 0);
  EXPECT_EQ(out.values(), x);  // the mean of equal values is that value, exactly
}

}  // namespace
}  // namespace sigpak::test
