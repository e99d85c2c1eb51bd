// SPDX-License-Identifier: MIT
// The reference, the tables of the transforms, and transforms known to the last bit.
#include <gtest/gtest.h>

#include "fft/baseline/twiddles.h"
#include "spectral/reference.h"

namespace sigpak::test {
namespace {

template <class V> class Fft : public testing::Test {};
TYPED_TEST_SUITE(Fft, records, record_names);

TEST(Reference, FollowsTheDefiningSum) {
  for (const std::size_t n : {1U, 2U, 3U, 5U, 7U, 8U, 12U, 31U, 60U, 64U, 128U}) {
    for (const bool inverse : {false, true}) {
      const auto noisy = noise<dsp_vec>(static_cast<index>(2 * n));
      exact_signal x;
      for (std::size_t i = 0; i < n; ++i) x.emplace_back(noisy[2 * i], noisy[2 * i + 1]);
      const auto wanted = direct_transform(x, inverse ? 1 : -1);
      const auto got = exact_transform(x, inverse);
      for (std::size_t i = 0; i < n; ++i) {
        const exact scaled = inverse ? wanted[i] : wanted[i] / static_cast<long double>(n);
        EXPECT_LT(std::abs(got[i] - scaled), 4e-18L * static_cast<long double>(n)) << n;
      }
    }
  }
}

TYPED_TEST(Fft, KnownTransforms) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T most = std::numeric_limits<T>::max();
  const auto forward = [](V* v) { return TWIN(i_fft)(v, 0); };
  const auto inverse = [](V* v) { return TWIN(i_fft)(v, 7); };
  samples<V> flat(16);
  for (std::size_t i = 0; i < 16; i += 2) flat[i] = T(0.125);
  struct {
    std::int32_t (*run)(V*);
    bool complex;
    samples<V> in;
    samples<V> out;
  } const cases[] = {{forward, false, {3, 1}, {2, 0, 1, 0}},
                     {forward, false, {most, most}, {most, 0, 0, 0}},  // scaled before they are added
                     {forward, false, {1, 0, 0, 0, 0, 0, 0, 0}, flat},
                     {forward, false, {0, 4, 0, 0}, {1, 0, 0, -1, -1, 0, 0, 1}},
                     {inverse, false, {0, 1, 0, 0}, {1, 0, 0, 1, -1, 0, 0, -1}},
                     {forward, true, {1, 2, 3, 4}, {2, 3, -1, -1}},
                     {TWIN(i_rfft), false, {0, 1, 2, 3}, {1.5, 0, -.5, .5, -.5, 0}},
                     {TWIN(i_irfft), true, {6, 9, -2, 2, -2, 9}, {0, 4, 8, 12}},
                     {TWIN(i_irfft), true, {3, 5}, {3}},
                     {TWIN(i_hilbert), false, {3, 3, 3, 3}, {0, 0, 0, 0}},
                     {TWIN(i_hilbert), false, {1, -1, 1, -1}, {0, 0, 0, 0}},
                     {TWIN(i_analytic), false, {3, 3, 3, 3}, {3, 0, 3, 0, 3, 0, 3, 0}},
                     {TWIN(i_analytic), false, {1, -1}, {1, 0, -1, 0}}};
  for (const auto& c : cases) {
    signal<V> v(c.in, c.complex);
    ASSERT_EQ(c.run(&v), 0);
    EXPECT_EQ(v.values(), c.out) << &c - cases;
  }
}

TYPED_TEST(Fft, TwiddlesAreTheNearestValues) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr long double slack = is_double<V> ? 0x1p-61L : 0x1p-51L;  // errors of the wider type
  for (const index n : {4, 8, 16, 1024, 65536}) {
    const T* const table = twiddles<T>(n);
    ASSERT_NE(table, nullptr);
    for (index k = 0; k < n / 4; ++k) {
      for (const index times : {1, 3}) {
        const exact w = exact_root(static_cast<std::size_t>(times * k), static_cast<std::size_t>(n), 1);
        const long double wanted[] = {w.real(), -(w.real() + w.imag()), w.imag() - w.real()};
        const T* const got = table + group * k + (times == 3 ? triple : 0);
        for (int i = 0; i < 3; ++i) {
          const T step = std::nextafter(std::abs(got[i]), T(4)) - std::abs(got[i]);
          EXPECT_LE(std::abs(static_cast<long double>(got[i]) - wanted[i]),
                    static_cast<long double>(step) / 2 + slack)
              << k;
        }
      }
    }
    const samples<V> first(table, table + group);
    EXPECT_EQ(first, (samples<V>{1, -1, -1, 1, -1, -1}));
    if (n < 8) continue;
    const samples<V> middle(table + group * (n / 8), table + group * (n / 8) + triple);
    EXPECT_EQ(middle, (samples<V>{T(0.7071067811865476), T(-1.4142135623730951), 0}));
  }
}

}  // namespace
}  // namespace sigpak::test
