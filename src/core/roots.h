// SPDX-License-Identifier: MIT
// Roots of unity, each computed directly.
#pragma once

#include <type_traits>

#include "core/record.h"

namespace sigpak {

// Tables are computed in a wider type and rounded once, so that nearly every value is the nearest.
template <class T> using wider = std::conditional_t<std::is_same_v<T, float>, double, long double>;

template <class W> struct unit_root {
  W cosine;
  W sine;
};

// Cosine and sine of 2 pi k / n for k >= 0, W double or long double.
template <class W> unit_root<W> root_of_unity(index k, index n) noexcept;

}  // namespace sigpak
