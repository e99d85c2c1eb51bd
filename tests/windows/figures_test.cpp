// SPDX-License-Identifier: MIT
// Figures of merit of the windows, against the published ones.
#include "windows/figures.h"

#include "windows/windowed.h"

namespace sigpak::test {
namespace {

// Heinzel, Ruediger, Schilling 2002 with four digits; Harris 1978 with two (Blackman, Riemann).
TEST(WindowFigures, ArePublished) {
  const struct {
    int window;
    double side_lobe;
    double lobe_digits;
    double noise_bandwidth;
    double flatness;
    double digits;
  } published[] = {{DSP_WINDOW_UNIFORM, -13.3, 0.05, 1.0000, -3.9224, 6e-5},
                   {DSP_WINDOW_BARTLETT, -26.5, 0.05, 1.3333, -1.8242, 6e-5},
                   {DSP_WINDOW_HANN, -31.5, 0.05, 1.5000, -1.4236, 6e-5},
                   {DSP_WINDOW_HAMMING, -42.7, 0.05, 1.3628, -1.7514, 6e-5},
                   {DSP_WINDOW_BLACKMAN, -58, 0.5, 1.73, -1.10, 6e-3},
                   {DSP_WINDOW_BLACKMAN_HARRIS3, -71.5, 0.05, 1.7037, -1.1352, 2e-4},
                   {DSP_WINDOW_BLACKMAN_HARRIS4, -93.3, 0.05, 2.0212, -0.8118, 6e-5},
                   {DSP_WINDOW_RIEMANN, -26, 0.5, 1.30, -1.89, 6e-3}};
  for (const auto& p : published) {
    const figures f = figures_of(p.window);
    EXPECT_NEAR(f.side_lobe, p.side_lobe, p.lobe_digits) << p.window;
    EXPECT_NEAR(f.noise_bandwidth, p.noise_bandwidth, p.digits) << p.window;
    EXPECT_NEAR(f.flatness, p.flatness, p.digits) << p.window;
  }
}

// The side lobe that names a Kaiser window is that of its transform without sampling, sinc sqrt(f^2 -
// beta^2), whose highest is the same part of sinh(beta) / beta as that of the sinc is of 1. The five terms of
// least side lobes are after Albrecht 2001.
TEST(WindowFigures, SideLobesAreThoseOfTheName) {
  constexpr double side_lobe_of_sinc = 0.21723362821122166;
  for (int i = 0; i < 6; ++i) {
    EXPECT_NEAR(figures_of(DSP_WINDOW_KAISER70 + i).side_lobe, -70 - 10 * i, 0.05);
    const double beta = find_window(DSP_WINDOW_KAISER70 + i)->parameter;
    EXPECT_NEAR(decibels(std::sinh(beta) / beta / side_lobe_of_sinc), 70 + 10 * i, 1e-11);
  }
  int window = DSP_WINDOW_GAUSS60;  // a change of its last digit moves a side lobe by 7e-5 dB
  for (const double side_lobe : {-60.00077, -70.00108, -80.00154})
    EXPECT_NEAR(figures_of(window++).side_lobe, side_lobe, 3e-5);
  EXPECT_NEAR(figures_of(DSP_WINDOW_GAUSSTOP).side_lobe, -125.4, 0.05);
}

// The leading term of a flat top lowers the gain by half the ripple.
TEST(WindowFigures, FlatTopsAreFlatAndCentred) {
  int window = DSP_WINDOW_FLAT4;
  for (const double side_lobe : {-70, -95, -116, -144, -120, -147}) {
    const figures f = figures_of(window);
    const auto leading = static_cast<double>(definition_of(window).terms[0]);
    EXPECT_LT(std::abs(f.flatness), 0.01) << window;
    EXPECT_NEAR(decibels(leading), -f.flatness / 2, 1e-4) << window;
    EXPECT_LT(f.side_lobe, side_lobe) << window;
    ++window;
  }
}

}  // namespace
}  // namespace sigpak::test
