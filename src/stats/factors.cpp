// SPDX-License-Identifier: MIT
// A polynomial divided by its factors, one after the other.
//
// Division from the top magnifies the rounding of a root that is larger than others, division from the bottom
// that of a smaller one. Meeting at the largest term of p(root) it does neither: the quotient times the
// factor is p again but for a change in one coefficient (two for a pair) that is as small as the value at the
// root. Source: G. Peters, J. H. Wilkinson, "Practical problems arising in the solution of polynomial
// equations", J. Inst. Maths Applics 8 (1971).
#include "stats/factors.h"

#include <algorithm>

namespace sigpak {
namespace {

// What a division may leave, relative to the coefficient that it is left in. A pair that is nearly a double
// root leaves the error of a value over the small imaginary part.
constexpr double most_left_by_root = 0x1p-80;
constexpr double most_left_by_pair = 0x1p-60;

double_double inverse(double_double x) noexcept {
  const double y = 1 / x.hi;
  const double_double rest = precise(1.0) + -(y * x);
  return precise(y) + y * rest;
}

double log_magnitude(double_double x) noexcept { return std::log2(std::abs(x.hi)); }

// The logarithm of |a[k]| |root|^k.
double log_term(const scaled_polynomial& p, index k, double log_root) noexcept {
  return log_magnitude(p.a[k]) + static_cast<double>(k) * log_root;
}

index largest_term(const scaled_polynomial& p, double log_root) noexcept {
  index at = 0;
  double largest = -std::numeric_limits<double>::infinity();
  for (index k = 0; k < p.count; ++k) {
    const double size = log_term(p, k, log_root);
    if (size > largest) at = k, largest = size;
  }
  return at;
}

// The least fall of the terms from `top` towards one end, per place: the slope of the hull of their
// logarithms.
double fall(const scaled_polynomial& p, index top, index direction, double log_root) noexcept {
  double least = std::numeric_limits<double>::infinity();
  const double largest = log_term(p, top, log_root);
  for (index k = top + direction; k >= 0 && k < p.count; k += direction) {
    const double drop = largest - log_term(p, k, log_root);
    least = std::min(least, drop / static_cast<double>(std::abs(k - top)));
  }
  return least;
}

// The lower of the two neighbours where the hull of the terms is highest.
index largest_two(const scaled_polynomial& p, double log_root) noexcept {
  const index top = largest_term(p, log_root);
  return fall(p, top, -1, log_root) < fall(p, top, 1, log_root) ? top - 1 : top;
}

// The places meeting ... meeting + dropped - 1 hold no coefficient of the quotient.
void close_gap(scaled_polynomial& p, index meeting, index dropped) noexcept {
  std::copy(p.a + meeting + dropped, p.a + p.count, p.a + meeting);
  p.count -= dropped;
}

// a[k] = q[k - 1] - root q[k]
bool divide_by_root(scaled_polynomial& p, double_double root) noexcept {
  double_double* const a = p.a;
  const index meeting = largest_term(p, log_magnitude(root));
  double_double above;
  for (index k = p.count - 1; k > meeting; --k) a[k] = above = a[k] + root * above;
  const double_double inverse_root = inverse(root);
  double_double below;
  for (index k = 0; k < meeting; ++k) a[k] = below = (below + -a[k]) * inverse_root;
  const double_double left = a[meeting] + -below + root * above;
  const bool exact = std::abs(left.hi) <= most_left_by_root * std::abs(a[meeting].hi);
  close_gap(p, meeting, 1);
  return exact;
}

// a[k] = q[k - 2] - sum q[k - 1] + product q[k]
bool divide_by_pair(scaled_polynomial& p, precise_complex root) noexcept {
  double_double* const a = p.a;
  const double size = magnitude(rounded(root));
  const index meeting = largest_two(p, std::log2(size));
  const double_double sum = root.re + root.re;
  const double_double product = root.re * root.re + root.im * root.im;
  double_double above[2];  // q[k - 1], q[k]
  for (index k = p.count - 1; k > meeting + 1; --k) {
    a[k] = a[k] + sum * above[0] + -(product * above[1]);
    above[1] = above[0];
    above[0] = a[k];
  }
  const double_double inverse_product = inverse(product);
  double_double below[2];  // q[k - 1], q[k - 2]
  for (index k = 0; k < meeting; ++k) {
    a[k] = (a[k] + sum * below[0] + -below[1]) * inverse_product;
    below[1] = below[0];
    below[0] = a[k];
  }
  const double_double left = a[meeting] + -below[1] + sum * below[0] + -(product * above[0]);
  const double_double left_up = a[meeting + 1] + -below[0] + sum * above[0] + -(product * above[1]);
  const double largest = std::max(std::abs(a[meeting].hi), size * std::abs(a[meeting + 1].hi));
  close_gap(p, meeting, 2);
  return std::abs(left.hi) + size * std::abs(left_up.hi) <= most_left_by_pair * largest;
}

// The unit becomes the geometric mean of the roots, to make the outer coefficients equal in size, and the
// largest coefficient 2^500: exact but for coefficients too small to count.
void balance(scaled_polynomial& p) noexcept {
  constexpr index largest_exponent = 500;
  const double drop = log_magnitude(p.a[0]) - log_magnitude(p.a[p.count - 1]);
  const auto unit = static_cast<index>(std::nearbyint(drop / static_cast<double>(p.count - 1)));
  index top = std::numeric_limits<index>::min();
  for (index k = 0; k < p.count; ++k) {
    if (p.a[k].hi != 0) top = std::max(top, std::ilogb(p.a[k].hi) + k * unit);
  }
  for (index k = 0; k < p.count; ++k) p.a[k] = scaled(p.a[k], k * unit + largest_exponent - top);
  p.exponent += unit;
}

}  // namespace

bool divide_out(scaled_polynomial& p, const factor& f) noexcept {
  return f.pair ? divide_by_pair(p, f.root) : divide_by_root(p, f.root.re);
}

bool find_all_roots(double_double* a, index count, search_start start, double_double* spare,
                    complex_number* roots) noexcept {
  constexpr double dust = 1024 * double_double_rounding;  // what an imaginary root has for a real part
  scaled_polynomial rest{a, count, 0};
  while (rest.count > 1) {
    balance(rest);
    const index exponent = rest.exponent;
    const factor f = find_factor(rest, start, spare);
    if (!f.found || !divide_out(rest, f)) return false;
    const bool imaginary = std::abs(f.root.re.hi) < dust * std::abs(f.root.im.hi);
    const double re = imaginary ? 0 : scaled(f.root.re, exponent).hi;
    const double im = f.pair ? std::abs(scaled(f.root.im, exponent).hi) : 0.0;
    if (f.pair) *roots++ = {re, -im};
    *roots++ = {re, im};
  }
  return true;
}

}  // namespace sigpak
