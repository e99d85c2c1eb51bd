// SPDX-License-Identifier: MIT
// The circle of a wide chirp transform and the passes over it.
#pragma once

#include "core/record.h"
#include "fft/plans/chirp_plan.h"

namespace sigpak::kernels {

// Lays out the cheapest transforms of a circle with room for `points`, for `widest` to `narrowest` lanes:
// `circle`, `lanes`, `vectors`, the passes and their blocks.
template <class T> void choose_circle(chirp_plan<T>& plan, index points, int widest, int narrowest) noexcept;

// What that costs: sums of the costs of its passes over vectors.
template <class T> double circle_cost(index points, int widest, int narrowest) noexcept;

// The same layout for a circle of exactly `points`, which one chosen for other lanes is.
template <class T> void choose_passes(chirp_plan<T>& plan, index points, int lanes) noexcept;

}  // namespace sigpak::kernels
