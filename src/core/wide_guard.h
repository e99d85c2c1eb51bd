// The guard constants of a precision as doubles, for members that compute in double whatever they store.
#pragma once

#include "core/double_double.h"
#include "core/guard.h"

namespace sigpak {

// Factors between natural and decimal logarithms, and the logarithms of the smallest normal number.
template <class T> struct logarithm_constants;

template <> struct logarithm_constants<double> {
  static constexpr double ln10 = 2.302585092994046;
  static constexpr double_double log10_e = {0x1.bcb7b1526e50ep-2, 0x1.95355baaafad3p-57};
  static constexpr double log_tiny = -708.3964185322641;
  static constexpr double log10_tiny = -307.6526555685888;
};

template <> struct logarithm_constants<float> {
  static constexpr double ln10 = double(2.3025851F);
  static constexpr double_double log10_e = {double(0.4342945F), 0};
  static constexpr double log_tiny = -87.33654475055311;
  static constexpr double log10_tiny = -37.92977945366163;
};

template <class T> struct wide_guard : logarithm_constants<T> {
  static constexpr double huge = static_cast<double>(guard<T>::huge);
  static constexpr double log_huge = static_cast<double>(guard<T>::log_huge);
  static constexpr double log10_huge = static_cast<double>(guard<T>::log10_huge);
  static constexpr double tiny = static_cast<double>(guard<T>::tiny);

  // To [-H, H]; NaN passes.
  static constexpr double clamp(double x) noexcept { return x > huge ? huge : x < -huge ? -huge : x; }

  // A point outside the square of half side H; NaN is inside.
  static constexpr bool excludes(double a, double b) noexcept {
    return a > huge || a < -huge || b > huge || b < -huge;
  }
};

}  // namespace sigpak
