// SPDX-License-Identifier: MIT
// Frames at another rate.
#pragma once

#include <functional>
#include <span>
#include <vector>

#include "record.h"

namespace tool {

// By a small ratio of whole numbers exactly, otherwise at any step; 120 dB, flat up to 0.9 of the lower of
// the two Nyquist frequencies.
class resampler {
 public:
  resampler(double from, double to, std::size_t channels, bool pairs);

  using taker = std::function<void(std::span<const double>)>;
  void process(std::span<const double> frames, const taker& take);
  void finish(const taker& take);

 private:
  struct channel {
    record state;
    record in;
    record out;
  };

  void run(channel& c, bool ends);
  void put(const taker& take);

  record taps_;
  int up_ = 0;  // 0: at any step
  int down_ = 0;
  double step_;
  std::size_t parts_;
  std::vector<channel> channels_;
  std::vector<double> frames_;
};

}  // namespace tool
