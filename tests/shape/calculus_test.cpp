// SPDX-License-Identifier: MIT
// Differences, running integral, derivative of a polynomial, level crossings.
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Calculus : public testing::Test {};
TYPED_TEST_SUITE(Calculus, records, record_names);

TYPED_TEST(Calculus, DifferencesIntegralAndDerivativeFollowTheirDefinitions) {
  using V = TypeParam;
  using T = scalar<V>;
  using P = std::complex<T>;
  using wide = std::complex<double>;
  for (const double delta : {0.3, 0.0, -0.0}) {
    const auto run = [delta](V* v) {
      v->delta = static_cast<T>(delta);
      return TWIN(i_differ)(v);
    };
    expect_in_place<V>(run, [delta](contents<V>& c) {
      c.delta = static_cast<T>(delta);
      const double factor = delta != 0 ? 1 / static_cast<double>(c.delta) : static_cast<double>(huge<V>);
      wide previous = 0;
      for (P& x : c.points) x = P((wide(x) - std::exchange(previous, wide(x))) * factor);
    });
  }
  expect_in_place<V>(TWIN(i_integ), [](contents<V>& c) {
    wide sum = 0;
    for (P& x : c.points) x = P((sum += wide(x)) * static_cast<double>(c.delta));
  });
  expect_in_place<V>(TWIN(i_pdiffer), [](contents<V>& c) {
    if (!c.points.empty()) c.points.erase(c.points.begin());
    for (std::size_t i = 0; i < c.points.size(); ++i) c.points[i] *= static_cast<T>(i + 1);
  });
}

TYPED_TEST(Calculus, CrossingsOfALevel) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  struct {
    samples<V> x;
    int flags;
    T level;
    samples<V> times;  // in samples
  } const cases[] = {{{0, 1, 0}, 3, 0.5, {0.5, 1.5}},
                     {{0, 1, 0}, 1, 0.5, {0.5}},
                     {{0, 1, 0}, 2, 0.5, {1.5}},
                     {{0, 1, 0}, 4, 0.5, {}},
                     {{0, 1, 0}, 7, 0.25, {0.25, 1.75}},
                     {{0, 0.5, 1}, 1, 0.5, {1}},
                     {{1, 0.5, 0}, 2, 0.5, {1}},
                     {{1, 0.5, 1}, 3, 0.5, {1}},
                     {{0.5, 0.5, 0.5}, 3, 0.5, {}},
                     {{-1, 1, -1, 1, -1}, 3, 0, {0.5, 1.5, 2.5, 3.5}},
                     {{0, nan, 1, 0, nan}, 3, 0.5, {2.5}},
                     {{0, 1, 0}, 3, nan, {}},
                     {{5}, 3, 5, {}}};
  for (const auto& c : cases) {
    for (const T delta : {T(1), T(0.25), T(-2)}) {
      signal<V> v(c.x);
      v.delta = delta;
      ASSERT_EQ(TWIN(i_edge)(&v, c.flags, c.level), 0);
      auto wanted = c.times;
      for (T& t : wanted) t *= delta;
      EXPECT_EQ(v.values(), wanted);
      EXPECT_EQ(v.delta, 1);
    }
  }
  expect_complex_refused<V>([](V* v) { return TWIN(i_edge)(v, 3, 0); });
}

}  // namespace
}  // namespace sigpak::test
