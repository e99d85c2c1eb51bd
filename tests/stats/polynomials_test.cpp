// SPDX-License-Identifier: MIT
// Polynomials: evaluation, coefficients from roots, closed forms, searches, all roots.
#include <random>

#include "core/guard.h"
#include "stats/factors.h"
#include "stats/hard_polynomials.h"
#include "stats/polynomial.h"
#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Polynomials : public testing::Test {};
TYPED_TEST_SUITE(Polynomials, records, record_names);

using complex = std::complex<double>;
using reference::expanded;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr complex j(0, 1);

template <record V> std::vector<complex> points_of(const V& v) {
  const auto points = contents<V>(v).points;
  return {points.begin(), points.end()};
}

template <record V> samples<V> stored(const std::vector<double>& values) {
  samples<V> out;
  for (const double x : values) out.push_back(static_cast<scalar<V>>(x));
  return out;
}

std::vector<complex>::iterator nearest(std::vector<complex>& all, complex z) {
  return std::ranges::min_element(all, {}, [z](complex a) { return std::abs(a - z); });
}

// The largest distance of a root found from its own partner among those wanted.
double distance(const std::vector<complex>& got, std::vector<complex> wanted) {
  if (got.size() != wanted.size()) return std::numeric_limits<double>::infinity();
  double worst = 0;
  for (const complex z : got) {
    const auto partner = nearest(wanted, z);
    worst = std::max(worst, std::abs(*partner - z));
    wanted.erase(partner);
  }
  return worst;
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
  constexpr T infinity = std::numeric_limits<T>::infinity();
  const signal<V> constant{5};
  for (const T x : {infinity, std::numeric_limits<T>::quiet_NaN()}) {
    ASSERT_EQ(TWIN(s_peval)(&constant, &out, x), 0);
    EXPECT_EQ(out.values(), samples<V>{5});
  }
  const signal<V> line{1, 2};
  ASSERT_EQ(TWIN(s_peval)(&line, &out, infinity), 0);
  EXPECT_EQ(out.values(), samples<V>{infinity});
  const signal<V> none;
  ASSERT_EQ(TWIN(s_peval)(&none, &out, T(5)), 0);
  EXPECT_EQ(out.values(), samples<V>{0});
}

// What the criterion of roots weighs a value against has no floor.
TYPED_TEST(Polynomials, SizeOfTheTerms) {
  using T = scalar<TypeParam>;
  const T a[] = {T(0x1p-60), T(-0x1p-59), T(0x1p-59)};
  const polynomial<T> p{a, 3};
  EXPECT_EQ(expand(p, -2.0).size, 13 * 0x1p-60);
  EXPECT_EQ(expand(p, complex_number{0, 2}).size, 13 * 0x1p-60);
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
      {{0, 0, -4, 6, -2}, false, {0, 0, 1, 2}},
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
      {{4, 0, 5, 0, 1}, true, {0, -2, 0, 2, 0, -1, 0, 1}},
      {{-1, 0, 0, 0, 1}, true, {0, -1, 0, 1, -1, 0, 1, 0}},
      {{-4, 4, -5, 5, -1, 1}, true, {1, 0, 0, -2, 0, 2, 0, -1, 0, 1}},
      {{-12, 8, 1, -1, 3, 1}, true, {-3, 0, -2, 0, 1, 0, 0.5, -1.3228756555322954, 0.5, 1.3228756555322954}},
      {{312, 10, -194, 91, -16, 1}, true, {-1, 0, 3, 0, 4, 0, 5, -1, 5, 1}},
      {{520, -746, 230, 5, -10, 1}, true, {-5, 0, 1, 0, 4, 0, 5, -1, 5, 1}}};
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

// The value at every point of the list is within the rounding of its terms, and pairs are exact. Summed in
// extended precision, whose range holds the terms.
template <record V> void expect_all_right(const std::vector<complex>& roots, const samples<V>& p) {
  using extended = std::complex<long double>;
  const auto n = static_cast<long double>(p.size());
  for (const complex z : roots) {
    extended value = 0;
    long double size = 0;
    for (std::size_t k = p.size(); k-- > 0;) {
      value = value * extended(z) + static_cast<long double>(p[k]);
      size = size * std::abs(extended(z)) + std::abs(static_cast<long double>(p[k]));
    }
    EXPECT_LE(std::abs(value), 16 * n * std::numeric_limits<scalar<V>>::epsilon() * size) << z;
    EXPECT_EQ(std::ranges::count(roots, z), std::ranges::count(roots, std::conj(z)));
  }
}

// The product of all x - z is p: coefficients are rebuilt with the root first that is farthest from those
// before, so that no partial product is larger than need be, and compared with the hull of the coefficients'
// logarithms.
template <record V> void expect_rebuilt(std::vector<complex> left, const samples<V>& p) {
  using extended = std::complex<long double>;
  const std::size_t count = p.size();
  ASSERT_EQ(left.size() + 1, count);
  std::vector<extended> a{static_cast<long double>(p.back())};
  std::vector<complex> taken;
  while (!left.empty()) {
    const auto remoteness = [&](complex z) {
      long double sum = taken.empty() ? std::log(std::abs(extended(z)) + 1e-4000L) : 0;
      for (const complex t : taken) sum += std::log(std::abs(extended(z) - extended(t)) + 1e-4000L);
      return sum;
    };
    const auto next = std::ranges::max_element(left, {}, remoteness);
    taken.push_back(*next);
    left.erase(next);
    a.insert(a.begin(), 0);
    for (std::size_t k = 0; k + 1 < a.size(); ++k) a[k] -= extended(taken.back()) * a[k + 1];
  }
  const auto log_size = [&](std::size_t k) { return std::log(std::abs(static_cast<long double>(p[k]))); };
  for (std::size_t k = 0; k < count; ++k) {
    long double hull = log_size(k);
    for (std::size_t low = 0; low < k; ++low) {
      for (std::size_t high = k + 1; high < count; ++high) {
        const long double share = static_cast<long double>(k - low) / static_cast<long double>(high - low);
        if (p[low] != 0 && p[high] != 0)
          hull = std::max(hull, (1 - share) * log_size(low) + share * log_size(high));
      }
    }
    const long double off = std::abs(a[k] - static_cast<long double>(p[k]));
    EXPECT_LE(
        off, 4 * static_cast<long double>(count) * std::numeric_limits<scalar<V>>::epsilon() * std::exp(hull))
        << k;
  }
}

// What solve(v) leaves of p, held to both.
template <record V, class Solve> std::vector<complex> expect_exact_list(Solve solve, const samples<V>& p) {
  signal<V> v(p);
  EXPECT_EQ(solve(&v), 0) << testing::PrintToString(p);
  EXPECT_EQ(v.delta, 1);
  const std::vector<complex> got = points_of<V>(v);
  expect_all_right<V>(got, p);
  expect_rebuilt<V>(got, p);
  return got;
}

// A far root among many of one size, in closed form as in general; a vanishing pair; formulas that would
// cancel.
TYPED_TEST(Polynomials, RootsOfVeryDifferentSize) {
  using V = TypeParam;
  const auto with = [](std::size_t degree, std::initializer_list<std::pair<std::size_t, double>> terms) {
    std::vector<double> a(degree + 1);
    for (const auto& [k, c] : terms) a[k] = c;
    return a;
  };
  std::vector<double> ones(25, 1);
  ones.back() = 0.01;
  for (const auto& a :
       {ones, with(13, {{0, -1}, {12, 1}, {13, 1e-4}}), with(25, {{0, -1}, {24, 1}, {25, 0.005}}),
        with(16, {{0, -0.70669}, {15, -12.3265}, {16, 0.031855}})}) {
    expect_exact_list<V>(TWIN(i_proots), stored<V>(a));
  }
  const auto closed = [](V* v) { return TWIN(s_proots)(v, v); };
  std::vector<std::vector<double>> small{{1.33239e-07, -4.22283e-06, 40501100.5, 2463.474, 8.41898e-07},
                                         {1, 1e10, 0, 1},
                                         {1, 0, 1, 1e-20, 1e-20}};
  if (is_double<V>) {
    small.insert(small.end(), {{-1.7345833593206363e-62, -2.9906988359357257e-07, -1.5046061935649244e+49, 1},
                               {4.1296379239649674e-72, -1.8405763280384702e-20, 4.5860779052351984e+32,
                                41995256900781928, 1}});
  }
  for (const auto& a : small) {
    expect_exact_list<V>(closed, stored<V>(a));
    expect_exact_list<V>(TWIN(i_proots), stored<V>(a));
  }
}

TYPED_TEST(Polynomials, RandomCoefficients) {
  using V = TypeParam;
  std::mt19937_64 random(20);
  std::normal_distribution<double> normal;
  std::uniform_real_distribution<double> exponent(-8, 8);
  for (int i = 0; i < 60; ++i) {
    std::vector<double> a(static_cast<std::size_t>(6 + i));
    for (double& c : a)
      c = i % 2 == 0 ? normal(random) : std::copysign(std::pow(10, exponent(random)), normal(random));
    expect_exact_list<V>(TWIN(i_proots), stored<V>(a));
    a.resize(static_cast<std::size_t>(4 + i % 3));
    expect_exact_list<V>([](V* v) { return TWIN(s_proots)(v, v); }, stored<V>(a));
  }
  for (const auto& a : {std::vector<double>{-1.0000000000688944, 5.0000000002755778, -10.000000000413367,
                                            10.000000000275577, -5.0000000000688942, 1},
                        {16806.937002552342, 12004.964001451184, 3429.9922860236902, 489.99926533544067,
                         34.999973761974708, 1}}) {
    expect_exact_list<V>(TWIN(i_proots), stored<V>(a));  // five roots that nearly meet
  }
}

// Of one kind and of several; where the real root of a quintic is much larger or smaller than the others,
// dividing it out must not spoil them.
TYPED_TEST(Polynomials, ClosedFormsOfEveryKind) {
  using V = TypeParam;
  const double s = std::sqrt(0.5);
  const auto far = [](double root) {
    return std::vector<complex>{root, -0.5 - 0.8 * j, -0.5 + 0.8 * j, 0.3 - 1.5 * j, 0.3 + 1.5 * j};
  };
  const std::vector<complex> cases[] = {{1, 2, 3, 4},
                                        {j, -j, 2.0 * j, -2.0 * j},
                                        {-1.0 + j, -1.0 - j, 5, 0.25},
                                        {0, 0, -0.25, -2},
                                        {0, 0, -1, -1},
                                        {-2, -2, -0.25, -0.25},
                                        {j, -j, j, -j},
                                        {1e-5, 2e-5, 3e-5, -4e-5},
                                        {1e-4, 1, 100, 1e4},
                                        {3, 3, 3, 3},
                                        {{s, s}, {s, -s}, {-s, s}, {-s, -s}},
                                        {-3, -1.0 - j, -1.0 + j, 2.0 - j, 2.0 + j},
                                        {7, -1.0 - j, -1.0 + j, 2.0 - j, 2.0 + j},
                                        {1, 2, 3, 5.0 - j, 5.0 + j},
                                        {-1, 0.5, 4, -3.0 - 2.0 * j, -3.0 + 2.0 * j},
                                        far(-1e9 / 3),
                                        far(-1e-7 / 3),
                                        far(0)};
  for (const auto& roots : cases) {
    SCOPED_TRACE(testing::Message() << roots[0] << roots[2]);
    const auto solve = [](V* v) { return TWIN(s_proots)(v, v); };
    const auto got = expect_exact_list<V>(solve, stored<V>(expanded(roots)));
    for (std::size_t k = 0; k < got.size() && got.size() == 5; ++k) {
      EXPECT_TRUE(got[k].imag() >= 0 || got[k + 1] == std::conj(got[k]))
          << "side by side, the lower one first";
    }
  }
}

TYPED_TEST(Polynomials, RealSearch) {
  using V = TypeParam;
  using T = scalar<V>;
  struct {
    std::initializer_list<double> p;
    double guess, root;
  } const cases[] = {{{6, -5, 1}, 1, 2},
                     {{6, -5, 1}, 1e9, 3},
                     {{6, -5, 1}, -1e9, 2},
                     {{-2, 0, 1}, 1, std::sqrt(2.0)},
                     {{0, 1, 0, 1}, 5, 0},
                     {{-8, 0, 0, 1}, -9, 2},
                     {{-1e-6, 0, 1}, 3, 1e-3},
                     {{5, -1, 0, 0}, 0, 5},
                     {{6, -5, 1}, nan, 2},
                     {{0, -2, 0, 4, 2, 6, 3}, 4, 0},
                     {{-3, 3, -6, 0, 2, 3, 1}, 0, 1},
                     {{0, 4, 1, 6, 1, 6, 1}, 4, 0},
                     {{0, 3, -3, 3, -2, 2, 0}, -2, 0}};
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
  samples<V> many(20'001, 1);  // each search would take the square of this, many times over
  many[7] = static_cast<scalar<V>>(nan);
  const signal<V> long_one(many);
  signal<V> last;
  EXPECT_EQ(TWIN(s_psolve)(&long_one, &last, 0), -1);
  EXPECT_EQ(TWIN(s_pcsolve)(&long_one, &last, 0, 0), -1);
  signal<V> list(many);
  EXPECT_EQ(TWIN(i_proots)(&list), -1);
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
  using T = scalar<V>;
  std::vector<complex> roots{2.0 + j, 2.0 - j, -3, 0.5 * j, -0.5 * j, 10};
  const signal<V> p(stored<V>(expanded(roots)));
  for (const complex start :
       {complex(0), 2.0 + 1.1 * j, 2.0 - j, complex(-5), complex(1e3, -1e3), 9.0 + 0.1 * j}) {
    signal<V> out;
    ASSERT_EQ(TWIN(s_pcsolve)(&p, &out, static_cast<T>(start.real()), static_cast<T>(start.imag())), 0);
    const complex z(wide(out.data[0]), wide(out.data[1]));
    const complex root = *nearest(roots, z);
    EXPECT_LT(std::abs(z - root), 64 * unit_roundoff<V> * std::abs(z)) << start;
    EXPECT_EQ(out.complex != 0, root.imag() != 0) << start;
  }
  signal<V> out;
  const signal<V> nothing;
  ASSERT_EQ(TWIN(s_pcsolve)(&nothing, &out, 1, 1), 0);
  EXPECT_EQ(out.complex, 0);
  EXPECT_EQ(out.values(), samples<V>{0});
  const signal<V> through{0, 1, 0, 4, 0, 6, -5};  // where a part of the value vanishes on the way
  ASSERT_EQ(TWIN(s_pcsolve)(&through, &out, 1, 0), 0);
  EXPECT_EQ(out.values(), samples<V>{0});
  const signal<V> zero_among_pair{0, 1, 0, 1};  // a constant term of 0 makes every root count as real
  ASSERT_EQ(TWIN(s_pcsolve)(&zero_among_pair, &out, 0, 1), 0);
  EXPECT_EQ(out.complex, 0);
  EXPECT_EQ(out.data[1], 1);
  signal<V> same{1, 0, 1};
  ASSERT_EQ(TWIN(s_pcsolve)(&same, &same, scalar<V>(0.1), 2), 0);
  EXPECT_EQ(same.values(), (samples<V>{0, 1}));
}

// A polynomial of which one coefficient is off, by a few of its last places, has not the factor.
TEST(PolynomialFactors, DivideOutWhatIsAFactorAndNothingElse) {
  const struct {
    std::vector<double> factor, quotient;
    complex root;
  } cases[] = {{{5, -2, 1}, {3, 1, 4, 1}, {1, 2}}, {{5, -2, 1}, {3, 1, 4, 1}, {1, -2}},
               {{25, 6, 1}, {-1, 7}, {-3, 4}},     {{0.25, 0, 1}, {2, 7, 1, 8, 2}, {0, 0.5}},
               {{-3, 1}, {3, 2, 4, 1, 5}, {3, 0}}, {{0.125, 1}, {1, -6, 1}, {-0.125, 0}}};
  for (const auto& c : cases) {
    std::vector<double> product(c.factor.size() + c.quotient.size() - 1);
    for (std::size_t i = 0; i < c.factor.size(); ++i) {
      for (std::size_t k = 0; k < c.quotient.size(); ++k) product[i + k] += c.factor[i] * c.quotient[k];
    }
    const factor f = {{precise(c.root.real()), precise(c.root.imag())}, c.root.imag() != 0, true};
    for (std::size_t off = 0; off <= product.size(); ++off) {
      std::vector<double_double> a;
      for (const double x : product) a.push_back(precise(x));
      if (off < a.size()) a[off].hi *= 1 + 0x1p-50;
      scaled_polynomial p = {a.data(), std::ssize(a), 0};
      EXPECT_EQ(divide_out(p, f), off == product.size()) << c.root << ' ' << off;
      ASSERT_EQ(p.count, std::ssize(c.quotient));
      for (std::size_t k = 0; k < c.quotient.size(); ++k) EXPECT_NEAR(a[k].hi, c.quotient[k], 1e-12);
    }
  }
}

TYPED_TEST(Polynomials, AllRootsByDistanceFromZero) {
  using V = TypeParam;
  const auto expect = [](const std::vector<double>& p) {
    const auto got = expect_exact_list<V>(TWIN(i_proots), stored<V>(p));
    for (std::size_t k = 1; k < got.size(); ++k)
      EXPECT_LE(std::norm(got[k - 1]), std::norm(got[k]) * 1.000001);
    return got;
  };
  for (const auto& hard : reference::hard_polynomials) {
    SCOPED_TRACE(hard.name);
    std::vector<complex> wanted = hard.roots;
    double largest = 0;
    for (const complex z : hard.roots) {
      if (z.imag() != 0) wanted.push_back(std::conj(z));
      largest = std::max(largest, std::abs(z));
    }
    const double found = distance(expect(hard.coefficients), wanted);
    EXPECT_TRUE(!is_double<V> || found < 1e-15 * largest) << found;
  }
  for (const int n : {1, 2, 3, 7, 16, 31, 64, 600}) {
    std::vector<double> p(static_cast<std::size_t>(n) + 1);
    p.front() = -1;
    p.back() = 1;
    std::vector<complex> unity;
    for (int k = 0; k < n; ++k) unity.push_back(std::polar(1.0, 2 * 3.14159265358979323846 * k / n));
    signal<V> v(stored<V>(p));
    ASSERT_EQ(TWIN(i_proots)(&v), 0);
    EXPECT_LT(distance(points_of<V>(v), unity), 16 * unit_roundoff<V>) << n;
  }
  const std::vector<std::vector<complex>> multiple{{0.1, 0.1, 0.1},
                                                   {1, 1, 1, 1, 1, 1, 1, 1, 1},
                                                   {0.3, 0.3, -0.7, -0.7, 1.1, 1.1, 1.1, 2.3},
                                                   {{1, 2}, {1, -2}, {1, 2}, {1, -2}, {1, 2}, {1, -2}},
                                                   {1e-8, 1e-8, 1e8, 1e8}};
  for (const auto& roots : multiple) {
    SCOPED_TRACE(roots[0]);
    expect(expanded(roots));
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

TYPED_TEST(Polynomials, RefusalsAndFailuresLeaveThePolynomial) {
  using V = TypeParam;
  expect_complex_refused<V>([](V* p) { return TWIN(s_peval)(p, p, 0); });
  const std::vector<status (*)(V*)> searches{TWIN(i_proots), [](V* p) { return TWIN(s_proots)(p, p); },
                                             [](V* p) { return TWIN(s_psolve)(p, p, 0); },
                                             [](V* p) { return TWIN(s_pcsolve)(p, p, 0, 0); }};
  for (const auto run : searches) {
    expect_complex_refused<V>(run);
    signal<V> p{6, -5, 1};
    {
      const failing_records none(0);
      EXPECT_EQ(run(&p), -1);
    }
    EXPECT_EQ(p.values(), (samples<V>{6, -5, 1}));
  }
  signal<V> p{6, -5, 1};
  const failing_tables none(0);
  EXPECT_EQ(TWIN(i_proots)(&p), -1);
  EXPECT_EQ(p.values(), (samples<V>{6, -5, 1}));
}

}  // namespace
}  // namespace sigpak::test
