// SPDX-License-Identifier: MIT
// The spacings that transforms leave.
#pragma once

#include <cmath>

#include "core/guard.h"
#include "core/power_of_two.h"

namespace sigpak {

// 1 / (points * delta), H for 0 and for NaN too.
template <class T> T transformed_spacing(T delta, index points) noexcept {
  return reciprocal_spacing(std::isnan(delta) ? T(0) : delta, static_cast<T>(points));
}

// The rule of the transform of any length: NaN stays where that is the power-of-two transform.
template <class T> T dft_spacing(T delta, index points) noexcept {
  if (points <= 1) return transformed_spacing(delta, 1);
  return is_power_of_two(points) ? reciprocal_spacing(delta, static_cast<T>(points))
                                 : transformed_spacing(delta, points);
}

}  // namespace sigpak
