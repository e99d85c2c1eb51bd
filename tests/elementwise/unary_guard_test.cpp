// SPDX-License-Identifier: MIT
// The guarded arithmetic of the in-place functions: limits, zeros, NaN and infinities, refusals.
#include <array>

#include "elementwise/elementwise.h"
#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class UnaryGuard : public testing::Test {};
TYPED_TEST_SUITE(UnaryGuard, records, record_names);

// What the functions meet at the edges of their ranges, by precision.
template <record V> struct edge {
  using T = scalar<V>;
  static constexpr T h = huge<V>;
  static constexpr T inf = std::numeric_limits<T>::infinity();
  static constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  static constexpr T tiny = guard<T>::tiny;
  static constexpr T log_h = guard<T>::log_huge;
  static constexpr T decimal = is_double<V> ? T(100) : T(15);
  static constexpr T log_tiny = T(is_double<V> ? -708.3964185322641 : -87.33654475055311);
  static constexpr double exact_log10_tiny = is_double<V> ? -307.6526555685888 : -37.92977945366163;
  static constexpr T log10_tiny = T(exact_log10_tiny);
  static constexpr double log10_i =  // the imaginary part of log10 i
      is_double<V> ? 0.682188176920920674 : double(0.4342945F) * 1.5707963267948966;
  static constexpr double pi = 3.141592653589793;
  static T above(T x) { return std::nextafter(x, x < 0 ? -inf : inf); }
  static T below(T x) { return std::nextafter(x, T(0)); }
};

template <record V> using member = std::int32_t (*)(V*);

template <record V> struct real_limits {
  const char* name;
  member<V> run;
  std::vector<std::pair<scalar<V>, scalar<V>>> values;  // argument and result
};

template <record V> std::vector<real_limits<V>> functions_of_both_forms() {
  using e = edge<V>;
  using T = scalar<V>;
  const T h = e::h;
  const T inf = e::inf;
  return {
      {"neg", TWIN(i_neg), {{0, -T(0)}, {-inf, inf}}},
      {"square", TWIN(i_square), {{h, h * h}, {-h, h * h}, {e::above(h), h}, {e::above(-h), h}, {-inf, h}}},
      {"recip", TWIN(i_recip), {{0, h}, {-T(0), h}, {-4, T(-0.25)}, {inf, 0}}},
      {"sqrt", TWIN(i_sqrt), {{-4, 0}, {-T(0), -T(0)}, {-inf, 0}, {inf, inf}}},
      {"exp",
       TWIN(i_exp),
       {{e::above(e::log_h), h},
        {e::log_h, static_cast<T>(std::exp(static_cast<double>(e::log_h)))},
        {inf, h},
        {-inf, 0}}},
      {"exp10", TWIN(i_exp10), {{e::decimal, h}, {e::above(e::decimal), h}, {inf, h}, {-h, 0}, {0, 1}}},
      {"log",
       TWIN(i_log),
       {{0, e::log_tiny},
        {-1, e::log_tiny},
        {-inf, e::log_tiny},
        {e::below(e::tiny), e::log_tiny},
        {e::tiny, e::log_tiny},
        {1, 0},
        {inf, inf}}},
      {"log10",
       TWIN(i_log10),
       {{0, e::log10_tiny},
        {e::below(e::tiny), e::log10_tiny},
        {e::tiny, e::log10_tiny},
        {1, 0},
        {inf, inf}}}};
}

template <record V> std::vector<real_limits<V>> real_functions() {
  using e = edge<V>;
  using T = scalar<V>;
  const T h = e::h;
  const T inf = e::inf;
  const T i0_of_700 = is_double<V> ? bessel_i0(T(700)) : inf;
  const T half_of_exp = static_cast<T>(std::exp(static_cast<double>(e::log_h)) / 2);
  return {{"abs", TWIN(i_abs), {{-T(0), 0}, {-inf, inf}}},
          {"sin", TWIN(i_sin), {{-T(0), -T(0)}, {inf, e::nan}}},
          {"cos", TWIN(i_cos), {{inf, e::nan}}},
          {"tan", TWIN(i_tan), {{-T(0), -T(0)}, {-inf, e::nan}}},
          {"sinc", TWIN(i_sinc), {{0, 1}, {-T(0), 1}}},
          {"atan", TWIN(i_atan), {{-T(0), -T(0)}}},
          {"asin", TWIN(i_asin), {{e::above(1), 0}, {e::above(-1), 0}, {-T(0), -T(0)}, {inf, 0}}},
          {"acos", TWIN(i_acos), {{e::above(1), 0}, {e::above(-1), 0}, {1, 0}}},
          {"sinh",
           TWIN(i_sinh),
           {{e::above(e::log_h), h},
            {e::above(-e::log_h), -h},
            {-inf, -h},
            {e::log_h, half_of_exp},
            {-T(0), -T(0)}}},
          {"cosh",
           TWIN(i_cosh),
           {{e::above(e::log_h), h}, {e::above(-e::log_h), h}, {-e::log_h, half_of_exp}, {0, 1}}},
          {"tanh", TWIN(i_tanh), {{-T(0), -T(0)}, {inf, 1}, {-inf, -1}}},
          {"besi0",
           TWIN(i_besi0),
           {{0, 1}, {e::above(700), h}, {e::above(-700), h}, {-inf, h}, {-700, i0_of_700}}},
          {"besj0", TWIN(i_besj0), {{0, 1}}},
          {"besj1", TWIN(i_besj1), {{-T(0), -T(0)}}},
          {"besy0", TWIN(i_besy0), {{0, 0}, {-1, 0}}},
          {"besy1", TWIN(i_besy1), {{-T(0), 0}, {-inf, 0}}}};
}

// Every value stands at every position of a record of 19, among harmless samples, so that all lanes and the
// rest of a vector loop see it; the storage is lent. A NaN stays one.
template <record V> void expect_limits(const std::vector<real_limits<V>>& functions) {
  constexpr index size = 19;
  for (const auto& f : functions) {
    signal<V> harmless{0.5};
    ASSERT_EQ(f.run(&harmless), 0);
    auto values = f.values;
    values.emplace_back(edge<V>::nan, edge<V>::nan);
    for (const auto& [x, wanted] : values) {
      for (index place = 0; place < size; ++place) {
        signal<V> v(samples<V>(size, scalar<V>(0.5)));
        v.data[place] = x;
        v.delta = 3;
        v.lend();
        ASSERT_EQ(f.run(&v), 0);
        ASSERT_TRUE(v.data == v.lent().data() && v.points == size && v.delta == 3);
        for (index i = 0; i < size; ++i) {
          ASSERT_TRUE(same_number(v.data[i], i == place ? wanted : harmless.data[0]))
              << f.name << "(" << x << ") at " << place << ": " << v.data[i];
        }
      }
    }
    expect_empty_untouched<V>({f.run});
  }
}

TYPED_TEST(UnaryGuard, RealLimits) {
  using V = TypeParam;
  expect_limits<V>(functions_of_both_forms<V>());
  expect_limits<V>(real_functions<V>());
  for (const auto& f : real_functions<V>()) {
    expect_complex_refused<V>(f.run);
    V empty{.delta = 1, .data = nullptr, .alloc = 0, .points = 0, .complex = 1, .reserved = 0};
    EXPECT_EQ(f.run(&empty), -1) << f.name;
  }
  for (const auto& f : functions_of_both_forms<V>()) {
    V empty{.delta = 1, .data = nullptr, .alloc = 0, .points = 0, .complex = 1, .reserved = 0};
    EXPECT_EQ(f.run(&empty), 0) << f.name;
    EXPECT_EQ(empty.data, nullptr);
  }
}

template <record V> struct complex_limits {
  const char* name;
  member<V> run;
  std::vector<std::array<scalar<V>, 4>> values;  // both parts of the argument, then of the result
};

template <record V> std::vector<complex_limits<V>> limits_of_points() {
  using e = edge<V>;
  using T = scalar<V>;
  constexpr T h = e::h;
  constexpr T inf = e::inf;
  constexpr T nan = e::nan;
  constexpr T tiny = e::tiny;
  constexpr T least = std::numeric_limits<T>::denorm_min();
  constexpr double pi = e::pi;
  constexpr T half_log_h = e::log_h / 2;
  const T root_h = std::sqrt(h);
  const T root_t = std::sqrt(tiny);
  const auto rounded = [](double x) { return static_cast<T>(x); };
  const T one_over_h = rounded(1 / static_cast<double>(h));
  return {{"neg", TWIN(i_neg), {{1, -2, -1, 2}}},
          {"square",
           TWIN(i_square),
           {{3, 4, -7, 24},
            {2 * h, 1, h * h, 2 * h},
            {-inf, -inf, 0, rounded(2.0 * static_cast<double>(h) * static_cast<double>(h))}}},
          {"recip",
           TWIN(i_recip),
           {{0, 0, 0, -T(0)},
            {0, -2, 0, T(0.5)},
            {2 * h, 1, 2, -one_over_h},
            {0, -2 * h, 0, 2},
            {nan, 2 * h, nan, -2}}},
          {"sqrt",
           TWIN(i_sqrt),
           {{-4, 0, 0, 2},
            {-4, -T(0), 0, -2},
            {4, -T(0), 2, -T(0)},
            {0, 0, 0, 0},
            {-T(0), -T(0), 0, 0},
            {3, 4, 2, 1},
            {-3, -4, 1, -2},
            {4 * tiny, 0, rounded(2 * std::sqrt(static_cast<double>(tiny))), 0},
            {inf, 0, root_h, 0},
            {4 * h, 0, root_h, 0},
            {-inf, 0, 0, root_h},
            {-2 * h, -T(0), 0, -root_h},
            {nan, 1, nan, nan}}},
          {"exp",
           TWIN(i_exp),
           {{inf, 0, h, 0},
            {1000, 0, h, 0},
            {0, 0, 1, 0},
            {-inf, 1, 0, 0},
            {3, least, rounded(std::exp(3.0)), 20 * least}}},
          {"exp10", TWIN(i_exp10), {{2, 0, 100, 0}, {101, 0, h, 0}, {-2 * h, 0, -h, -T(0)}, {-h, 0, 0, 0}}},
          {"log",
           TWIN(i_log),
           {{0, 0, e::log_tiny, 0},
            {0, tiny, e::log_tiny, 0},
            {0, root_t, e::log_tiny / 2, rounded(pi / 2)},
            {0, e::below(root_t), e::log_tiny, 0},
            {1, 0, 0, 0},
            {-1, 0, 0, rounded(pi)},
            {-1, -T(0), 0, rounded(-pi)},
            {2 * h, 0, half_log_h, 0},
            {-inf, inf, half_log_h, rounded(3 * pi / 4)},
            {inf, 1, half_log_h, one_over_h},
            {nan, 1, nan, nan}}},
          {"log10",
           TWIN(i_log10),
           {{0, tiny, e::log10_tiny, 0},
            {0, e::below(root_t), e::log10_tiny, 0},
            {100, 0, 2, 0},
            {10, -T(0), 1, -T(0)},
            {inf, 0, e::decimal, 0}}}};
}

TYPED_TEST(UnaryGuard, ComplexLimits) {
  using V = TypeParam;
  constexpr index size = 11;
  for (const auto& f : limits_of_points<V>()) {
    for (const auto& [a, b, re, im] : f.values) {
      for (index place = 0; place < size; ++place) {
        signal<V> v(samples<V>(2 * size, scalar<V>(0.5)), true);
        scalar<V>* const point = v.data + 2 * place;
        point[0] = a;
        point[1] = b;
        ASSERT_EQ(f.run(&v), 0);
        ASSERT_TRUE(same_number(point[0], re) && same_number(point[1], im))
            << f.name << "(" << a << ", " << b << "): " << point[0] << ", " << point[1];
        ASSERT_TRUE(same_number(v.data[2 * ((place + 1) % size)], v.data[2 * ((place + 2) % size)]));
      }
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
  using T = scalar<V>;
  constexpr T inf = edge<V>::inf;
  constexpr T nan = edge<V>::nan;
  constexpr T below = -10 * huge<V>;
  samples<V> late(70, T(1));  // behind whole vectors
  late[45] = below;
  samples<V> ten_before = late;
  std::fill_n(ten_before.begin(), 45, T(10));
  struct {
    bool pairs;
    samples<V> x, wanted;
  } const cases[] = {{false, {1, below, 2, nan}, {10, below, 2, nan}},
                     {false, {1, nan, 2, -inf, 1}, {10, nan, 100, -inf, 1}},
                     {false, late, ten_before},
                     {true, {1, 0, below, 0, 2, 0}, {10, 0, -huge<V>, -T(0), 100, 0}}};
  for (const auto& c : cases) {
    signal<V> v(c.x, c.pairs);
    ASSERT_EQ(TWIN(i_exp10)(&v), 0);
    EXPECT_TRUE(same_numbers(v.values(), c.wanted));
  }
}

TYPED_TEST(UnaryGuard, DecibelsScaleTheLogarithmAndItsFloor) {
  using V = TypeParam;
  using T = scalar<V>;
  using e = edge<V>;
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double most = static_cast<double>(std::numeric_limits<T>::max());
  struct {
    double factor, x, wanted;
  } const cases[] = {{20, 0.1, -20},
                     {20, 0, 20 * e::exact_log10_tiny},
                     {-10, -1, -10 * e::exact_log10_tiny},
                     {10, 1000, 30},
                     {0, 5, 0},
                     {20, 1, 0},
                     {most, 0.1, -most},
                     {10, infinity, infinity},
                     {-10, infinity, -infinity},
                     {infinity, 10, infinity},
                     {nan, 10, nan},
                     {20, nan, nan}};
  for (const auto& c : cases) {
    signal<V> v{c.x};
    ASSERT_EQ(TWIN(i_db)(&v, static_cast<T>(c.factor)), 0);
    // 0.1 is above its nearest float, or below
    EXPECT_TRUE(same_number(v.data[0], static_cast<T>(c.wanted)) ||
                std::abs(static_cast<double>(v.data[0]) - c.wanted) < 1e-5)
        << c.factor << " " << c.x << " " << v.data[0];
  }
  signal<V> z({0, 10, 0, 0, -1, 0}, true);
  ASSERT_EQ(TWIN(i_db)(&z, T(20)), 0);
  EXPECT_EQ(z.values(), (samples<V>{20, T(20 * e::log10_i), T(20 * e::exact_log10_tiny), 0, z.data[4],
                                    T(40 * e::log10_i)}));
}

TYPED_TEST(UnaryGuard, DecibelsGiveZeroTheSignOfItsFactors) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const T factor : {T(-1.25), T(1.25)}) {
    const T zero = std::copysign(T(0), factor);
    signal<V> v{1};
    ASSERT_EQ(TWIN(i_db)(&v, factor), 0);
    EXPECT_TRUE(same_number(v.data[0], zero)) << factor;
    signal<V> z({1, 0, 2, -0.0, 1e3, 0}, true);
    ASSERT_EQ(TWIN(i_db)(&z, factor), 0);
    EXPECT_TRUE(same_number(z.data[0], zero)) << factor;
    EXPECT_TRUE(same_number(z.data[1], zero)) << factor;
    EXPECT_TRUE(same_number(z.data[3], -zero)) << factor;
    EXPECT_TRUE(same_number(z.data[5], zero)) << factor;
  }
}

TYPED_TEST(UnaryGuard, LimitTakesItsBoundsInEitherOrder) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T inf = edge<V>::inf;
  constexpr T nan = edge<V>::nan;
  struct {
    samples<V> x, wanted;
    std::int32_t clipped;
  } const cases[] = {{{1, -7, 5, 9, -5}, {1, -5, 5, 5, -5}, 1},
                     {{1, -5, 5, 0}, {1, -5, 5, 0}, 0},
                     {{inf, -inf, nan, 1}, {5, -5, nan, 1}, 1},
                     {{nan, nan}, {nan, nan}, 0},
                     {{}, {}, 0}};
  for (const auto& c : cases) {
    for (const bool pairs : {false, true}) {
      if (pairs && c.x.size() % 2 != 0) continue;
      for (const T a : {T(5), T(-5)}) {
        signal<V> v(c.x, pairs);
        std::int32_t clipped = 7;
        ASSERT_EQ(TWIN(i_limit)(&v, 3, a, -a, &clipped), 0);
        EXPECT_EQ(clipped, c.clipped);
        EXPECT_TRUE(same_numbers(v.values(), c.wanted));
        EXPECT_EQ(TWIN(i_limit)(&v, 0, T(1), T(1), nullptr), 0);
        EXPECT_EQ(clipped, c.clipped);
      }
    }
  }
  for (const index n : edge_sizes()) {  // a single sample anywhere is reported
    for (const index place : {index(0), n / 2, n - 1}) {
      if (n == 0) continue;
      signal<V> v(samples<V>(static_cast<std::size_t>(n), T(0.5)));
      v.data[place] = T(-2);
      std::int32_t clipped = 0;
      ASSERT_EQ(TWIN(i_limit)(&v, 0, T(-1), T(1), &clipped), 0);
      ASSERT_TRUE(clipped == 1 && v.data[place] == T(-1));
    }
  }
}

// The simple members bit by bit against their formula, computed in double for points.
TYPED_TEST(UnaryGuard, SimpleMembersGiveTheirFormulaAtEveryLength) {
  using V = TypeParam;
  using T = scalar<V>;
  using C = contents<V>;
  using wide = std::complex<double>;
  const T c = T(1.1);
  const T d = T(-0.7);
  const wide factor(static_cast<double>(c), static_cast<double>(d));
  const auto expect = [](auto run, auto real, auto point) {
    expect_in_place<V>(run, [&](C& v) {
      for (auto& z : v.points) z = v.complex ? std::complex<T>(point(wide(z))) : real(z.real());
    });
  };
  expect([=](V* v) { return TWIN(i_scale)(v, c); }, [=](T x) { return c * x; },
         [=](wide z) { return factor.real() * z; });
  expect([=](V* v) { return TWIN(i_offset)(v, c); }, [=](T x) { return x + c; },
         [=](wide z) { return z + factor.real(); });
  expect(
      TWIN(i_neg), [](T x) { return -x; }, [](wide z) { return -z; });
  expect(
      TWIN(i_square), [](T x) { return x * x; }, [](wide z) { return z * z; });
  expect(
      TWIN(i_recip), [](T x) { return 1 / x; },
      [](wide z) { return 1 / (z.real() * z.real() + z.imag() * z.imag()) * std::conj(z); });
  // an empty real record stays real
  expect_in_place<V>([=](V* v) { return TWIN(i_cscale)(v, c, d); },
                     [=](C& v) {
                       for (auto& z : v.points)
                         z = v.complex ? std::complex<T>(wide(z) * factor)
                                       : std::complex(c * z.real(), d * z.real());
                       v.complex = v.complex || !v.points.empty();
                     });
  signal<V> v{1, 2};
  const failing_records none(0);
  EXPECT_EQ(TWIN(i_cscale)(&v, T(0), T(1)), -1);
  EXPECT_TRUE(v.complex == 1 && v.alloc == 0 && v.data == nullptr);
  v.points = 0;
}

}  // namespace
}  // namespace sigpak::test
