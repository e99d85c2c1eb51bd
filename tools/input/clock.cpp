// SPDX-License-Identifier: MIT
// Whether the times of a table are even, and how many samples are missing between two.
#include "input/clock.h"

#include <algorithm>
#include <cmath>

namespace tool {
namespace {

// Less than a missing sample, more than printed digits.
constexpr double unevenness = 0.25;

constexpr double longest_gap = 1e9;

// Before so many, the head of the table knows the step better than the times that were taken.
constexpr std::uint64_t few = 16;

}  // namespace

double clock_check::step() const {
  const bool know_better = count_ > few || step_ <= 0;
  return know_better && place_ > 0 ? (last_ - first_) / place_ : step_;
}

double clock_check::mean_step() const { return place_ > 0 ? (last_ - first_) / place_ : 0; }

clock_check::verdict clock_check::take(double time) {
  missing_ = 0;
  if (count_++ == 0) {
    first_ = last_ = time;
    return verdict::even;
  }
  const double now = step();
  const double steps = (time - last_) / (now > 0 ? now : time - last_);
  const double whole = std::max(std::round(steps), 1.0);
  const double drift = (time - first_) / (now > 0 ? now : time - first_) - (place_ + whole);
  deviation_ = std::max(std::abs(steps - whole), std::abs(drift));
  const bool rises = time > last_;
  last_ = time;
  place_ += whole;
  if (!rises) return verdict::backwards;
  if (!(whole <= longest_gap)) return verdict::absurd;
  if (!(deviation_ <= unevenness)) return verdict::uneven;
  missing_ = static_cast<std::uint64_t>(whole) - 1;
  return missing_ > 0 ? verdict::gap : verdict::even;
}

}  // namespace tool
