// SPDX-License-Identifier: MIT
// The points of the windows, against their formulas in long double.
#include "windows/windowed.h"

namespace sigpak::test {
namespace {

template <class V> class WindowShapes : public testing::Test {
 protected:
  void TearDown() override { TWIN(_free_internal)(); }
};
TYPED_TEST_SUITE(WindowShapes, records, record_names);

// Around the blocks of 1024 steps of angle, which a window takes from its middle.
std::vector<index> sizes() {
  std::vector<index> out;
  for (index n = 1; n <= 20; ++n) out.push_back(n);
  out.insert(out.end(), {64, 65, 2048, 2049, 2050, 4099});
  return out;
}

// The coefficients for the other gains are those for a unit mean, scaled.
TYPED_TEST(WindowShapes, EveryWindowFollowsItsDefinition) {
  using V = TypeParam;
  for (int window = DSP_WINDOW_UNIFORM; window <= DSP_WINDOW_RIEMANN; ++window) {
    const definition d = definition_of(window);
    for (const index n : sizes()) {
      for (const int mode : {by_mean, by_rms, by_peak}) {
        SCOPED_TRACE(testing::Message() << window << " of " << n << " mode " << mode);
        const samples<V> got = window_of<V>(n, window, mode);
        ASSERT_LE(worst_error<V>(got, points_of(d, n, mode), d), 1);
        if (mode == by_rms && n > 12) {
          ASSERT_NEAR(static_cast<double>(level_of(got).square), 1, 5e-12 + 8 * unit_roundoff<V>);
        }
        if (d.relative == 0) continue;
        ASSERT_LE(
            worst_error<V>(window_of<V>(n, window, mode | symmetric), points_of(d, n, mode | symmetric), d),
            1);
      }
    }
    EXPECT_TRUE(d.terms.size() > 2 || d.terms.size() == 1 || d.relative > 0 || window == DSP_WINDOW_HAMMING ||
                window_of<V>(4, window, by_peak)[0] == 0);
  }
}

TYPED_TEST(WindowShapes, KaiserAndGaussianFollowTheirParameters) {
  using V = TypeParam;
  const std::pair<int, std::vector<double>> parameters[] = {{kaiser, {0, 0.5, -2, 9.5, 40, 230}},
                                                            {gaussian, {0.15625, -0.25, 1, 1024}}};
  for (const auto& [window, values] : parameters) {
    for (const double p : values) {
      const definition d = definition_of(window, p);
      for (const index n : {1, 2, 3, 4, 5, 8, 9, 63, 64, 1025, 1026}) {
        for (const int flags : {0, 1, 2, 0 | symmetric, 1 | symmetric, 2 | symmetric}) {
          SCOPED_TRACE(testing::Message() << window << " of " << n << " by " << p << " flags " << flags);
          const bool constant = window == kaiser && n == 1;
          const auto wanted = constant ? std::vector<real>{1} : points_of(d, n, flags);
          ASSERT_LE(worst_error<V>(window_of<V>(n, window, flags, p), wanted, d), 1);
        }
      }
    }
  }
}

TYPED_TEST(WindowShapes, AWidthCutsOrStretches) {
  using V = TypeParam;
  constexpr double inf = std::numeric_limits<double>::infinity();
  for (const index n : {1, 2, 9, 10, 2100}) {
    for (const double width : {0.3, 1.0,  2.0,  3.0,  4.0,    4.5, 7.0,  8.0,  8.7,  9.0,
                               9.5, 10.0, 12.0, 13.5, 2049.0, 0.0, -0.0, -1.0, -1e9, -inf}) {
      for (const int window : {DSP_WINDOW_HAMMING, DSP_WINDOW_RIEMANN}) {
        SCOPED_TRACE(testing::Message() << window << " of " << n << ", width " << width);
        const double settled = static_cast<double>(static_cast<scalar<V>>(width));
        const definition d = definition_of(window);
        const int flags = by_width | (window == DSP_WINDOW_RIEMANN ? by_mean : by_peak);
        EXPECT_LE(worst_error<V>(window_of<V>(n, window, flags, width), points_of(d, n, flags, settled), d),
                  1);
      }
    }
    EXPECT_EQ(window_of<V>(n, DSP_WINDOW_FLATTOP, by_width, static_cast<double>(n)),
              window_of<V>(n, DSP_WINDOW_FLATTOP, 0));
    EXPECT_EQ(window_of<V>(n, DSP_WINDOW_HANN, by_width | by_peak, inf), ones<V>(n));
  }
  for (const double off : {-3e-15, 3e-15}) {  // within the tolerance of a whole number: that number
    for (const double width : {8.0, 9.0, 10.0}) {
      TWIN(_free_internal)();
      const samples<V> close = window_of<V>(10, DSP_WINDOW_HAMMING, by_width, width * (1 + off));
      TWIN(_free_internal)();
      EXPECT_EQ(close, window_of<V>(10, DSP_WINDOW_HAMMING, by_width, width));
    }
  }
}

TYPED_TEST(WindowShapes, AUniformWidthStartsAtTheFirstPoint) {
  using V = TypeParam;
  const std::pair<double, samples<V>> cases[] = {
      {3, {1, 1, 1, 0, 0}},  {2.25, {1, 1, 1, 0, 0}}, {0.25, {1, 0, 0, 0, 0}}, {0, {0, 0, 0, 0, 0}},
      {-7, {0, 0, 0, 0, 0}}, {5, {1, 1, 1, 1, 1}},    {1e30, {1, 1, 1, 1, 1}}};
  for (const auto& [width, wanted] : cases) {
    for (const int mode : {0, 1, 2}) {
      EXPECT_EQ(window_of<V>(5, DSP_WINDOW_UNIFORM, mode | by_width, width), wanted) << width;
    }
  }
}

TYPED_TEST(WindowShapes, BetaIsLimited) {
  using V = TypeParam;
  constexpr double inf = std::numeric_limits<double>::infinity();
  for (const int mode : {by_mean, by_rms, by_peak}) {
    const double beta = mode == by_rms ? 230.25850929940458 : 460.51701859880916;
    for (const index n : {2, 5, 64}) {
      const samples<V> limit = window_of<V>(n, kaiser, mode, beta);
      const double middle = static_cast<double>(limit[static_cast<std::size_t>(n) / 2]);
      EXPECT_TRUE(middle >= 1 && std::isfinite(middle));
      for (const double far : {1000.0, -1000.0, 1e30, inf, -inf, std::nan("")}) {
        const samples<V> got = window_of<V>(n, kaiser, mode, far);
        for (std::size_t i = 0; i < got.size(); ++i) {  // the limit itself is rounded in single precision
          EXPECT_NEAR(static_cast<double>(got[i]), static_cast<double>(limit[i]),
                      1e-4 * middle * unit_roundoff<V> * 0x1p24);
        }
      }
    }
    EXPECT_NE(window_of<V>(64, kaiser, mode, beta - 10), window_of<V>(64, kaiser, mode, beta));
  }
}

// A deviation whose square underflows is as good as none; one without end is a constant.
TYPED_TEST(WindowShapes, EdgesOfTheParameters) {
  using V = TypeParam;
  struct {
    int window;
    int flags;
    double parameter;
    samples<V> wanted;
  } const cases[] = {{kaiser, by_peak, 0, {1, 1, 1, 1, 1, 1}},
                     {gaussian, by_peak, 0, {0, 0, 1, 0, 0}},
                     {gaussian, by_peak, 0, {0, 0, 1, 0}},
                     {gaussian, by_peak | symmetric, 0, {0, 1, 1, 0}},
                     {gaussian, by_peak | symmetric, 0, {0, 0, 1, 0, 0}},
                     {gaussian, by_mean, 0, {0, 0, 5, 0, 0}},
                     {gaussian, by_peak, 1e-38, {0, 0, 1, 0, 0}},
                     {gaussian, by_mean | symmetric, 1e-38, {0, 0, 0, 0}},
                     {gaussian, by_mean, 1e30, {1, 1, 1, 1, 1}},
                     {gaussian, by_rms, std::numeric_limits<double>::infinity(), {1, 1, 1, 1, 1}}};
  for (const auto& c : cases)
    EXPECT_EQ(window_of<V>(std::ssize(c.wanted), c.window, c.flags, c.parameter), c.wanted);
}

}  // namespace
}  // namespace sigpak::test
