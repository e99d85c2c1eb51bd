// SPDX-License-Identifier: MIT
// One complex root of a real polynomial: Laguerre's and Newton's iterations from several starts.
#include <algorithm>

#include "core/kept_errno.h"
#include "stats/polynomial.h"
#include "stats/result.h"

namespace sigpak {
namespace {

bool finite(complex_number z) noexcept { return std::isfinite(z.re) && std::isfinite(z.im); }

// The square root in the right half plane.
complex_number square_root(complex_number z) noexcept {
  const double larger = std::sqrt((magnitude(z) + std::abs(z.re)) * 0.5);
  if (larger == 0) return {0, 0};
  const double smaller = z.im / (2 * larger);
  if (z.re >= 0) return {larger, smaller};
  return {std::abs(smaller), z.im >= 0 ? larger : -larger};
}

}  // namespace

complex_number laguerre_step(const expansion<complex_number>& at, index count,
                             const search_limits& limits) noexcept {
  if (at.value.re == 0 && at.value.im == 0) return {0, 0};
  const auto n = static_cast<double>(count - 1);
  const complex_number g = quotient(at.slope, at.value, limits);
  const complex_number squared = g * g;
  const complex_number h = squared - quotient(2 * at.half_curvature, at.value, limits);
  const complex_number root = square_root((n - 1) * (n * h - squared));
  const complex_number plus = g + root;
  const complex_number minus = g - root;
  return quotient({n, 0}, magnitude(plus) >= magnitude(minus) ? plus : minus, limits);
}

namespace {

using complex_step = complex_number (*)(const expansion<complex_number>&, index,
                                        const search_limits&) noexcept;

complex_number newton_step(const expansion<complex_number>& at, index, const search_limits& limits) noexcept {
  if (at.value.re == 0 && at.value.im == 0) return {0, 0};
  return quotient(at.value, at.slope, limits);
}

double relative_part(double step, double at, const search_limits& limits) noexcept {
  return std::abs(at != 0 ? step / at : step * limits.huge);
}

double squared_magnitude(complex_number z, const search_limits& limits) noexcept {
  const bool beyond = std::abs(z.re) > limits.huge || std::abs(z.im) > limits.huge;
  return beyond ? limits.squared_huge : z.re * z.re + z.im * z.im;
}

double squared_relative_step(complex_number step, complex_number z, const search_limits& limits) noexcept {
  const double q = squared_magnitude(z, limits);
  const double d = squared_magnitude(step, limits);
  return q != 0 ? d / q : d * limits.huge;
}

// A part that is nothing but the rounding of the other becomes 0, as it is for a real or an imaginary root.
complex_number without_dust(complex_number z) noexcept {
  const double dust = double_double_rounding * std::max(std::abs(z.re), std::abs(z.im));
  return {std::abs(z.re) < dust ? 0 : z.re, std::abs(z.im) < dust ? 0 : z.im};
}

// The largest coefficient over the smallest that counts, a quarter of it per coefficient: what the rounding
// of the coefficients is magnified by.
template <class C> double sensitivity(polynomial<C> p, double epsilon) noexcept {
  double largest = 0;
  for (index k = 0; k < p.count; ++k) largest = std::max(largest, std::abs(p[k].hi));
  double smallest = largest;
  for (index k = 0; k < p.count; ++k) {
    const double size = std::abs(p[k].hi);
    if (size >= epsilon * largest) smallest = std::min(smallest, size);
  }
  return (largest != 0 ? largest / smallest : 1.0) * static_cast<double>(p.count) * 0.25;
}

// Accepts z when it is a root; as a real one when p(0) = 0, or when its imaginary part is within the
// tolerance of its real part.
template <class C>
complex_search accept(polynomial<C> p, complex_number z, double tolerance,
                      const search_limits& limits) noexcept {
  const double per_real = z.re != 0 ? 1 / z.re : limits.huge;
  const bool complex =
      p[0].hi != 0 && std::abs(z.im * per_real) >= sensitivity(p, limits.epsilon) * tolerance;
  return {z, complex, is_root(expand(p, z), p.count, tolerance)};
}

// What a search accepts when its iterations are used up.
enum class ending { strict, lenient };

// The relative step is judged part by part first, and by its magnitude when that takes too long.
template <class C>
complex_search iterate(polynomial<C> p, complex_number z, complex_step step, ending at_end,
                       const search_limits& limits) noexcept {
  const auto n = static_cast<double>(p.count);
  double relative = 0;
  for (index i = 0; i < 20 * p.count; ++i) {
    const complex_number d = step(expand(p, z), p.count, limits);
    z = without_dust(z - d);
    if (!finite(z)) return {z, true, false};
    relative = squared_relative_step(d, z, limits);
    const bool by_parts = i < 16 * p.count;
    const bool converged = by_parts ? relative_part(d.re, z.re, limits) < limits.epsilon &&
                                          relative_part(d.im, z.im, limits) < limits.epsilon
                                    : relative < limits.epsilon * limits.epsilon;
    if (converged) return accept(p, z, limits.epsilon, limits);
  }
  const double limit = at_end == ending::strict ? n * n * n * limits.final_step : n * limits.epsilon;
  if (!(relative < limit)) return {z, true, false};
  return accept(p, z, 4 * limits.epsilon, limits);
}

// From the start and three others, scattered so that no symmetry of the polynomial holds them all.
template <class C>
complex_search search_from(polynomial<C> p, complex_number start, complex_step step, ending at_end,
                           const search_limits& limits) noexcept {
  complex_number from[4] = {start};
  from[1] = {1.5 * from[0].re + 1.0, 1.2 * from[0].im + 1.2};
  from[2] = {-0.7444444444444445 * from[1].re - 3.0, -0.34444444444444444 * from[1].im - 5.0};
  from[3] = {from[2].im, 0.987654321 * from[2].re};
  complex_search last{};
  for (int i = 0; i < 4 && !last.found; ++i) {
    last = iterate(p, from[i], step, i < 3 ? ending::strict : at_end, limits);
  }
  return last;
}

}  // namespace

template <class C>
complex_search find_root(polynomial<C> p, complex_number guess, const search_limits& limits) noexcept {
  if (p.count == 0) return {{0, 0}, false, true};
  const complex_search first = search_from(p, guess, laguerre_step, ending::strict, limits);
  if (!first.found) return search_from(p, guess, newton_step, ending::lenient, limits);
  const complex_search polished = iterate(p, first.root, newton_step, ending::strict, limits);
  return polished.found ? polished : first;
}

template complex_search find_root(polynomial<double>, complex_number, const search_limits&) noexcept;
template complex_search find_root(polynomial<float>, complex_number, const search_limits&) noexcept;

namespace {

template <record V> status solve_complex(const V* v, V* result, complex_number guess) noexcept {
  using T = scalar<V>;
  const kept_errno kept;
  if (is_complex(v)) return failed;
  return run_apart(v, result, [guess](const V* in, V* out) {
    const polynomial<T> p{in->data, length(in)};
    const complex_search search = find_root(p, guess, limits_of<T>());
    const complex_number root = search.found ? search.root : complex_number{0, 0};
    if (store(out, root.re, root.im) != ok) return failed;
    if (search.found && !search.complex) out->complex = 0;
    return search.found ? ok : failed;
  });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_pcsolve(const dsp_vec* p, dsp_vec* result, double re, double im) {
  return solve_complex(p, result, {re, im});
}
int32_t dspfs_pcsolve(const dspf_vec* p, dspf_vec* result, float re, float im) {
  return solve_complex(p, result, {wide(re), wide(im)});
}
