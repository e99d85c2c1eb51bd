// SPDX-License-Identifier: MIT
// Wide transforms of all lengths that are no powers of two, by plans of which the last ones are kept.
#pragma once

#include "fft/transform.h"

namespace sigpak {

// The cheapest way of a length that has short factors.
template <class T> algorithm cheapest_passes(index points) noexcept;

// By short transforms, in squares, by columns and rows or by a chirp, whichever the length has a plan for.
template <class T> status transform_any(T* x, index points, bool inverse) noexcept;

}  // namespace sigpak
