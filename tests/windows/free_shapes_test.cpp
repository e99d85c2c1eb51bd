// SPDX-License-Identifier: MIT
// Windows of the caller's own shape, and tapers, against their formulas in long double.
#include "windows/windowed.h"

namespace sigpak::test {
namespace {

constexpr int stays = DSP_WINDOW_FLAG_NO_ROTATE;
constexpr double pi = std::numbers::pi;

template <class V> class FreeShapes : public testing::Test {
 protected:
  void TearDown() override { TWIN(_free_internal)(); }
};
TYPED_TEST_SUITE(FreeShapes, records, record_names);

std::vector<index> sizes() {
  std::vector<index> all;
  for (index n = 1; n <= 70; ++n) all.push_back(n);
  all.insert(all.end(), {255, 256, 257});
  return all;
}

template <record V> samples<V> sinc(index n, double edge, double power, int flags) {
  signal<V> v(ones<V>(n));
  const auto e = static_cast<scalar<V>>(edge);
  EXPECT_EQ(TWIN(i_window_sinc)(&v, e, static_cast<scalar<V>>(power), flags | stays), 0);
  return v.values();
}

template <record V> samples<V> cosines(index n, const samples<V>& terms, int flags) {
  signal<V> v(ones<V>(n));
  const signal<V> a(terms);
  EXPECT_EQ(TWIN(i_window_cos)(&v, &a, flags | stays), 0);
  return v.values();
}

// The shape over the distances from the centre in units of half the length, normalised.
std::vector<real> laid_out(index n, int flags, const std::function<real(real)>& shape) {
  const bool even = (flags & symmetric) != 0;
  const real d = static_cast<real>(even && n > 1 ? n - 1 : n);
  std::vector<real> w;
  for (index i = 0; i < n; ++i) {
    const real x =
        std::abs(static_cast<real>(i) - (even ? static_cast<real>(n - 1) / 2 : static_cast<real>(n / 2)));
    w.push_back(shape(2 * x / d));
  }
  const level l = level_of(w);
  const int mode = flags & 3;
  const real unit = mode == by_mean ? l.mean : mode == by_rms ? std::sqrt(l.square) : 1;
  for (real& x : w) x /= unit != 0 ? unit : 1;
  return w;
}

template <record V>
void expect_close(const samples<V>& got, const std::vector<real>& wanted, double allowed) {
  ASSERT_EQ(got.size(), wanted.size());
  real largest = 1;
  for (const real w : wanted) largest = std::fmax(largest, std::abs(w));
  for (std::size_t i = 0; i < got.size(); ++i) {
    ASSERT_LE(std::abs(exact(got[i]) - wanted[i]), largest * exact(allowed)) << i;
  }
}

TYPED_TEST(FreeShapes, SincsAndCosinesFollowTheirFormulas) {
  using V = TypeParam;
  const samples<V> sums[] = {{1}, {scalar<V>(0.5), scalar<V>(0.5)}, {1, -2, scalar<V>(0.25), 3, -1, 2}};
  for (const index n : sizes()) {
    for (const int flags : {0, 1, 2, 4, 5, 6}) {
      SCOPED_TRACE(testing::Message() << n << " points, flags " << flags);
      // A mean that nearly cancels magnifies what the terms are off.
      const double slack = (flags & 3) == by_peak ? 4 : 40;
      for (const auto& [edge, power] :
           {std::pair{2.0, 1.0}, {-5.0, 1.0}, {8.0, 3.0}, {2.0, 0.5}, {1.5, 0.0}}) {
        const auto shape = [e = exact(edge), p = exact(power)](real u) -> real {
          const real s = e * u == 0 ? 1 : std::sin(e * u) / (e * u);
          return p == 0 ? 1 : std::copysign(std::pow(std::abs(s), p), s);
        };
        expect_close<V>(sinc<V>(n, edge, power, flags), laid_out(n, flags, shape),
                        slack * std::fmax(power, 1.0) * unit_roundoff<V>);
      }
      for (const auto& a : sums) {
        const auto shape = [&a](real u) {
          real sum = 0;
          for (std::size_t k = 0; k < a.size(); ++k) {
            sum += exact(a[k]) * std::cos(std::numbers::pi_v<real> * static_cast<real>(k) * u);
          }
          return sum;
        };
        const auto wanted = laid_out(n, flags, shape);
        if (a.size() > 2 && (flags & 3) == by_mean) continue;  // no mean to speak of
        expect_close<V>(cosines<V>(n, a, flags), wanted, slack * unit_roundoff<V> + 18 * 0x1p-50);
      }
    }
  }
}

TYPED_TEST(FreeShapes, OneLobeIsTheCatalogueWindowAndEndsAtZero) {
  using V = TypeParam;
  for (const index n : {1, 2, 3, 9, 10, 64, 257}) {
    for (const int mode : {by_mean, by_rms, by_peak}) {
      EXPECT_TRUE(same_bits(sinc<V>(n, pi, 1, mode), window_of<V>(n, DSP_WINDOW_RIEMANN, mode)));
      for (const double edge : {-pi, 3 * pi, 3 * pi * (1 + 3e-15), 100 * pi}) {
        EXPECT_EQ(sinc<V>(n, edge, 1.5, mode | symmetric)[0], n == 1 ? 1 : 0);
      }
    }
  }
  EXPECT_NE(sinc<V>(10, pi * (1 + 1e-5), 1, by_peak)[0], 0);
  EXPECT_EQ(sinc<V>(10, pi, 0, by_peak), ones<V>(10));
}

// The catalogue advances its angles by addition, up to 500 times here.
TYPED_TEST(FreeShapes, CatalogueTermsGiveTheCatalogueWindows) {
  using V = TypeParam;
  const std::vector<std::vector<double>> terms = {
      {0.5, 0.5},
      {0.54, 0.46},
      {0.42, 0.5, 0.08},
      {0.424383190860823, 0.497339753968089, 0.078277055171088},
      {0.355768, 0.487396, 0.144232, 0.012604},
      {0.3232153788984078, 0.47149214396487166, 0.1755341299514293, 0.028496990099716707,
       0.0012613570855745683}};
  for (std::size_t i = 0; i < terms.size(); ++i) {
    samples<V> a;
    for (const double t : terms[i]) a.push_back(static_cast<scalar<V>>(t));
    for (const index n : {9, 64, 1000}) {
      const auto wanted = window_of<V>(n, DSP_WINDOW_HANN + static_cast<int>(i), by_peak);
      const auto got = cosines<V>(n, a, by_peak);
      for (std::size_t k = 0; k < got.size(); ++k) {
        ASSERT_NEAR(static_cast<double>(got[k]), static_cast<double>(wanted[k]), 64 * unit_roundoff<V>);
      }
    }
  }
}

TYPED_TEST(FreeShapes, TapersAreKaisersFormulaSymmetricAndOfUnitSum) {
  using V = TypeParam;
  const std::pair<double, double> shapes[] = {{0, 0},       {21, 0},       {30, 2.1166},
                                              {50, 4.5335}, {60, 5.65326}, {90, 8.95926}};
  for (const auto& [a, beta] : shapes) {
    for (const index n : {1, 2, 5, 8, 33, 256}) {
      signal<V> v(ones<V>(n));
      ASSERT_EQ(TWIN(i_window_fir)(&v, static_cast<scalar<V>>(a), 0), 0);
      const auto d = definition_of(kaiser, beta);
      for (index i = 0; i < n; ++i) {
        const real x = std::abs(static_cast<real>(i) - static_cast<real>(n - 1) / 2);
        const real wanted = n == 1 ? 1 : d.shape(x, static_cast<real>(n - 1)) / bessel(exact(beta));
        ASSERT_NEAR(static_cast<double>(v.data[i]), static_cast<double>(wanted), 3e-5) << a << ' ' << n;
        ASSERT_EQ(v.data[i], v.data[n - 1 - i]);
      }
      ASSERT_EQ(TWIN(i_window_fir)(&v, static_cast<scalar<V>>(a), 1), 0);
      ASSERT_NEAR(static_cast<double>(level_of(v.values()).mean) * static_cast<double>(n), 1,
                  16 * unit_roundoff<V>);
    }
  }
  signal<V> pairs({1, 2, 3, -1}, true);  // 4 + i in all
  ASSERT_EQ(TWIN(i_window_fir)(&pairs, 0, 1), 0);
  const samples<V> wanted = {scalar<V>(6 / 17.0), scalar<V>(7 / 17.0), scalar<V>(11 / 17.0),
                             scalar<V>(-7 / 17.0)};
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(pairs.data[i], wanted[i], 4 * unit_roundoff<V>);
  signal<V> balanced{1, 0, -1};
  ASSERT_EQ(TWIN(i_window_fir)(&balanced, 10, 1), 0);
  EXPECT_EQ(balanced.values(), (samples<V>{1, 0, -1}));
}

TYPED_TEST(FreeShapes, ComplexPointsRotationAndTermsThatAreTheSignal) {
  using V = TypeParam;
  expect_in_place<V>([](V* v) { return TWIN(i_window_sinc)(v, 2, 1, by_peak); },
                     [](contents<V>& v) {
                       const auto w = sinc<V>(std::ssize(v.points), 2, 1, by_peak);
                       for (std::size_t i = 0; i < w.size(); ++i) v.points[i] *= w[i];
                       std::rotate(v.points.begin(), v.points.begin() + std::ssize(v.points) / 2,
                                   v.points.end());
                     },
                     {0, 1, 2, 9, 64});
  signal<V> v{0.5, 0.25, 0.25};
  const auto w = cosines<V>(3, v.values(), by_peak);
  ASSERT_EQ(TWIN(i_window_cos)(&v, &v, by_peak | stays), 0);
  EXPECT_EQ(v.values(), (samples<V>{w[0] / 2, w[1] / 4, w[2] / 4}));
}

TYPED_TEST(FreeShapes, RefusalsLeaveTheRecord) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  constexpr T inf = std::numeric_limits<T>::infinity();
  signal<V> v{1, 2, 3, 4};
  const signal<V> terms{1, 1};
  const signal<V> none;
  const signal<V> pair({1, 1}, true);
  const signal<V> wild({1, static_cast<double>(inf)});
  for (const int flags : {3, int{by_width}}) {
    EXPECT_EQ(TWIN(i_window_sinc)(&v, 1, 1, flags), -1);
    EXPECT_EQ(TWIN(i_window_cos)(&v, &terms, flags), -1);
  }
  for (const auto& [edge, power] : {std::pair<T, T>{nan, 1}, {inf, 1}, {1, nan}, {1, T(-0.5)}}) {
    EXPECT_EQ(TWIN(i_window_sinc)(&v, edge, power, 0), -1);
  }
  for (const auto* a : {&none, &pair, &wild}) EXPECT_EQ(TWIN(i_window_cos)(&v, a, 0), -1);
  for (const auto& [a, flags] : {std::pair<T, int>{nan, 0}, {T(-1), 0}, {60, 2}, {60, -1}}) {
    EXPECT_EQ(TWIN(i_window_fir)(&v, a, flags), -1);
  }
  EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4}));
}

}  // namespace
}  // namespace sigpak::test
