// SPDX-License-Identifier: MIT
// I0, the modified Bessel function of the first kind of order 0: a power series and an asymptotic one, each
// with a fixed number of terms per precision.
#include <cmath>

#include "core/record.h"
#include "elementwise/elementwise.h"

namespace sigpak {
namespace {

// Where one rule takes over from the other, and their coefficients, highest order first: 1 / (k!)^2 and
// ((2k - 1)!!)^2 / k!, rounded from exact fractions (scripts/elementary-tables bessel).
template <class T> struct rules;

template <> struct rules<double> {
  static constexpr double split = 20;
  static constexpr double series[] = {
      1.3262598613026087e-74,
      1.4442969889585408e-71,
      1.4789601166935458e-68,
      1.4212806721424974e-65,
      1.2791526049282477e-62,
      1.0757673407446564e-59,
      8.434015951438106e-57,
      6.14839762859838e-54,
      4.156316796932504e-51,
      2.5976979980828152e-48,
      1.4962740468957016e-45,
      7.915289708078262e-43,
      3.8310002187098785e-40,
      1.6894710964510564e-37,
      6.757884385804225e-35,
      2.4395962632753253e-32,
      7.904291893012054e-30,
      2.2843403570804838e-27,
      5.8479113141260385e-25,
      1.3157800456783586e-22,
      2.5789288895295828e-20,
      4.358389823304995e-18,
      6.276081345559193e-16,
      7.594058428126623e-14,
      7.594058428126624e-12,
      6.151187326782565e-10,
      3.936759889140842e-08,
      1.9290123456790124e-06,
      6.944444444444444e-05,
      0.001736111111111111,
      0.027777777777777776,
      0.25,
      1.0,
      1.0,
  };
  static constexpr double tail[] = {
      3.36561843487601e+30,
      4.204520352908758e+28,
      5.528626368058853e+26,
      7.673038786933397e+24,
      1.127466923794295e+23,
      1.7600493759874212e+21,
      2.9303631650154775e+19,
      5.2265692598373555e+17,
      1.0037307220538132e+16,
      208775990187193.12,
      4735939285909.863,
      118130004863.96484,
      3272299303.7109375,
      101905514.6484375,
      3623307.1875,
      150077.8125,
      7441.875,
      459.375,
      37.5,
      4.5,
      1.0,
      1.0,
  };
};

template <> struct rules<float> {
  static constexpr double split = 16;
  static constexpr double series[] = {
      1.689471121462007e-37,
      6.757884306481825e-35,
      2.4395962903152082e-32,
      7.904291839561953e-30,
      2.2843403070268506e-27,
      5.8479111859887375e-25,
      1.3157801051012797e-22,
      2.5789289454139907e-20,
      4.358389832123526e-18,
      6.276081093560082e-16,
      7.5940583032022e-14,
      7.594058194781983e-12,
      6.151187337266606e-10,
      3.936759895850628e-08,
      1.9290123418613803e-06,
      6.944444612599909e-05,
      0.0017361111240461469,
      0.02777777798473835,
      0.25,
      1.0,
      1.0,
  };
  static constexpr double tail[] = {
      7441.875, 459.375, 37.5, 4.5, 1.0, 1.0,
  };
};

template <index terms> constexpr double horner(const double (&coefficients)[terms], double x) noexcept {
  double sum = 0;
  for (const double c : coefficients) sum = sum * x + c;
  return sum;
}

// Abramowitz and Stegun 9.6.12 and 9.7.1.
template <class T> double i0(double x) noexcept {
  constexpr double two_pi = 6.283185307179586;
  const double a = std::abs(x);
  if (a <= rules<T>::split) return horner(rules<T>::series, (a / 2) * (a / 2));
  return std::exp(a) * horner(rules<T>::tail, 0.125 / a) / std::sqrt(two_pi * a);
}

}  // namespace

double bessel_i0(double x) noexcept { return i0<double>(x); }
float bessel_i0(float x) noexcept { return static_cast<float>(i0<float>(static_cast<double>(x))); }

}  // namespace sigpak
