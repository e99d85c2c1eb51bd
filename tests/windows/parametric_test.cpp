// Kaiser, Gaussian and Riemann windows, against their formulas in long double.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

#include "support/failing.h"
#include "windows/windowed.h"

namespace sigpak::test {
namespace {

template <class V> class Parametric : public testing::Test {};
TYPED_TEST_SUITE(Parametric, records, record_names);

constexpr long double pi = std::numbers::pi_v<long double>;
constexpr int peak = DSP_WINDOW_FLAG_PEAK;
constexpr int symmetric = DSP_WINDOW_FLAG_SYMMETRIC;

// The power series, whose terms are all positive.
long double bessel(long double x) {
  long double term = 1;
  long double sum = 1;
  for (int k = 1; term > sum * 1e-22L; ++k) {
    term *= x * x / (4.0L * k * k);
    sum += term;
  }
  return sum;
}

using shape = std::function<long double(long double x, long double n, bool of_symmetric)>;

shape kaiser_shape(long double beta) {
  return [beta](long double x, long double n, bool of_symmetric) {
    const long double d = of_symmetric ? n - 1 : n;
    return d > 0 ? bessel(beta * std::sqrt(std::fmax(0.0L, 1 - 4 * x * x / (d * d)))) : 1;
  };
}

shape gaussian_shape(long double a) {
  return [a](long double x, long double n, bool) { return std::exp(-x * x / (2 * a * a * n * n)); };
}

// The points of a shape, normalised; a peak of 0 takes the shape's value in the middle.
std::vector<long double> points_of(const shape& f, index n, int flags) {
  const bool even_symmetric = (flags & symmetric) != 0 && n % 2 == 0;
  std::vector<long double> w;
  long double sum = 0;
  long double square = 0;
  for (index i = 0; i < n; ++i) {
    const long double x = std::abs(static_cast<long double>(i - n / 2) + (even_symmetric ? 0.5L : 0.0L));
    w.push_back(f(x, static_cast<long double>(n), (flags & symmetric) != 0));
    sum += w.back();
    square += w.back() * w.back();
  }
  const auto points = static_cast<long double>(n);
  const int mode = flags & 3;
  const long double unit = mode == 0   ? sum / points
                           : mode == 1 ? std::sqrt(square / points)
                                       : f(0, points, (flags & symmetric) != 0);
  for (auto& x : w) x /= unit;
  return w;
}

template <record V, class F> samples<V> applied(index n, F window, double parameter, int flags) {
  signal<V> v(ones<V>(n));
  const auto p = static_cast<scalar<V>>(parameter);
  return window(&v, p, flags | DSP_WINDOW_FLAG_NO_ROTATE) == 0 ? v.values() : samples<V>{};
}

template <record V>
void expect_points(const samples<V>& got, const std::vector<long double>& wanted, double bound) {
  ASSERT_EQ(got.size(), wanted.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    const auto w = static_cast<double>(wanted[i]);
    EXPECT_NEAR(static_cast<double>(got[i]), w, bound * std::abs(w) + 1e-40) << "point " << i;
  }
}

// A relative error in the argument of I0 is multiplied by the argument; the mean of a thousand points adds
// its own.
TYPED_TEST(Parametric, KaiserFollowsItsFormula) {
  using V = TypeParam;
  for (const index n : {1, 2, 3, 4, 5, 8, 9, 63, 64, 1025, 1026}) {
    for (const double beta : {0.0, 0.5, -2.0, 9.5, 40.0, 230.0}) {
      for (const int flags : {0, 1, 2, 0 | symmetric, 1 | symmetric, 2 | symmetric}) {
        if (n == 1) {
          EXPECT_EQ(applied<V>(n, TWIN(i_window_kaiser), beta, flags), ones<V>(1));
          continue;
        }
        SCOPED_TRACE(testing::Message() << n << " points, beta " << beta << ", flags " << flags);
        expect_points<V>(applied<V>(n, TWIN(i_window_kaiser), beta, flags),
                         points_of(kaiser_shape(exact(beta)), n, flags),
                         4 * unit_roundoff<V> + (20 + std::abs(beta)) * 0x1p-52);
      }
    }
  }
}

TYPED_TEST(Parametric, GaussianFollowsItsFormula) {
  using V = TypeParam;
  for (const index n : {1, 2, 3, 4, 5, 8, 9, 63, 64, 1025, 1026}) {
    for (const double a : {0.15625, -0.25, 1.0, 1024.0}) {
      for (const int flags : {0, 1, 2, 0 | symmetric, 1 | symmetric, 2 | symmetric}) {
        SCOPED_TRACE(testing::Message() << n << " points, a " << a << ", flags " << flags);
        expect_points<V>(applied<V>(n, TWIN(i_window_gauss), a, flags),
                         points_of(gaussian_shape(exact(a)), n, flags), 4 * unit_roundoff<V> + 16 * 0x1p-52);
      }
    }
  }
}

TYPED_TEST(Parametric, TheCatalogueHasTheirParameters) {
  using V = TypeParam;
  const long double betas[] = {9.473960131326246L,  10.751776690564654L, 12.014077292090791L,
                               13.264372446115681L, 14.505082414495599L, 15.73795091271457L};
  const long double deviations[] = {0.1583722L, 0.1442161L, 0.1328102L};
  for (const int flags : {0, 1, 2, symmetric}) {
    for (const index n : {20, 21}) {
      const double bound = 4 * unit_roundoff<V> + 20 * 0x1p-52;
      for (int i = 0; i < 6; ++i) {
        expect_points<V>(window_of<V>(n, DSP_WINDOW_KAISER70 + i, flags),
                         points_of(kaiser_shape(betas[i]), n, flags), bound);
      }
      for (int i = 0; i < 3; ++i) {
        expect_points<V>(window_of<V>(n, DSP_WINDOW_GAUSS60 + i, flags),
                         points_of(gaussian_shape(deviations[i]), n, flags), bound);
      }
    }
  }
}

TYPED_TEST(Parametric, RiemannIsOneMainLobe) {
  using V = TypeParam;
  for (const index n : {1, 2, 3, 8, 9, 3000, 3001}) {
    for (const int flags : {0, 1, 2}) {
      const shape lobe = [](long double x, long double length, bool) {
        return x == 0 ? 1.0L : std::sin(2 * pi * x / length) / (2 * pi * x / length);
      };
      const samples<V> got = window_of<V>(n, DSP_WINDOW_RIEMANN, flags);
      const std::vector<long double> wanted = points_of(lobe, n, flags);
      ASSERT_EQ(got.size(), wanted.size());
      for (std::size_t i = 0; i < got.size(); ++i) {
        EXPECT_NEAR(static_cast<double>(got[i]), static_cast<double>(wanted[i]),
                    4 * unit_roundoff<V> + 16 * 0x1p-52);
      }
      EXPECT_TRUE(n % 2 != 0 || got[0] == 0);
    }
  }
  const samples<V> narrow = window_of<V>(9, DSP_WINDOW_RIEMANN, DSP_WINDOW_FLAG_PEAK, 4);
  const double side = 2 / std::numbers::pi;
  const double wanted[] = {0, 0, 0, side, 1, side, 0, 0, 0};
  for (std::size_t i = 0; i < 9; ++i)
    EXPECT_NEAR(static_cast<double>(narrow[i]), wanted[i], 2 * unit_roundoff<V>);
  EXPECT_EQ(window_of<V>(9, DSP_WINDOW_RIEMANN, DSP_WINDOW_FLAG_MEAN, 0), samples<V>(9))
      << "no width, no window";
}

TYPED_TEST(Parametric, BetaIsLimited) {
  using V = TypeParam;
  using T = scalar<V>;
  const double limits[] = {460.51701859880916, 230.25850929940458, 460.51701859880916};
  const double far[] = {1000,
                        -1000,
                        1e30,
                        std::numeric_limits<double>::infinity(),
                        -std::numeric_limits<double>::infinity(),
                        std::numeric_limits<double>::quiet_NaN()};
  for (const int mode : {0, 1, 2}) {
    for (const index n : {2, 5, 64}) {
      const samples<V> limit = applied<V>(n, TWIN(i_window_kaiser), limits[mode], mode);
      double middle = 0;
      for (const T x : limit) {
        EXPECT_TRUE(std::isfinite(x));
        middle = std::fmax(middle, static_cast<double>(x));
      }
      EXPECT_EQ(static_cast<double>(limit[static_cast<std::size_t>(n) / 2]), middle);
      EXPECT_GE(middle, 1);
      for (const double beta : far) {
        const samples<V> got = applied<V>(n, TWIN(i_window_kaiser), beta, mode);
        for (std::size_t i = 0; i < got.size(); ++i) {  // the limit itself is rounded in single precision
          EXPECT_NEAR(static_cast<double>(got[i]), static_cast<double>(limit[i]),
                      1e-4 * middle * unit_roundoff<V> * 0x1p24);
        }
      }
    }
    EXPECT_NE(applied<V>(64, TWIN(i_window_kaiser), limits[mode] - 10, mode),
              applied<V>(64, TWIN(i_window_kaiser), limits[mode], mode));
  }
}

TYPED_TEST(Parametric, EdgesOfTheParameters) {
  using V = TypeParam;
  EXPECT_EQ(applied<V>(6, TWIN(i_window_kaiser), 0, peak), ones<V>(6));
  EXPECT_EQ(applied<V>(5, TWIN(i_window_gauss), 0, peak), (samples<V>{0, 0, 1, 0, 0}));
  EXPECT_EQ(applied<V>(4, TWIN(i_window_gauss), 0, peak), (samples<V>{0, 0, 1, 0}));
  EXPECT_EQ(applied<V>(4, TWIN(i_window_gauss), 0, peak | symmetric), (samples<V>{0, 1, 1, 0}));
  EXPECT_EQ(applied<V>(5, TWIN(i_window_gauss), 0, peak | symmetric), (samples<V>{0, 0, 1, 0, 0}));
  EXPECT_EQ(applied<V>(5, TWIN(i_window_gauss), 0, DSP_WINDOW_FLAG_MEAN), (samples<V>{0, 0, 5, 0, 0}));
  // A deviation whose square underflows is as good as none; one without end is a constant.
  EXPECT_EQ(applied<V>(5, TWIN(i_window_gauss), 1e-38, peak), (samples<V>{0, 0, 1, 0, 0}));
  EXPECT_EQ(applied<V>(4, TWIN(i_window_gauss), 1e-38, DSP_WINDOW_FLAG_MEAN | symmetric), samples<V>(4));
  EXPECT_EQ(applied<V>(5, TWIN(i_window_gauss), 1e30, 0), ones<V>(5));
  EXPECT_EQ(applied<V>(5, TWIN(i_window_gauss), std::numeric_limits<double>::infinity(), 1), ones<V>(5));
}

TYPED_TEST(Parametric, ThePeakTurnsToTheFirstPointUnlessAsked) {
  using V = TypeParam;
  for (const auto& window : {TWIN(i_window_kaiser), TWIN(i_window_gauss)}) {
    signal<V> turned(ones<V>(7));
    turned.delta = 0.5;
    EXPECT_EQ(window(&turned, scalar<V>(0.75), peak), 0);
    EXPECT_EQ(turned.data[0], 1);
    EXPECT_EQ(turned.delta, 0.5);
    const samples<V> centred = applied<V>(7, window, 0.75, peak);
    EXPECT_EQ(centred[3], 1);
    for (std::size_t i = 0; i < 7; ++i) EXPECT_EQ(turned.data[i], centred[(i + 3) % 7]);

    signal<V> pairs({1, 2, 3, 4, 5, 6}, true);
    EXPECT_EQ(window(&pairs, scalar<V>(0.75), peak), 0);
    EXPECT_EQ(pairs.data[0], 3);
    EXPECT_EQ(pairs.data[1], 4);
    EXPECT_NEAR(pairs.data[2] * 6, pairs.data[3] * 5, 64 * unit_roundoff<V>);

    signal<V> empty;
    EXPECT_EQ(window(&empty, 1, 0), 0);
    empty.points = 0x80000001U;
    EXPECT_EQ(window(&empty, 1, 0), 0);
    empty.points = 0;
  }
}

TYPED_TEST(Parametric, RefusalsLeaveTheRecordAsItWas) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const auto& window : {TWIN(i_window_kaiser), TWIN(i_window_gauss)}) {
    signal<V> v{1, 2, 3, 4};
    EXPECT_EQ(window(&v, 1, 3), -1);
    EXPECT_EQ(window(&v, 1, DSP_WINDOW_FLAG_WIDTH), -1);
    for (const int allowed : {0, 1}) {
      const failing_records<V> scope(allowed);
      EXPECT_EQ(window(&v, 1, 0), -1);
    }
    EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4}));
  }
  signal<V> v{1, 2, 3, 4};
  EXPECT_EQ(TWIN(i_window_gauss)(&v, std::numeric_limits<T>::quiet_NaN(), 0), -1);
  for (int window = DSP_WINDOW_KAISER70; window <= DSP_WINDOW_GAUSS80; ++window) {
    EXPECT_EQ(TWIN(i_window2)(&v, window, DSP_WINDOW_FLAG_WIDTH, 4), -1);
  }
  EXPECT_EQ(TWIN(i_window)(&v, DSP_WINDOW_RIEMANN, symmetric), -1);
  EXPECT_EQ(v.values(), (samples<V>{1, 2, 3, 4}));
}

}  // namespace
}  // namespace sigpak::test
