// SPDX-License-Identifier: MIT
// Scale factors and equivalent noise bandwidths, against the windows themselves.
#include "support/failing.h"
#include "windows/windowed.h"

namespace sigpak::test {
namespace {

template <class V> class WindowScale : public testing::Test {};
TYPED_TEST_SUITE(WindowScale, records, record_names);

template <record V> double scale_of(int window, int flags, int n, double width = 0) {
  scalar<V> scale = 0;
  const auto w = static_cast<scalar<V>>(width);
  EXPECT_EQ((flags & by_width) != 0 ? TWIN(_window2_scale)(&scale, window, flags, n, w)
                                    : TWIN(_window_scale)(&scale, window, flags, n),
            0)
      << window << " of " << n;
  return static_cast<double>(scale);
}

template <record V> double bandwidth_of(int window, int flags, int n, double width = 0) {
  scalar<V> bins = 0;
  const auto w = static_cast<scalar<V>>(width);
  EXPECT_EQ((flags & by_width) != 0 ? TWIN(_window2_enbw)(&bins, window, n, w)
                                    : TWIN(_window_enbw)(&bins, window, n),
            0)
      << window << " of " << n;
  return static_cast<double>(bins);
}

// The first set of a flat top has a leading term slightly below 1, and its scale carries it.
template <record V> void expect_scales(int window, int flags, int n, double width = 0) {
  SCOPED_TRACE(testing::Message() << window << " of " << n << ", width " << width);
  const level u = level_of(window_of<V>(n, window, flags | by_peak, width));
  const auto mean = static_cast<double>(u.mean);
  const auto square = static_cast<double>(u.square);
  const definition d = definition_of(window);
  const double leading = flags == 0 && !d.terms.empty() ? static_cast<double>(d.terms[0]) : 1;
  const double bound = (flags == 0 ? 5e-12 : 0) + 16 * unit_roundoff<V>;
  EXPECT_NEAR(scale_of<V>(window, flags | by_mean, n, width) * mean, leading, bound);
  EXPECT_NEAR(scale_of<V>(window, flags | by_rms, n, width) * std::sqrt(square), 1, bound);
  EXPECT_EQ(scale_of<V>(window, flags | by_peak, n, width), 1);
  if ((flags & symmetric) != 0) return;
  EXPECT_NEAR(bandwidth_of<V>(window, flags, n, width) * mean * mean / square, leading * leading, 2 * bound);
}

TYPED_TEST(WindowScale, ScalesAreThoseOfThePoints) {
  using V = TypeParam;
  for (int window = DSP_WINDOW_UNIFORM; window <= DSP_WINDOW_RIEMANN; ++window) {
    for (const int n : {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 100, 1023, 1024, 3000}) {
      expect_scales<V>(window, 0, n);
      if (window == DSP_WINDOW_KAISER70 || window == DSP_WINDOW_GAUSS60)
        expect_scales<V>(window, symmetric, n);
    }
  }
  for (const int window : {DSP_WINDOW_UNIFORM, DSP_WINDOW_HANN, DSP_WINDOW_P601, DSP_WINDOW_RIEMANN}) {
    for (const double width : {1.0, 6.0, 7.5, 11.0, 12.0, 20.0})
      expect_scales<V>(window, by_width, 12, width);
    EXPECT_EQ(scale_of<V>(window, by_width, 12, 0), huge<V>) << "nothing is left of the window";
  }
}

TYPED_TEST(WindowScale, OfNoPointsIsOneWhateverTheWindow) {
  using V = TypeParam;
  for (const int n : {0, -1, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(scale_of<V>(DSP_WINDOW_HANN, 0, n), 1);
    EXPECT_EQ(scale_of<V>(99, 3, n), 1);
    EXPECT_EQ(bandwidth_of<V>(99, 0, n), 1);
  }
  EXPECT_EQ(scale_of<V>(99, by_peak, 8), 1) << "nor is a window asked for its peak";
}

TYPED_TEST(WindowScale, RefusalsStoreNothing) {
  using V = TypeParam;
  using T = scalar<V>;
  T kept = 42;
  const std::pair<std::vector<int>, int> refusals[] = {
      {{DSP_WINDOW_HANN}, 3},
      {{DSP_WINDOW_RIEMANN}, symmetric},
      {{-1, 24, 1000}, 0},
      {{DSP_WINDOW_TRIANGULAR, DSP_WINDOW_KAISER70, DSP_WINDOW_GAUSS80, -1, 24}, by_width},
      {{DSP_WINDOW_HANN}, by_width | symmetric}};
  for (const auto& [windows, flags] : refusals) {
    for (const int window : windows) {
      EXPECT_EQ(TWIN(_window2_scale)(&kept, window, flags, 8, 4), -1) << window << ' ' << flags;
      EXPECT_EQ(TWIN(_window_scale)(&kept, window, flags, 8), -1) << window << ' ' << flags;
      EXPECT_EQ(flags == 0          ? TWIN(_window_enbw)(&kept, window, 8)
                : flags == by_width ? TWIN(_window2_enbw)(&kept, window, 8, 4)
                                    : -1,
                -1)
          << window;
    }
  }
  for (const int flags : {by_width, by_width | by_peak})
    EXPECT_EQ(TWIN(_window_scale)(&kept, DSP_WINDOW_HANN, flags, 8), -1);
  EXPECT_EQ(TWIN(_window2_scale)(&kept, DSP_WINDOW_HANN, by_width, 8, std::numeric_limits<T>::quiet_NaN()),
            -1);
  for (const int window : {DSP_WINDOW_KAISER70, DSP_WINDOW_RIEMANN}) {
    EXPECT_GT(failures_before_success<failing_records>([&kept, window] {
                EXPECT_EQ(kept, 42);
                return TWIN(_window_enbw)(&kept, window, 8);
              }),
              3);
    kept = 42;
  }
  EXPECT_EQ(TWIN(_window_enbw)(nullptr, DSP_WINDOW_HANN, 8), -1);
  EXPECT_EQ(TWIN(_window_scale)(nullptr, DSP_WINDOW_HANN, 0, 8), -1);
}

}  // namespace
}  // namespace sigpak::test
