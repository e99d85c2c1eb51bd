// SPDX-License-Identifier: MIT
// What a window does to lines and noise.
#pragma once

#include <cstddef>

#include "record.h"

namespace tool {

struct window_figures {
  double coherent_gain;  // mean of the window whose middle is 1
  double enbw;           // equivalent noise bandwidth, in bins
  double scallop;        // dB that a line half a bin beside a bin reads at most too low
  double side_lobe;      // highest, in dB over the main lobe
};

window_figures figures_of(int window, std::size_t points);

}  // namespace tool
