// SPDX-License-Identifier: MIT
// Minimum, maximum and peaks.
#include "stats/statistic.h"

namespace sigpak::test {
namespace {

template <class V> class Extremes : public testing::Test {};
TYPED_TEST_SUITE(Extremes, records, record_names);

// Real searches start from the huge values; complex ones take the first point by magnitude.
TYPED_TEST(Extremes, SmallestAndLargestByHand) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr T nan = std::numeric_limits<T>::quiet_NaN();
  constexpr T h = huge<V>;
  constexpr auto tiny = T(0x1p-100);
  struct {
    bool complex;
    samples<V> x, smallest, largest;
  } const cases[] = {{false, {}, {0}, {0}},
                     {false, {5}, {5}, {5}},
                     {false, {3, -1, 2}, {-1}, {3}},
                     {false, {2 * h, 3 * h}, {h}, {3 * h}},
                     {false, {-2 * h}, {-2 * h}, {-h}},
                     {false, {h}, {h}, {h}},
                     {false, {nan, 4, nan, 7, nan}, {4}, {7}},
                     {false, {nan, nan}, {h}, {-h}},
                     {true, {}, {0, 0}, {0, 0}},
                     {true, {3, 4, 4, 3}, {3, 4}, {3, 4}},
                     {true, {1, 1, -3, 0, 0, 3}, {1, 1}, {-3, 0}},
                     {true, {2 * h, 0, 5 * h, 1}, {h, h}, {2 * h, 0}},
                     {true, {2, 0, 2 * h, 0}, {2, 0}, {2 * h, 0}},
                     {true, {nan, 1, 1, nan}, {h, h}, {0, 0}},
                     {true, {nan, 1, 0, -2}, {0, -2}, {0, -2}},
                     {true, {tiny, 0, 0, 2 * tiny}, {tiny, 0}, {0, 2 * tiny}}};
  for (const auto& c : cases) {
    const signal<V> v(c.x, c.complex);
    EXPECT_EQ(result_of<V>(TWIN(s_min), v), c.smallest) << &c - cases;
    EXPECT_EQ(result_of<V>(TWIN(s_max), v), c.largest) << &c - cases;
  }
  for (const T first : {T(0), -T(0)}) {  // the first zero keeps its sign
    samples<V> x(100, first);
    std::fill(x.begin() + 50, x.end(), -first);
    EXPECT_EQ(std::signbit(result_of<V>(TWIN(s_min), signal<V>(x))[0]), std::signbit(first));
    EXPECT_EQ(std::signbit(result_of<V>(TWIN(s_max), signal<V>(x))[0]), std::signbit(first));
  }
}

template <record V> auto peak(int flags, int index = 0) {
  return [=](const V* v, V* out) { return TWIN(s_peak)(v, out, flags, index); };
}

TYPED_TEST(Extremes, EveryPlaceOfEveryLengthIsSeen) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const index n : edge_sizes()) {
    for (const index place : {index{0}, n / 2, n - 2, n - 1}) {
      if (place < 0 || place >= n) continue;
      for (const T extreme : {T(2), T(-2)}) {
        signal<V> v(noise<V>(n, static_cast<unsigned>(n)));
        v.data[n - 1 - place / 2] = T(0.75) * extreme;
        v.data[place] = extreme;
        EXPECT_EQ(result_of<V>(extreme > 0 ? TWIN(s_max) : TWIN(s_min), v), samples<V>{extreme});
        EXPECT_EQ(result_of<V>(peak<V>(extreme > 0 ? 0 : 0x2000), v),
                  (samples<V>{extreme, static_cast<T>(place)}))
            << n;
      }
    }
  }
}

TYPED_TEST(Extremes, PeakByHand) {
  using V = TypeParam;
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double h = wide(huge<V>);
  constexpr double slope = 0.792233201343665;
  constexpr double lobe = 0.315563649157834;
  const double d = std::log(2.0 / 3.0) * slope;
  const double shaped = d * (1 - (d * d - 0.25) * 0.02036) + 0.5;
  const double left = std::log(1.5) * slope + 0.5;
  struct {
    std::initializer_list<double> x;
    int flags;
    int index;
    double height, position;
    int status = 0;
  } const cases[] = {
      {{}, 0, 0, 0, 0},
      {{}, 0x300, 3, 0, 0},
      {{1, 3, 2}, 0, 0, 3, 1},
      {{4, 3, 2, 3, 2}, 0x2000, 0, 2, 2},
      {{1, 3, 2}, 0x100, 0, 3 + 0.25 / 6, 1 + 1.0 / 6},
      {{3, 1, 2}, 0x100, 0, 3, 0},
      {{1, 2, 3}, 0x100, 0, 3, 2},
      {{3, 1, 2}, 0x2100, 0, 1 - 0.25 / 6, 1 - 1.0 / 6 + 1.0 / 3},
      {{5, 6, 7, 8, 1}, 0x1000, 99, 1, 4},
      {{5, 6, 7, 8, 1}, 0x1000, -1, 5, 0},
      {{5, 6, 7, 8, 1}, 0x3000, 2, 7, 2},
      {{nan, nan, 1}, 0, 0, 1, 2},
      {{-2 * h, -3 * h, -2 * h}, 0, 0, -2 * h, 0},
      {{1, 3, 2}, 0x200, 0, 3 * std::exp(lobe * (d + 0.5) * (d + 0.5)), 1 + d + 0.5},
      {{1, 3, 2}, 0x300, 0, 3 * std::exp(lobe * shaped * shaped), 1 + shaped},
      {{2, 3, 1}, 0x200, 0, 2 * std::exp(lobe * left * left), left},
      {{2, 3}, 0x200, 0, 2 * std::exp(lobe * left * left), left},
      {{7}, 0x200, 0, 7, 0},
      {{1, 9, 1e-3}, 0x200, 0, std::exp(lobe * 2.25), 1.5, -1},
      {{9, 1, 1}, 0x200, 0, 9 * std::exp(lobe * 0.25), -0.5, -1},
  };
  for (const auto& c : cases) {
    const signal<V> v(c.x);
    signal<V> out;
    out.delta = 7;
    EXPECT_EQ(TWIN(s_peak)(&v, &out, c.flags, c.index), c.status);
    ASSERT_EQ(out.points, 2U);
    EXPECT_EQ(out.complex, 0);
    EXPECT_EQ(out.delta, 7);
    const double tolerance = 4 * unit_roundoff<V>;
    EXPECT_NEAR(out.data[0], c.height, tolerance * std::abs(c.height)) << c.flags;
    EXPECT_NEAR(out.data[1], c.position, 4 * tolerance) << c.flags;
  }
}

TYPED_TEST(Extremes, PeakOfComplexRecordsMeasuresSquares) {
  using V = TypeParam;
  const signal<V> v({0, 1, 1, -2, 2, 0}, true);
  expect_values<V>(result_of<V>(peak<V>(0), v), {5, 1}, 0, "plain");
  expect_values<V>(result_of<V>(peak<V>(0x100), v), {5 + 2.25 / 10, 1.3}, 1e-6, "parabola");
}

TYPED_TEST(Extremes, PeakRefusesUnknownMethodsAndMayReplaceItsInput) {
  using V = TypeParam;
  signal<V> v{1, 3, 2};
  v.delta = 5;
  for (const int method : {0x400, 0x500, 0x600, 0x700, 0x3700}) {
    EXPECT_EQ(TWIN(s_peak)(&v, &v, method, 0), -1);
    EXPECT_EQ(v.values(), (samples<V>{1, 3, 2}));
  }
  ASSERT_EQ(TWIN(s_peak)(&v, &v, 0x100, 0), 0);
  EXPECT_EQ(v.points, 2U);
  EXPECT_NEAR(v.data[1], 1 + 1.0 / 6, 1e-6);
  EXPECT_EQ(v.delta, 1);
  signal<V> clamped{9, 1, 1};
  EXPECT_EQ(TWIN(s_peak)(&clamped, &clamped, 0x200, 0), -1);
  EXPECT_EQ(clamped.points, 2U) << "written all the same";
  EXPECT_EQ(clamped.data[1], scalar<V>(-0.5));
}

// The lobe of a Hann window, sampled off its centre: both methods find the line.
TYPED_TEST(Extremes, PeakFindsALineBetweenBins) {
  using V = TypeParam;
  const auto lobe = [](double bin) {
    constexpr double pi = 3.14159265358979323846;
    if (std::abs(bin) < 1e-9) return 1.0;
    return std::sin(pi * bin) / (pi * bin * (1 - bin * bin));
  };
  for (const double offset : {-0.4, -0.25, 0.0001, 0.1, 0.3, 0.49}) {
    signal<V> v(samples<V>(32, 0));
    for (int i = 0; i < 32; ++i) {
      const double bin = i - 12 - offset;
      v.data[i] = static_cast<scalar<V>>(std::abs(lobe(std::abs(bin) == 1 ? bin + 1e-9 : bin)));
    }
    signal<V> out;
    for (const int method : {0x200, 0x300}) {
      ASSERT_EQ(TWIN(s_peak)(&v, &out, method, 0), 0);
      EXPECT_NEAR(out.data[1], 12 + offset, 0.06) << offset << " " << method;
    }
  }
}

}  // namespace
}  // namespace sigpak::test
