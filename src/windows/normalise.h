// SPDX-License-Identifier: MIT
// Normalisation of a window by what its points come to.
#pragma once

#include "core/record.h"

namespace sigpak {

// Divides a real record by its mean, by its root mean square, or by the peak given. A window that has nothing
// but zeros stays as it is.
template <record V> status normalise(V* v, int mode, double peak) noexcept;

}  // namespace sigpak
