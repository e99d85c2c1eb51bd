// Sinusoids and straight lines.
#include <gtest/gtest.h>

#include <bit>
#include <numbers>

#include "support/failing.h"
#include "support/signal.h"

namespace sigpak::test {
namespace {

template <class V> class Waveforms : public testing::Test {};
TYPED_TEST_SUITE(Waveforms, records, record_names);

struct wave {
  double frequency;
  double phase;
  double delta;
};
constexpr wave waves[] = {
    {0.1, 0, 1}, {0.03125, -1.5, 0.5}, {440, 2, 1.0 / 48000}, {-0.37, 100, 1}, {0, 0.25, 1}};

std::vector<index> sizes() {
  auto all = edge_sizes();
  for (const index n : {2047, 2048, 2049, 2304, 4095, 4096, 4097, 10000}) all.push_back(n);
  return all;
}

// The recurrence as it is defined, one point after the other.
template <record V> std::vector<double> recurrence(index n, const wave& w) {
  using T = scalar<V>;
  const double step = 2 * std::numbers::pi * static_cast<double>(static_cast<T>(w.frequency)) *
                      static_cast<double>(static_cast<T>(w.delta));
  std::vector<double> out;
  double c = 0;
  double s = 0;
  for (index i = 0; i < n; ++i) {
    if (i % 256 == 0) {
      const double angle = static_cast<double>(i) * step + static_cast<double>(static_cast<T>(w.phase));
      c = std::cos(angle);
      s = std::sin(angle);
    }
    out.push_back(c);
    out.push_back(s);
    const double turned = c * std::cos(step) - s * std::sin(step);
    s = c * std::sin(step) + s * std::cos(step);
    c = turned;
  }
  return out;
}

template <record V> void preset(signal<V>& v, index n, bool complex, double delta) {
  v.points = static_cast<std::uint32_t>(n);
  v.complex = complex ? 1 : 0;
  v.delta = static_cast<scalar<V>>(delta);
}

TYPED_TEST(Waveforms, SinusoidsAreTheRecurrenceToTheLastBit) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : sizes()) {
    const wave& w = waves[static_cast<std::size_t>(n) % std::size(waves)];
    const auto f = static_cast<T>(w.frequency);
    const auto phase = static_cast<T>(w.phase);
    const auto wanted = recurrence<V>(n, w);
    for (const bool complex : {false, true}) {
      signal<V> cosine;
      signal<V> exponential;
      preset(cosine, n, complex, w.delta);
      preset(exponential, n, complex, w.delta);
      ASSERT_EQ(TWIN(c_cos)(&cosine, f, phase), 0);
      ASSERT_EQ(TWIN(c_cexp)(&exponential, f, phase), 0);
      ASSERT_EQ(cosine.complex, complex ? 1 : 0);
      ASSERT_EQ(exponential.complex, complex ? 1 : 0);
      const index width = complex ? 2 : 1;
      for (index i = 0; i < n; ++i) {
        const auto c = static_cast<T>(wanted[static_cast<std::size_t>(2 * i)]);
        const auto s = static_cast<T>(wanted[static_cast<std::size_t>(2 * i + 1)]);
        ASSERT_EQ(cosine.data[i * width], c) << n << ' ' << i;
        ASSERT_EQ(exponential.data[i * width], c) << n << ' ' << i;
        if (!complex) continue;
        ASSERT_EQ(cosine.data[2 * i + 1], T(0)) << n << ' ' << i;
        ASSERT_EQ(exponential.data[2 * i + 1], s) << n << ' ' << i;
      }
    }
  }
}

TYPED_TEST(Waveforms, SinusoidsStayCloseToTheTrueOnes) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr index n = 20000;
  for (const wave& w : waves) {
    signal<V> v;
    preset(v, n, true, w.delta);
    const auto f = static_cast<T>(w.frequency);
    const auto phase = static_cast<T>(w.phase);
    ASSERT_EQ(TWIN(c_cexp)(&v, f, phase), 0);
    using wide = long double;
    const wide step = 2 * std::numbers::pi_v<wide> * static_cast<wide>(f) * static_cast<wide>(v.delta);
    wide worst = 0;
    for (index i = 0; i < n; ++i) {
      const wide angle = static_cast<wide>(i) * step + static_cast<wide>(phase);
      worst = std::max(worst, std::abs(static_cast<wide>(v.data[2 * i]) - std::cos(angle)));
      worst = std::max(worst, std::abs(static_cast<wide>(v.data[2 * i + 1]) - std::sin(angle)));
    }
    const double largest = static_cast<double>(n * std::abs(step)) + std::abs(w.phase);
    const double bound = 0x1p-52 * (256 + largest) + (is_double<V> ? 0 : unit_roundoff<V>);
    EXPECT_LE(worst, static_cast<long double>(bound)) << w.frequency;
  }
}

TYPED_TEST(Waveforms, AddingASinusoid) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : sizes()) {
    const wave& w = waves[static_cast<std::size_t>(n) % std::size(waves)];
    const auto turned = recurrence<V>(n, w);
    const auto amplitude = static_cast<T>(-1.75);
    for (const bool complex : {false, true}) {
      for (const int mode : {0, 1, 2, 3}) {
        signal<V> v(noise<V>(complex ? 2 * n : n), complex);
        v.delta = static_cast<T>(w.delta);
        if (mode > 1) v.lend();
        auto wanted = v.values();
        const auto f = static_cast<T>(w.frequency);
        ASSERT_EQ(TWIN(i_addcos)(&v, mode, f, amplitude, static_cast<T>(w.phase)), 0);
        for (std::size_t i = 0; i < wanted.size(); ++i) {
          const std::size_t at = complex ? i : 2 * i;
          if (at % 2 != 0 && mode % 2 == 0) continue;
          wanted[i] =
              static_cast<T>(static_cast<double>(wanted[i]) + static_cast<double>(amplitude) * turned[at]);
        }
        ASSERT_EQ(v.values(), wanted) << n << ' ' << mode;
      }
    }
  }
}

TYPED_TEST(Waveforms, LinesAddTheStepAgainAndAgain) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : {0, 1, 2, 5, 1000}) {
    for (const bool complex : {false, true}) {
      signal<V> v;
      preset(v, n, complex, 0.1);
      ASSERT_EQ(TWIN(c_line)(&v, T(0.3), T(1)), 0);
      ASSERT_EQ(v.points, n);
      ASSERT_EQ(v.complex, complex ? 1 : 0);
      const T step = T(0.3) * v.delta;
      T value = 1;
      for (index i = 0; i < n; ++i, value += step) {
        ASSERT_EQ(v.data[complex ? 2 * i : i], value);
        ASSERT_TRUE(!complex || v.data[2 * i + 1] == T(0));
      }
    }
  }
  signal<V> exact;
  preset(exact, 4, false, 0.5);
  TWIN(c_line)(&exact, 2, 1);
  EXPECT_EQ(exact.values(), (samples<V>{1, 2, 3, 4}));
}

TYPED_TEST(Waveforms, EmptyRecordsNeedNoStorage) {
  using V = TypeParam;
  for (const bool complex : {false, true}) {
    signal<V> v;
    v.complex = complex ? 1 : 0;
    EXPECT_EQ(TWIN(c_cos)(&v, 1, 0), 0);
    EXPECT_EQ(TWIN(c_cexp)(&v, 1, 0), 0);
    EXPECT_EQ(TWIN(c_line)(&v, 1, 0), 0);
    v.points = 0x80000000U;
    EXPECT_EQ(TWIN(i_addcos)(&v, 1, 1, 1, 0), 0);
    EXPECT_EQ(v.complex, complex ? 1 : 0);
    EXPECT_EQ(v.data, nullptr);
  }
}

TYPED_TEST(Waveforms, FailWithoutStorage) {
  using V = TypeParam;
  const failing_records<V> none(0);
  for (const bool complex : {false, true}) {
    signal<V> v;
    preset(v, 10, complex, 1);
    EXPECT_EQ(TWIN(c_cos)(&v, 1, 0), -1);
    EXPECT_EQ(TWIN(c_cexp)(&v, 1, 0), -1);
    EXPECT_EQ(TWIN(c_line)(&v, 1, 0), -1);
    EXPECT_EQ(v.data, nullptr);
  }
}

}  // namespace
}  // namespace sigpak::test
