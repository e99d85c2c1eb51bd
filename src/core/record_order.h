// SPDX-License-Identifier: MIT
// Ordering of two records within a tolerance.
#pragma once

#include "core/record.h"

namespace sigpak {

// -1 when the point counts differ, `order` untouched; otherwise 0, and `order` tells the sign of the first
// difference beyond the tolerance, of the spacings first, or 0. A NaN difference counts as equal.
template <record V> status compare(const V* a, const V* b, scalar<V> tolerance, std::int32_t* order) noexcept;

}  // namespace sigpak
