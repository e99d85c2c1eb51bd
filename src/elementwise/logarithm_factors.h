// Factors between natural and decimal logarithms, and the logarithms of the smallest normal number.
#pragma once

#include "core/double_double.h"

namespace sigpak {

template <class T> struct logarithm_factors;

template <> struct logarithm_factors<double> {
  static constexpr double ln10 = 2.302585092994046;
  static constexpr double_double log10_e = {0x1.bcb7b1526e50ep-2, 0x1.95355baaafad3p-57};
  static constexpr double log_tiny = -708.3964185322641;
  static constexpr double log10_tiny = -307.6526555685888;
};

template <> struct logarithm_factors<float> {
  static constexpr double ln10 = double(2.3025851F);
  static constexpr double_double log10_e = {double(0.4342945F), 0};
  static constexpr double log_tiny = -87.33654475055311;
  static constexpr double log10_tiny = -37.92977945366163;
};

}  // namespace sigpak
