// SPDX-License-Identifier: MIT
// Real, complex and polar forms, magnitudes and roots in a second record, runs of points, unwrapping.
#include <numbers>

#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class ComplexForms : public testing::Test {};
TYPED_TEST_SUITE(ComplexForms, records, record_names);

using wide = std::complex<long double>;

long double phase(wide z) { return z == wide(0) ? 0 : std::arg(z); }

// An operation in place: the form that it leaves, and the value of one point.
template <record V> struct change {
  const char* name;
  std::int32_t (*run)(V*);
  bool (*complex_after)(bool before);
  wide (*value)(wide z);
};

bool always(bool) { return true; }
bool never(bool) { return false; }
bool as_before(bool complex) { return complex; }

template <record V> std::vector<change<V>> changes() {
  return {{"rtoc", TWIN(i_rtoc), always, [](wide z) { return z; }},
          {"real", TWIN(i_real), never, [](wide z) { return wide(z.real()); }},
          {"imag", TWIN(i_imag), never, [](wide z) { return wide(z.imag()); }},
          {"conj", TWIN(i_conj), as_before, [](wide z) { return std::conj(z); }},
          {"timesi", TWIN(i_timesi), always, [](wide z) { return wide(-z.imag(), z.real()); }},
          {"mag", TWIN(i_mag), never, [](wide z) { return wide(std::abs(z)); }},
          {"magsq", TWIN(i_magsq), never, [](wide z) { return wide(std::norm(z)); }},
          {"phase", TWIN(i_phase), never, [](wide z) { return wide(phase(z)); }},
          {"rtop", TWIN(i_rtop), always, [](wide z) { return wide(std::abs(z), phase(z)); }},
          {"ptor", TWIN(i_ptor), as_before, [](wide z) { return z.real() * std::polar(1.0L, z.imag()); }}};
}

// Each part to within `roundings` units of roundoff.
template <record V> void expect_near(const V& v, const std::vector<wide>& wanted, long double roundings) {
  const auto got = wide_points(v);
  const long double u = roundings * static_cast<long double>(unit_roundoff<V>);
  ASSERT_EQ(got.size(), wanted.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    ASSERT_LE(std::abs(got[i].real() - wanted[i].real()), u * std::abs(wanted[i].real())) << i;
    ASSERT_LE(std::abs(got[i].imag() - wanted[i].imag()), u * std::abs(wanted[i].imag())) << i;
  }
}

std::vector<index> sizes() {
  auto all = edge_sizes();
  all.resize(71);
  all.push_back(2049);
  return all;
}

TYPED_TEST(ComplexForms, EveryChangeOfFormFollowsItsDefinition) {
  using V = TypeParam;
  for (const auto& op : changes<V>()) {
    SCOPED_TRACE(op.name);
    for_each_form<V>(sizes(), [&op](signal<V>& v) {
      auto wanted = wide_points<V>(v);
      for (wide& z : wanted) z = op.value(z);
      const bool complex = op.complex_after(v.complex != 0);
      ASSERT_EQ(op.run(&v), 0);
      ASSERT_EQ(v.complex, complex ? 1 : 0);
      EXPECT_EQ(v.delta, scalar<V>(0.3));
      expect_near<V>(v, wanted, 2);
    });
  }
}

TYPED_TEST(ComplexForms, GuardsAndSpecialValues) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T h = huge<V>;
  constexpr T inf = std::numeric_limits<T>::infinity();
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  constexpr T pi = std::numbers::pi_v<T>;
  const T up = std::nextafter(h, inf);
  const T large = std::numeric_limits<T>::max() / 2;
  struct {
    std::int32_t (*run)(V*);
    bool complex;
    samples<V> before;
    samples<V> after;
  } const cases[] = {
      {TWIN(i_magsq), false, {h, up, -up, inf, -h, nan}, {h * h, h, h, h, h * h, nan}},
      {TWIN(i_magsq), true, {up, 2, 3, -inf, inf, inf, h, 0, nan, 1}, {h + 4, 9 + h, h + h, h * h, nan}},
      {TWIN(i_mag), false, {-3, -T(0), -inf, nan}, {3, 0, inf, nan}},
      {TWIN(i_mag), true, {3, -4, inf, nan, 0, 0, large, 0}, {5, inf, 0, large}},
      {TWIN(i_phase), false, {-2, 0, 3, -T(0), nan}, {pi, 0, 0, 0, 0}},
      {TWIN(i_phase),
       true,
       {0, 0, -T(0), -T(0), -T(0), 0, -1, 0, -1, -T(0), nan, 0},
       {0, 0, 0, pi, -pi, nan}},
      {TWIN(i_rtop), false, {-2, 0, 3}, {2, pi, 0, 0, 3, 0}},
      {TWIN(i_rtop), true, {-T(0), -T(0), 0, -2}, {0, 0, 2, -pi / 2}},
      {TWIN(i_imag), false, {1, nan}, {0, 0}}};
  for (const auto& c : cases) {
    signal<V> v(c.before, c.complex);
    ASSERT_EQ(c.run(&v), 0);
    EXPECT_TRUE(same_numbers(v.values(), c.after)) << &c - cases;
  }
}

// out = run(in) in a second record, or in the same, where `plain` does it in place.
template <record V, class Run, class Plain>
void expect_unary(Run run, Plain plain, const std::vector<index>& sizes) {
  for (const bool same : {false, true}) {
    for_each_form<V>(sizes, [&](signal<V>& v) {
      signal<V> wanted(v.values(), v.complex != 0);
      wanted.delta = v.delta;
      signal<V> in(v.values(), v.complex != 0);
      in.delta = v.delta;
      signal<V> other({9, 9, 9, 9}, true);
      signal<V>& out = same ? v : other;
      if (!same && !v.lent().empty()) other.lend();
      const auto lent = out.lent();
      plain(&wanted);
      ASSERT_EQ(run(same ? &v : &in, &out), 0);
      expect_equal(contents<V>(out), contents<V>(wanted));
      EXPECT_TRUE(out.data == out.lent().data() || out.lent() == lent);
    });
  }
}

TYPED_TEST(ComplexForms, ResultsInASecondRecordEqualThoseInPlace) {
  using V = TypeParam;
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  expect_unary<V>(TWIN(u_mag), TWIN(i_mag), sizes());
  expect_unary<V>(TWIN(u_magsq), TWIN(i_magsq), sizes());
  for (const std::int32_t start : {-most - 1, -1, 0, 1, 3, 5, 6, most}) {
    for (const std::int32_t count : {-most - 1, -1, 0, 1, 2, 5, 6, most}) {
      const auto from = std::clamp(start, 0, 5);
      const auto taken = std::clamp(count, 0, 5 - from);
      const auto cut = [=](V* v) {
        std::copy_n(v->data + from * width(v), taken * width(v), v->data);
        v->points = static_cast<std::uint32_t>(taken);
      };
      expect_unary<V>([=](const V* in, V* out) { return TWIN(u_subvec)(in, out, start, count); }, cut, {5});
    }
  }
}

TYPED_TEST(ComplexForms, SquareRoots) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T h = huge<V>;
  for_each_form<V>({0, 1, 300}, [](signal<V>& v) {
    auto wanted = wide_points<V>(v);
    for (wide& z : wanted) z = v.complex != 0 ? std::sqrt(z) : std::sqrt(std::max(0.0L, z.real()));
    signal<V> out;
    ASSERT_EQ(TWIN(u_sqrt)(&v, &out), 0);
    expect_near<V>(out, wanted, 1.001L);
    ASSERT_EQ(TWIN(u_sqrt)(&v, &v), 0);
    expect_near<V>(v, wanted, 1.001L);
  });
  const signal<V> points(samples<V>{-4, 0, 0, 0, 0, 2 * h, 4 * h, 0}, true);  // parts limited to H
  signal<V> out;
  ASSERT_EQ(TWIN(u_sqrt)(&points, &out), 0);
  const long double axis = std::sqrt(static_cast<long double>(h));
  const long double diagonal = std::sqrt(static_cast<long double>(h) / 2);
  expect_near<V>(out, {{0, 2}, 0, {diagonal, diagonal}, axis}, 2);
}

TYPED_TEST(ComplexForms, UnwrappedPhasesStepByAtMostHalfATurn) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T pi = std::numbers::pi_v<T>;
  const T up = std::nextafter(pi, T(4));
  std::vector<std::pair<samples<V>, samples<V>>> cases = {
      {{0, 3, -3}, {0, 3, 2 * pi - 3}},
      {{4}, {4 - 2 * pi}},
      {{-4}, {2 * pi - 4}},
      {{0, pi, 0, -pi}, {0, pi, 0, -pi}},
      {{0, up}, {0, up - 2 * pi}},
      {{100, 100}, samples<V>(2, std::remainder(T(100), 2 * pi))},
      {{}, {}}};
  for (int i = 0; i < 500; ++i) {  // a ramp, wrapped
    cases.back().first.push_back(static_cast<T>(std::remainder(0.9 * i, 2 * std::numbers::pi)));
    cases.back().second.push_back(static_cast<T>(0.9 * i));
  }
  for (const auto& [before, after] : cases) {
    signal<V> v(before);
    ASSERT_EQ(TWIN(i_unwrap)(&v), 0);
    for (std::size_t i = 0; i < after.size(); ++i) {
      const double bound = 8 * unit_roundoff<V> * std::max(1.0, static_cast<double>(after[i]));
      EXPECT_NEAR(static_cast<double>(v.data[i]), static_cast<double>(after[i]), bound) << i;
    }
  }
  expect_complex_refused<V>(TWIN(i_unwrap));
}

TYPED_TEST(ComplexForms, RecordsThatCannotGrowStayComplexWithoutStorage) {
  using V = TypeParam;
  for (const auto run : {TWIN(i_rtoc), TWIN(i_timesi), TWIN(i_rtop)}) {
    signal<V> v{1, 2, 3};
    const failing_records none(0);
    EXPECT_EQ(run(&v), -1);
    EXPECT_EQ(v.complex, 1);
    EXPECT_EQ(v.alloc, 0);
    EXPECT_EQ(v.data, nullptr);
  }
}

}  // namespace
}  // namespace sigpak::test
