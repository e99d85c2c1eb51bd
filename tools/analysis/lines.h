// SPDX-License-Identifier: MIT
// The lines of a spectrum that stand above its noise.
#pragma once

#include <optional>
#include <vector>

#include "analysis/spectrum.h"

namespace tool {

struct line {
  double frequency;
  double power;  // mean square of the sine
  double snr;    // over the mean square of the noise around it, in dB
};

struct line_options {
  std::size_t count = 10;
  std::optional<double> least_snr;  // in dB, in place of the threshold
  double from;                      // the band that they are looked for in
  double to;
};

// How many times its noise a spectrum has to reach somewhere so that it is taken for a line.
double line_threshold(const spectrum& s);

// The strongest first: maxima that come neither from noise nor from the leakage of a stronger line.
std::vector<line> strongest_lines(const spectrum& s, const line_options& options);

}  // namespace tool
