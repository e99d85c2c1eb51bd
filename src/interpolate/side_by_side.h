// SPDX-License-Identifier: MIT
// The slopes of many splines on the same knots.
#pragma once

#include "interpolate/slopes.h"

namespace sigpak {

// Lines of values side by side: value i of line j at y[i * stride + j * step]. Their slopes go to where
// `slopes` begins, laid out in the same way.
struct lines {
  const double* y;
  double* slopes;
  index stride;
  index step;
  index count;
};

// Of n >= 2 values each; not monotone, not clamped. A periodic spline takes its last value from the first.
// Fails for want of memory alone, before anything is written.
status slopes_of_lines(const double* x, index n, const lines& of, end_rule rule) noexcept;

}  // namespace sigpak
