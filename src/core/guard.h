// Finite stand-ins for infinity, and the limits that follow from them.
#pragma once

#include <limits>

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

// Limits x to [-H, H]; NaN passes.
template <class T> constexpr T clamp_huge(T x) noexcept {
  return x > guard<T>::huge ? guard<T>::huge : x < -guard<T>::huge ? -guard<T>::huge : x;
}

// Spacing of the other domain after a transform of n points: 1 / (n * delta), H for 0.
// A NaN spacing stays NaN here; operations that turn it into H say so.
template <class T> constexpr T reciprocal_spacing(T delta, T n) noexcept {
  return delta != 0 ? T(1) / (n * delta) : guard<T>::huge;
}

}  // namespace sigpak
