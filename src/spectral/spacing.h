// The spacing that a transform leaves, where NaN counts as 0.
#pragma once

#include <cmath>

#include "core/guard.h"
#include "core/record.h"

namespace sigpak {

// 1 / (points * delta), H for 0 and NaN.
template <class T> T transformed_spacing(T delta, index points) noexcept {
  return reciprocal_spacing(std::isnan(delta) ? T(0) : delta, static_cast<T>(points));
}

}  // namespace sigpak
