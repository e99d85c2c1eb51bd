// SPDX-License-Identifier: MIT
// The transform of real data by the split-radix transform of half the length.
#pragma once

#include "core/record.h"

namespace sigpak {

// As forward_real and inverse_real, for a power of two, at least 4.
template <class T> status forward_packed(T* data, index points) noexcept;
template <class T> status inverse_packed(T* data, index points) noexcept;

}  // namespace sigpak
