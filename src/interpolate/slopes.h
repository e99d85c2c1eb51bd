// SPDX-License-Identifier: MIT
// The slopes that make piecewise cubics of the values at knots: a spline is its values and slopes.
#pragma once

#include "core/record.h"

namespace sigpak {

// The numbers of DSP_SPLINE_*.
enum class spline_ends { not_a_knot, natural, clamped, periodic, monotone };

struct end_rule {
  spline_ends kind = spline_ends::not_a_knot;
  double start = 0;  // slopes of a clamped spline
  double end = 0;
};

// Where the slope of knot i goes: at[i * stride], apart from the values and the knots.
template <class T> struct slopes_at {
  T* at;
  index stride;
};

// Of n >= 1 values on knots that are `spacing` > 0 apart; a periodic spline takes its last value from the
// first. Computed in double, rounded once.
template <class T>
void regular_slopes(const T* y, index n, double spacing, end_rule rule, slopes_at<T> out) noexcept;

// On rising knots x. Fails for want of memory alone, before anything is written.
template <class T>
status irregular_slopes(const T* x, const T* y, index n, end_rule rule, slopes_at<T> out) noexcept;

}  // namespace sigpak
