// Real, complex and polar forms, magnitudes and roots in a second record, runs of points, unwrapping.
#include <gtest/gtest.h>

#include <complex>
#include <functional>
#include <numbers>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class ComplexForms : public testing::Test {};
TYPED_TEST_SUITE(ComplexForms, records, record_names);

using wide = std::complex<long double>;

template <record V> wide value_at(const V& v, index i) {
  if (!is_complex(&v)) return {static_cast<long double>(v.data[i]), 0};
  return {static_cast<long double>(v.data[2 * i]), static_cast<long double>(v.data[2 * i + 1])};
}

long double phase(wide z) { return z == wide(0) ? 0 : std::arg(z); }

// An operation in place: the form that it leaves, and the value of one point.
template <record V> struct change {
  const char* name;
  std::int32_t (*run)(V*);
  bool (*complex_after)(bool before);
  wide (*value)(wide z, bool complex);
};

bool always(bool) { return true; }
bool never(bool) { return false; }
bool as_before(bool complex) { return complex; }

template <record V> std::vector<change<V>> changes() {
  return {
      {"rtoc", TWIN(i_rtoc), always, [](wide z, bool) { return z; }},
      {"real", TWIN(i_real), never, [](wide z, bool) { return wide(z.real()); }},
      {"imag", TWIN(i_imag), never, [](wide z, bool) { return wide(z.imag()); }},
      {"conj", TWIN(i_conj), as_before, [](wide z, bool) { return std::conj(z); }},
      {"timesi", TWIN(i_timesi), always, [](wide z, bool) { return wide(-z.imag(), z.real()); }},
      {"mag", TWIN(i_mag), never, [](wide z, bool) { return wide(std::abs(z)); }},
      {"magsq", TWIN(i_magsq), never, [](wide z, bool) { return wide(std::norm(z)); }},
      {"phase", TWIN(i_phase), never, [](wide z, bool) { return wide(phase(z)); }},
      {"rtop", TWIN(i_rtop), always, [](wide z, bool) { return wide(std::abs(z), phase(z)); }},
      {"ptor", TWIN(i_ptor), as_before,
       [](wide z, bool complex) {
         return complex ? std::polar(std::abs(z.real()), z.imag()) * (z.real() < 0 ? -1.0L : 1.0L) : z;
       }},
  };
}

TYPED_TEST(ComplexForms, EveryChangeOfFormFollowsItsDefinition) {
  using V = TypeParam;
  for (const auto& op : changes<V>()) {
    for (const bool complex : {false, true}) {
      for (const bool lent : {false, true}) {
        for (const index n : edge_sizes()) {
          if (n > 70 && n != 2049) continue;
          SCOPED_TRACE(testing::Message()
                       << op.name << " complex " << complex << " lent " << lent << " n " << n);
          signal<V> v(noise<V>(complex ? 2 * n : n), complex);
          if (lent) v.lend();
          v.delta = 3;
          std::vector<wide> before;
          for (index i = 0; i < n; ++i) before.push_back(value_at<V>(v, i));
          ASSERT_EQ(op.run(&v), 0);
          ASSERT_EQ(is_complex<V>(&v), op.complex_after(complex));
          ASSERT_EQ(length<V>(&v), n);
          EXPECT_EQ(v.delta, 3);
          for (index i = 0; i < n; ++i) {
            const wide wanted = op.value(before[static_cast<std::size_t>(i)], complex);
            const wide got = value_at<V>(v, i);
            const auto u = static_cast<long double>(unit_roundoff<V>);
            ASSERT_LE(std::abs(got.real() - wanted.real()), 2 * u * std::abs(wanted.real())) << i;
            ASSERT_LE(std::abs(got.imag() - wanted.imag()), 2 * u * std::abs(wanted.imag())) << i;
          }
        }
      }
    }
  }
}

TYPED_TEST(ComplexForms, GuardsAndSpecialValues) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T h = huge<V>;
  constexpr T inf = std::numeric_limits<T>::infinity();
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  constexpr T half_turn = std::numbers::pi_v<T>;
  const T beyond = std::nextafter(h, inf);
  const T large = std::numeric_limits<T>::max() / 2;
  struct {
    std::int32_t (*run)(V*);
    samples<V> before;
    bool complex;
    samples<V> after;
  } const cases[] = {
      {TWIN(i_magsq), {h, beyond, -beyond, inf, -h, nan}, false, {h * h, h, h, h, h * h, nan}},
      {TWIN(i_magsq), {beyond, 2, 3, -inf, inf, inf, h, 0, nan, 1}, true, {h + 4, 9 + h, h + h, h * h, nan}},
      {TWIN(i_mag), {-3, -T(0), -inf, nan}, false, {3, 0, inf, nan}},
      {TWIN(i_mag), {3, -4, inf, nan, 0, 0, large, 0}, true, {5, inf, 0, large}},
      {TWIN(i_phase), {-2, 0, 3, -T(0), nan}, false, {half_turn, 0, 0, 0, 0}},
      {TWIN(i_phase),
       {0, 0, -T(0), -T(0), -T(0), 0, -1, 0, -1, -T(0), nan, 0},
       true,
       {0, 0, 0, half_turn, -half_turn, nan}},
      {TWIN(i_rtop), {-2, 0, 3}, false, {2, half_turn, 0, 0, 3, 0}},
      {TWIN(i_rtop), {-T(0), -T(0), 0, -2}, true, {0, 0, 2, -half_turn / 2}},
      {TWIN(i_imag), {1, nan}, false, {0, 0}},
      {TWIN(i_rtoc), {}, false, {}},
      {TWIN(i_timesi), {}, false, {}},
  };
  for (std::size_t k = 0; k < std::size(cases); ++k) {
    const auto& c = cases[k];
    SCOPED_TRACE(k);
    signal<V> v(c.before, c.complex);
    ASSERT_EQ(c.run(&v), 0);
    const samples<V> got = v.values();
    ASSERT_EQ(got.size(), c.after.size());
    for (std::size_t i = 0; i < got.size(); ++i) {
      EXPECT_TRUE(got[i] == c.after[i] || (std::isnan(got[i]) && std::isnan(c.after[i])))
          << i << " " << got[i];
    }
    if (c.before.empty()) {
      EXPECT_EQ(v.complex, 1);
    }
  }
}

// in -> out, where `plain` is the same operation in place, or a definition of it.
template <record V>
void check_unary(std::int32_t (*run)(const V*, V*), const std::function<void(V*)>& plain, bool complex,
                 bool same, bool lent, index n) {
  SCOPED_TRACE(testing::Message() << "complex " << complex << " same " << same << " lent " << lent << " n "
                                  << n);
  signal<V> wanted(noise<V>(complex ? 2 * n : n), complex);
  signal<V> in(wanted.values(), complex);
  signal<V> other({9, 9, 9, 9}, true);
  signal<V>& out = same ? in : other;
  in.delta = 3;
  if (lent) out.lend();
  const samples<V> lent_before = out.lent();
  plain(&wanted);
  ASSERT_EQ(run(&in, &out), 0);
  EXPECT_EQ(out.complex, wanted.complex);
  EXPECT_EQ(out.delta, 3);
  ASSERT_EQ(out.values(), wanted.values());
  EXPECT_EQ(out.lent(), lent_before);
}

TYPED_TEST(ComplexForms, ResultsInASecondRecordEqualThoseInPlace) {
  using V = TypeParam;
  for (const bool complex : {false, true}) {
    for (const bool same : {false, true}) {
      for (const bool lent : {false, true}) {
        for (const index n : {0, 1, 7, 64, 65, 2049}) {
          check_unary<V>(TWIN(u_mag), TWIN(i_mag), complex, same, lent, n);
          check_unary<V>(TWIN(u_magsq), TWIN(i_magsq), complex, same, lent, n);
        }
      }
    }
  }
}

TYPED_TEST(ComplexForms, SquareRoots) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T h = huge<V>;
  const samples<V> z = noise<V>(600);
  for (const bool same : {false, true}) {
    signal<V> in(z, true);
    signal<V> other;
    signal<V>& out = same ? in : other;
    ASSERT_EQ(TWIN(u_sqrt)(&in, &out), 0);
    for (index i = 0; i < 300; ++i) {
      const auto at = static_cast<std::size_t>(2 * i);
      const wide wanted =
          std::sqrt(wide(static_cast<long double>(z[at]), static_cast<long double>(z[at + 1])));
      const auto bound = static_cast<long double>(unit_roundoff<V>) * 1.001L;
      ASSERT_LE(std::abs(value_at<V>(out, i).real() - wanted.real()), bound * std::abs(wanted.real()));
      ASSERT_LE(std::abs(value_at<V>(out, i).imag() - wanted.imag()), bound * std::abs(wanted.imag()));
    }
  }
  const signal<V> reals{4, -4, 0, 2};
  signal<V> out;
  ASSERT_EQ(TWIN(u_sqrt)(&reals, &out), 0);
  EXPECT_EQ(out.values(), (samples<V>{2, 0, 0, std::sqrt(T(2))}));
  const signal<V> points(samples<V>{-4, 0, 0, 0, 0, 2 * h, 4 * h, 0}, true);
  ASSERT_EQ(TWIN(u_sqrt)(&points, &out), 0);
  const T diagonal = static_cast<T>(std::sqrt(static_cast<long double>(h) / 2));
  const T axis = static_cast<T>(std::sqrt(static_cast<long double>(h)));
  const samples<V> wanted{0, 2, 0, 0, diagonal, diagonal, axis, 0};
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    EXPECT_NEAR(static_cast<double>(out.data[i] / axis), static_cast<double>(wanted[i] / axis),
                2 * unit_roundoff<V>);
  }
}

TYPED_TEST(ComplexForms, RunsOfPoints) {
  using V = TypeParam;
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  for (const bool complex : {false, true}) {
    for (const bool same : {false, true}) {
      for (const bool lent : {false, true}) {
        for (const std::int32_t start : {-most - 1, -1, 0, 1, 3, 5, 6, most}) {
          for (const std::int32_t count : {-most - 1, -1, 0, 1, 2, 5, 6, most}) {
            const samples<V> x = noise<V>(complex ? 10 : 5);
            signal<V> in(x, complex);
            signal<V> other{1, 2, 3};
            signal<V>& out = same ? in : other;
            if (lent) out.lend();
            in.delta = 7;
            ASSERT_EQ(TWIN(u_subvec)(&in, &out, start, count), 0);
            const std::int32_t from = std::clamp(start, 0, 5);
            const std::int32_t taken = std::clamp(count, 0, 5 - from);
            const std::int32_t pair = complex ? 2 : 1;
            ASSERT_EQ(out.points, static_cast<std::uint32_t>(taken));
            EXPECT_EQ(out.complex, complex ? 1 : 0);
            EXPECT_EQ(out.delta, 7);
            EXPECT_EQ(out.values(), samples<V>(x.begin() + from * pair, x.begin() + (from + taken) * pair));
          }
        }
      }
    }
  }
}

TYPED_TEST(ComplexForms, PolarAndRectangularAreInverse) {
  using V = TypeParam;
  const samples<V> z = noise<V>(1000);
  signal<V> v(z, true);
  ASSERT_EQ(TWIN(i_rtop)(&v), 0);
  ASSERT_EQ(TWIN(i_ptor)(&v), 0);
  EXPECT_LE(relative_l2(v.values(), z), 4 * unit_roundoff<V>);
}

TYPED_TEST(ComplexForms, UnwrappedPhasesStepByAtMostHalfATurn) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T half_turn = std::numbers::pi_v<T>;
  constexpr T turn = 2 * half_turn;
  struct {
    samples<V> before;
    samples<V> after;
  } const cases[] = {
      {{0, 3, -3}, {0, 3, static_cast<T>(3.2831853071795862)}},
      {{4}, {4 - turn}},
      {{-4}, {turn - 4}},
      {{0, half_turn, 0, -half_turn}, {0, half_turn, 0, -half_turn}},
      {{0, std::nextafter(half_turn, T(4))}, {0, std::nextafter(half_turn, T(4)) - turn}},
      {{100, 100}, {std::remainder(T(100), turn), std::remainder(T(100), turn)}},
  };
  for (const auto& c : cases) {
    signal<V> v(c.before);
    ASSERT_EQ(TWIN(i_unwrap)(&v), 0);
    for (std::size_t i = 0; i < c.after.size(); ++i) {
      EXPECT_NEAR(static_cast<double>(v.data[i]), static_cast<double>(c.after[i]), 8 * unit_roundoff<V>) << i;
    }
  }
  // A ramp, wrapped and unwrapped.
  samples<V> ramp;
  for (int i = 0; i < 500; ++i) ramp.push_back(static_cast<T>(std::remainder(0.9 * i, 2 * std::numbers::pi)));
  signal<V> v(ramp);
  ASSERT_EQ(TWIN(i_unwrap)(&v), 0);
  for (int i = 0; i < 500; ++i)
    EXPECT_NEAR(static_cast<double>(v.data[i]), 0.9 * i, 450 * 8 * unit_roundoff<V>);
  signal<V> pairs({4, 4}, true);
  EXPECT_EQ(TWIN(i_unwrap)(&pairs), -1);
  EXPECT_EQ(pairs.values(), (samples<V>{4, 4}));
}

TYPED_TEST(ComplexForms, RecordsThatCannotGrowStayComplexWithoutStorage) {
  using V = TypeParam;
  for (const auto run : {TWIN(i_rtoc), TWIN(i_timesi), TWIN(i_rtop)}) {
    signal<V> v{1, 2, 3};
    const failing_records<V> none(0);
    EXPECT_EQ(run(&v), -1);
    EXPECT_EQ(v.complex, 1);
    EXPECT_EQ(v.alloc, 0);
    EXPECT_EQ(v.data, nullptr);
  }
  const signal<V> in({1, 2, 3, 4}, true);
  for (const auto run : {TWIN(u_mag), TWIN(u_magsq), TWIN(u_sqrt)}) {
    signal<V> out;
    const failing_records<V> none(0);
    EXPECT_EQ(run(&in, &out), -1);
    EXPECT_EQ(out.data, nullptr);
  }
}

}  // namespace
}  // namespace sigpak::test
