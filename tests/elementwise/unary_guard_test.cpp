// The guarded arithmetic of the in-place functions: limits, zeros, NaN and infinities, refusals.
#include <gtest/gtest.h>

#include <functional>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class UnaryGuard : public testing::Test {};
TYPED_TEST_SUITE(UnaryGuard, records, record_names);

template <class T> bool same(T a, T b) {
  return (a != a && b != b) || (a == b && std::signbit(a) == std::signbit(b));
}

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

template <record V> using member = std::int32_t (*)(V*);

template <record V> struct real_case {
  const char* name;
  member<V> run;
  scalar<V> x;
  scalar<V> wanted;
};

template <record V> std::vector<real_case<V>> real_cases() {
  using T = scalar<V>;
  constexpr T h = huge<V>;
  constexpr T inf = std::numeric_limits<T>::infinity();
  constexpr T not_a_number = std::numeric_limits<T>::quiet_NaN();
  constexpr T t = guard<T>::tiny;
  constexpr T log_h = guard<T>::log_huge;
  const T above_h = std::nextafter(h, inf);
  const T below_t = std::nextafter(t, T(0));
  const T log_t = static_cast<T>(is_double<V> ? -708.3964185322641 : -87.33654475055311);
  const T log10_t = static_cast<T>(is_double<V> ? -307.6526555685888 : -37.92977945366163);
  const T decimal = is_double<V> ? T(100) : T(15);
  const T above_one = std::nextafter(T(1), T(2));
  std::vector<real_case<V>> cases = {
      {"square", TWIN(i_square), h, h * h},
      {"square", TWIN(i_square), -h, h * h},
      {"square", TWIN(i_square), above_h, h},
      {"square", TWIN(i_square), -above_h, h},
      {"square", TWIN(i_square), -inf, h},
      {"recip", TWIN(i_recip), 0, h},
      {"recip", TWIN(i_recip), -T(0), h},
      {"recip", TWIN(i_recip), -4, T(-0.25)},
      {"recip", TWIN(i_recip), inf, 0},
      {"sqrt", TWIN(i_sqrt), -4, 0},
      {"sqrt", TWIN(i_sqrt), -T(0), -T(0)},
      {"sqrt", TWIN(i_sqrt), -inf, 0},
      {"sqrt", TWIN(i_sqrt), inf, inf},
      {"neg", TWIN(i_neg), 0, -T(0)},
      {"abs", TWIN(i_abs), -T(0), 0},
      {"abs", TWIN(i_abs), -inf, inf},
      {"exp", TWIN(i_exp), std::nextafter(log_h, inf), h},
      {"exp", TWIN(i_exp), log_h, static_cast<T>(std::exp(static_cast<double>(log_h)))},
      {"exp", TWIN(i_exp), inf, h},
      {"exp", TWIN(i_exp), -inf, 0},
      {"exp10", TWIN(i_exp10), decimal, h},
      {"exp10", TWIN(i_exp10), std::nextafter(decimal, inf), h},
      {"exp10", TWIN(i_exp10), inf, h},
      {"exp10", TWIN(i_exp10), -h, 0},
      {"exp10", TWIN(i_exp10), 0, 1},
      {"log", TWIN(i_log), 0, log_t},
      {"log", TWIN(i_log), -1, log_t},
      {"log", TWIN(i_log), -inf, log_t},
      {"log", TWIN(i_log), below_t, log_t},
      {"log", TWIN(i_log), t, log_t},
      {"log", TWIN(i_log), 1, 0},
      {"log", TWIN(i_log), inf, inf},
      {"log10", TWIN(i_log10), 0, log10_t},
      {"log10", TWIN(i_log10), below_t, log10_t},
      {"log10", TWIN(i_log10), t, log10_t},
      {"log10", TWIN(i_log10), 1, 0},
      {"log10", TWIN(i_log10), inf, inf},
      {"sin", TWIN(i_sin), -T(0), -T(0)},
      {"sin", TWIN(i_sin), inf, not_a_number},
      {"cos", TWIN(i_cos), inf, not_a_number},
      {"tan", TWIN(i_tan), -T(0), -T(0)},
      {"tan", TWIN(i_tan), -inf, not_a_number},
      {"sinc", TWIN(i_sinc), 0, 1},
      {"sinc", TWIN(i_sinc), -T(0), 1},
      {"atan", TWIN(i_atan), -T(0), -T(0)},
      {"asin", TWIN(i_asin), above_one, 0},
      {"asin", TWIN(i_asin), -above_one, 0},
      {"asin", TWIN(i_asin), -T(0), -T(0)},
      {"asin", TWIN(i_asin), inf, 0},
      {"acos", TWIN(i_acos), above_one, 0},
      {"acos", TWIN(i_acos), -above_one, 0},
      {"acos", TWIN(i_acos), 1, 0},
      {"sinh", TWIN(i_sinh), std::nextafter(log_h, inf), h},
      {"sinh", TWIN(i_sinh), std::nextafter(-log_h, -inf), -h},
      {"sinh", TWIN(i_sinh), -inf, -h},
      {"sinh", TWIN(i_sinh), log_h, static_cast<T>(std::exp(static_cast<double>(log_h)) / 2)},
      {"sinh", TWIN(i_sinh), -T(0), -T(0)},
      {"cosh", TWIN(i_cosh), std::nextafter(log_h, inf), h},
      {"cosh", TWIN(i_cosh), std::nextafter(-log_h, -inf), h},
      {"cosh", TWIN(i_cosh), -log_h, static_cast<T>(std::exp(static_cast<double>(log_h)) / 2)},
      {"cosh", TWIN(i_cosh), 0, 1},
      {"tanh", TWIN(i_tanh), -T(0), -T(0)},
      {"tanh", TWIN(i_tanh), inf, 1},
      {"tanh", TWIN(i_tanh), -inf, -1},
      {"besi0", TWIN(i_besi0), 0, 1},
      {"besi0", TWIN(i_besi0), std::nextafter(T(700), inf), h},
      {"besi0", TWIN(i_besi0), std::nextafter(T(-700), -inf), h},
      {"besi0", TWIN(i_besi0), -inf, h},
      {"besj0", TWIN(i_besj0), 0, 1},
      {"besj1", TWIN(i_besj1), -T(0), -T(0)},
      {"besy0", TWIN(i_besy0), 0, 0},
      {"besy0", TWIN(i_besy0), -1, 0},
      {"besy1", TWIN(i_besy1), -T(0), 0},
      {"besy1", TWIN(i_besy1), -inf, 0},
  };
  for (const auto& [name, run] : std::vector<std::pair<const char*, member<V>>>{
           {"neg", TWIN(i_neg)},     {"abs", TWIN(i_abs)},     {"square", TWIN(i_square)},
           {"recip", TWIN(i_recip)}, {"sqrt", TWIN(i_sqrt)},   {"exp", TWIN(i_exp)},
           {"exp10", TWIN(i_exp10)}, {"log", TWIN(i_log)},     {"log10", TWIN(i_log10)},
           {"sin", TWIN(i_sin)},     {"cos", TWIN(i_cos)},     {"tan", TWIN(i_tan)},
           {"sinc", TWIN(i_sinc)},   {"atan", TWIN(i_atan)},   {"asin", TWIN(i_asin)},
           {"acos", TWIN(i_acos)},   {"sinh", TWIN(i_sinh)},   {"cosh", TWIN(i_cosh)},
           {"tanh", TWIN(i_tanh)},   {"besi0", TWIN(i_besi0)}, {"besj0", TWIN(i_besj0)},
           {"besj1", TWIN(i_besj1)}, {"besy0", TWIN(i_besy0)}, {"besy1", TWIN(i_besy1)}}) {
    cases.push_back({name, run, not_a_number, not_a_number});
  }
  return cases;
}

// Every case stands at every position of a record of 19, among harmless samples, so that all lanes and the
// rest of a vector loop see it; the storage is lent.
TYPED_TEST(UnaryGuard, RealLimits) {
  using V = TypeParam;
  constexpr index size = 19;
  for (const auto& c : real_cases<V>()) {
    signal<V> harmless{0.5};
    ASSERT_EQ(c.run(&harmless), 0);
    for (index place = 0; place < size; ++place) {
      samples<V> x(size, scalar<V>(0.5));
      x[static_cast<std::size_t>(place)] = c.x;
      signal<V> v(x);
      v.delta = 3;
      v.lend();
      ASSERT_EQ(c.run(&v), 0);
      EXPECT_EQ(v.data, v.lent().data());
      EXPECT_EQ(v.points, std::uint32_t(size));
      EXPECT_EQ(v.delta, 3);
      for (index i = 0; i < size; ++i) {
        const auto wanted = i == place ? c.wanted : harmless.data[0];
        ASSERT_TRUE(same(v.data[i], wanted)) << c.name << "(" << c.x << ") at " << place << ": " << v.data[i];
      }
    }
  }
}

template <record V> struct complex_case {
  const char* name;
  member<V> run;
  scalar<V> a, b;
  scalar<V> re, im;
};

template <record V> std::vector<complex_case<V>> complex_cases() {
  using T = scalar<V>;
  constexpr T h = huge<V>;
  constexpr T inf = std::numeric_limits<T>::infinity();
  constexpr T not_a_number = std::numeric_limits<T>::quiet_NaN();
  constexpr T tiny = std::numeric_limits<T>::min();
  constexpr T least = std::numeric_limits<T>::denorm_min();
  const T root_h = std::sqrt(h);
  const T root_t = std::sqrt(tiny);
  const double pi = 3.141592653589793;
  const T log_t = static_cast<T>(is_double<V> ? -708.3964185322641 : -87.33654475055311);
  const T log10_t = static_cast<T>(is_double<V> ? -307.6526555685888 : -37.92977945366163);
  const T half_log_h = guard<T>::log_huge / 2;
  const double log10_e = is_double<V> ? 0.4342944819032518 : double(0.4342945F);
  const auto rounded = [](double x) { return static_cast<T>(x); };
  return {
      {"neg", TWIN(i_neg), 1, -2, -1, 2},
      {"square", TWIN(i_square), 3, 4, -7, 24},
      {"square", TWIN(i_square), 2 * h, 1, h * h, 2 * h},
      {"square", TWIN(i_square), -inf, -inf, 0,
       rounded(2.0 * static_cast<double>(h) * static_cast<double>(h))},
      {"recip", TWIN(i_recip), 0, 0, 0, -T(0)},
      {"recip", TWIN(i_recip), 0, -2, 0, T(0.5)},
      {"recip", TWIN(i_recip), 2 * h, 1, 2, rounded(-1 / static_cast<double>(h))},
      {"recip", TWIN(i_recip), 0, -2 * h, 0, 2},
      {"recip", TWIN(i_recip), not_a_number, 2 * h, not_a_number, -2},
      {"sqrt", TWIN(i_sqrt), -4, 0, 0, 2},
      {"sqrt", TWIN(i_sqrt), -4, -T(0), 0, -2},
      {"sqrt", TWIN(i_sqrt), 4, -T(0), 2, -T(0)},
      {"sqrt", TWIN(i_sqrt), 0, 0, 0, 0},
      {"sqrt", TWIN(i_sqrt), -T(0), -T(0), 0, 0},
      {"sqrt", TWIN(i_sqrt), 3, 4, 2, 1},
      {"sqrt", TWIN(i_sqrt), -3, -4, 1, -2},
      {"sqrt", TWIN(i_sqrt), 4 * tiny, 0, rounded(2 * std::sqrt(static_cast<double>(tiny))), 0},
      {"sqrt", TWIN(i_sqrt), inf, 0, root_h, 0},
      {"sqrt", TWIN(i_sqrt), 4 * h, 0, root_h, 0},
      {"sqrt", TWIN(i_sqrt), -inf, 0, 0, root_h},
      {"sqrt", TWIN(i_sqrt), -2 * h, -T(0), 0, -root_h},
      {"sqrt", TWIN(i_sqrt), not_a_number, 1, not_a_number, not_a_number},
      {"exp", TWIN(i_exp), inf, 0, h, 0},
      {"exp", TWIN(i_exp), 1000, 0, h, 0},
      {"exp", TWIN(i_exp), 0, 0, 1, 0},
      {"exp", TWIN(i_exp), -inf, 1, 0, 0},
      {"exp", TWIN(i_exp), 3, least, rounded(std::exp(3.0)), 20 * least},
      {"exp10", TWIN(i_exp10), 2, 0, 100, 0},
      {"exp10", TWIN(i_exp10), 101, 0, h, 0},
      {"exp10", TWIN(i_exp10), -2 * h, 0, -h, -T(0)},
      {"exp10", TWIN(i_exp10), -h, 0, 0, 0},
      {"log", TWIN(i_log), 0, 0, log_t, 0},
      {"log", TWIN(i_log), 0, tiny, log_t, 0},
      {"log", TWIN(i_log), 0, root_t, log_t / 2, rounded(pi / 2)},
      {"log", TWIN(i_log), 0, std::nextafter(root_t, T(0)), log_t, 0},
      {"log10", TWIN(i_log10), 0, std::nextafter(root_t, T(0)), log10_t, 0},
      {"log", TWIN(i_log), 1, 0, 0, 0},
      {"log", TWIN(i_log), -1, 0, 0, rounded(pi)},
      {"log", TWIN(i_log), -1, -T(0), 0, rounded(-pi)},
      {"log", TWIN(i_log), 2 * h, 0, half_log_h, 0},
      {"log", TWIN(i_log), -inf, inf, half_log_h, rounded(3 * pi / 4)},
      {"log", TWIN(i_log), inf, 1, half_log_h, rounded(1 / static_cast<double>(h))},
      {"log", TWIN(i_log), not_a_number, 1, not_a_number, not_a_number},
      {"log10", TWIN(i_log10), 0, tiny, log10_t, 0},
      {"log10", TWIN(i_log10), 100, 0, 2, 0},
      {"log10", TWIN(i_log10), 0, 10, 1, rounded(log10_e * (pi / 2))},
      {"log10", TWIN(i_log10), inf, 0, static_cast<T>(is_double<V> ? 100 : 15), 0},
  };
}

TYPED_TEST(UnaryGuard, ComplexLimits) {
  using V = TypeParam;
  constexpr index size = 11;
  for (const auto& c : complex_cases<V>()) {
    for (index place = 0; place < size; ++place) {
      samples<V> z(2 * size, scalar<V>(0.5));
      z[static_cast<std::size_t>(2 * place)] = c.a;
      z[static_cast<std::size_t>(2 * place + 1)] = c.b;
      signal<V> v(z, true);
      ASSERT_EQ(c.run(&v), 0);
      ASSERT_TRUE(same(v.data[2 * place], c.re) && same(v.data[2 * place + 1], c.im))
          << c.name << "(" << c.a << ", " << c.b << "): " << v.data[2 * place] << ", "
          << v.data[2 * place + 1];
      EXPECT_TRUE(same(v.data[2 * ((place + 1) % size)], v.data[2 * ((place + 2) % size)]));
    }
  }
}

template <record V> std::vector<member<V>> real_only() {
  return {TWIN(i_abs),   TWIN(i_sin),   TWIN(i_cos),   TWIN(i_tan),  TWIN(i_atan), TWIN(i_asin),
          TWIN(i_acos),  TWIN(i_sinh),  TWIN(i_cosh),  TWIN(i_tanh), TWIN(i_sinc), TWIN(i_besi0),
          TWIN(i_besj0), TWIN(i_besj1), TWIN(i_besy0), TWIN(i_besy1)};
}

template <record V> std::vector<member<V>> either_form() {
  return {TWIN(i_neg), TWIN(i_sqrt),  TWIN(i_square), TWIN(i_recip),
          TWIN(i_exp), TWIN(i_exp10), TWIN(i_log),    TWIN(i_log10)};
}

TYPED_TEST(UnaryGuard, RealFunctionsRefuseComplexRecordsAndAllAcceptEmptyOnes) {
  using V = TypeParam;
  for (const auto run : real_only<V>()) {
    signal<V> v({1, 2, 3, 4}, true);
    const auto before = v.values();
    EXPECT_EQ(run(&v), -1);
    EXPECT_EQ(v.values(), before);
    v.points = 0;
    EXPECT_EQ(run(&v), -1);
    signal<V> empty;
    EXPECT_EQ(run(&empty), 0);
    empty.points = 0xffffffff;
    EXPECT_EQ(run(&empty), 0);
    empty.points = 0;
  }
  for (const auto run : either_form<V>()) {
    for (const int form : {0, 1}) {
      signal<V> empty;
      empty.complex = form;
      EXPECT_EQ(run(&empty), 0);
      EXPECT_EQ(empty.data, nullptr);
    }
  }
}

TYPED_TEST(UnaryGuard, PlaceholdersAlwaysFail) {
  using V = TypeParam;
  for (const auto run : {TWIN(i_erf), TWIN(i_erfc), TWIN(i_gamma), TWIN(i_lgamma)}) {
    for (const bool pairs : {false, true}) {
      signal<V> v({1, 2}, pairs);
      EXPECT_EQ(run(&v), -1);
      EXPECT_EQ(v.values(), (samples<V>{1, 2}));
      v.points = 0;
      EXPECT_EQ(run(&v), -1);
    }
  }
}

TYPED_TEST(UnaryGuard, ExponentialOfTenStopsAtASampleBelowTheLimit) {
  using V = TypeParam;
  const double below = -10 * static_cast<double>(huge<V>);
  signal<V> v{1, below, 2, nan};
  ASSERT_EQ(TWIN(i_exp10)(&v), 0);
  EXPECT_EQ(v.data[0], 10);
  EXPECT_EQ(v.data[1], static_cast<scalar<V>>(below));
  EXPECT_EQ(v.data[2], 2);
  signal<V> late{1, nan, 2, -infinity, 1};
  ASSERT_EQ(TWIN(i_exp10)(&late), 0);
  EXPECT_EQ(late.data[2], 100);
  EXPECT_EQ(late.data[4], 1);
  signal<V> pairs({1, 0, below, 0, 2, 0}, true);
  ASSERT_EQ(TWIN(i_exp10)(&pairs), 0);
  EXPECT_EQ(pairs.values(), (samples<V>{10, 0, -huge<V>, 0, 100, 0}));
}

TYPED_TEST(UnaryGuard, DecibelsScaleTheLogarithmAndItsFloor) {
  using V = TypeParam;
  using T = scalar<V>;
  const double floor = is_double<V> ? -307.6526555685888 : -37.92977945366163;
  const double log10_e = is_double<V> ? 0.4342944819032518 : double(0.4342945F);
  struct {
    double factor, x, wanted;
  } const cases[] = {{20, 0.1, -20},
                     {20, 0, 20 * floor},
                     {-10, -1, -10 * floor},
                     {10, 1000, 30},
                     {0, 5, 0},
                     {20, 1, 0},
                     {10, infinity, infinity},
                     {-10, infinity, -infinity},
                     {infinity, 10, infinity},
                     {nan, 10, nan},
                     {20, nan, nan}};
  for (const auto& c : cases) {
    signal<V> v{c.x};
    ASSERT_EQ(TWIN(i_db)(&v, static_cast<T>(c.factor)), 0);
    // 0.1 is above its nearest float, or below
    EXPECT_TRUE(same(v.data[0], static_cast<T>(c.wanted)) ||
                std::abs(static_cast<double>(v.data[0]) - c.wanted) < 1e-5)
        << c.factor << " " << c.x << " " << v.data[0];
  }
  signal<V> largest{0.1};
  ASSERT_EQ(TWIN(i_db)(&largest, std::numeric_limits<T>::max()), 0);
  EXPECT_EQ(largest.data[0], -std::numeric_limits<T>::max());
  signal<V> z({0, 10, 0, 0, -1, 0}, true);
  ASSERT_EQ(TWIN(i_db)(&z, T(20)), 0);
  EXPECT_EQ(z.data[0], T(20));
  EXPECT_EQ(z.data[1], static_cast<T>(20 * log10_e * 1.5707963267948966));
  EXPECT_EQ(z.data[2], static_cast<T>(20 * floor));
  EXPECT_EQ(z.data[3], T(0));
  EXPECT_EQ(z.data[5], static_cast<T>(20 * log10_e * 3.141592653589793));
}

TYPED_TEST(UnaryGuard, LimitTakesItsBoundsInEitherOrder) {
  using V = TypeParam;
  using T = scalar<V>;
  struct {
    std::initializer_list<double> x, wanted;
    std::int32_t clipped;
  } const cases[] = {{{1, -7, 5, 9, -5}, {1, -5, 5, 5, -5}, 1},
                     {{1, -5, 5, 0}, {1, -5, 5, 0}, 0},
                     {{infinity, -infinity, nan}, {5, -5, nan}, 1},
                     {{nan, nan}, {nan, nan}, 0},
                     {{}, {}, 0}};
  for (const auto& c : cases) {
    for (const bool pairs : {false, true}) {
      if (pairs && c.x.size() % 2 != 0) continue;
      for (const T a : {T(5), T(-5)}) {
        signal<V> v(c.x, pairs);
        const signal<V> wanted(c.wanted, pairs);
        std::int32_t clipped = 7;
        ASSERT_EQ(TWIN(i_limit)(&v, 3, a, -a, &clipped), 0);
        EXPECT_EQ(clipped, c.clipped);
        for (index i = 0; i < scalars<V>(&v); ++i) EXPECT_TRUE(same(v.data[i], wanted.data[i]));
      }
    }
  }
  signal<V> v{9};
  EXPECT_EQ(TWIN(i_limit)(&v, 0, T(1), T(1), nullptr), 0);
  EXPECT_EQ(v.data[0], 1);
}

TYPED_TEST(UnaryGuard, LimitReportsASingleClippedSampleAnywhere) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : edge_sizes()) {
    for (const index place : {index(0), n / 2, n - 1}) {
      if (n == 0) continue;
      signal<V> v(samples<V>(static_cast<std::size_t>(n), T(0.5)));
      v.data[place] = T(-2);
      std::int32_t clipped = 0;
      ASSERT_EQ(TWIN(i_limit)(&v, 0, T(-1), T(1), &clipped), 0);
      EXPECT_EQ(clipped, 1);
      EXPECT_EQ(v.data[place], T(-1));
    }
  }
}

TYPED_TEST(UnaryGuard, ComplexFactorTurnsARealRecordComplex) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const bool lent : {false, true}) {
    signal<V> v{1, 2};
    v.delta = 3;
    if (lent) v.lend();
    ASSERT_EQ(TWIN(i_cscale)(&v, T(0), T(1)), 0);
    EXPECT_EQ(v.complex, 1);
    EXPECT_EQ(v.points, 2U);
    EXPECT_EQ(v.delta, 3);
    EXPECT_EQ(v.values(), (samples<V>{0, 1, 0, 2}));
    ASSERT_EQ(TWIN(i_cscale)(&v, T(3), T(4)), 0);
    EXPECT_EQ(v.values(), (samples<V>{-4, 3, -8, 6}));
  }
  for (const index n : edge_sizes()) {
    const auto x = noise<V>(n);
    signal<V> v(x);
    ASSERT_EQ(TWIN(i_cscale)(&v, T(2), T(-3)), 0);
    EXPECT_EQ(v.complex, n == 0 ? 0 : 1);  // an empty record stays real
    for (index i = 0; i < n; ++i) {
      ASSERT_EQ(v.data[2 * i], T(2) * x[static_cast<std::size_t>(i)]);
      ASSERT_EQ(v.data[2 * i + 1], T(-3) * x[static_cast<std::size_t>(i)]);
    }
  }
  signal<V> v{1, 2};
  const failing_records<V> none(0);
  EXPECT_EQ(TWIN(i_cscale)(&v, T(0), T(1)), -1);
  EXPECT_EQ(v.complex, 1);
  EXPECT_EQ(v.alloc, 0);
  EXPECT_EQ(v.data, nullptr);
  v.points = 0;
}

// The simple members bit by bit against their formula, at every length around a vector and a block.
TYPED_TEST(UnaryGuard, SimpleMembersGiveTheirFormulaAtEveryLength) {
  using V = TypeParam;
  using T = scalar<V>;
  using wide = double;
  const T c = T(1.1);
  const T d = T(-0.7);
  struct {
    const char* name;
    std::function<std::int32_t(V*)> run;
    std::function<T(T)> real;
    std::function<std::pair<wide, wide>(wide, wide)> pair;
  } const members[] = {
      {"scale", [=](V* v) { return TWIN(i_scale)(v, c); }, [=](T x) { return c * x; },
       [=](wide a, wide b) { return std::pair(wide(c) * a, wide(c) * b); }},
      {"offset", [=](V* v) { return TWIN(i_offset)(v, c); }, [=](T x) { return x + c; },
       [=](wide a, wide b) { return std::pair(a + wide(c), b); }},
      {"neg", [](V* v) { return TWIN(i_neg)(v); }, [](T x) { return -x; },
       [](wide a, wide b) { return std::pair(-a, -b); }},
      {"square", [](V* v) { return TWIN(i_square)(v); }, [](T x) { return x * x; },
       [](wide a, wide b) { return std::pair(a * a - b * b, 2 * a * b); }},
      {"recip", [](V* v) { return TWIN(i_recip)(v); }, [](T x) { return 1 / x; },
       [](wide a, wide b) {
         const wide s = 1 / (a * a + b * b);
         return std::pair(s * a, -s * b);
       }},
      {"cscale", [=](V* v) { return v->complex != 0 ? TWIN(i_cscale)(v, c, d) : TWIN(i_scale)(v, c); },
       [=](T x) { return c * x; },
       [=](wide a, wide b) { return std::pair(a * wide(c) - b * wide(d), b * wide(c) + a * wide(d)); }},
  };
  for (const auto& m : members) {
    SCOPED_TRACE(m.name);
    for (const index n : edge_sizes()) {
      const auto x = noise<V>(2 * n);
      signal<V> real(samples<V>(x.begin(), x.begin() + n));
      signal<V> pairs(x, true);
      ASSERT_EQ(m.run(&real), 0);
      ASSERT_EQ(m.run(&pairs), 0);
      for (index i = 0; i < n; ++i) {
        ASSERT_EQ(real.data[i], m.real(x[static_cast<std::size_t>(i)])) << n;
        const auto at = static_cast<std::size_t>(2 * i);
        const auto [re, im] = m.pair(static_cast<wide>(x[at]), static_cast<wide>(x[at + 1]));
        ASSERT_EQ(pairs.data[2 * i], static_cast<T>(re)) << n;
        ASSERT_EQ(pairs.data[2 * i + 1], static_cast<T>(im)) << n;
      }
    }
  }
}

}  // namespace
}  // namespace sigpak::test
