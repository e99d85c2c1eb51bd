// SPDX-License-Identifier: MIT
// FIR designs, against their closed forms in long double and by their frequency responses.
#include <functional>
#include <numbers>

#include "support/forms.h"

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

bool refused_if_even(int kind) { return kind == band_stop || kind == high_pass; }
bool of_unit_sum(int kind) {
  return kind == cosine_kernel || kind == delayed || kind == gaussian_kernel || kind == kaiser_kernel;
}

constexpr real exact(double x) { return static_cast<real>(x); }
constexpr real exact(float x) { return static_cast<real>(x); }

// What `design` stores; a complex record gets the same with imaginary parts of 0.
template <record V, class Run> samples<V> designed(index n, Run design) {
  signal<V> v;
  v.points = static_cast<std::uint32_t>(n);
  signal<V> pairs(samples<V>(static_cast<std::size_t>(2 * n), 9), true);
  pairs.lend();
  for (V* record : {static_cast<V*>(&v), static_cast<V*>(&pairs)}) {
    record->delta = 0.125;
    EXPECT_EQ(design(record), 0) << n;
    EXPECT_EQ(record->delta, 0.125);
  }
  EXPECT_EQ(v.complex, 0);
  EXPECT_EQ(pairs.complex, 1);
  EXPECT_EQ(contents<V>(pairs).points, contents<V>(v).points);
  return v.values();
}

template <record V> samples<V> taps_of(index n, int kind, double p1, double p2 = 0) {
  const auto a = static_cast<scalar<V>>(p1);
  const auto b = static_cast<scalar<V>>(p2);
  const auto h = designed<V>(n, [=](V* v) { return TWIN(c_fir)(v, kind, a, b); });
  EXPECT_EQ(std::ssize(h), n);
  for (std::size_t i = 0; kind != delayed && i < h.size(); ++i) {
    const bool odd = kind == differentiator || kind == hilbert;
    EXPECT_EQ(h[i], (odd ? -1 : 1) * h[h.size() - 1 - i]) << kind << " of " << n;
  }
  return h;
}

real sinc(real x) { return x == 0 ? 1 : std::sin(x) / x; }
real versed(real x) { return x * x > 1e-18L ? (std::cos(x) - 1) / (x * x) : -0.5L; }
real sinh_of_root(real square) {
  const real r = std::sqrt(std::abs(square));
  return square > 0 ? std::sinh(r) : std::sin(r);
}

// The tap at the distance t from the middle of n; p1 is the shape of the two kernels.
real tap(int kind, index n, real t, real p1, real p2) {
  const real x = 2 * pi * p1 * t;
  const real turn = 2 * t / static_cast<real>(n + 1);
  switch (kind) {
    case band_pass:
      return 2 * std::cos(x) * p2 * sinc(pi * p2 * t);
    case band_stop:
    case high_pass:
      return (t == 0 ? 1 : 0) - tap(kind == band_stop ? band_pass : low_pass, n, t, p1, p2);
    case low_pass:
      return 2 * p1 * sinc(x);
    case cosine_kernel:
      return sinh_of_root(p1 * p1 * (1 - turn * turn));
    case delayed:
      return 2 * p1 * sinc(2 * pi * p1 * (t - p2));
    case differentiator:
      return t == 0 ? 0 : 2 * p1 * 2 * pi * p1 * (std::cos(x) - sinc(x)) / x;
    case gaussian_kernel:
      return std::exp(-x * x / (2 * std::log(2.0L)));
    case hilbert:
      return t == 0 ? 0 : 2 * p1 * x * versed(x);
    case kaiser_kernel: {
      const real square = p1 * p1 - (p1 * p1 + pi * pi) * turn * turn;
      return square == 0 ? 1 : sinh_of_root(square) / std::sqrt(std::abs(square));
    }
    default:
      return t == 0 ? 2 * p1 * p1 : 4 * p1 * p1 * (sinc(x) + versed(x));
  }
}

template <record V>
void expect_taps(const samples<V>& got, int kind, double parameter, double second, double bound) {
  SCOPED_TRACE(testing::Message() << "kind " << kind << ", " << got.size() << " taps by " << parameter);
  const auto p1 = exact(static_cast<scalar<V>>(parameter));
  const auto p2 = exact(static_cast<scalar<V>>(second));
  const index n = std::ssize(got);
  std::vector<real> wanted;
  real sum = 0;
  for (index i = 0; i < n; ++i) {
    wanted.push_back(tap(kind, n, static_cast<real>(i) - static_cast<real>(n - 1) / 2, p1, p2));
    sum += wanted.back();
  }
  for (std::size_t i = 0; i < got.size(); ++i) {
    const real w = wanted[i] / (of_unit_sum(kind) ? sum : 1);
    ASSERT_NEAR(static_cast<double>(got[i]), static_cast<double>(w), bound) << "tap " << i;
  }
}

// The phase collects a rounding per tap; (cos x - 1) / x^2 loses digits where x is small.
TYPED_TEST(Design, TapsFollowTheirClosedForms) {
  using V = TypeParam;
  const std::pair<double, double> parameters[] = {{0.05, 0.3}, {0.25, 0.3}, {0.5, 0.3}, {0.1, 0}, {0.05, 3}};
  for (const int kind : {0, 1, 2, 3, 5, 6, 7, 8, 10}) {
    for (const index n : {1, 2, 3, 4, 5, 8, 9, 31, 32, 101, 102}) {
      if (n % 2 == 0 && refused_if_even(kind)) continue;
      for (const auto& [p1, p2] : parameters) {
        expect_taps<V>(taps_of<V>(n, kind, p1, p2), kind, p1, p2,
                       static_cast<double>(4 + n) * 8 * unit_roundoff<V>);
      }
    }
  }
}

TYPED_TEST(Design, KernelsFollowTheirClosedForms) {
  using V = TypeParam;
  const auto expect = [](int kind, index n, double given, double shape) {
    const double bound = 1e-20 + static_cast<double>(n + 40) * (std::abs(shape) + 8) * unit_roundoff<V> / 2;
    expect_taps<V>(taps_of<V>(n, kind, given), kind, shape, 0, std::fmin(bound, 1e-3));
  };
  const auto slope = std::numbers::pi / 2;
  const std::pair<index, double> cosine_defaults[] = {
      {3, 6.321022275}, {4, 7.5194}, {6, 10.686}, {8, 13.962}, {11, 18.85664}};
  for (const auto& [n, b] : cosine_defaults) expect(cosine_kernel, n, 0, b);
  for (const int n : {1, 13, 55, 451, 453, 1001}) expect(cosine_kernel, n, 0, (n + 1) * slope);
  for (const int n : {2, 10, 12, 64}) expect(cosine_kernel, n, 0, n * slope + 1.4);
  const std::pair<index, double> kaiser_defaults[] = {{1, 2.99762607},    {2, 4.608456485},    {3, 5.922377},
                                                      {4, 7.830117315},   {5, 9.4861669},      {7, 12.56733},
                                                      {9, 15.939169},     {10, 17.495099805},  {11, 19.10109},
                                                      {60, 98.036620555}, {500, 806.802003155}};
  for (const auto& [n, b] : kaiser_defaults) expect(kaiser_kernel, n, 0, b);
  for (const int kind : {cosine_kernel, kaiser_kernel}) {
    for (const double b : {0.5, -3.0, 12.0}) {
      for (const index n : {3, 4, 6, 11, 20}) expect(kind, n, b, b);
    }
    const samples<V> h = taps_of<V>(3, kind, 1000);  // a shape beyond the range of sinh
    EXPECT_NEAR(static_cast<double>(h[1]), 1, 4 * unit_roundoff<V>);
    EXPECT_LT(h[0], 1e-30);
  }
}

TYPED_TEST(Design, StoredTaps) {
  using V = TypeParam;
  using T = scalar<V>;
  const std::vector<double> halves[] = {{0.4243801, 0.4973406 / 2, 0.0782793 / 2},
                                        {0.3635819, 0.24458875, 0.06829975, 0.00532055},
                                        {0.3232153788984078, 0.47149214396487166 / 2, 0.1755341299514293 / 2,
                                         0.028496990099716707 / 2, 0.0012613570855745683 / 2}};
  for (const auto& half : halves) {
    const samples<V> h = taps_of<V>(2 * std::ssize(half) - 1, cosine_kernel, 3);
    for (std::size_t i = 0; i < half.size(); ++i)
      EXPECT_EQ(h[half.size() - 1 + i], static_cast<T>(half[i])) << h.size();
  }
  struct {
    int code;
    std::ptrdiff_t taps;
    double first;
    double last;
    double sum;  // weighted by the place, so that an exchange shows
  } const stored[] = {{100, 12, 0.000652614993819046, 0.494746834127881, 7.9589258523381625},
                      {101, 20, 0.000368132791542899, 0.480803804305858, 14.631276740327465}};
  for (const auto& s : stored) {
    const samples<V> h = designed<V>(2, [&s](V* v) { return TWIN(c_fir2)(v, s.code); });
    ASSERT_EQ(std::ssize(h), s.taps);
    EXPECT_EQ(h.front(), static_cast<T>(s.first));
    EXPECT_EQ(h.back(), static_cast<T>(s.last));
    real sum = 0;
    for (std::size_t k = 0; k < h.size(); ++k) sum += static_cast<real>(k + 1) * exact(h[k]);
    EXPECT_NEAR(static_cast<double>(sum), s.sum, 32 * unit_roundoff<V>);
  }
}

// The response at a frequency, the middle tap at time 0.
template <record V> std::complex<double> response(const samples<V>& h, double f) {
  std::complex<real> sum = 0;
  for (std::size_t i = 0; i < h.size(); ++i) {
    const real t = static_cast<real>(i) - static_cast<real>(h.size() - 1) / 2;
    sum += exact(h[i]) * std::polar<real>(1, -2 * pi * exact(f) * t);
  }
  return std::complex<double>(sum);
}

TYPED_TEST(Design, ResponsesAreThoseOfTheKind) {
  using V = TypeParam;
  constexpr double ripple = 0.03;  // of an untapered response of so many taps, away from its edges
  constexpr std::complex<double> j(0, 1);
  for (const index n : {201, 202}) {
    for (double f = 0; f <= 0.5; f += 0.0125) {
      const bool low_edge = std::abs(f - 0.2) < 0.02;
      const bool band_edge = std::abs(f - 0.15) < 0.02 || std::abs(f - 0.25) < 0.02;
      const double low = f < 0.2 ? 1 : 0;
      const double band = std::abs(f - 0.2) < 0.05 ? 1 : 0;
      struct {
        int kind;
        bool edge;
        std::complex<double> wanted;
      } const cases[] = {{low_pass, low_edge, low},
                         {high_pass, low_edge, 1 - low},
                         {band_pass, band_edge, band},
                         {band_stop, band_edge, 1 - band},
                         {ramp, low_edge, low * 2 * f},
                         {differentiator, low_edge, j * low * 2.0 * std::numbers::pi * f},
                         {hilbert, low_edge || f < 0.04, j * low}};
      for (const auto& c : cases) {
        if (c.edge || (n % 2 == 0 && refused_if_even(c.kind))) continue;
        EXPECT_LE(std::abs(response<V>(taps_of<V>(n, c.kind, 0.2, 0.1), f) - c.wanted), ripple)
            << "kind " << c.kind << " at " << f;
      }
    }
    EXPECT_NEAR(response<V>(taps_of<V>(n, gaussian_kernel, 0.1), 0.1).real(), std::sqrt(0.5), 1e-6);
  }
}

TYPED_TEST(Design, EdgesOfTheParametersEndInFiniteTaps) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {1, 2, 3, 8, 11}) {
    for (const int kind : {3, 5, 6, 8, 10}) {
      EXPECT_EQ(taps_of<V>(n, kind, 0), samples<V>(static_cast<std::size_t>(n)));
    }
    for (const T x : taps_of<V>(n, gaussian_kernel, 0))
      EXPECT_NEAR(x, 1.0 / static_cast<double>(n), unit_roundoff<V>);
  }
  EXPECT_EQ(taps_of<V>(3, high_pass, 0), (samples<V>{0, 1, 0}));
  auto bad = awkward<V>();
  bad.insert(bad.end(), {T(1e-30), T(0.3), 80, 700, T(1e5), T(1e25)});
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
            ASSERT_TRUE(std::isfinite(x)) << kind << " of " << n << ": " << p1 << ' ' << p2;
        }
      }
    }
  }
  EXPECT_GT(refused, 100);
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
  signal<V> smoother(noise<V>(12));
  EXPECT_EQ(TWIN(c_fir)(&smoother, gaussian_kernel, std::numeric_limits<scalar<V>>::quiet_NaN(), 0), -1);
  for (const int code : {99, 102, 0, -1}) {
    signal<V> v({1, 2, 3}, false);
    EXPECT_EQ(TWIN(c_fir2)(&v, code), -1);
    EXPECT_EQ(v.values(), (samples<V>{1, 2, 3}));
  }
}

}  // namespace
}  // namespace sigpak::test
