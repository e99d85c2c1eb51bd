// SPDX-License-Identifier: MIT
// The spacings that transforms leave.
#pragma once

#include <cmath>

#include "core/guard.h"
#include "core/power_of_two.h"

namespace sigpak {

// 1 / (points * delta), H for 0 and for NaN too.
template <class T> T transformed_spacing(T delta, index points) noexcept {
  const T spacing = reciprocal_spacing(delta, static_cast<T>(points));
  return std::isnan(spacing) ? guard<T>::huge : spacing;
}

// The rule of the transform of any length: NaN stays where that is the power-of-two transform.
template <class T> T dft_spacing(T delta, index points) noexcept {
  const index n = points > 1 ? points : 1;
  const T spacing = reciprocal_spacing(delta, static_cast<T>(n));
  if (!std::isnan(spacing)) [[likely]]
    return spacing;
  return n > 1 && is_power_of_two(n) ? spacing : guard<T>::huge;
}

}  // namespace sigpak
