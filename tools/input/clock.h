// SPDX-License-Identifier: MIT
// Whether the times of a table are even, and how many samples are missing between two.
#pragma once

#include <cstdint>

namespace tool {

class clock_check {
 public:
  explicit clock_check(double step) : step_(step) {}

  enum class verdict { even, gap, backwards, uneven, absurd };

  // Takes the next time. Every time must lie within a quarter of a step of where the mean step so far puts
  // it.
  verdict take(double time);

  std::uint64_t missing() const { return missing_; }  // before the time, where there was a gap
  double step() const;                                // that the next time is measured by
  double mean_step() const;                           // of all so far; 0 for a single time
  double deviation() const { return deviation_; }     // of the last time, in steps

 private:
  double step_;  // at the head of the table
  double first_ = 0;
  double last_ = 0;
  double place_ = 0;  // of the last time, in steps from the first
  std::uint64_t count_ = 0;
  std::uint64_t missing_ = 0;
  double deviation_ = 0;
};

}  // namespace tool
