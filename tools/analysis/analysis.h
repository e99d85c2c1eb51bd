// SPDX-License-Identifier: MIT
// Welch's method: windowed, overlapping segments, their powers averaged.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "analysis/spectrum.h"
#include "input/source.h"

namespace tool {

struct analysis_options {
  int window = DSP_WINDOW_HANN;
  std::size_t segment = 8192;  // samples under a window; a shorter signal is taken as a whole
  double overlap = 0.5;        // part of a segment that it shares with the next
  averaging average = averaging::mean;
  std::size_t settled = 10;         // segments from which on the weight in an exponential average stays
  std::optional<std::string> unit;  // in place of the file's
  double gain = 1;                  // what every sample is multiplied by
  bool each = false;                // every piece of the source is a signal of its own
};

// The spectra of the channels that the source gives; reads it to its end,
// or with `each` to that of the piece. `progress` is called now and then.
std::vector<spectrum> analyse(source& in, const analysis_options& options,
                              const std::function<void()>& progress);

}  // namespace tool
