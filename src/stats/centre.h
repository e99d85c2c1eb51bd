// SPDX-License-Identifier: MIT
// A value near the middle of the data: sums of deviations from it lose far fewer digits than sums of the
// data.
#pragma once

#include "core/record.h"

namespace sigpak {

// The mean of the last, middle and first of `points` values, `stride` scalars apart, in their own precision.
template <class T> constexpr T centre(const T* x, index points, index stride) noexcept {
  if (points == 0) return 0;
  constexpr auto third = static_cast<T>(0.3333333333333333);
  return (x[(points - 1) * stride] + x[points / 2 * stride] + x[0]) * third;
}

}  // namespace sigpak
