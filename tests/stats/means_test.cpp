// SPDX-License-Identifier: MIT
// Geometric and harmonic mean.
#include "stats/statistic.h"

namespace sigpak::test {
namespace {

template <class V> class Means : public testing::Test {};
TYPED_TEST_SUITE(Means, records, record_names);

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

TYPED_TEST(Means, RealValuesByHand) {
  using V = TypeParam;
  constexpr double h = wide(huge<V>);
  struct {
    std::initializer_list<double> x;
    double geometric, harmonic;
  } const cases[] = {{{}, 0, 0},
                     {{5}, 5, 5},
                     {{1, 0, 2}, 0, 0},
                     {{1, -1}, 0, h},
                     {{-2, -8}, 4, -3.2},
                     {{-2, 8}, 0, -16.0 / 3},
                     {{3, 1, 2, 4}, std::pow(24, 0.25), 1.92},
                     {{3, 1, 2}, std::cbrt(6), 18.0 / 11},
                     {{1e-20, 1e-20, 1e20, 1e20}, 1, 2e-20},
                     {{1e-25, 1e-25}, is_double<V> ? 1e-25 : 0, 1e-25},
                     {{1, nan, -0.0}, 0, 0}};
  for (const auto& c : cases) {
    const signal<V> v(c.x);
    expect_values<V>(result_of<V>(TWIN(s_gmean), v), {c.geometric}, 1e-14 + 3 * unit_roundoff<V>,
                     "geometric");
    expect_values<V>(result_of<V>(TWIN(s_hmean), v), {c.harmonic}, 3 * unit_roundoff<V>, "harmonic");
  }
}

TYPED_TEST(Means, ComplexRootOfTheProductAndReciprocals) {
  using V = TypeParam;
  using complex = std::complex<double>;
  constexpr double h = wide(huge<V>);
  struct {
    std::initializer_list<double> z;
    bool guarded;
    complex geometric, harmonic;
  } const cases[] = {{{3, 4}, false, 0, 0},
                     {{0, 1, 0, 1}, false, 0, 0},
                     {{1, 1, 2, -1, -0.5, 3}, false, 0, 0},
                     {{-1, 0, 1, 0}, false, 0, 0},
                     {{5, -2, 0.0009765625, 7}, false, 0, 0},
                     {{}, true, 0, 0},
                     {{0, 0, 1, 1}, true, 0, {2, 2}},
                     {{3 * h, 0}, true, 3 * h, h},
                     {{0, 0}, true, 0, 0}};
  for (const auto& c : cases) {
    const signal<V> v(c.z, true);
    complex product = 1;
    complex reciprocals = 0;
    for (const auto z : contents<V>(v).points) {
      product *= complex(z);
      reciprocals += 1.0 / complex(z);
    }
    const double n = v.points;
    const complex root = c.guarded ? c.geometric : std::pow(product, 1 / n);
    const complex harmonic = c.guarded ? c.harmonic : std::abs(reciprocals) > 0 ? n / reciprocals : 0;
    const double relative = 8 * unit_roundoff<V> + (c.guarded ? 1e-13 : 0);
    const auto near = [relative](const samples<V>& got, complex wanted) {
      ASSERT_EQ(got.size(), 2U);
      EXPECT_LE(std::abs(complex(wide(got[0]), wide(got[1])) - wanted), relative * std::abs(wanted));
    };
    near(result_of<V>(TWIN(s_gmean), v), root);
    near(result_of<V>(TWIN(s_hmean), v), harmonic);
  }
}

TYPED_TEST(Means, HarmonicMeanOfManyBlocks) {
  using V = TypeParam;
  for (const index n : {2047, 2048, 2049, 2048 * 9 + 5}) {
    signal<V> v(noise<V>(n, 5));
    long double sum = 0;
    for (index i = 0; i < n; ++i) sum += 1 / static_cast<long double>(v.data[i] += 2);
    const auto wanted = static_cast<double>(static_cast<long double>(n) / sum);
    expect_values<V>(result_of<V>(TWIN(s_hmean), v), {wanted}, 2e-14, "");
    v.data[n - 1] = 0;
    EXPECT_EQ(result_of<V>(TWIN(s_hmean), v), samples<V>{0});
  }
}

}  // namespace
}  // namespace sigpak::test
