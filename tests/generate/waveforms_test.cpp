// SPDX-License-Identifier: MIT
// Sinusoids and straight lines.
#include <numbers>

#include "core/machine.h"
#include "support/forms.h"

namespace sigpak::test {
namespace {

template <class V> class Waveforms : public testing::Test {};
TYPED_TEST_SUITE(Waveforms, records, record_names);

struct wave {
  double frequency;
  double phase;
};
constexpr wave waves[] = {{0.1, 0}, {0.03125, -1.5}, {1440, 2}, {-0.37, 100}, {0, 0.25}};

// exp(i (2 pi f delta k + phase)) by rotation from point to point, exact at the head of every block of 256.
template <class T> std::vector<std::complex<double>> rotation(std::size_t n, const wave& w, T delta) {
  const double step =
      2 * std::numbers::pi * static_cast<double>(static_cast<T>(w.frequency)) * static_cast<double>(delta);
  const double c = std::cos(step);
  const double s = std::sin(step);
  std::vector<std::complex<double>> out;
  for (std::size_t k = 0; k < n; ++k) {
    const double angle = static_cast<double>(k) * step + w.phase;
    const double re = k % 256 == 0 ? std::cos(angle) : out[k - 1].real() * c - out[k - 1].imag() * s;
    const double im = k % 256 == 0 ? std::sin(angle) : out[k - 1].real() * s + out[k - 1].imag() * c;
    out.emplace_back(re, im);
  }
  return out;
}

TYPED_TEST(Waveforms, SinusoidsAreTheRotationToTheLastBit) {
  using V = TypeParam;
  using T = scalar<V>;
  using C = contents<V>;
  auto sizes = edge_sizes();
  sizes.insert(sizes.end(), {2304, 2305, 4095, 4097, 6600, 10000});
  if (!watched()) sizes.push_back(70001);
  for (const wave& w : waves) {
    const auto f = static_cast<T>(w.frequency);
    const auto phase = static_cast<T>(w.phase);
    const auto model = [w](C& c, double kept, double amplitude, bool exponential) {
      const auto z = rotation(c.points.size(), w, c.delta);
      for (std::size_t i = 0; i < z.size(); ++i) {
        const std::complex<double> turned(z[i].real(), exponential && c.complex ? z[i].imag() : 0);
        c.points[i] = std::complex<T>(kept * std::complex<double>(c.points[i]) + amplitude * turned);
      }
    };
    expect_in_place<V>([=](V* v) { return TWIN(c_cos)(v, f, phase); }, [=](C& c) { model(c, 0, 1, false); },
                       sizes);
    expect_in_place<V>([=](V* v) { return TWIN(c_cexp)(v, f, phase); }, [=](C& c) { model(c, 0, 1, true); },
                       sizes);
    for (const int mode : {0, 1, 2, 3}) {
      expect_in_place<V>([=](V* v) { return TWIN(i_addcos)(v, mode, f, T(-1.75), phase); },
                         [=](C& c) { model(c, 1, -1.75, mode % 2 == 1); }, sizes);
    }
  }
  expect_empty_untouched<V>({[](V* v) { return TWIN(i_addcos)(v, 1, 1, 1, 0); }});
}

// Vectors that are in one line of the cache begin elsewhere in each; long records are written in many places
// at once, the angles of the next blocks are found on the way beyond the second cache, and lines are called
// for ahead beyond the last one.
TYPED_TEST(Waveforms, SinusoidsAreTheSameWhereverTheyLie) {
  using V = TypeParam;
  using T = scalar<V>;
  const machine::cache_sizes caches = machine::caches();
  for (const bool complex : {false, true}) {
    for (const index points : {300, 2600, 5000, 75001}) {
      const index scalars = points * (complex ? 2 : 1);
      samples<V> wanted;
      for (index offset = 0; offset < 17; ++offset) {
        samples<V> x(static_cast<std::size_t>(scalars + 32), T(7));
        V v{};
        v.data = x.data() + offset;
        v.alloc = static_cast<std::int32_t>(scalars);
        v.points = static_cast<std::uint32_t>(points);
        v.complex = complex ? 1 : 0;
        v.delta = T(0.3);
        machine::cache_sizes forced = caches;
        if (offset % 2 != 0) forced.second = 8192;
        if (offset % 4 == 3) forced.last = 8192;
        machine::force(forced);
        ASSERT_EQ(TWIN(c_cexp)(&v, T(0.37), T(1)), 0);
        machine::force(caches);
        ASSERT_EQ(v.data, x.data() + offset) << "the storage that was lent";
        const samples<V> got(x.begin() + offset, x.begin() + offset + scalars);
        if (offset == 0) wanted = got;
        ASSERT_EQ(got, wanted) << offset;
        ASSERT_EQ(std::count(x.begin(), x.end(), T(7)), 32) << offset;
      }
    }
  }
}

TYPED_TEST(Waveforms, SinusoidsStayCloseToTheTrueOnes) {
  using V = TypeParam;
  using wide = long double;
  constexpr index n = 20000;
  for (const wave& w : waves) {
    signal<V> v(samples<V>(2 * n), true);
    v.delta = scalar<V>(0.3);
    const auto f = static_cast<scalar<V>>(w.frequency);
    ASSERT_EQ(TWIN(c_cexp)(&v, f, static_cast<scalar<V>>(w.phase)), 0);
    const wide step = 2 * std::numbers::pi_v<wide> * static_cast<wide>(f) * static_cast<wide>(v.delta);
    wide worst = 0;
    for (index i = 0; i < n; ++i) {
      const wide angle = static_cast<wide>(i) * step + static_cast<wide>(w.phase);
      const std::complex<wide> got(static_cast<wide>(v.data[2 * i]), static_cast<wide>(v.data[2 * i + 1]));
      worst = std::max(worst, std::abs(got - std::polar<wide>(1, angle)));
    }
    const double largest = static_cast<double>(n * std::abs(step)) + std::abs(w.phase);
    const double bound = 0x1p-52 * (256 + largest) + (is_double<V> ? 0 : unit_roundoff<V>);
    EXPECT_LE(worst, static_cast<wide>(bound)) << w.frequency;
  }
}

// Steps that round and steps that do not, up to the last sum that is exact.
TYPED_TEST(Waveforms, LinesAddTheStepAgainAndAgain) {
  using V = TypeParam;
  using T = scalar<V>;
  auto sizes = edge_sizes();
  sizes.insert(sizes.end(), {1023, 1024, 1025, 5000});
  constexpr T last = T(2) / std::numeric_limits<T>::epsilon();
  constexpr T inf = std::numeric_limits<T>::infinity();
  const std::pair<T, T> lines[] = {
      {T(0.7), T(1)},   {T(0.5), T(-300)},  {T(-3), T(0.125)},
      {T(0), T(-0.0)},  {T(-0.0), T(-0.0)}, {T(4), last - T(9000)},
      {T(1), last / 4}, {T(1), inf},        {std::numeric_limits<T>::denorm_min(), T(0)},
      {inf, T(0)}};
  for (const auto& [step, start] : lines) {
    const auto model = [step = step, start = start](contents<V>& c) {
      T value = start;
      for (auto& x : c.points) x = std::exchange(value, value + step * c.delta);
    };
    expect_in_place<V>([step = step, start = start](V* v) { return TWIN(c_line)(v, step, start); }, model,
                       sizes);
  }
}

}  // namespace
}  // namespace sigpak::test
