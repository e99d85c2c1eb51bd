// SPDX-License-Identifier: MIT
// Where the numbers of peaks find room.
#pragma once

#include <optional>
#include <vector>

namespace tool {

struct place {
  double x;
  double y;
};

struct box {
  double left;
  double top;
  double right;
  double bottom;
};

// Numbers of two digits at most, centred at x and standing on y, inside the frame, clear of each other and of
// the peaks: above its own peak if possible. A peak without room gets none.
std::vector<std::optional<place>> number_places(const std::vector<place>& peaks, const box& frame);

}  // namespace tool
