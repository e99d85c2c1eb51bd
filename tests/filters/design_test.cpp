// FIR designs, against their closed forms in long double and by their frequency responses.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <numbers>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Design : public testing::Test {};
TYPED_TEST_SUITE(Design, records, record_names);

using real = long double;
constexpr real pi = std::numbers::pi_v<real>;

enum kind : int {
  band_pass,
  band_stop,
  high_pass,
  low_pass,
  cosine_kernel,
  delayed,
  differentiator,
  gaussian_kernel,
  hilbert,
  kaiser_kernel,
  ramp
};

template <record V> samples<V> taps_of(index n, int kind, double p1, double p2 = 0) {
  signal<V> v;
  v.points = static_cast<std::uint32_t>(n);
  v.delta = 0.125;
  EXPECT_EQ(TWIN(c_fir)(&v, kind, static_cast<scalar<V>>(p1), static_cast<scalar<V>>(p2)), 0)
      << kind << " of " << n;
  EXPECT_EQ(v.delta, 0.125);
  EXPECT_EQ(v.points, static_cast<std::uint32_t>(n));
  EXPECT_EQ(v.complex, 0);
  return v.values();
}

constexpr real exact(double x) { return static_cast<real>(x); }
constexpr real exact(float x) { return static_cast<real>(x); }

real sinc(real x) { return x == 0 ? 1 : std::sin(x) / x; }
real versed(real x) { return x * x > 1e-18L ? (std::cos(x) - 1) / (x * x) : -0.5L; }

// The tap at the distance t from the middle.
real tap(int kind, real t, real p1, real p2) {
  const real x = 2 * pi * p1 * t;
  switch (kind) {
    case band_pass:
      return 2 * std::cos(x) * p2 * sinc(pi * p2 * t);
    case band_stop:
      return (t == 0 ? 1 : 0) - tap(band_pass, t, p1, p2);
    case high_pass:
      return (t == 0 ? 1 : 0) - tap(low_pass, t, p1, p2);
    case low_pass:
      return 2 * p1 * sinc(x);
    case delayed:
      return 2 * p1 * sinc(2 * pi * p1 * (t - p2));
    case differentiator:
      return t == 0 ? 0 : 2 * p1 * 2 * pi * p1 * (std::cos(x) - sinc(x)) / x;
    case gaussian_kernel:
      return std::exp(-x * x / (2 * std::log(2.0L)));
    case hilbert:
      return t == 0 ? 0 : 2 * p1 * x * versed(x);
    case ramp:
      return t == 0 ? 2 * p1 * p1 : 4 * p1 * p1 * (sinc(x) + versed(x));
    default:
      return 0;
  }
}

bool of_unit_sum(int kind) {
  return kind == cosine_kernel || kind == delayed || kind == gaussian_kernel || kind == kaiser_kernel;
}

std::vector<real> wanted_taps(index n, const std::function<real(real)>& shape, bool unit_sum) {
  std::vector<real> h;
  real sum = 0;
  for (index i = 0; i < n; ++i) {
    h.push_back(shape(static_cast<real>(i) - static_cast<real>(n - 1) / 2));
    sum += h.back();
  }
  for (auto& x : h) x /= unit_sum ? sum : 1;
  return h;
}

template <record V> void expect_taps(const samples<V>& got, const std::vector<real>& wanted, double bound) {
  ASSERT_EQ(got.size(), wanted.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    EXPECT_NEAR(static_cast<double>(got[i]), static_cast<double>(wanted[i]), bound) << "tap " << i;
  }
}

// The phase collects a rounding per tap; (cos x - 1) / x^2 loses digits where x is small.
TYPED_TEST(Design, TapsFollowTheirClosedForms) {
  using V = TypeParam;
  for (const int kind : {0, 1, 2, 3, 5, 6, 7, 8, 10}) {
    for (const index n : {1, 2, 3, 4, 5, 8, 9, 31, 32, 101, 102}) {
      if (n % 2 == 0 && (kind == band_stop || kind == high_pass)) continue;
      for (const double p1 : {0.05, 0.25, 0.5}) {
        const auto f1 = static_cast<real>(static_cast<scalar<V>>(p1));
        const auto f2 = static_cast<real>(static_cast<scalar<V>>(0.3));
        SCOPED_TRACE(testing::Message() << "kind " << kind << ", " << n << " taps, parameter " << p1);
        const auto shape = [=](real t) { return tap(kind, t, f1, f2); };
        expect_taps<V>(taps_of<V>(n, kind, p1, 0.3), wanted_taps(n, shape, of_unit_sum(kind)),
                       static_cast<double>(4 + n) * 8 * unit_roundoff<V>);
      }
    }
  }
}

// sinh(r) with real or imaginary r, divided by r where asked.
real kernel(real square, bool divided) {
  const real r = std::sqrt(std::abs(square));
  const real value = square > 0 ? std::sinh(r) : std::sin(r);
  return !divided ? value : r == 0 ? 1 : value / r;
}

TYPED_TEST(Design, KernelsFollowTheirClosedForms) {
  using V = TypeParam;
  const auto expect = [](int kind, index n, double given, double shape) {
    SCOPED_TRACE(testing::Message() << "kind " << kind << ", " << n << " taps, shape " << shape);
    const auto b = static_cast<real>(static_cast<scalar<V>>(shape));
    const auto value = [=](real t) {
      const real turn = 2 * t / static_cast<real>(n + 1);
      const real wide = kind == kaiser_kernel ? b * b + pi * pi : b * b;
      return kernel(b * b - wide * turn * turn, kind == kaiser_kernel);
    };
    const double bound = 1e-20 + static_cast<double>(n + 40) * (std::abs(shape) + 8) * unit_roundoff<V> / 2;
    expect_taps<V>(taps_of<V>(n, kind, given), wanted_taps(n, value, true), std::fmin(bound, 1e-3));
  };
  const double half_pi = std::numbers::pi / 2;
  const std::pair<index, double> cosine_defaults[] = {{1, 2 * half_pi},
                                                      {2, 2 * half_pi + 1.4},
                                                      {3, 6.321022275},
                                                      {4, 7.5194},
                                                      {6, 10.686},
                                                      {8, 13.962},
                                                      {10, 10 * half_pi + 1.4},
                                                      {11, 18.85664},
                                                      {12, 12 * half_pi + 1.4},
                                                      {13, 14 * half_pi},
                                                      {55, 56 * half_pi},
                                                      {64, 64 * half_pi + 1.4},
                                                      {451, 452 * half_pi},
                                                      {453, 454 * half_pi},
                                                      {1001, 1002 * half_pi}};
  for (const auto& [n, b] : cosine_defaults) expect(cosine_kernel, n, 0, b);
  const std::pair<index, double> kaiser_defaults[] = {{1, 2.99762607},    {2, 4.608456485},    {3, 5.922377},
                                                      {4, 7.830117315},   {5, 9.4861669},      {7, 12.56733},
                                                      {9, 15.939169},     {10, 17.495099805},  {11, 19.10109},
                                                      {60, 98.036620555}, {500, 806.802003155}};
  for (const auto& [n, b] : kaiser_defaults) expect(kaiser_kernel, n, 0, b);
  for (const int kind : {cosine_kernel, kaiser_kernel}) {
    for (const double b : {0.5, -3.0, 12.0}) {
      for (const index n : {3, 4, 6, 11, 20}) expect(kind, n, b, b);
    }
  }
}

TYPED_TEST(Design, StoredTaps) {
  using V = TypeParam;
  using T = scalar<V>;
  EXPECT_EQ(taps_of<V>(7, cosine_kernel, 3),
            (samples<V>{T(0.00532055), T(0.06829975), T(0.24458875), T(0.3635819), T(0.24458875),
                        T(0.06829975), T(0.00532055)}));
  EXPECT_EQ(taps_of<V>(5, cosine_kernel, 0), (samples<V>{T(0.0782793 / 2), T(0.4973406 / 2), T(0.4243801),
                                                         T(0.4973406 / 2), T(0.0782793 / 2)}));
  const samples<V> nine = taps_of<V>(9, cosine_kernel, 0);
  EXPECT_EQ(nine[4], T(0.3232153788984078));
  EXPECT_EQ(nine[3], T(0.47149214396487166 / 2));
  EXPECT_EQ(nine[6], T(0.1755341299514293 / 2));
  EXPECT_EQ(nine[1], T(0.028496990099716707 / 2));
  EXPECT_EQ(nine[8], T(0.0012613570855745683 / 2));

  const double first[][3] = {{100, 12, 0.000652614993819046}, {101, 20, 0.000368132791542899}};
  const double last[] = {0.494746834127881, 0.480803804305858};
  const double sums[] = {7.9589258523381625,
                         14.631276740327465};  // weighted by the place, so that an exchange shows
  for (int i = 0; i < 2; ++i) {
    signal<V> v;
    EXPECT_EQ(TWIN(c_fir2)(&v, static_cast<int>(first[i][0])), 0);
    ASSERT_EQ(v.points, static_cast<std::uint32_t>(first[i][1]));
    const samples<V> h = v.values();
    EXPECT_EQ(h.front(), static_cast<T>(first[i][2]));
    EXPECT_EQ(h.back(), static_cast<T>(last[i]));
    real sum = 0;
    for (std::size_t k = 0; k < h.size(); ++k) sum += static_cast<real>(k + 1) * exact(h[k]);
    EXPECT_NEAR(static_cast<double>(sum), sums[i], 32 * unit_roundoff<V>);
  }
}

// The response at a frequency, the middle tap at time 0.
template <record V> std::pair<double, double> response(const samples<V>& h, double f) {
  real re = 0;
  real im = 0;
  for (std::size_t i = 0; i < h.size(); ++i) {
    const real t = static_cast<real>(i) - static_cast<real>(h.size() - 1) / 2;
    re += exact(h[i]) * std::cos(2 * pi * exact(f) * t);
    im -= exact(h[i]) * std::sin(2 * pi * exact(f) * t);
  }
  return {static_cast<double>(re), static_cast<double>(im)};
}

TYPED_TEST(Design, ResponsesAreThoseOfTheKind) {
  using V = TypeParam;
  constexpr double ripple = 0.03;  // of an untapered response of so many taps, away from its edges
  for (const index n : {201, 202}) {
    const bool odd = n % 2 != 0;
    for (double f = 0; f <= 0.5; f += 0.0125) {
      const auto expect = [&](int kind, bool edge, std::pair<double, double> wanted) {
        if (edge || (!odd && (kind == high_pass || kind == band_stop))) return;
        const auto [re, im] = response<V>(taps_of<V>(n, kind, 0.2, 0.1), f);
        EXPECT_NEAR(re, wanted.first, ripple) << "kind " << kind << " at " << f;
        EXPECT_NEAR(im, wanted.second, ripple) << "kind " << kind << " at " << f;
      };
      const bool low_edge = std::abs(f - 0.2) < 0.02;
      const bool band_edge = std::abs(f - 0.15) < 0.02 || std::abs(f - 0.25) < 0.02;
      const double low = f < 0.2 ? 1 : 0;
      const double band = std::abs(f - 0.2) < 0.05 ? 1 : 0;
      expect(low_pass, low_edge, {low, 0});
      expect(high_pass, low_edge, {1 - low, 0});
      expect(band_pass, band_edge, {band, 0});
      expect(band_stop, band_edge, {1 - band, 0});
      expect(ramp, low_edge, {low * 2 * f, 0});
      expect(differentiator, low_edge, {0, low * 2 * std::numbers::pi * f});
      expect(hilbert, low_edge || f < 0.04, {0, low});
    }
    EXPECT_NEAR(response<V>(taps_of<V>(n, gaussian_kernel, 0.1), 0.1).first, std::sqrt(0.5), 1e-6);
  }
}

TYPED_TEST(Design, SmoothersHaveUnitSumAndMirroredTaps) {
  using V = TypeParam;
  for (const int kind : {0, 1, 2, 3, 4, 6, 7, 8, 9, 10}) {
    for (const index n : {1, 2, 5, 6, 7, 9, 33, 34, 700}) {
      if (n % 2 == 0 && (kind == band_stop || kind == high_pass)) continue;
      const samples<V> h =
          taps_of<V>(n, kind, kind == cosine_kernel || kind == kaiser_kernel ? 0 : 0.11, 0.04);
      const scalar<V> sign = kind == differentiator || kind == hilbert ? -1 : 1;
      for (std::size_t i = 0; i < h.size(); ++i)
        EXPECT_EQ(h[i], sign * h[h.size() - 1 - i]) << kind << " of " << n;
      real sum = 0;
      for (const auto x : h) sum += exact(x);
      if (of_unit_sum(kind)) {
        EXPECT_NEAR(static_cast<double>(sum), 1, 2e-7 + 16 * unit_roundoff<V>) << kind << " of " << n;
      }
    }
  }
}

TYPED_TEST(Design, WithoutDelayTheDelayedLowPassIsTheNormalisedLowPass) {
  using V = TypeParam;
  const samples<V> low = taps_of<V>(21, low_pass, 0.1);
  const samples<V> still = taps_of<V>(21, delayed, 0.1, 0);
  const samples<V> whole = taps_of<V>(21, delayed, 0.1, 3);
  real sum = 0;
  for (const auto x : low) sum += exact(x);
  for (std::size_t i = 0; i < 21; ++i) {
    EXPECT_NEAR(static_cast<double>(still[i]), static_cast<double>(exact(low[i]) / sum),
                64 * unit_roundoff<V>);
  }
  const auto at = [&](std::size_t i) { return static_cast<double>(whole[i] / whole[13]); };
  for (std::size_t i = 3; i < 21; ++i) {
    EXPECT_NEAR(at(i), static_cast<double>(still[i - 3] / still[10]), 64 * unit_roundoff<V>);
  }
}

TYPED_TEST(Design, EdgesOfTheParametersEndInFiniteTaps) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {1, 2, 3, 8, 11}) {
    for (const int kind : {3, 5, 6, 8, 10}) {
      for (const T x : taps_of<V>(n, kind, 0)) EXPECT_EQ(x, 0);
    }
    for (const T x : taps_of<V>(n, gaussian_kernel, 0))
      EXPECT_NEAR(x, 1.0 / static_cast<double>(n), unit_roundoff<V>);
  }
  EXPECT_EQ(taps_of<V>(3, high_pass, 0), (samples<V>{0, 1, 0}));
  const T bad[] = {0,
                   T(1e-30),
                   T(0.3),
                   T(80),
                   T(700),
                   T(1e5),
                   T(1e25),
                   std::numeric_limits<T>::max(),
                   std::numeric_limits<T>::denorm_min(),
                   std::numeric_limits<T>::infinity(),
                   -std::numeric_limits<T>::infinity(),
                   std::numeric_limits<T>::quiet_NaN()};
  int refused = 0;
  for (int kind = 0; kind <= 10; ++kind) {
    for (const std::uint32_t n : {1U, 2U, 3U, 5U, 10U, 11U}) {
      for (const T p1 : bad) {
        for (const T p2 : bad) {
          signal<V> v;
          v.points = n;
          if (TWIN(c_fir)(&v, kind, p1, p2) != 0) {
            ++refused;
            continue;
          }
          for (const T x : v.values())
            EXPECT_TRUE(std::isfinite(x)) << kind << " of " << n << ": " << p1 << ' ' << p2;
        }
      }
    }
  }
  EXPECT_GT(refused, 100);
  // A shape beyond the range of sinh is a kernel all the same.
  for (const int kind : {cosine_kernel, kaiser_kernel}) {
    const samples<V> h = taps_of<V>(3, kind, 1000);
    EXPECT_NEAR(static_cast<double>(h[1]), 1, 4 * unit_roundoff<V>);
    EXPECT_LT(h[0], 1e-30);
  }
}

TYPED_TEST(Design, ComplexRecordsGetZeroImaginaryParts) {
  using V = TypeParam;
  const samples<V> low = taps_of<V>(6, low_pass, 0.2);
  signal<V> v({9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9, 9}, true);
  v.lend();
  EXPECT_EQ(TWIN(c_fir)(&v, low_pass, scalar<V>(0.2), 0), 0);
  EXPECT_EQ(v.complex, 1);
  EXPECT_EQ(v.points, 6U);
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(v.data[2 * i], low[i]);
    EXPECT_EQ(v.data[2 * i + 1], 0);
  }
  signal<V> stored({1, 2}, true);
  EXPECT_EQ(TWIN(c_fir2)(&stored, 101), 0);
  EXPECT_EQ(stored.complex, 1);
  EXPECT_EQ(stored.points, 20U);
  EXPECT_EQ(stored.data[0], static_cast<scalar<V>>(0.000368132791542899));
  EXPECT_EQ(stored.data[39], 0);
}

TYPED_TEST(Design, RefusalsComeWhereTheStepsAre) {
  using V = TypeParam;
  for (const int kind : {-1, 11, 1000, std::numeric_limits<int>::min()}) {
    signal<V> v({1, 2, 3, 4}, true);
    EXPECT_EQ(TWIN(c_fir)(&v, kind, scalar<V>(0.1), 0), -1);
    EXPECT_EQ(v.complex, 0);
  }
  for (const int kind : {band_stop, high_pass}) {
    for (const index n : {0, 2, 8}) {
      signal<V> v(samples<V>(static_cast<std::size_t>(n), 7));
      EXPECT_EQ(TWIN(c_fir)(&v, kind, scalar<V>(0.1), scalar<V>(0.1)), -1);
      EXPECT_EQ(v.values(), samples<V>(static_cast<std::size_t>(n), 7));
    }
  }
  for (const int kind : {0, 3, 4, 5, 6, 7, 8, 9, 10}) {
    signal<V> empty;
    EXPECT_EQ(TWIN(c_fir)(&empty, kind, scalar<V>(0.1), 0), 0);
    signal<V> pairs;
    pairs.complex = 1;
    EXPECT_EQ(TWIN(c_fir)(&pairs, kind, scalar<V>(0.1), 0), 0);
    EXPECT_EQ(pairs.complex, 1);
  }
  for (const int code : {99, 102, 0, -1}) {
    signal<V> v({1, 2, 3}, false);
    EXPECT_EQ(TWIN(c_fir2)(&v, code), -1);
    EXPECT_EQ(v.values(), (samples<V>{1, 2, 3}));
  }
  for (const int kind : {low_pass, cosine_kernel, gaussian_kernel}) {
    const failing_records<V> scope(kind == low_pass ? 0 : 1);
    signal<V> v;
    v.points = 12;
    EXPECT_EQ(TWIN(c_fir)(&v, kind, scalar<V>(0.1), 0), -1);
  }
  const failing_records<V> scope(0);
  signal<V> v;
  EXPECT_EQ(TWIN(c_fir2)(&v, 100), -1);
}

}  // namespace
}  // namespace sigpak::test
