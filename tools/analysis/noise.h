// SPDX-License-Identifier: MIT
// The noise of an averaged spectrum: its level, and how far its maxima reach.
#pragma once

#include <cstddef>
#include <span>

#include "analysis/spectrum.h"

namespace tool {

// Degrees of freedom of powers that are averaged over segments under a window which overlap (Welch 1967):
//     nu = 2 K / (1 + 2 sum over j < K of (1 - j / K) rho(j)),
//     rho(j) = (sum w[n] w[n + j hop])^2 / (sum w[n]^2)^2
double degrees_of_freedom(std::span<const double> window, std::size_t hop, std::uint64_t segments);

// How many times its mean white noise reaches anywhere in the spectrum with the probability p, by the rate at
// which a chi-square process crosses a level upwards (R. B. Davies, Biometrika 74, 1987):
//     p = B sqrt(4 pi v) (u/2)^((nu - 1)/2) exp(-u/2) / Gamma(nu/2),  u = nu * threshold,
// B the band in units of the resolution and v the variance of n/N under the squared window.
double noise_threshold(const spectrum& s, double p);

// The level of noise along a spectrum, as the mean square that it shows with: medians over the
// neighbourhood, which lines do not move, corrected to means.
class noise_level {
 public:
  explicit noise_level(const spectrum& s);
  double at(std::size_t point) const;

 private:
  double step_ = 1;  // points from one median to the next
  record medians_;
};

// The same close to a point, from so many points apart to 8 resolutions more, or what flicker and drift would
// bring there towards zero: what rises slowly is no line.
double noise_beside(const spectrum& s, std::size_t point, std::size_t apart);

// The same over the whole spectrum.
double noise_floor(const spectrum& s);

}  // namespace tool
