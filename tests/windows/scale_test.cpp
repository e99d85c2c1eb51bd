// Scale factors and equivalent noise bandwidths, against the windows themselves.
#include <gtest/gtest.h>

#include <cmath>

#include "support/failing.h"
#include "windows/windowed.h"

namespace sigpak::test {
namespace {

template <class V> class WindowScale : public testing::Test {};
TYPED_TEST_SUITE(WindowScale, records, record_names);

template <record V> double scale_of(int window, int flags, int n) {
  scalar<V> scale = 0;
  EXPECT_EQ(TWIN(_window_scale)(&scale, window, flags, n), 0) << window << " of " << n;
  return static_cast<double>(scale);
}

template <record V> double bandwidth_of(int window, int n) {
  scalar<V> bins = 0;
  EXPECT_EQ(TWIN(_window_enbw)(&bins, window, n), 0) << window << " of " << n;
  return static_cast<double>(bins);
}

struct level {
  double mean;
  double rms;
};

template <record V> level level_of(const samples<V>& u) {
  long double sum = 0;
  long double square = 0;
  for (const auto x : u) {
    sum += exact(x);
    square += exact(x) * exact(x);
  }
  const auto n = static_cast<long double>(u.size());
  return {static_cast<double>(sum / n), static_cast<double>(std::sqrt(square / n))};
}

// The first set of a flat top has a leading term slightly below 1, and its scale carries it.
double leading_term(int window) {
  switch (window) {
    case DSP_WINDOW_FLAT4:
      return 0.9994484;
    case DSP_WINDOW_FLAT5:
      return 0.9996403;
    case DSP_WINDOW_FLAT6:
      return 0.999760855;
    case DSP_WINDOW_FLAT7:
      return 0.999820406;
    case DSP_WINDOW_P501:
      return 0.99974762;
    case DSP_WINDOW_P601:
      return 0.999813874;
    default:
      return 1;
  }
}

TYPED_TEST(WindowScale, ScalesAreThoseOfThePoints) {
  using V = TypeParam;
  for (int window = DSP_WINDOW_UNIFORM; window <= DSP_WINDOW_RIEMANN; ++window) {
    for (const int n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 100, 1023, 1024, 3000}) {
      const level u = level_of<V>(window_of<V>(n, window, DSP_WINDOW_FLAG_PEAK));
      const double bound = 5e-12 + 16 * unit_roundoff<V>;
      EXPECT_NEAR(scale_of<V>(window, DSP_WINDOW_FLAG_MEAN, n) * u.mean, leading_term(window), bound)
          << window << " of " << n;
      EXPECT_NEAR(scale_of<V>(window, DSP_WINDOW_FLAG_RMS, n) * u.rms, 1, bound) << window << " of " << n;
      EXPECT_EQ(scale_of<V>(window, DSP_WINDOW_FLAG_PEAK, n), 1);
    }
  }
}

TYPED_TEST(WindowScale, KnownValues) {
  using V = TypeParam;
  const double u = 4 * unit_roundoff<V>;
  EXPECT_NEAR(scale_of<V>(DSP_WINDOW_HANN, 0, 1024), 2, u);
  EXPECT_NEAR(scale_of<V>(DSP_WINDOW_HANN, 1, 1024), 1.632993161855452, u);
  EXPECT_NEAR(bandwidth_of<V>(DSP_WINDOW_HANN, 1024), 1.5, u);
  EXPECT_EQ(scale_of<V>(DSP_WINDOW_UNIFORM, 0, 7), 1);
  EXPECT_EQ(scale_of<V>(DSP_WINDOW_UNIFORM, 1, 7), 1);
  EXPECT_EQ(bandwidth_of<V>(DSP_WINDOW_UNIFORM, 7), 1);
  EXPECT_EQ(scale_of<V>(DSP_WINDOW_TRIANGULAR, 0, 4), 2);
  EXPECT_NEAR(scale_of<V>(DSP_WINDOW_TRIANGULAR, 1, 4), 1.632993161855452, u);
  EXPECT_NEAR(scale_of<V>(DSP_WINDOW_TRIANGULAR, 0, 5), 1.9230769230769231, u);
  // With 3 points the fourth term of the five is a constant too.
  const double g = 0.9996403 / 0.213283237831627;
  EXPECT_NEAR(scale_of<V>(DSP_WINDOW_FLATTOP, 0, 3), g * 0.9996403 / (0.9996403 + 0.4038558), u);
  for (const int n : {0, -1, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(scale_of<V>(DSP_WINDOW_HANN, 0, n), 1);
    EXPECT_EQ(scale_of<V>(99, 3, n), 1);
    EXPECT_EQ(bandwidth_of<V>(99, n), 1);
  }
  EXPECT_EQ(scale_of<V>(99, DSP_WINDOW_FLAG_PEAK, 8), 1);
}

// Harris 1978, Nuttall 1981; Heinzel, Ruediger, Schilling 2002, to the four digits printed.
TYPED_TEST(WindowScale, PublishedNoiseBandwidths) {
  using V = TypeParam;
  const struct {
    int window;
    double bins;
    double digits;
  } published[] = {
      {DSP_WINDOW_BARTLETT, 1.3333, 5e-5},
      {DSP_WINDOW_HANN, 1.5000, 5e-5},
      {DSP_WINDOW_HAMMING, 1.3628, 5e-5},
      {DSP_WINDOW_BLACKMAN, 1.73, 5e-3},
      {DSP_WINDOW_BLACKMAN_HARRIS3, 1.7037, 1e-4},
      {DSP_WINDOW_BLACKMAN_HARRIS4, 2.0212, 5e-5},
      {DSP_WINDOW_RIEMANN, 1.30, 5e-3},
  };
  for (const auto& p : published)
    EXPECT_NEAR(bandwidth_of<V>(p.window, 1 << 14), p.bins, p.digits) << p.window;
}

TYPED_TEST(WindowScale, AWidthIsScaledByItsPoints) {
  using V = TypeParam;
  using T = scalar<V>;
  for (const int window : {DSP_WINDOW_UNIFORM, DSP_WINDOW_HANN, DSP_WINDOW_P601, DSP_WINDOW_RIEMANN}) {
    for (const double width : {1.0, 6.0, 7.5, 11.0, 12.0, 20.0}) {
      const level u = level_of<V>(window_of<V>(12, window, DSP_WINDOW_FLAG_PEAK, width));
      T scale[2] = {0, 0};
      T bins = 0;
      for (const int mode : {0, 1}) {
        EXPECT_EQ(TWIN(_window2_scale)(&scale[mode], window, mode | DSP_WINDOW_FLAG_WIDTH, 12,
                                       static_cast<T>(width)),
                  0);
      }
      EXPECT_EQ(TWIN(_window2_enbw)(&bins, window, 12, static_cast<T>(width)), 0);
      EXPECT_NEAR(static_cast<double>(scale[0]) * u.mean, 1, 8 * unit_roundoff<V>);
      EXPECT_NEAR(static_cast<double>(scale[1]) * u.rms, 1, 8 * unit_roundoff<V>);
      EXPECT_NEAR(static_cast<double>(bins) * u.mean * u.mean / (u.rms * u.rms), 1, 16 * unit_roundoff<V>);
    }
    T scale = 0;
    EXPECT_EQ(TWIN(_window2_scale)(&scale, window, DSP_WINDOW_FLAG_WIDTH, 12, 0), 0);
    EXPECT_EQ(scale, huge<V>) << "nothing is left of the window";
  }
}

TYPED_TEST(WindowScale, SymmetricKaiserAndGaussianAreScaledAsSuch) {
  using V = TypeParam;
  for (const int window : {DSP_WINDOW_KAISER70, DSP_WINDOW_GAUSS60}) {
    const level u = level_of<V>(window_of<V>(10, window, DSP_WINDOW_FLAG_PEAK | DSP_WINDOW_FLAG_SYMMETRIC));
    EXPECT_NEAR(scale_of<V>(window, DSP_WINDOW_FLAG_SYMMETRIC, 10) * u.mean, 1, 8 * unit_roundoff<V>);
    EXPECT_GT(std::abs(scale_of<V>(window, 0, 10) * u.mean - 1), 1e-4);
  }
}

TYPED_TEST(WindowScale, RefusalsStoreNothing) {
  using V = TypeParam;
  using T = scalar<V>;
  constexpr int width = DSP_WINDOW_FLAG_WIDTH;
  T kept = 42;
  EXPECT_EQ(TWIN(_window_scale)(&kept, DSP_WINDOW_HANN, 3, 8), -1);
  EXPECT_EQ(TWIN(_window_scale)(&kept, DSP_WINDOW_HANN, width, 8), -1);
  EXPECT_EQ(TWIN(_window_scale)(&kept, DSP_WINDOW_HANN, width | DSP_WINDOW_FLAG_PEAK, 8), -1);
  EXPECT_EQ(TWIN(_window_scale)(&kept, DSP_WINDOW_RIEMANN, DSP_WINDOW_FLAG_SYMMETRIC, 8), -1);
  for (const int window : {-1, 24, 1000}) {
    EXPECT_EQ(TWIN(_window_scale)(&kept, window, 0, 8), -1);
    EXPECT_EQ(TWIN(_window2_scale)(&kept, window, 1 | width, 8, 4), -1);
    EXPECT_EQ(TWIN(_window_enbw)(&kept, window, 8), -1);
  }
  for (const int window : {DSP_WINDOW_TRIANGULAR, DSP_WINDOW_KAISER70, DSP_WINDOW_GAUSS80}) {
    EXPECT_EQ(TWIN(_window2_scale)(&kept, window, width, 8, 4), -1);
    EXPECT_EQ(TWIN(_window2_enbw)(&kept, window, 8, 4), -1);
  }
  EXPECT_EQ(TWIN(_window2_scale)(&kept, DSP_WINDOW_HANN, width | DSP_WINDOW_FLAG_SYMMETRIC, 8, 4), -1);
  EXPECT_EQ(TWIN(_window2_scale)(&kept, DSP_WINDOW_HANN, width, 8, std::numeric_limits<T>::quiet_NaN()), -1);
  {
    const failing_records<V> scope(0);
    EXPECT_EQ(TWIN(_window_scale)(&kept, DSP_WINDOW_KAISER70, 0, 8), -1);
  }
  {
    const failing_records<V> scope(1);
    EXPECT_EQ(TWIN(_window_enbw)(&kept, DSP_WINDOW_RIEMANN, 8), -1);
  }
  EXPECT_EQ(kept, 42);
  EXPECT_EQ(TWIN(_window_enbw)(nullptr, DSP_WINDOW_HANN, 8), -1);
  EXPECT_EQ(TWIN(_window_scale)(nullptr, DSP_WINDOW_HANN, 0, 8), -1);
}

}  // namespace
}  // namespace sigpak::test
