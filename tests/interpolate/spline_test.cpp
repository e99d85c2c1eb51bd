// SPDX-License-Identifier: MIT
// Splines against a dense solution in long double, and what they say between, at and beyond their knots.
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Splines : public testing::Test {};
TYPED_TEST_SUITE(Splines, records, record_names);

using wide = std::vector<long double>;

template <record V> wide widened(const V& v) { return wide(v.data, v.data + scalars<V>(&v)); }

// Gaussian elimination with pivoting.
wide solve(std::vector<wide> a, wide b) {
  const std::size_t n = b.size();
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t best = k;
    for (std::size_t i = k; i < n; ++i) best = std::abs(a[i][k]) > std::abs(a[best][k]) ? i : best;
    std::swap(a[k], a[best]);
    std::swap(b[k], b[best]);
    for (std::size_t i = k + 1; i < n; ++i) {
      const long double f = a[i][k] / a[k][k];
      if (f == 0) continue;
      for (std::size_t j = k; j < n; ++j) a[i][j] -= f * a[k][j];
      b[i] -= f * b[k];
    }
  }
  for (std::size_t k = n; k-- > 0;) {
    for (std::size_t j = k + 1; j < n; ++j) b[k] -= a[k][j] * b[j];
    b[k] /= a[k][k];
  }
  return b;
}

// The slopes from the continuity of the derivatives, written down as they are told: at the end of interval i
// the second derivative is 2 (s0 + 2 s1 - 3 d) / h, at its start 2 (3 d - 2 s0 - s1) / h, the third
// 6 (s0 + s1 - 2 d) / h^2.
wide exact_slopes(const wide& x, wide y, int ends, long double start, long double end) {
  const std::size_t n = x.size();
  if (ends == DSP_SPLINE_PERIODIC) y.back() = y.front();
  const auto h = [&](std::size_t i) { return x[i + 1] - x[i]; };
  const auto d = [&](std::size_t i) { return (y[i + 1] - y[i]) / h(i); };
  std::vector<wide> a(n, wide(n));
  wide b(n);
  const auto add = [&](std::size_t row, std::size_t i, long double sign, long double s0, long double s1,
                       long double chord) {
    a[row][i] += sign * s0;
    a[row][i + 1] += sign * s1;
    b[row] -= sign * chord * d(i);
  };
  const auto at_start = [&](std::size_t row, std::size_t i, long double sign) {
    add(row, i, sign, -4 / h(i), -2 / h(i), 6 / h(i));
  };
  const auto at_end = [&](std::size_t row, std::size_t i, long double sign) {
    add(row, i, sign, 2 / h(i), 4 / h(i), -6 / h(i));
  };
  const auto third = [&](std::size_t row, std::size_t i, long double sign) {
    const long double scale = 6 / (h(i) * h(i));
    add(row, i, sign, scale, scale, -2 * scale);
  };
  for (std::size_t i = 1; i + 1 < n; ++i) {
    at_end(i, i - 1, 1);
    at_start(i, i, -1);
  }
  if (ends == DSP_SPLINE_NOT_A_KNOT) {
    third(0, 0, 1);
    third(0, 1, -1);
    third(n - 1, n - 3, 1);
    third(n - 1, n - 2, -1);
  } else if (ends == DSP_SPLINE_NATURAL) {
    at_start(0, 0, 1);
    at_end(n - 1, n - 2, 1);
  } else if (ends == DSP_SPLINE_CLAMPED) {
    a[0][0] = a[n - 1][n - 1] = 1;
    b[0] = start;
    b[n - 1] = end;
  } else {
    at_end(0, n - 2, 1);
    at_start(0, 0, -1);
    a[n - 1][0] = 1;
    a[n - 1][n - 1] = -1;
  }
  return solve(a, b);
}

// Knots with intervals that differ by up to `ratio`, or null.
template <record V> void set_knots(V* x, index n, double ratio, unsigned seed) {
  const auto r = noise<V>(n, seed);
  double at = -2;
  for (index i = 0; i < n; ++i) {
    x->data[i] = static_cast<scalar<V>>(at);
    at += std::pow(ratio, 0.5 * static_cast<double>(r[static_cast<std::size_t>(i)]));
  }
}

template <record V> long double largest_chord(const wide& x, const V& y) {
  long double most = 0;
  for (std::size_t i = 0; i + 1 < x.size(); ++i) {
    most =
        std::max(most, std::abs((static_cast<long double>(y.data[i + 1]) - y.data[i]) / (x[i + 1] - x[i])));
  }
  return most;
}

// Slopes of regular (ratio 0) and irregular knots; every number of knots up to where the filter begins, and
// the lengths around its blocks.
TYPED_TEST(Splines, SolveTheirEquations) {
  using V = TypeParam;
  using T = scalar<V>;
  std::vector<index> sizes;
  for (index n = 3; n < 70; n += n < 9 ? 1 : 7) sizes.push_back(n);
  sizes.insert(sizes.end(), {63, 64, 65, 130});
  for (const double ratio : {0.0, 3.0, 1e3}) {
    for (const index n : sizes) {
      for (int ends = 0; ends < 4; ++ends) {
        if (n == 3 && ends == DSP_SPLINE_NOT_A_KNOT) continue;
        signal<V> y(noise<V>(n, static_cast<unsigned>(n)));
        y.delta = T(0.375);
        signal<V> x(samples<V>(static_cast<std::size_t>(n)));
        for (index i = 0; i < n; ++i) x.data[i] = static_cast<T>(i) * y.delta;
        if (ratio > 0) set_knots<V>(&x, n, ratio, 5);
        signal<V> got;
        ASSERT_EQ(TWIN(_cspline)(ratio > 0 ? &x : nullptr, &y, &got, ends, T(2), T(-3)), 0);
        ASSERT_TRUE(is_complex<V>(&got));
        ASSERT_EQ(got.delta, y.delta);
        const wide knots = widened<V>(x);
        const wide wanted = exact_slopes(knots, widened<V>(y), ends, 2, -3);
        const double limit = (is_double<V> ? 16 : 1) * unit_roundoff<V> *
                             static_cast<double>(3 + 3 * largest_chord<V>(knots, y)) * (ratio > 10 ? 16 : 1);
        for (index i = 0; i < n; ++i) {
          const bool closing = ends == DSP_SPLINE_PERIODIC && i == n - 1;
          ASSERT_EQ(got.data[2 * i], y.data[closing ? 0 : i]);
          ASSERT_NEAR(static_cast<double>(got.data[2 * i + 1]),
                      static_cast<double>(wanted[static_cast<std::size_t>(i)]), limit)
              << n << " knots, ends " << ends << ", ratio " << ratio << ", at " << i;
        }
      }
    }
  }
}

// Blocks of the filter are laid differently over the same data; the elimination knows none.
TYPED_TEST(Splines, LongOnesOnRegularKnotsAreThoseOfTheSameKnotsGiven) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {1023, 1086, 1087, 1088, 1089, 2112, 5000}) {
    const signal<V> y(noise<V>(n, 3));
    signal<V> x(samples<V>(static_cast<std::size_t>(n)));
    for (index i = 0; i < n; ++i) x.data[i] = static_cast<T>(i);
    for (int ends = 0; ends <= DSP_SPLINE_MONOTONE; ++ends) {
      signal<V> regular;
      signal<V> any;
      ASSERT_EQ(TWIN(_cspline)(nullptr, &y, &regular, ends, T(1), T(2)), 0);
      ASSERT_EQ(TWIN(_cspline)(&x, &y, &any, ends, T(1), T(2)), 0);
      for (index i = 0; i < n; ++i) {
        ASSERT_NEAR(regular.data[2 * i + 1], any.data[2 * i + 1],
                    16 * unit_roundoff<V> * (is_double<V> ? 2 : 0.5))
            << n << " knots, ends " << ends << ", at " << i;
      }
    }
  }
}

TYPED_TEST(Splines, KnownCases) {
  using V = TypeParam;
  using T = scalar<V>;
  const struct {
    std::vector<double> x, y;
    int ends;
    double start, end;
    std::vector<double> slopes;
  } cases[] = {{{0, 1, 3, 4}, {0, 1, 1.5, 4}, DSP_SPLINE_MONOTONE, 0, 0, {1.25, 3. / 7, 0.5, 3.25}},
               {{0, 1, 3}, {1, 0, 4}, DSP_SPLINE_NOT_A_KNOT, 0, 0, {-2, 0, 4}},
               {{0, 1, 2, 3}, {0, 0, 1, 1}, DSP_SPLINE_MONOTONE, 0, 0, {0, 0, 0, 0}},
               {{0, 1, 2}, {0, 1, -9}, DSP_SPLINE_MONOTONE, 0, 0, {3, 0, -15.5}},
               {{0, 1, 5}, {0, 1, 21}, DSP_SPLINE_MONOTONE, 0, 0, {0.2, 25. / 17, 8.2}},
               {{1, 3}, {5, 9}, DSP_SPLINE_NOT_A_KNOT, 0, 0, {2, 2}},
               {{1, 3}, {5, 9}, DSP_SPLINE_NATURAL, 0, 0, {2, 2}},
               {{1, 3}, {5, 9}, DSP_SPLINE_CLAMPED, 7, 8, {7, 8}},
               {{1, 3}, {5, 9}, DSP_SPLINE_PERIODIC, 0, 0, {0, 0}},
               {{1, 3}, {5, 9}, DSP_SPLINE_MONOTONE, 0, 0, {2, 2}},
               {{3}, {5}, DSP_SPLINE_CLAMPED, 7, 8, {0}},
               {{}, {}, DSP_SPLINE_NATURAL, 0, 0, {}}};
  for (const auto& c : cases) {
    const signal<V> x(samples<V>(c.x.begin(), c.x.end()));
    const signal<V> y(samples<V>(c.y.begin(), c.y.end()));
    signal<V> out;
    ASSERT_EQ(TWIN(_cspline)(&x, &y, &out, c.ends, static_cast<T>(c.start), static_cast<T>(c.end)), 0);
    ASSERT_EQ(out.points, c.slopes.size());
    for (std::size_t i = 0; i < c.slopes.size(); ++i) {
      EXPECT_NEAR(static_cast<double>(out.data[2 * i + 1]), c.slopes[i], 32 * unit_roundoff<V>)
          << "ends " << c.ends << " of " << c.y.size() << " at " << i;
    }
  }
}

TYPED_TEST(Splines, NansSpread) {
  using V = TypeParam;
  auto values = noise<V>(9);
  values[4] = std::numeric_limits<scalar<V>>::quiet_NaN();
  const signal<V> y(values);
  signal<V> monotone;
  signal<V> natural;
  ASSERT_EQ(TWIN(_cspline)(nullptr, &y, &monotone, DSP_SPLINE_MONOTONE, 0, 0), 0);
  ASSERT_EQ(TWIN(_cspline)(nullptr, &y, &natural, DSP_SPLINE_NATURAL, 0, 0), 0);
  for (index i = 0; i < 9; ++i) {
    EXPECT_EQ(std::isnan(monotone.data[2 * i + 1]), std::abs(i - 4) <= 1) << i;
    EXPECT_TRUE(std::isnan(natural.data[2 * i + 1])) << i;
  }
}

// What pairs, or values joined by lines, say everywhere, in long double.
struct exact_curve {
  wide x;
  wide y;
  bool pairs;

  long double part(std::size_t i, long double to, int what) const {
    const long double h = x[i + 1] - x[i];
    const long double y0 = y[pairs ? 2 * i : i];
    const long double d = ((pairs ? y[2 * i + 2] : y[i + 1]) - y0) / h;
    const long double s0 = pairs ? y[2 * i + 1] : d;
    const long double s1 = pairs ? y[2 * i + 3] : d;
    const long double c2 = (3 * d - 2 * s0 - s1) / h;
    const long double c3 = (s0 + s1 - 2 * d) / (h * h);
    const long double u = to - x[i];
    if (what == DSP_INTERP_SLOPE) return s0 + u * (2 * c2 + u * 3 * c3);
    if (what == DSP_INTERP_CURVATURE) return 2 * c2 + u * 6 * c3;
    if (what == DSP_INTERP_INTEGRAL) return u * (y0 + u * (s0 / 2 + u * (c2 / 3 + u * c3 / 4)));
    return y0 + u * (s0 + u * (c2 + u * c3));
  }
  long double inside(long double t, int what) const {
    std::size_t k = 0;
    long double before = 0;
    for (; k + 2 < x.size() && x[k + 1] <= t; ++k) {
      if (what == DSP_INTERP_INTEGRAL) before += part(k, x[k + 1], what);
    }
    return before + part(k, t, what);
  }
  long double operator()(long double t, int flags) const {
    const int what = flags & 3;
    const bool integral = what == DSP_INTERP_INTEGRAL;
    if ((t >= x.front() && t <= x.back()) || flags == what) return inside(t, what);
    if ((flags & DSP_INTERP_WRAP) != 0) {
      const long double period = x.back() - x.front();
      const long double periods = std::floor((t - x.front()) / period);
      return inside(t - periods * period, what) + (integral ? periods * inside(x.back(), what) : 0);
    }
    const long double held = std::clamp(t, x.front(), x.back());
    if (integral) return inside(held, what) + (t - held) * inside(held, DSP_INTERP_VALUE);
    return what == DSP_INTERP_VALUE ? inside(held, what) : 0;
  }
};

template <record V>
void check_answers(const V* x, const exact_curve& curve, const V& y, const samples<V>& targets) {
  const signal<V> at(targets);
  for (const int rule : {0, static_cast<int>(DSP_INTERP_HOLD), static_cast<int>(DSP_INTERP_WRAP)}) {
    for (int what = 0; what < 4; ++what) {
      signal<V> got;
      ASSERT_EQ(TWIN(_interp)(x, &y, &at, &got, rule | what), 0);
      ASSERT_EQ(got.points, targets.size());
      for (std::size_t i = 0; i < targets.size(); ++i) {
        const auto wanted = static_cast<double>(curve(targets[i], rule | what));
        const double scale = (1 + std::abs(wanted)) * (what == DSP_INTERP_CURVATURE ? 800 : 80);
        ASSERT_NEAR(static_cast<double>(got.data[i]), wanted, scale * 8 * unit_roundoff<V>)
            << (x == nullptr ? "regular " : "any ") << curve.x.size() << " knots, flags " << (rule | what)
            << ", at " << targets[i];
      }
    }
  }
}

// Every kind of answer, inside and outside, from pairs and from values alone, on regular knots and others; as
// many targets as blocks have, less and more.
TYPED_TEST(Splines, AnswerEverywhere) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const bool regular : {false, true}) {
    for (const bool pairs : {false, true}) {
      for (const index n : {2, 3, 41}) {
        signal<V> y(noise<V>(pairs ? 2 * n : n, 7), pairs);
        y.delta = T(0.25);
        signal<V> x(samples<V>(static_cast<std::size_t>(n)));
        for (index i = 0; i < n; ++i) x.data[i] = static_cast<T>(i) * y.delta;
        if (!regular) set_knots<V>(&x, n, 9, 8);
        const exact_curve curve = {widened<V>(x), widened<V>(y), pairs};
        const double first = static_cast<double>(x.data[0]);
        const double length = static_cast<double>(x.data[n - 1]) - first;
        for (const index count : {1, 255, 256, 600}) {
          auto targets = noise<V>(count, 9);
          for (auto& t : targets) t = static_cast<T>(first + length * (0.5 + 1.2 * static_cast<double>(t)));
          check_answers<V>(regular ? nullptr : &x, curve, y, targets);
        }
        signal<V> at_knots;
        ASSERT_EQ(TWIN(_interp)(regular ? nullptr : &x, &y, &x, &at_knots, DSP_INTERP_VALUE), 0);
        for (index i = 0; i < n; ++i) ASSERT_EQ(at_knots.data[i], y.data[pairs ? 2 * i : i]);
      }
    }
  }
}

// Regular knots without a search: a million of them, whose products with the spacing are rounded.
TYPED_TEST(Splines, FindEveryKnotOfManyRegularOnes) {
  using V = TypeParam;
  using T = scalar<V>;
  const index n = is_double<V> ? 1000003 : 10007;
  signal<V> y(noise<V>(n, 4));
  y.delta = T(1) / 3;
  signal<V> at(samples<V>(static_cast<std::size_t>(n)));
  for (index i = 0; i < n; ++i)
    at.data[i] = static_cast<T>(static_cast<double>(i) * static_cast<double>(y.delta));
  signal<V> out;
  ASSERT_EQ(TWIN(_interp)(nullptr, &y, &at, &out, DSP_INTERP_VALUE), 0);
  EXPECT_EQ(out.values(), y.values());
}

TYPED_TEST(Splines, TakeTheirOperandsForResultsAndNansForNans) {
  using V = TypeParam;
  using T = scalar<V>;
  signal<V> x{0, 1, 3, 4};
  const signal<V> y{1, 2, 0, 1};
  signal<V> wanted;
  ASSERT_EQ(TWIN(_cspline)(&x, &y, &wanted, DSP_SPLINE_PERIODIC, 0, 0), 0);
  for (const bool lent : {false, true}) {
    signal<V> both(y.values());
    if (lent) both.lend();
    ASSERT_EQ(TWIN(_cspline)(&x, &both, &both, DSP_SPLINE_PERIODIC, 0, 0), 0);
    EXPECT_EQ(both.values(), wanted.values());
  }
  const T nan = std::numeric_limits<T>::quiet_NaN();
  const signal<V> at(samples<V>{nan, 2, -1, std::numeric_limits<T>::infinity()});
  for (const int flags : {0, 1, 2, 3, 16, 17, 19, 32, 35}) {
    signal<V> out;
    ASSERT_EQ(TWIN(_interp)(&x, &wanted, &at, &out, flags), 0);
    EXPECT_TRUE(std::isnan(out.data[0])) << flags;
    signal<V> one(samples<V>{at.data[1]});
    ASSERT_EQ(TWIN(_interp)(&x, &wanted, &one, &one, flags), 0);
    EXPECT_EQ(one.data[0], out.data[1]) << "in place, and alone";
    signal<V> knots(x.values());
    ASSERT_EQ(TWIN(_interp)(&knots, &wanted, &one, &knots, flags), 0);
    signal<V> pairs(wanted.values(), true);
    ASSERT_EQ(TWIN(_interp)(&x, &pairs, &one, &pairs, flags), 0);
    EXPECT_EQ(knots.values(), pairs.values());
  }
  const signal<V> single({7, 3}, true);
  for (int what = 0; what < 4; ++what) {
    signal<V> out;
    ASSERT_EQ(TWIN(_interp)(nullptr, &single, &at, &out, what), 0);
    EXPECT_TRUE(std::isnan(out.data[0]));
    EXPECT_EQ(out.data[1], T(what == 0 ? 7 : what == 3 ? 14 : 0)) << "one knot is a constant";
  }
}

TYPED_TEST(Splines, RefuseWhatHasNoOrder) {
  using V = TypeParam;
  using T = scalar<V>;
  const signal<V> y{1, 2, 0, 1};
  const T inf = std::numeric_limits<T>::infinity();
  const T nan = std::numeric_limits<T>::quiet_NaN();
  signal<V> out{5};
  for (const auto& knots : std::vector<samples<V>>{
           {0, 1, 1, 2}, {0, 2, 1, 3}, {0, 1, nan, 3}, {0, 1, 2, inf}, {-inf, 1, 2, 3}, {0, 1, 2}, {}}) {
    const signal<V> x(knots);
    EXPECT_EQ(TWIN(_cspline)(&x, &y, &out, 0, 0, 0), -1);
    EXPECT_EQ(TWIN(_interp)(&x, &y, &y, &out, 0), -1);
  }
  const signal<V> pairs({0, 1, 2, 3, 4, 5, 6, 7}, true);
  const signal<V> none;
  EXPECT_EQ(TWIN(_cspline)(&pairs, &y, &out, 0, 0, 0), -1);
  EXPECT_EQ(TWIN(_cspline)(nullptr, &pairs, &out, 0, 0, 0), -1);
  EXPECT_EQ(TWIN(_interp)(nullptr, &y, &pairs, &out, 0), -1);
  EXPECT_EQ(TWIN(_interp)(nullptr, &none, &y, &out, 0), -1) << "no knots";
  for (const int ends : {-1, 5, 256}) EXPECT_EQ(TWIN(_cspline)(nullptr, &y, &out, ends, 0, 0), -1);
  for (const int flags : {-1, 4, 8, 48, 64, 256}) EXPECT_EQ(TWIN(_interp)(nullptr, &y, &y, &out, flags), -1);
  for (const T delta : {T(0), T(-1), nan, inf}) {
    signal<V> spaced(y.values());
    spaced.delta = delta;
    EXPECT_EQ(TWIN(_cspline)(nullptr, &spaced, &out, 0, 0, 0), -1);
    EXPECT_EQ(TWIN(_interp)(nullptr, &spaced, &y, &out, 0), -1);
  }
  EXPECT_EQ(out.values(), (samples<V>{5}));
}

}  // namespace
}  // namespace sigpak::test
