// Figures of merit of the windows, against the published ones.
#include "windows/figures.h"

#include <gtest/gtest.h>

namespace sigpak::test {
namespace {

// Heinzel, Ruediger, Schilling 2002 with four digits; Harris 1978 with two (Blackman, Riemann); the five
// terms of least side lobes after Albrecht 2001. Kaiser and Gaussian windows are named for the level of their
// side lobes.
TEST(WindowFigures, ArePublished) {
  constexpr double none = 0;
  const struct {
    int window;
    double side_lobe;
    double lobe_digits;
    double noise_bandwidth;
    double flatness;
    double digits;
  } published[] = {
      {DSP_WINDOW_UNIFORM, -13.3, 0.05, 1.0000, -3.9224, 6e-5},
      {DSP_WINDOW_BARTLETT, -26.5, 0.05, 1.3333, -1.8242, 6e-5},
      {DSP_WINDOW_HANN, -31.5, 0.05, 1.5000, -1.4236, 6e-5},
      {DSP_WINDOW_HAMMING, -42.7, 0.05, 1.3628, -1.7514, 6e-5},
      {DSP_WINDOW_BLACKMAN, -58, 0.5, 1.73, -1.10, 6e-3},
      {DSP_WINDOW_BLACKMAN_HARRIS3, -71.5, 0.05, 1.7037, -1.1352, 2e-4},
      {DSP_WINDOW_BLACKMAN_HARRIS4, -93.3, 0.05, 2.0212, -0.8118, 6e-5},
      {DSP_WINDOW_GAUSSTOP, -125.4, 0.05, none, none, 0},
      {DSP_WINDOW_KAISER70, -70, 0.05, none, none, 0},
      {DSP_WINDOW_KAISER80, -80, 0.05, none, none, 0},
      {DSP_WINDOW_KAISER90, -90, 0.05, none, none, 0},
      {DSP_WINDOW_KAISER100, -100, 0.05, none, none, 0},
      {DSP_WINDOW_KAISER110, -110, 0.05, none, none, 0},
      {DSP_WINDOW_KAISER120, -120, 0.05, none, none, 0},
      {DSP_WINDOW_GAUSS60, -60, 0.05, none, none, 0},
      {DSP_WINDOW_GAUSS70, -70, 0.05, none, none, 0},
      {DSP_WINDOW_GAUSS80, -80, 0.05, none, none, 0},
      {DSP_WINDOW_RIEMANN, -26, 0.5, 1.30, -1.89, 6e-3},
  };
  for (const auto& p : published) {
    const figures f = figures_of(p.window);
    EXPECT_NEAR(f.side_lobe, p.side_lobe, p.lobe_digits) << p.window;
    if (p.digits == 0) continue;
    EXPECT_NEAR(f.noise_bandwidth, p.noise_bandwidth, p.digits) << p.window;
    EXPECT_NEAR(f.flatness, p.flatness, p.digits) << p.window;
  }
}

// The leading term of a flat top lowers the gain by half the ripple.
TEST(WindowFigures, FlatTopsAreFlatAndCentred) {
  const struct {
    int window;
    double leading;
    double side_lobe;
  } flat_tops[] = {
      {DSP_WINDOW_FLAT4, 0.9994484, -70},    {DSP_WINDOW_FLAT5, 0.9996403, -95},
      {DSP_WINDOW_FLAT6, 0.999760855, -116}, {DSP_WINDOW_FLAT7, 0.999820406, -144},
      {DSP_WINDOW_P501, 0.99974762, -120},   {DSP_WINDOW_P601, 0.999813874, -147},
  };
  for (const auto& t : flat_tops) {
    const figures f = figures_of(t.window);
    EXPECT_LT(std::abs(f.flatness), 0.01) << t.window;
    EXPECT_NEAR(decibels(t.leading), -f.flatness / 2, 1e-4) << t.window;
    EXPECT_LT(f.side_lobe, t.side_lobe) << t.window;
  }
}

}  // namespace
}  // namespace sigpak::test
