// Polynomials: evaluation, coefficients from roots, closed forms, searches, all roots.
#include <gtest/gtest.h>

#include <complex>
#include <numeric>

#include "stats/hard_polynomials.h"
#include "stats/wide.h"
#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Polynomials : public testing::Test {};
TYPED_TEST_SUITE(Polynomials, records, record_names);

using complex = std::complex<double>;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <record V> std::vector<complex> points_of(const V& v) {
  std::vector<complex> out;
  for (index i = 0; i < length<V>(&v); ++i) {
    out.push_back(v.complex != 0 ? complex(wide(v.data[2 * i]), wide(v.data[2 * i + 1]))
                                 : complex(wide(v.data[i])));
  }
  return out;
}

// Coefficients of the monic polynomial with these roots.
std::vector<double> expanded(const std::vector<complex>& roots) {
  std::vector<std::complex<long double>> a{1};
  for (const complex r : roots) {
    a.insert(a.begin(), 0);
    for (std::size_t k = 0; k + 1 < a.size(); ++k) a[k] -= std::complex<long double>(r) * a[k + 1];
  }
  std::vector<double> out;
  for (const auto c : a) out.push_back(static_cast<double>(c.real()));
  return out;
}

template <record V> samples<V> stored(const std::vector<double>& values) {
  samples<V> out;
  for (const double x : values) out.push_back(static_cast<scalar<V>>(x));
  return out;
}

// The largest distance of a root found from its own partner among those wanted.
double distance(std::vector<complex> got, std::vector<complex> wanted) {
  if (got.size() != wanted.size()) return std::numeric_limits<double>::infinity();
  double worst = 0;
  for (const complex z : got) {
    const auto nearest = std::min_element(wanted.begin(), wanted.end(), [z](complex a, complex b) {
      return std::abs(a - z) < std::abs(b - z);
    });
    worst = std::max(worst, std::abs(*nearest - z));
    wanted.erase(nearest);
  }
  return worst;
}

// The largest change of a coefficient that makes these roots exact, relative to the largest coefficient.
double backward_error(const std::vector<complex>& roots, const std::vector<double>& coefficients) {
  const std::vector<double> rebuilt = expanded(roots);
  if (rebuilt.size() != coefficients.size()) return std::numeric_limits<double>::infinity();
  double worst = 0;
  double size = 0;
  for (std::size_t k = 0; k < rebuilt.size(); ++k) {
    worst = std::max(worst, std::abs(rebuilt[k] * coefficients.back() - coefficients[k]));
    size = std::max(size, std::abs(coefficients[k]));
  }
  return worst / size;
}

TYPED_TEST(Polynomials, Evaluation) {
  using V = TypeParam;
  using T = scalar<V>;
  signal<V> p{1, 2, 3};
  signal<V> out({9, 9}, true);
  ASSERT_EQ(TWIN(s_peval)(&p, &out, T(2)), 0);
  EXPECT_EQ(out.values(), samples<V>{17});
  EXPECT_EQ(out.complex, 0);
  ASSERT_EQ(TWIN(s_peval)(&p, &p, T(-1)), 0);
  EXPECT_EQ(p.values(), samples<V>{2});
  const signal<V> none;
  ASSERT_EQ(TWIN(s_peval)(&none, &out, T(5)), 0);
  EXPECT_EQ(out.values(), samples<V>{0});
}

TYPED_TEST(Polynomials, ComplexPolynomialsAreRefused) {
  using V = TypeParam;
  signal<V> p({1, 2, 3, 4}, true);
  signal<V> out{7};
  EXPECT_EQ(TWIN(s_peval)(&p, &out, 1), -1);
  EXPECT_EQ(TWIN(s_proots)(&p, &out), -1);
  EXPECT_EQ(TWIN(s_psolve)(&p, &out, 0), -1);
  EXPECT_EQ(TWIN(s_pcsolve)(&p, &out, 0, 0), -1);
  EXPECT_EQ(TWIN(i_proots)(&p), -1);
  EXPECT_EQ(out.values(), samples<V>{7});
  EXPECT_EQ(p.values(), (samples<V>{1, 2, 3, 4}));
}

TYPED_TEST(Polynomials, CoefficientsFromRoots) {
  using V = TypeParam;
  struct {
    std::initializer_list<double> roots;
    bool complex;
    std::initializer_list<double> coefficients;
  } const cases[] = {{{2, 3}, false, {6, -5, 1}},
                     {{}, false, {1}},
                     {{}, true, {1, 0}},
                     {{0, 0, -4}, false, {0, 0, 4, 1}},
                     {{0, 1, 0, -1}, true, {1, 0, 0, 0, 1, 0}},
                     {{1, 2, 3, 0}, true, {3, 6, -4, -2, 1, 0}}};
  for (const auto& c : cases) {
    signal<V> v(c.roots, c.complex);
    v.delta = 3;
    if (v.points > 0) v.lend();
    ASSERT_EQ(TWIN(i_pztoc)(&v), 0);
    EXPECT_EQ(v.values(), signal<V>(c.coefficients, c.complex).values());
    EXPECT_EQ(v.delta, 3);
  }
  signal<V> v{1, 2};
  const failing_tables none(0);
  EXPECT_EQ(TWIN(i_pztoc)(&v), -1);
  EXPECT_EQ(v.values(), (samples<V>{1, 2}));
}

// Order and form are part of the result here.
TYPED_TEST(Polynomials, ClosedFormsByHand) {
  using V = TypeParam;
  const double half_root3 = std::sqrt(3.0) / 2;
  struct {
    std::initializer_list<double> p;
    bool complex;
    std::initializer_list<double> roots;
  } const cases[] = {
      {{}, false, {}},
      {{5}, false, {}},
      {{0, 0, 0}, false, {}},
      {{3, 2}, false, {-1.5}},
      {{3, 2, 0, 0, 0, 0}, false, {-1.5}},
      {{6, -5, 1}, false, {2, 3}},
      {{6, -5, -1}, false, {-6, 1}},
      {{0, 0, 2}, false, {0, 0}},
      {{1, 0, 1}, true, {0, -1, 0, 1}},
      {{5, 2, 1}, true, {-1, -2, -1, 2}},
      {{1, -1e5, 1e-5}, false, {1e-5, 1e10 - 1e-5}},
      {{-1, 0, 0, 1}, true, {1, 0, -0.5, -half_root3, -0.5, half_root3}},
      {{1, 0, 0, 1}, true, {-1, 0, 0.5, -half_root3, 0.5, half_root3}},
      {{-6, 11, -6, 1}, false, {1, 2, 3}},
      {{8, 12, 6, 1}, false, {-2, -2, -2}},
      {{-120, 274, -225, 85, -15, 1}, false, {1, 2, 3, 4, 5}},
      {{120, -274, 225, -85, 15, -1}, false, {1, 2, 3, 4, 5}},
  };
  for (const auto& c : cases) {
    const signal<V> p(c.p);
    signal<V> out({9, 9}, true);
    ASSERT_EQ(TWIN(s_proots)(&p, &out), 0);
    EXPECT_EQ(out.complex != 0, c.roots.size() == 0 ? false : c.complex);
    const samples<V> wanted = signal<V>(c.roots).values();
    const samples<V> got = out.values();
    ASSERT_EQ(got.size(), wanted.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
      EXPECT_NEAR(wide(got[i]), wide(wanted[i]),
                  (c.p.size() > 3 ? 1e-13 : 1e-15) + 4 * unit_roundoff<V> * std::abs(wide(wanted[i])))
          << c.p.size() << " " << i;
    }
  }
  const signal<V> seven{1, 2, 3, 4, 5, 6, 7};
  signal<V> out{9};
  EXPECT_EQ(TWIN(s_proots)(&seven, &out), -1);
  EXPECT_EQ(out.values(), samples<V>{9});
}

TYPED_TEST(Polynomials, RealRootTakesItsPlaceInAQuintic) {
  using V = TypeParam;
  const complex i(0, 1);
  struct {
    std::vector<complex> roots;
  } const cases[] = {{{-3, -1.0 - i, -1.0 + i, 2.0 - i, 2.0 + i}},
                     {{7, -1.0 - i, -1.0 + i, 2.0 - i, 2.0 + i}},
                     {{1, 2, 3, 5.0 - i, 5.0 + i}},
                     {{-1, 0.5, 4, -3.0 - 2.0 * i, -3.0 + 2.0 * i}}};
  for (const auto& c : cases) {
    const std::vector<double> p = expanded(c.roots);
    signal<V> v(stored<V>(p));
    ASSERT_EQ(TWIN(s_proots)(&v, &v), 0) << "the result may be the polynomial";
    ASSERT_EQ(v.complex, 1);
    EXPECT_EQ(v.delta, 1);
    const std::vector<complex> got = points_of<V>(v);
    EXPECT_LT(distance(got, c.roots), 1e-12 + 16 * unit_roundoff<V>);
    for (std::size_t k = 0; k < 5; ++k) {
      if (got[k].imag() < 0) {
        EXPECT_EQ(got[k + 1], std::conj(got[k])) << "conjugates side by side, the lower one first";
      }
    }
  }
}

// Where the real root is much larger or smaller than the others, dividing it out must not spoil them.
TYPED_TEST(Polynomials, QuinticsWithOneFarRoot) {
  using V = TypeParam;
  const complex i(0, 1);
  for (const double far : {123456.789, -1e9 / 3, 3e4 / 7, -1e-7 / 3, 0.0}) {
    const samples<V> p =
        stored<V>(expanded({far, -0.5 - 0.8 * i, -0.5 + 0.8 * i, 0.3 - 1.5 * i, 0.3 + 1.5 * i}));
    const signal<V> v(p);
    signal<V> out;
    ASSERT_EQ(TWIN(s_proots)(&v, &out), 0);
    EXPECT_LT(backward_error(points_of<V>(out), std::vector<double>(p.begin(), p.end())),
              16 * unit_roundoff<V>)
        << far;
  }
}

TYPED_TEST(Polynomials, QuarticsOfEveryKind) {
  using V = TypeParam;
  const complex i(0, 1);
  struct {
    std::vector<complex> roots;
    double tolerance;  // of the roots: multiple ones are known to half the digits
  } const cases[] = {{{1, 2, 3, 4}, 1e-13},
                     {{i, -i, 2.0 * i, -2.0 * i}, 1e-15},
                     {{-1.0 + i, -1.0 - i, 5, 0.25}, 1e-14},
                     {{0, 0, -0.25, -2}, 1e-15},
                     {{0, 0, -1, -1}, 1e-15},
                     {{-2, -2, -0.25, -0.25}, 1e-7},
                     {{i, -i, i, -i}, 1e-7},
                     {{1e-5, 2e-5, 3e-5, -4e-5}, 1e-17},
                     {{1e-4, 1, 100, 1e4}, 1e-9},
                     {{3, 3, 3, 3}, 1e-3}};
  for (const auto& c : cases) {
    const samples<V> p = stored<V>(expanded(c.roots));
    const signal<V> v(p);
    signal<V> out;
    ASSERT_EQ(TWIN(s_proots)(&v, &out), 0);
    const std::vector<complex> got = points_of<V>(out);
    if (is_double<V>) {
      EXPECT_LT(distance(got, c.roots), c.tolerance) << c.roots[0] << c.roots[2];
    }
    EXPECT_LT(backward_error(got, std::vector<double>(p.begin(), p.end())), 1e-14 + 8 * unit_roundoff<V>)
        << c.roots[0] << c.roots[2];
  }
  const double s = std::sqrt(0.5);
  const signal<V> v{1, 0, 0, 0, 1};
  signal<V> out;
  ASSERT_EQ(TWIN(s_proots)(&v, &out), 0);
  EXPECT_LT(distance(points_of<V>(out), {{s, s}, {s, -s}, {-s, s}, {-s, -s}}), 1e-15 + unit_roundoff<V>);
}

// Squares of x^2 + p x + q, and what is a rounding away from them: that decides how many real roots the
// resolvent has, and which of its roots splits the quartic.
TYPED_TEST(Polynomials, QuarticsNextToSquares) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T epsilon = std::numeric_limits<T>::epsilon();
  for (int p = -2; p <= 2; ++p) {
    for (int q = -2; q <= 2; ++q) {
      const int square[] = {q * q, 2 * p * q, p * p + 2 * q, 2 * p, 1};
      for (int moved = 0; moved < 243; ++moved) {
        samples<V> a;
        for (int k = 0, digits = moved; k < 5; ++k, digits /= 3) {
          a.push_back(static_cast<T>(square[k]) * (1 + static_cast<T>(digits % 3 - 1) * epsilon));
        }
        const signal<V> v(a);
        signal<V> out;
        ASSERT_EQ(TWIN(s_proots)(&v, &out), 0);
        ASSERT_LT(backward_error(points_of<V>(out), std::vector<double>(a.begin(), a.end())),
                  16 * unit_roundoff<V>)
            << p << ' ' << q << ' ' << moved;
      }
    }
  }
}

TYPED_TEST(Polynomials, RealSearch) {
  using V = TypeParam;
  using T = scalar<V>;
  struct {
    std::initializer_list<double> p;
    double guess, root;
  } const cases[] = {
      {{6, -5, 1}, 1, 2},   {{6, -5, 1}, 1e9, 3},   {{6, -5, 1}, -1e9, 2},    {{-2, 0, 1}, 1, std::sqrt(2.0)},
      {{0, 1, 0, 1}, 5, 0}, {{-8, 0, 0, 1}, -9, 2}, {{-1e-6, 0, 1}, 3, 1e-3}, {{5, -1, 0, 0}, 0, 5},
      {{6, -5, 1}, nan, 2}};
  for (const auto& c : cases) {
    signal<V> p(c.p);
    signal<V> out;
    out.delta = 4;
    ASSERT_EQ(TWIN(s_psolve)(&p, &out, static_cast<T>(c.guess)), 0) << c.guess;
    EXPECT_EQ(out.complex, 0);
    EXPECT_EQ(out.delta, 4);
    if (!std::isnan(c.guess)) {
      EXPECT_NEAR(wide(out.data[0]), c.root, std::abs(c.root) * 4 * unit_roundoff<V>) << c.guess;
    }
    ASSERT_EQ(TWIN(s_psolve)(&p, &p, static_cast<T>(c.guess)), 0);
    EXPECT_EQ(p.values(), out.values());
  }
  signal<V> out;
  const signal<V> nothing;
  EXPECT_EQ(TWIN(s_psolve)(&nothing, &out, 3), 0);
  EXPECT_EQ(out.values(), samples<V>{0});
}

TYPED_TEST(Polynomials, SearchesThatCannotEndFail) {
  using V = TypeParam;
  const signal<V> hopeless[] = {
      {1, 0, 1}, {5}, {nan, 1, 1}, {1, nan}, {1, 0, 1e-30, 0, 1}, {2, 1, 0, 0, 3, 0, 1}};
  for (const auto& p : hopeless) {
    signal<V> out;
    EXPECT_EQ(TWIN(s_psolve)(&p, &out, 0), -1);
    EXPECT_EQ(out.points, 1U);
  }
  for (const std::initializer_list<double> values : {std::initializer_list<double>{5}, {nan, 1, 1}}) {
    const signal<V> p(values);
    signal<V> out;
    EXPECT_EQ(TWIN(s_pcsolve)(&p, &out, 1, 1), -1);
    EXPECT_EQ(out.values(), (samples<V>{0, 0}));
  }
  for (const std::initializer_list<double> values : {std::initializer_list<double>{nan, 1, 1},
                                                     {1, 1, std::numeric_limits<double>::infinity()},
                                                     {nan, nan}}) {
    signal<V> p(values);
    EXPECT_EQ(TWIN(i_proots)(&p), -1);
    EXPECT_EQ(p.points, values.size()) << "the record stays";
    EXPECT_EQ(p.complex, 0);
  }
}

TYPED_TEST(Polynomials, ComplexSearchGoesToARoot) {
  using V = TypeParam;
  const complex i(0, 1);
  const std::vector<complex> roots{2.0 + i, 2.0 - i, -3, 0.5 * i, -0.5 * i, 10};
  const signal<V> p(stored<V>(expanded(roots)));
  for (const complex start :
       {complex(0), 2.0 + 1.1 * i, 2.0 - i, complex(-5), complex(1e3, -1e3), 9.0 + 0.1 * i}) {
    signal<V> out;
    ASSERT_EQ(
        TWIN(s_pcsolve)(&p, &out, static_cast<scalar<V>>(start.real()), static_cast<scalar<V>>(start.imag())),
        0);
    const complex z(wide(out.data[0]), wide(out.data[1]));
    const auto nearest = std::min_element(
        roots.begin(), roots.end(), [z](complex a, complex b) { return std::abs(a - z) < std::abs(b - z); });
    EXPECT_LT(std::abs(z - *nearest), 64 * unit_roundoff<V> * std::abs(z)) << start;
    EXPECT_EQ(out.complex != 0, nearest->imag() != 0) << start;
  }
  signal<V> out;
  const signal<V> nothing;
  ASSERT_EQ(TWIN(s_pcsolve)(&nothing, &out, 1, 1), 0);
  EXPECT_EQ(out.complex, 0);
  EXPECT_EQ(out.values(), samples<V>{0});
  signal<V> same{1, 0, 1};
  ASSERT_EQ(TWIN(s_pcsolve)(&same, &same, scalar<V>(0.1), 2), 0);
  EXPECT_EQ(same.values(), (samples<V>{0, 1}));
}

TYPED_TEST(Polynomials, AllRootsOfHardPolynomials) {
  using V = TypeParam;
  for (const auto& hard : reference::hard_polynomials()) {
    const samples<V> p = stored<V>(hard.coefficients);
    signal<V> v(p);
    ASSERT_EQ(TWIN(i_proots)(&v), 0) << hard.name;
    ASSERT_EQ(v.complex, 1);
    const std::vector<complex> got = points_of<V>(v);
    std::vector<complex> wanted = hard.roots;
    for (const complex z : hard.roots) {
      if (z.imag() != 0) wanted.push_back(std::conj(z));
    }
    double largest = 0;
    for (const complex z : wanted) largest = std::max(largest, std::abs(z));
    if (is_double<V>) {
      EXPECT_LT(distance(got, wanted), 1e-15 * largest) << hard.name;
    }
    EXPECT_LT(backward_error(got, std::vector<double>(p.begin(), p.end())), 1e-15 + 16 * unit_roundoff<V>)
        << hard.name;
    for (std::size_t i = 1; i < got.size(); ++i)
      EXPECT_LE(std::norm(got[i - 1]), std::norm(got[i]) * 1.000001);
  }
}

TYPED_TEST(Polynomials, AllRootsOfUnity) {
  using V = TypeParam;
  for (const int n : {1, 2, 3, 7, 16, 31, 64}) {
    signal<V> v(samples<V>(static_cast<std::size_t>(n) + 1, 0));
    v.data[0] = -1;
    v.data[n] = 1;
    ASSERT_EQ(TWIN(i_proots)(&v), 0);
    std::vector<complex> wanted;
    for (int k = 0; k < n; ++k) wanted.push_back(std::polar(1.0, 2 * 3.14159265358979323846 * k / n));
    EXPECT_LT(distance(points_of<V>(v), wanted), 2e-15 + 2 * unit_roundoff<V>) << n;
  }
}

TYPED_TEST(Polynomials, MultipleRootsHaveSmallBackwardErrors) {
  using V = TypeParam;
  const std::vector<std::vector<complex>> families{{0.1, 0.1, 0.1},
                                                   {1, 1, 1, 1, 1, 1, 1, 1, 1},
                                                   {0.3, 0.3, -0.7, -0.7, 1.1, 1.1, 1.1, 2.3},
                                                   {{1, 2}, {1, -2}, {1, 2}, {1, -2}, {1, 2}, {1, -2}},
                                                   {1e-8, 1e-8, 1e8, 1e8}};
  for (const auto& roots : families) {
    const samples<V> p = stored<V>(expanded(roots));
    signal<V> v(p);
    ASSERT_EQ(TWIN(i_proots)(&v), 0) << roots[0];
    EXPECT_LT(backward_error(points_of<V>(v), std::vector<double>(p.begin(), p.end())),
              1e-15 + 16 * unit_roundoff<V>)
        << roots[0];
  }
}

TYPED_TEST(Polynomials, AllRootsOfDegenerateRecords) {
  using V = TypeParam;
  for (const std::initializer_list<double> values :
       {std::initializer_list<double>{}, {0, 0, 0}, {4}, {4, 0, 0}}) {
    signal<V> v(values);
    ASSERT_EQ(TWIN(i_proots)(&v), 0);
    EXPECT_EQ(v.points, 0U);
  }
  signal<V> v{0, 0, 2, -1, 0, 0};
  v.lend();
  ASSERT_EQ(TWIN(i_proots)(&v), 0);
  EXPECT_EQ(v.values(), (samples<V>{0, 0, 0, 0, 2, 0}));
}

TYPED_TEST(Polynomials, FailedAllocationsLeaveThePolynomial) {
  using V = TypeParam;
  signal<V> p{6, -5, 1};
  {
    const failing_tables none(0);
    EXPECT_EQ(TWIN(i_proots)(&p), -1);
  }
  {
    const failing_records<V> none(0);
    EXPECT_EQ(TWIN(i_proots)(&p), -1);
    EXPECT_EQ(TWIN(s_proots)(&p, &p), -1);
    EXPECT_EQ(TWIN(s_psolve)(&p, &p, 0), -1);
    EXPECT_EQ(TWIN(s_pcsolve)(&p, &p, 0, 0), -1);
  }
  EXPECT_EQ(p.values(), (samples<V>{6, -5, 1}));
}

}  // namespace
}  // namespace sigpak::test
