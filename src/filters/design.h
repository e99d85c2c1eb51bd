// SPDX-License-Identifier: MIT
// Linear-phase designs laid over the taps of a filter.
#pragma once

#include <cmath>

#include "core/record.h"

namespace sigpak {

template <class T> struct design_constants;
template <> struct design_constants<double> {
  static constexpr double pi = 3.141592653589793;
  static constexpr double small_square = 2.6645352591003757e-15;  // 12 times the epsilon
};
template <> struct design_constants<float> {
  static constexpr float pi = 3.1415927F;
  static constexpr float small_square = 1.4305115e-6F;  // 12 times the epsilon
};

template <class T> T sinc(T x) noexcept { return x == 0 ? T(1) : std::sin(x) / x; }

// place(left, right, x) for the pairs of taps around the middle of n, from the innermost: x is `step` times
// their distance from the middle, advanced by addition.
template <class T, class Place> void for_pairs(index n, T step, Place place) noexcept {
  const index centre = n / 2;
  const index odd = n % 2;
  T x = odd != 0 ? step : step / 2;
  for (index k = 1; k <= centre; ++k) {
    place(centre - k, centre + k - (1 - odd), x);
    x += step;
  }
}

// Scales the taps to a sum of 1; taps whose sum is 0 stay as they are.
template <record V> status normalise_sum(V* v) noexcept;

// The taps of a kernel in sinh, of shape b or, for 0, of the shape that suits the number of taps; normalised.
template <record V> status cosine_sum_kernel(V* v, scalar<V> b) noexcept;
template <record V> status kaiser_spectrum_kernel(V* v, scalar<V> b) noexcept;

}  // namespace sigpak
