// SPDX-License-Identifier: MIT
// The transform of any length as a convolution with a chirp, by split-radix transforms.
#pragma once

#include "core/record.h"

namespace sigpak {

// What data are made of: reals, or pairs of real and imaginary part.
enum class domain : int { complex, real };

// Of at least 3 points, which become pairs: room for 2 points scalars. Scaled forward. A failure leaves the
// data untouched.
template <class T> status bluestein_transform(T* data, domain kind, index points, bool inverse) noexcept;

}  // namespace sigpak
