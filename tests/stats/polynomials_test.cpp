// Polynomials: evaluation, coefficients from roots, closed forms, searches, all roots.
#include "stats/hard_polynomials.h"
#include "core/wide.h"
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

// What solve(v) leaves of the polynomial p: the roots, within `far` in double precision, of coefficients
// close to those given.
template <record V, class Solve>
std::vector<complex> expect_roots(Solve solve, const samples<V>& p, double backward,
                                  const std::vector<complex>& wanted = {}, double far = 0) {
  signal<V> v(p);
  EXPECT_EQ(solve(&v), 0);
  EXPECT_EQ(v.delta, 1);
  const std::vector<complex> got = points_of<V>(v);
  EXPECT_LT(backward_error(got, std::vector<double>(p.begin(), p.end())), backward);
  EXPECT_TRUE(!is_double<V> || wanted.empty() || distance(got, wanted) < far) << distance(got, wanted);
  return got;
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
  } const cases[] = {{{}, false, {}},
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
                     {{120, -274, 225, -85, 15, -1}, false, {1, 2, 3, 4, 5}}};
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

// Multiple roots are known to half the digits. Where the real root of a quintic is much larger or smaller
// than the others, dividing it out must not spoil them.
TYPED_TEST(Polynomials, ClosedFormsOfEveryKind) {
  using V = TypeParam;
  const double s = std::sqrt(0.5);
  const double loose = 1e-14 + 8 * unit_roundoff<V>;
  const double tight = 16 * unit_roundoff<V>;
  const auto far = [](double root) {
    return std::vector<complex>{root, -0.5 - 0.8 * j, -0.5 + 0.8 * j, 0.3 - 1.5 * j, 0.3 + 1.5 * j};
  };
  struct {
    std::vector<complex> roots;
    double far, backward;
  } const cases[] = {{{1, 2, 3, 4}, 1e-13, loose},
                     {{j, -j, 2.0 * j, -2.0 * j}, 1e-15, loose},
                     {{-1.0 + j, -1.0 - j, 5, 0.25}, 1e-14, loose},
                     {{0, 0, -0.25, -2}, 1e-15, loose},
                     {{0, 0, -1, -1}, 1e-15, loose},
                     {{-2, -2, -0.25, -0.25}, 1e-7, loose},
                     {{j, -j, j, -j}, 1e-7, loose},
                     {{1e-5, 2e-5, 3e-5, -4e-5}, 1e-17, loose},
                     {{1e-4, 1, 100, 1e4}, 1e-9, loose},
                     {{3, 3, 3, 3}, 1e-3, loose},
                     {{{s, s}, {s, -s}, {-s, s}, {-s, -s}}, 1e-15, tight},
                     {{-3, -1.0 - j, -1.0 + j, 2.0 - j, 2.0 + j}, 1e-12, tight},
                     {{7, -1.0 - j, -1.0 + j, 2.0 - j, 2.0 + j}, 1e-12, tight},
                     {{1, 2, 3, 5.0 - j, 5.0 + j}, 1e-12, tight},
                     {{-1, 0.5, 4, -3.0 - 2.0 * j, -3.0 + 2.0 * j}, 1e-12, tight},
                     {far(123456.789), 1e-9, tight},
                     {far(-1e9 / 3), 1e-6, tight},
                     {far(3e4 / 7), 1e-10, tight},
                     {far(-1e-7 / 3), 1e-14, tight},
                     {far(0), 1e-15, tight}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.roots[0] << c.roots[2]);
    const auto solve = [](V* v) { return TWIN(s_proots)(v, v); };
    const auto got = expect_roots<V>(solve, stored<V>(expanded(c.roots)), c.backward, c.roots, c.far);
    for (std::size_t k = 0; k < got.size() && got.size() == 5; ++k) {
      EXPECT_TRUE(got[k].imag() >= 0 || got[k + 1] == std::conj(got[k]))
          << "side by side, the lower one first";
    }
  }
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
        SCOPED_TRACE(testing::Message() << p << ' ' << q << ' ' << moved);
        expect_roots<V>([](V* v) { return TWIN(s_proots)(v, v); }, a, 16 * unit_roundoff<V>);
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
  signal<V> same{1, 0, 1};
  ASSERT_EQ(TWIN(s_pcsolve)(&same, &same, scalar<V>(0.1), 2), 0);
  EXPECT_EQ(same.values(), (samples<V>{0, 1}));
}

TYPED_TEST(Polynomials, AllRootsByDistanceFromZero) {
  using V = TypeParam;
  const auto expect = [](const std::vector<double>& p, const std::vector<complex>& wanted, double far,
                         double more = 0) {
    const auto got =
        expect_roots<V>(TWIN(i_proots), stored<V>(p), 1e-15 + 16 * unit_roundoff<V> + more, wanted, far);
    for (std::size_t k = 1; k < got.size(); ++k)
      EXPECT_LE(std::norm(got[k - 1]), std::norm(got[k]) * 1.000001);
  };
  for (const auto& hard : reference::hard_polynomials()) {
    SCOPED_TRACE(hard.name);
    std::vector<complex> wanted = hard.roots;
    double largest = 0;
    for (const complex z : hard.roots) {
      if (z.imag() != 0) wanted.push_back(std::conj(z));
      largest = std::max(largest, std::abs(z));
    }
    expect(hard.coefficients, wanted, 1e-15 * largest);
  }
  for (const int n : {1, 2, 3, 7, 16, 31, 64}) {
    SCOPED_TRACE(n);
    std::vector<double> p(static_cast<std::size_t>(n) + 1);
    p.front() = -1;
    p.back() = 1;
    std::vector<complex> unity;
    for (int k = 0; k < n; ++k) unity.push_back(std::polar(1.0, 2 * 3.14159265358979323846 * k / n));
    expect(p, unity, 2.3e-15, n > 16 ? 1e-5 : 0);  // the product is formed in an unlucky order
  }
  const std::vector<std::vector<complex>> multiple{{0.1, 0.1, 0.1},
                                                   {1, 1, 1, 1, 1, 1, 1, 1, 1},
                                                   {0.3, 0.3, -0.7, -0.7, 1.1, 1.1, 1.1, 2.3},
                                                   {{1, 2}, {1, -2}, {1, 2}, {1, -2}, {1, 2}, {1, -2}},
                                                   {1e-8, 1e-8, 1e8, 1e8}};
  for (const auto& roots : multiple) {
    SCOPED_TRACE(roots[0]);
    expect(expanded(roots), {}, 0);
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
      const failing_records<V> none(0);
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
