// Samples of either precision carried in double, with the limits of their own precision.
#pragma once

#include <type_traits>

#include "core/guard.h"

namespace sigpak {

constexpr double wide(double x) noexcept { return x; }
constexpr double wide(float x) noexcept { return static_cast<double>(x); }

// H and T of the precision T.
template <class T> inline constexpr double wide_huge = wide(guard<T>::huge);
template <class T> inline constexpr double wide_tiny = wide(guard<T>::tiny);

// Limits x to -H .. H; NaN passes. In two steps, each of them one instruction.
template <class T> constexpr double limited(double x) noexcept {
  const double below = x > wide_huge<T> ? wide_huge<T> : x;
  return below < -wide_huge<T> ? -wide_huge<T> : below;
}

// The same where `limits` holds, x itself otherwise.
template <class T, bool limits> constexpr double limited(double x, std::bool_constant<limits>) noexcept {
  return limits ? limited<T>(x) : x;
}

}  // namespace sigpak
