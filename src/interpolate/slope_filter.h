// SPDX-License-Identifier: MIT
// The slopes of splines on many regular knots, by a filter instead of a recursion.
#pragma once

#include "interpolate/slopes.h"

namespace sigpak::slope_filter {

// a^64 = 2e-37: the ends of so many knots do not see each other.
inline constexpr index least_knots = 64;

// As regular_slopes, of at least so many values; not monotone.
template <class T> void run(const T* y, index n, double spacing, end_rule rule, slopes_at<T> out) noexcept;

}  // namespace sigpak::slope_filter
