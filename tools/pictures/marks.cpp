// SPDX-License-Identifier: MIT
// Where the numbers of peaks find room.
#include "pictures/marks.h"

#include <algorithm>
#include <cmath>

namespace tool {
namespace {

constexpr double width = 16;   // of two digits, in bold type of 11 px
constexpr double ascent = 10;  // of digits
constexpr double circle = 5;   // radius of a peak's mark with its line

box box_of(place number) {
  return {number.x - width / 2, number.y - ascent, number.x + width / 2, number.y + 1};
}

bool meet(const box& a, const box& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

bool is_inside(const box& inner, const box& outer) {
  return inner.left >= outer.left && inner.right <= outer.right && inner.top >= outer.top &&
         inner.bottom <= outer.bottom;
}

std::optional<place> room_for(place peak, const std::vector<box>& taken, const box& frame) {
  for (double up = 8; up < 120; up += 3) {
    for (const double aside : {0.0, -8.0, 8.0, -15.0, 15.0, -22.0, 22.0}) {
      const place p{peak.x + aside, peak.y - up + std::abs(aside) / 2};
      const box b = box_of(p);
      if (is_inside(b, frame) && std::ranges::none_of(taken, [&b](const box& t) { return meet(b, t); }))
        return p;
    }
  }
  return std::nullopt;
}

}  // namespace

std::vector<std::optional<place>> number_places(const std::vector<place>& peaks, const box& frame) {
  std::vector<box> taken;
  for (const place& p : peaks) taken.push_back({p.x - circle, p.y - circle, p.x + circle, p.y + circle});
  std::vector<std::optional<place>> out;
  for (const place& p : peaks) {
    out.push_back(room_for(p, taken, frame));
    if (out.back()) taken.push_back(box_of(*out.back()));
  }
  return out;
}

}  // namespace tool
