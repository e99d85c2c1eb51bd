// SPDX-License-Identifier: MIT
// Arithmetic of complex points.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

// out[i] = f(a[i], b[i]), with the bits of the plain definition; out may be an operand.
template <class T> using point_function = void (*)(const T* a, const T* b, T* out, std::int64_t points);

template <class T> struct point_functions {
  static constexpr bool at_baseline = true;
  point_function<T> multiply;  // null where the plain loop is as fast, as is the next
  point_function<T> multiply_conjugate;
  point_function<T> divide;  // x / 0 is (H, H), 0 / 0 is (0, 0)
  // out[i] = |z[i]|^2, each square H where its part lies outside [-H, H]; out may be z.
  void (*square_magnitudes)(const T* z, T* out, std::int64_t points);
  // z[i] = 1 / z[i] in double, rounded once: a point with a part outside [-H, H] is divided by H, 0 is (0,
  // -0).
  void (*reciprocate)(T* z, std::int64_t points);
  // z[i] = (re + i im) z[i] in double, rounded once; null where the plain loop is as fast.
  void (*turn)(T* z, std::int64_t points, double re, double im);
};

}  // namespace sigpak::kernels
