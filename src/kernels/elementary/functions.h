// SPDX-License-Identifier: MIT
// What the elementary functions of a level offer: arrays in place, with the limits of the element-wise
// operations folded in. All levels have all of them, but for six of double precision that are null where
// there are no fused products: those of the C library are no slower there.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

template <class T> using unary = void (*)(T* x, std::int64_t n);

template <class T> struct circular_functions {
  static constexpr bool at_baseline = true;
  unary<T> sine;
  unary<T> cosine;
  unary<T> tangent;
  unary<T> sine_quotient;
  unary<T> rectangular;  // points (magnitude, phase) to (re, im)
};

template <class T> struct exponential_functions {
  static constexpr bool at_baseline = true;
  unary<T> exponential;
  unary<T> exponential10;
  unary<T> exponential_points;
  unary<T> exponential10_points;
  unary<T> hyperbolic_sine;
  unary<T> hyperbolic_cosine;
  unary<T> hyperbolic_tangent;
};

template <class T> struct inverse_functions {
  static constexpr bool at_baseline = true;
  using packing = void (*)(const T* z, T* out, std::int64_t points);  // out may be z
  unary<T> arctangent;
  unary<T> arcsine;
  unary<T> arccosine;
  packing magnitude;
  packing phase;
  unary<T> polar;  // points (re, im) to (magnitude, phase)
};

// What becomes of a logarithm: a multiple of it, and the results at the limits.
struct logarithm_constants {
  double scale;        // of ln x, or of ln(a^2 + b^2)
  double scale_rest;   // what the double leaves out
  double angle_scale;  // of the phase of a point
  double angle_scale_rest;
  double floor;    // below T
  double ceiling;  // of a point beyond H
};

// The same of one point, in place, for those that are too large or too small for vectors, or NaN.
using plain_logarithm = void (*)(double* z, const logarithm_constants& c);

template <class T> struct logarithm_functions {
  static constexpr bool at_baseline = true;
  using in_place = void (*)(T* x, std::int64_t n, logarithm_constants c);
  using in_place_points = void (*)(T* z, std::int64_t points, logarithm_constants c, plain_logarithm plain);
  in_place logarithm;  // unscaled
  in_place scaled_logarithm;
  in_place_points logarithm_points;  // angles unscaled
  in_place_points scaled_logarithm_points;
};

// The principal roots of points; out may be z. Points that are too large, too small or NaN go to `root`, one
// by one.
template <class T> struct root_functions {
  static constexpr bool at_baseline = true;
  void (*root_points)(const T* z, T* out, std::int64_t points, void (*root)(T* point));
};

}  // namespace sigpak::kernels
