// SPDX-License-Identifier: MIT
// Finite stand-ins for infinity, and the limits that follow from them.
#pragma once

#include <limits>
#include <type_traits>

namespace sigpak {

template <class T> struct guard;

template <> struct guard<double> {
  static constexpr double huge = 1e100;                               // H
  static constexpr double log_huge = 230.25850929940458;              // ln H, nearest double
  static constexpr double log10_huge = 100.0;                         // log10 H
  static constexpr double tiny = std::numeric_limits<double>::min();  // T: floor of logarithms
};

template <> struct guard<float> {
  static constexpr float huge = 1e15F;
  static constexpr float log_huge = 34.538776F;
  static constexpr float log10_huge = 15.0F;
  static constexpr float tiny = std::numeric_limits<float>::min();
};

constexpr double wide(double x) noexcept { return x; }
constexpr double wide(float x) noexcept { return static_cast<double>(x); }

// The same as doubles, for what computes in double whatever it stores.
template <class T> struct wide_guard {
  static constexpr double huge = wide(guard<T>::huge);
  static constexpr double log_huge = wide(guard<T>::log_huge);
  static constexpr double log10_huge = wide(guard<T>::log10_huge);
  static constexpr double tiny = wide(guard<T>::tiny);

  // To [-H, H]; NaN passes. In two steps, each of them one instruction.
  static constexpr double clamp(double x) noexcept {
    const double below = x > huge ? huge : x;
    return below < -huge ? -huge : below;
  }

  // The same where `limits` holds, x itself otherwise.
  template <bool limits> static constexpr double clamp(double x, std::bool_constant<limits>) noexcept {
    return limits ? clamp(x) : x;
  }

  // A point outside the square of half side H; NaN is inside.
  static constexpr bool excludes(double a, double b) noexcept {
    return a > huge || a < -huge || b > huge || b < -huge;
  }
};

// Spacing of the other domain after a transform of n points: 1 / (n * delta), H for 0.
// A NaN spacing stays NaN here; operations that turn it into H say so. The way back from 1 / n comes to 1
// without a division and, as compilers do not know that the period is 1 there, without anything that a call
// on the same record would wait for.
template <class T> constexpr T reciprocal_spacing(T delta, T n) noexcept {
  const T period = n * delta;
  if (period < 1 || period > 1) return delta < 0 || delta > 0 ? T(1) / period : guard<T>::huge;
  return period != period ? period : T(1);
}

}  // namespace sigpak
