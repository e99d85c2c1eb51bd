// SPDX-License-Identifier: MIT
// Axes: where values lie on them, and the ticks that tell.
#pragma once

#include <string>
#include <vector>

#include "pictures/picture.h"

namespace tool {

struct tick {
  double part;       // of the axis, from 0 to 1
  std::string text;  // empty for those of the minor grid
};

// Round values from `low` to `high`, about `count` of them.
std::vector<double> round_values(double low, double high, int count);

// The frequencies of all curves. A logarithmic axis begins above zero.
class frequency_axis {
 public:
  explicit frequency_axis(const picture& p);
  double part(double frequency) const;
  double frequency(double part) const;
  const std::string& title() const { return title_; }

  // A frequency in the unit of the axis, with the digits that the spectrum resolves.
  std::string text(const spectrum& s, double frequency) const;

  // Both ends have one. `room(text)` is the part of the axis that a label takes.
  template <class Room> std::vector<tick> ticks(int count, Room room) const {
    std::vector<tick> out = logarithmic_ ? logarithmic_ticks() : linear_ticks(count);
    keep_apart(out, [&](const tick& t) { return room(t.text); });
    return out;
  }

 private:
  std::vector<tick> linear_ticks(int count) const;
  std::vector<tick> logarithmic_ticks() const;
  void add_inside(std::vector<tick>& ticks, double frequency, std::string text) const;
  template <class Room> static void keep_apart(std::vector<tick>& ticks, Room room);

  bool logarithmic_;
  double low_;
  double high_;
  double unit_ = 1;
  std::string title_;
};

// The level axis, with a tick at both ends.
struct level_axis {
  double low;
  double high;
  double step;

  double part(double level) const { return (level - low) / (high - low); }
  std::vector<tick> ticks() const;
};

// The level in each of `columns` of the frequency axis; not a number where the curve has none. Where a column
// holds several points, it is that of their mean power, so that noise is shown at its level however many they
// are; it goes over to the highest above what noise reaches.
std::vector<double> outline_of(const curve& c, const frequency_axis& axis, std::size_t columns);

// The axis that shows these outlines, with some `count` ticks.
level_axis level_axis_of(const std::vector<std::vector<double>>& outlines, int count);

bool has_signal(const curve& c);

// The ends come first: what lies between them gives way. Labels are centred at their ticks.
template <class Room> void frequency_axis::keep_apart(std::vector<tick>& ticks, Room room) {
  std::vector<tick> kept;
  const auto meets = [&](const tick& a, const tick& b) {
    return !a.text.empty() && !b.text.empty() && std::abs(a.part - b.part) < (room(a) + room(b)) / 2;
  };
  for (const tick& t : ticks) {
    bool free = true;
    for (const tick& k : kept) free = free && !meets(t, k);
    if (free)
      kept.push_back(t);
    else
      kept.push_back({t.part, ""});
  }
  ticks = std::move(kept);
}

}  // namespace tool
