// The flags word taken apart, and the coefficients of the cosine-sum windows.
#pragma once

#include <span>

#include "core/record.h"

namespace sigpak {

inline constexpr int mode_mask = 3;
inline constexpr int refused_mode = 3;
inline constexpr int shape_mask = 15;  // the flags that a generated window depends on

constexpr int mode_of(int flags) noexcept { return flags & mode_mask; }
constexpr bool has(int flags, int flag) noexcept { return (flags & flag) != 0; }

// The terms of a window in a mode other than the refused one, the constant's single one included; none when
// the window is no sum of cosines.
std::span<const double> cosine_terms(int window, int mode) noexcept;

}  // namespace sigpak
