// SPDX-License-Identifier: MIT
// Rounding that forgives the last bits of a computed ratio.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace sigpak {

inline constexpr double rounding_tolerance = 4.440892098500626e-15;  // 20 times the double epsilon

namespace detail {
// Results at or above the largest count saturate; results below the smallest, and NaN, are pinned too.
inline std::int32_t saturated(double x) noexcept {
  constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
  constexpr std::int32_t least = std::numeric_limits<std::int32_t>::min();
  if (x >= most) return most;
  return x > least ? static_cast<std::int32_t>(x) : least;
}
}  // namespace detail

inline std::int32_t tolerant_ceiling(double x) noexcept {
  return detail::saturated(std::ceil(x > 0.5 ? x * (1 - rounding_tolerance) : x - rounding_tolerance));
}

inline std::int32_t tolerant_floor(double x) noexcept {
  return detail::saturated(std::floor(x > 0.5 ? x * (1 + rounding_tolerance) : x + rounding_tolerance));
}

// Equal within the tolerance, relative to the larger magnitude; an infinity equals itself alone.
inline bool tolerantly_equal(double a, double b) noexcept {
  const double allowed = rounding_tolerance * std::fmax(std::abs(a), std::abs(b));
  return a == b || (std::abs(a - b) <= allowed && std::isfinite(allowed));
}

}  // namespace sigpak
