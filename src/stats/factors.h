// SPDX-License-Identifier: MIT
// Real polynomials taken apart into their roots.
#pragma once

#include "stats/polynomial.h"

namespace sigpak {

// p(x) = the sum of a[k] (x 2^-exponent)^k, times some power of two. The unit of x keeps coefficients in
// range whatever the size of the roots.
struct scaled_polynomial {
  double_double* a;
  index count;
  index exponent;
};

// The number times 2^exponent.
inline double_double scaled(double_double x, index exponent) noexcept {
  constexpr index most = 5000;  // beyond the range of any quotient of two doubles
  const int e = static_cast<int>(std::clamp(exponent, -most, most));
  return {std::scalbn(x.hi, e), std::scalbn(x.lo, e)};
}

// One root in the unit of the polynomial, of a pair either one, to twice the precision.
struct factor {
  precise_complex root;
  bool pair;
  bool found;
};

// Where the search for the next root starts. From 0 it finds one of the smallest most often, and roots of one
// size side by side: once half of a wide circle is divided out, the quotient says little of the other half.
// The spread starts go round the circle by the golden angle.
enum class search_start { zero, spread };

// A root of a polynomial of degree 1 or more whose constant term is not 0. `spare` has room for the
// coefficients.
factor find_factor(const scaled_polynomial& p, search_start start, double_double* spare) noexcept;

// Divides by x - root, or by x^2 - 2 Re(root) x + |root|^2, in place. False when that is not a factor.
bool divide_out(scaled_polynomial& p, const factor& f) noexcept;

// All roots of the `count` coefficients in `a`, the first and the last of them not 0, which are used up;
// conjugates side by side, the lower one first. False when a root is not found.
bool find_all_roots(double_double* a, index count, search_start start, double_double* spare,
                    complex_number* roots) noexcept;

}  // namespace sigpak
