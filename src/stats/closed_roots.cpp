// SPDX-License-Identifier: MIT
// Roots up to the fifth degree, in the order that their closed forms have: of the second degree by its
// formula, from the third on, where the formulas cancel, by factors.
#include <algorithm>
#include <cmath>

#include "core/kept_errno.h"
#include "shape/shape.h"
#include "stats/factors.h"
#include "stats/result.h"

namespace sigpak {
namespace {

constexpr index most_coefficients = 6;

struct root_list {
  complex_number z[most_coefficients - 1];
  index count;
  bool complex;
};

// c + b x + a x^2, the quotient q formed without cancellation.
root_list quadratic_roots(double c, double b, double a) noexcept {
  const double discriminant = b * b - c * a * 4.0;
  if (discriminant < 0) {
    const double t = 1 / (a + a);
    const double re = -(b * t);
    const double im = std::abs(t * std::sqrt(-discriminant));
    return {{{re, -im}, {re, im}}, 2, true};
  }
  const double s = std::sqrt(discriminant);
  const double q = ((b <= 0 ? s : -s) - b) * 0.5;
  const double first = q / a;
  const double second = q != 0 ? c / q : c;
  return {{{std::min(first, second), 0}, {std::max(first, second), 0}}, 2, false};
}

// The roots of a[0 .. degree], a[degree] not 0: the real ones ascending, then the pairs, the lower one first.
// A constant term of 0 is a root 0.
bool separate_roots(const double* a, index degree, root_list& out) noexcept {
  index zeros = 0;
  while (a[zeros] == 0) out.z[zeros++] = {0, 0};
  double_double coefficients[most_coefficients];
  double_double spare[most_coefficients];
  std::transform(a + zeros, a + degree + 1, coefficients, [](double x) { return precise(x); });
  if (!find_all_roots(coefficients, degree - zeros + 1, search_start::zero, spare, out.z + zeros))
    return false;
  out.count = degree;
  complex_number* const end = out.z + degree;
  complex_number* pairs = out.z;
  for (complex_number* z = out.z; z != end; ++z) {
    if (z->im == 0) std::rotate(pairs++, z, z + 1);
  }
  std::sort(out.z, pairs, [](complex_number x, complex_number y) { return x.re < y.re; });
  out.complex = pairs != end;
  return true;
}

// Ferrari's method splits into (x^2 + b/2 x + y/2)^2 - (m x + n)^2 with m not negative, n neither when m is
// 0: the quadratic whose roots have the smaller sum comes first, and of equal sums the one with the larger
// product.
void order_quadratics(complex_number* z) noexcept {
  const auto sum = [](const complex_number* pair) { return pair[0].re + pair[1].re; };
  const auto product = [](const complex_number* pair) { return (pair[0] * pair[1]).re; };
  const double difference = sum(z) - sum(z + 2);
  if (difference > 0 || (difference == 0 && product(z) < product(z + 2))) std::swap_ranges(z, z + 2, z + 2);
}

// Where a real root joins four of which some are complex: before the first point, inside its real pair, or
// after.
void insert_real(root_list& list, double r) noexcept {
  index place = 2;
  if (list.z[0].im != 0 || r < list.z[0].re) {
    place = 0;
  } else if (r < list.z[1].re) {
    place = 1;
  }
  std::copy_backward(list.z + place, list.z + 4, list.z + 5);
  list.z[place] = {r, 0};
  list.count = 5;
}

// Moves the real root that a search from 0 finds behind the other points, of which `reals` lead.
void put_aside(const double* a, const search_limits& limits, root_list& list, index reals) noexcept {
  const real_search search = find_real_root(polynomial<double>{a, most_coefficients}, 0.0, limits);
  const double target = search.found ? search.root : 0.0;
  complex_number* const root = std::min_element(
      list.z, list.z + reals,
      [=](complex_number x, complex_number y) { return std::abs(x.re - target) < std::abs(y.re - target); });
  std::rotate(root, root + 1, list.z + list.count);
}

// Degree 3 to 5. Coefficients that are not finite have roots that are no numbers.
status factored_roots(const double* a, index degree, const search_limits& limits, root_list& out) noexcept {
  if (!std::all_of(a, a + degree + 1, [](double x) { return std::isfinite(x); })) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    out = {{{nan, 0}, {nan, 0}, {nan, 0}, {nan, 0}}, degree, false};
    return degree < 5 ? ok : failed;
  }
  if (!separate_roots(a, degree, out)) return failed;
  if (degree == 3 || !out.complex) return ok;
  if (degree == 5) {
    const auto reals = std::count_if(out.z, out.z + degree, [](complex_number z) { return z.im == 0; });
    put_aside(a, limits, out, reals);
  }
  order_quadratics(out.z);
  if (degree == 5) insert_real(out, out.z[4].re);
  return ok;
}

template <record V> status store_list(const root_list& list, V* out) noexcept {
  if (prepare_result(out, list.count, list.complex) != ok) return failed;
  scalar<V>* to = out->data;
  for (index i = 0; i < list.count; ++i) {
    *to++ = static_cast<scalar<V>>(list.z[i].re);
    if (list.complex) *to++ = static_cast<scalar<V>>(list.z[i].im);
  }
  return ok;
}

// The roots of coefficients a[0 .. 5], of which those above the degree are 0.
status closed_roots(const double* a, const search_limits& limits, root_list& out) noexcept {
  index degree = most_coefficients - 1;
  while (degree > 0 && a[degree] == 0) --degree;
  switch (degree) {
    case 0:
      out = {{}, 0, false};
      return ok;
    case 1:
      out = {{{-a[0] / a[1], 0}}, 1, false};
      return ok;
    case 2:
      out = quadratic_roots(a[0], a[1], a[2]);
      return ok;
    default:
      return factored_roots(a, degree, limits, out);
  }
}

template <record V> status solve_closed(const V* v, V* result) noexcept {
  if (is_complex(v) || length(v) > most_coefficients) return failed;
  const kept_errno kept;
  return run_apart(v, result, [](const V* in, V* out) {
    double a[most_coefficients] = {};
    std::transform(in->data, in->data + length(in), a, [](scalar<V> x) { return wide(x); });
    root_list list{};
    if (closed_roots(a, limits_of<scalar<V>>(), list) != ok) return failed;
    return store_list(list, out);
  });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_proots(const dsp_vec* p, dsp_vec* result) { return solve_closed(p, result); }
int32_t dspfs_proots(const dspf_vec* p, dspf_vec* result) { return solve_closed(p, result); }
