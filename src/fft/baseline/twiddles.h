// SPDX-License-Identifier: MIT
// Twiddles of the split-radix transform, one table per length.
#pragma once

#include "core/record.h"

namespace sigpak {

// The triple of an angle is (cos, -(cos + sin), sin - cos): with it a complex product takes three real ones.
// A group is the triple of one angle followed by that of three times the angle.
inline constexpr index triple = 3;
inline constexpr index group = 2 * triple;

// (p + iq)(cos - i sin) by the triple of the angle; with the parts of every number exchanged it is the
// product with cos + i sin.
template <class T> void store_product(T* re, T* im, T p, T q, const T* of) noexcept {
  const T t = of[0] * (p + q);
  *re = t + q * of[2];
  *im = t + p * of[1];
}

// points / 4 groups, the k-th for the angle 2 pi k / points; points a power of two, at least 4. Null on
// failure.
template <class T> const T* twiddles(index points) noexcept;

}  // namespace sigpak
