// SPDX-License-Identifier: MIT
// The flags word taken apart, and what each window of the catalogue is.
#pragma once

#include <span>
#include <string_view>

#include "core/record.h"

namespace sigpak {

inline constexpr int mode_mask = 3;
inline constexpr int refused_mode = 3;
inline constexpr int shape_mask = 15;  // the flags that a generated window depends on

constexpr int mode_of(int flags) noexcept { return flags & mode_mask; }
constexpr bool has(int flags, int flag) noexcept { return (flags & flag) != 0; }

enum class window_kind { constant, triangle, cosine_sum, kaiser, gaussian, sinc_lobe };

inline constexpr int most_names = 4;
inline constexpr int most_terms = 7;

struct catalogued_window {
  int window;
  std::string_view names[most_names];  // the first stands for it; those of the enumeration, in mixed case
  window_kind kind;
  double parameter = 0;             // beta of a Kaiser window, deviation of a Gaussian one in its length
  int terms = 0;                    // of a sum of cosines, or of the constant
  double sets[3][most_terms] = {};  // by mode: unit mean, unit mean square, peak 1

  constexpr std::span<const double> terms_of(int mode) const noexcept {
    return {sets[mode], static_cast<std::size_t>(terms)};
  }
};

// In the order of their numbers.
std::span<const catalogued_window> window_catalogue() noexcept;

// Null for a number that is no window's.
const catalogued_window* find_window(int window) noexcept;

}  // namespace sigpak
