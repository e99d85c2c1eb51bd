// The shapes of the windows, against sums in long double.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "windows/windowed.h"

namespace sigpak::test {
namespace {

template <class V> class WindowShapes : public testing::Test {};
TYPED_TEST_SUITE(WindowShapes, records, record_names);

constexpr long double pi = std::numbers::pi_v<long double>;
constexpr int first_sum = DSP_WINDOW_HANN;
constexpr int last_sum = DSP_WINDOW_P601;

// Coefficients with unit mean; the last digits of the other two sets are not independent of these.
const std::vector<std::vector<long double>> unit_mean = {
    {1},
    {},
    {1, 1},
    {1, 0.46L / 0.54L},
    {1, 25.0L / 21, 4.0L / 21},
    {1, 1.171912L, 0.184449L},
    {1, 0.487396L / 0.355768L, 0.144232L / 0.355768L, 0.012604L / 0.355768L},
    {1, 1.45875529058L, 0.543087184L, 0.08816718498L, 0.00390252806L},
    {0.9994484L, 1.911456L, 1.078578L, 0.183162L},
    {0.9996403L, 1.940411L, 1.3079112L, 0.4038558L, 0.0350962L},
    {0.999760855L, 1.959279864368L, 1.482207318028L, 0.639636244612L, 0.1236443547086L, 0.00669641875546L},
    {0.999820406L, 1.968927018592L, 1.58314833527L, 0.813811630104L, 0.226727679792L, 0.0278660778114L,
     0.000908305448086L},
    {0.99974762L, 1.95719157697L, 1.462421292406L, 0.611433912448L, 0.11186507767L, 0.00553658087878L},
    {0.999813874L, 1.967871907162L, 1.57208459675L, 0.79456597081L, 0.21505509556L, 0.0252934034374L,
     0.00076928806393L},
};

long double gain(int window, int mode) {
  const auto& a = unit_mean[static_cast<std::size_t>(window)];
  long double peak = 0;
  long double square = 0;
  for (std::size_t k = 0; k < a.size(); ++k) {
    peak += a[k];
    square += a[k] * a[k] * (k == 0 ? 1.0L : 0.5L);
  }
  return mode == DSP_WINDOW_FLAG_MEAN ? 1 : mode == DSP_WINDOW_FLAG_RMS ? 1 / std::sqrt(square) : 1 / peak;
}

long double cosines(int window, long double angle) {
  const auto& a = unit_mean[static_cast<std::size_t>(window)];
  long double sum = 0;
  for (std::size_t k = 0; k < a.size(); ++k) sum += a[k] * std::cos(static_cast<long double>(k) * angle);
  return sum;
}

// The stored sets agree with each other to the digits of the shortest of them.
constexpr double stored_digits = 1e-8;

// The angle collects a rounding for each of up to 1023 additions.
template <record V> double shape_bound() { return 100 * 0x1p-52 + 2 * unit_roundoff<V>; }

TYPED_TEST(WindowShapes, CosineSumsHaveTheirMiddleAtHalfTheirLength) {
  using V = TypeParam;
  for (int window = first_sum; window <= last_sum; ++window) {
    for (const index n : edge_sizes()) {
      if (n == 0) continue;
      const samples<V> got = window_of<V>(n, window, DSP_WINDOW_FLAG_MEAN);
      ASSERT_EQ(got.size(), static_cast<std::size_t>(n));
      double worst = 0;
      for (index i = 0; i < n; ++i) {
        const long double wanted = cosines(window, 2 * pi * static_cast<long double>(i - n / 2) / n);
        worst =
            std::fmax(worst, std::abs(static_cast<double>(exact(got[static_cast<std::size_t>(i)]) - wanted)));
      }
      EXPECT_LT(worst, 8 * shape_bound<V>()) << window << " of " << n;
    }
  }
}

TYPED_TEST(WindowShapes, TheOtherNormalisationsAreTheSameShapeScaled) {
  using V = TypeParam;
  constexpr index n = 64;
  for (int window = first_sum; window <= last_sum; ++window) {
    for (const int mode : {DSP_WINDOW_FLAG_RMS, DSP_WINDOW_FLAG_PEAK}) {
      const samples<V> got = window_of<V>(n, window, mode);
      for (index i = 0; i < n; ++i) {
        const long double wanted =
            gain(window, mode) * cosines(window, 2 * pi * static_cast<long double>(i - n / 2) / n);
        EXPECT_NEAR(static_cast<double>(got[static_cast<std::size_t>(i)]), static_cast<double>(wanted),
                    8 * unit_roundoff<V> + (window == 5 ? 1e-6 : stored_digits))
            << window << " mode " << mode << " point " << i;
      }
    }
  }
}

TYPED_TEST(WindowShapes, MeanOrMeanSquareIsOne) {
  using V = TypeParam;
  for (int window = first_sum; window <= last_sum; ++window) {
    for (const index n : {32, 33, 1000, 1024, 5001}) {
      long double mean = 0;
      long double square = 0;
      for (const auto w : window_of<V>(n, window, DSP_WINDOW_FLAG_MEAN)) mean += exact(w);
      for (const auto w : window_of<V>(n, window, DSP_WINDOW_FLAG_RMS)) square += exact(w) * exact(w);
      const double leading = static_cast<double>(unit_mean[static_cast<std::size_t>(window)][0]);
      EXPECT_NEAR(static_cast<double>(mean / n), leading, shape_bound<V>()) << window << " of " << n;
      EXPECT_NEAR(static_cast<double>(square / n), 1, 5e-12 + shape_bound<V>()) << window << " of " << n;
    }
  }
}

TYPED_TEST(WindowShapes, SmallWindowsAreExact) {
  using V = TypeParam;
  const auto expect = [](int window, int mode, const samples<V>& wanted) {
    const samples<V> got = window_of<V>(static_cast<index>(wanted.size()), window, mode);
    ASSERT_EQ(got.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      EXPECT_NEAR(got[i], wanted[i], 4 * unit_roundoff<V>) << window << " mode " << mode << " point " << i;
    }
  };
  constexpr int mean = DSP_WINDOW_FLAG_MEAN;
  constexpr int rms = DSP_WINDOW_FLAG_RMS;
  constexpr int peak = DSP_WINDOW_FLAG_PEAK;
  using T = scalar<V>;
  expect(DSP_WINDOW_HANN, peak, {0, T(0.5), 1, T(0.5)});
  expect(DSP_WINDOW_HANN, peak,
         {T(0.09549150281252627), T(0.6545084971874737), 1, T(0.6545084971874737), T(0.09549150281252627)});
  expect(DSP_WINDOW_HANN, mean, {2});
  expect(DSP_WINDOW_HAMMING, peak, {T(0.08), 1});
  expect(DSP_WINDOW_TRIANGULAR, mean, {0, 1, 2, 1});
  expect(DSP_WINDOW_TRIANGULAR, mean, {1});
  expect(DSP_WINDOW_TRIANGULAR, peak, {0, 1});
  expect(DSP_WINDOW_TRIANGULAR, peak, {T(0.2), T(0.6), 1, T(0.6), T(0.2)});
  expect(DSP_WINDOW_TRIANGULAR, rms,
         {0, T(0.8164965809277261), T(1.6329931618554521), T(0.8164965809277261)});
  EXPECT_EQ(window_of<V>(4, DSP_WINDOW_HANN, peak)[0], 0);
}

TYPED_TEST(WindowShapes, TrianglesAreStraightAndNormalised) {
  using V = TypeParam;
  for (const index n : edge_sizes()) {
    if (n == 0) continue;
    for (const int mode : {0, 1, 2}) {
      const samples<V> w = window_of<V>(n, DSP_WINDOW_TRIANGULAR, mode);
      const auto at = [&](index i) { return static_cast<long double>(w[static_cast<std::size_t>(i)]); };
      const long double peak = at(n / 2);
      long double sum = 0;
      long double square = 0;
      for (index i = 0; i < n; ++i) {
        const long double distance = std::abs(static_cast<long double>(i - n / 2));
        EXPECT_NEAR(static_cast<double>(at(i)), static_cast<double>(peak - distance * 2 * peak / n),
                    1024 * 0x1p-53 + 4 * unit_roundoff<V>);
        sum += at(i);
        square += at(i) * at(i);
      }
      const long double unit = mode == 0 ? sum / n : mode == 1 ? square / n : peak;
      EXPECT_NEAR(static_cast<double>(unit), 1, 1024 * 0x1p-53 + 16 * unit_roundoff<V>)
          << n << " mode " << mode;
    }
  }
}

// Narrower than the record, a window of even width ends on the left of its centre and is 0 where it would end
// on the right; wider, it is cut by the record.
TYPED_TEST(WindowShapes, AWidthCutsOrStretchesACosineSum) {
  using V = TypeParam;
  for (const index n : {1, 2, 9, 10, 2100}) {
    for (const double width :
         {0.3, 1.0, 2.0, 3.0, 4.0, 4.5, 7.0, 8.0, 8.7, 9.0, 9.5, 10.0, 12.0, 13.5, 2049.0}) {
      const samples<V> got = window_of<V>(n, DSP_WINDOW_HAMMING, DSP_WINDOW_FLAG_PEAK, width);
      ASSERT_EQ(got.size(), static_cast<std::size_t>(n));
      const auto half = static_cast<index>(std::floor(width)) / 2;
      for (index i = 0; i < n; ++i) {
        const index m = i - n / 2;
        const bool whole = width >= static_cast<double>(n);
        const bool opposite = !whole && m == half && std::fmod(width, 2) == 0;
        const bool inside = whole || (std::abs(m) <= half && !opposite);
        const long double wanted = inside ? 0.54L + 0.46L * std::cos(2 * pi * m / exact(width)) : 0;
        EXPECT_NEAR(static_cast<double>(got[static_cast<std::size_t>(i)]), static_cast<double>(wanted),
                    shape_bound<V>())
            << n << " points, width " << width << ", point " << i;
      }
    }
    EXPECT_EQ(window_of<V>(n, DSP_WINDOW_FLATTOP, 0, static_cast<double>(n)),
              window_of<V>(n, DSP_WINDOW_FLATTOP, 0));
    for (const double none : {0.0, -0.0, -1.0, -1e9, -std::numeric_limits<double>::infinity()}) {
      EXPECT_EQ(window_of<V>(n, DSP_WINDOW_HAMMING, 0, none), samples<V>(static_cast<std::size_t>(n)));
    }
    EXPECT_EQ(window_of<V>(n, DSP_WINDOW_HANN, DSP_WINDOW_FLAG_PEAK, std::numeric_limits<double>::infinity()),
              ones<V>(n));
  }
}

TEST(WindowShapesOfDouble, AWidthWithinTheToleranceOfAWholeNumberIsThatNumber) {
  using V = dsp_vec;
  for (const double off : {-3e-15, 3e-15}) {
    for (const double width : {8.0, 9.0, 10.0}) {
      dsp_free_internal();
      const samples<V> close = window_of<V>(10, DSP_WINDOW_HAMMING, 0, width * (1 + off));
      dsp_free_internal();
      EXPECT_EQ(close, window_of<V>(10, DSP_WINDOW_HAMMING, 0, width));
    }
  }
}

TYPED_TEST(WindowShapes, AUniformWidthStartsAtTheFirstPoint) {
  using V = TypeParam;
  for (const int mode : {0, 1, 2}) {
    EXPECT_EQ(window_of<V>(5, DSP_WINDOW_UNIFORM, mode, 3), (samples<V>{1, 1, 1, 0, 0}));
    EXPECT_EQ(window_of<V>(5, DSP_WINDOW_UNIFORM, mode, 2.25), (samples<V>{1, 1, 1, 0, 0}));
    EXPECT_EQ(window_of<V>(5, DSP_WINDOW_UNIFORM, mode, 0.25), (samples<V>{1, 0, 0, 0, 0}));
    EXPECT_EQ(window_of<V>(5, DSP_WINDOW_UNIFORM, mode, 0), (samples<V>{0, 0, 0, 0, 0}));
    EXPECT_EQ(window_of<V>(5, DSP_WINDOW_UNIFORM, mode, -7), (samples<V>{0, 0, 0, 0, 0}));
    EXPECT_EQ(window_of<V>(5, DSP_WINDOW_UNIFORM, mode, 5), ones<V>(5));
    EXPECT_EQ(window_of<V>(5, DSP_WINDOW_UNIFORM, mode, 1e30), ones<V>(5));
  }
}

}  // namespace
}  // namespace sigpak::test
