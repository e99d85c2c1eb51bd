// SPDX-License-Identifier: MIT
// Real polynomials given by their coefficients, the constant term first, evaluated in double.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/double_double.h"
#include "core/guard.h"
#include "core/record.h"

namespace sigpak {

struct complex_number {
  double re;
  double im;
};

constexpr complex_number operator+(complex_number a, complex_number b) noexcept {
  return {a.re + b.re, a.im + b.im};
}
constexpr complex_number operator-(complex_number a, complex_number b) noexcept {
  return {a.re - b.re, a.im - b.im};
}
constexpr complex_number operator*(complex_number a, complex_number b) noexcept {
  return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
constexpr complex_number operator*(double s, complex_number a) noexcept { return {s * a.re, s * a.im}; }

inline double magnitude(double x) noexcept { return std::abs(x); }
inline double magnitude(complex_number z) noexcept { return std::hypot(z.re, z.im); }

struct precise_complex {
  double_double re;
  double_double im;
};

inline precise_complex operator*(complex_number z, precise_complex p) noexcept {
  return {z.re * p.re + -z.im * p.im, z.re * p.im + z.im * p.re};
}
constexpr precise_complex operator+(precise_complex a, precise_complex b) noexcept {
  return {a.re + b.re, a.im + b.im};
}
constexpr precise_complex operator+(precise_complex p, double_double a) noexcept { return {p.re + a, p.im}; }

constexpr complex_number rounded(precise_complex z) noexcept { return {z.re.hi, z.im.hi}; }

constexpr double_double precise(double x) noexcept { return {x, 0}; }
constexpr double_double precise(float x) noexcept { return {wide(x), 0}; }
constexpr double_double precise(double_double x) noexcept { return x; }

// Coefficients in ascending order; C is the number that holds them.
template <class C> struct polynomial {
  const C* coefficients;
  index count;

  double_double operator[](index k) const noexcept { return precise(coefficients[k]); }
};

// The value of a polynomial at a real or complex point with its derivatives, by Horner's rule. Near a root
// the terms cancel: they are summed in twice the precision, so that searches converge to the last bit of the
// root.
template <class Z> struct expansion {
  Z value;
  Z slope;
  Z half_curvature;  // p'' / 2
  double size;       // sum of |a[k]| |z|^k
};

template <class Z> struct accumulator;
template <> struct accumulator<double> { using type = double_double; };
template <> struct accumulator<complex_number> { using type = precise_complex; };

template <class C, class Z> expansion<Z> expand(polynomial<C> p, Z z) noexcept {
  typename accumulator<Z>::type value{};
  auto slope = value;
  auto half_curvature = value;
  double size = 0;
  const double r = magnitude(z);
  for (index k = p.count - 1; k >= 0; --k) {
    half_curvature = z * half_curvature + slope;
    slope = z * slope + value;
    value = z * value + p[k];
    size = r * size + std::abs(p[k].hi);
  }
  return {rounded(value), rounded(slope), rounded(half_curvature), size};
}

// Tolerances of the searches for roots, and the stand-in for infinity.
struct search_limits {
  double epsilon;
  double huge;
  double squared_huge;  // stands for the squared magnitude of a number with a part beyond `huge`
  double final_step;    // squared relative step accepted when the iterations are used up, per points^3
};

template <class T> constexpr search_limits limits_of() noexcept;
template <> constexpr search_limits limits_of<double>() noexcept {
  return {2.220446049250313e-16, guard<double>::huge, 1e200, 3.1554436208840472e-30};
}
template <> constexpr search_limits limits_of<float>() noexcept {
  return {1.1920928955078125e-07, wide(guard<float>::huge), 1e30, 9.094947017729282e-13};
}

// a / b; both are scaled by the larger part of b first, so that its square stays in range. A divisor below
// the smallest normal number becomes 1 / H, in the direction of the real axis.
inline complex_number quotient(complex_number a, complex_number b, const search_limits& limits) noexcept {
  const double scale = std::max(std::abs(b.re), std::abs(b.im));
  if (scale < wide_guard<double>::tiny) return limits.huge * (a * complex_number{1, -b.im});
  b = {b.re / scale, b.im / scale};
  const double factor = 1 / (b.re * b.re + b.im * b.im);
  const complex_number product = factor * (a * complex_number{b.re, -b.im});
  return {product.re / scale, product.im / scale};
}

// Laguerre's step for degree count - 1, the sign of the root such that the denominator is the larger.
complex_number laguerre_step(const expansion<complex_number>& at, index count,
                             const search_limits& limits) noexcept;

// A root is one when the value there is no larger than the rounding errors that such an evaluation makes. A
// bound made of the coefficients alone, whatever the point, would take anything for a root once one of them
// is itself nothing but rounding.
template <class Z> bool is_root(const expansion<Z>& at, index count, double epsilon) noexcept {
  return magnitude(at.value) <= 4 * static_cast<double>(count) * epsilon * at.size;
}

// One real root near a guess; `found` false when the search does not converge, `root` is then the last
// iterate.
struct real_search {
  double root;
  bool found;
};
template <class C>
real_search find_real_root(polynomial<C> p, double guess, const search_limits& limits) noexcept;

// One root near a complex guess; `complex` unless it counts as real.
struct complex_search {
  complex_number root;
  bool complex;
  bool found;
};
template <class C>
complex_search find_root(polynomial<C> p, complex_number guess, const search_limits& limits) noexcept;

}  // namespace sigpak
