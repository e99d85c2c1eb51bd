// SPDX-License-Identifier: MIT
// One real root of a real polynomial: Laguerre's and Newton's iterations between bounds of the roots.
#include <algorithm>

#include "core/kept_errno.h"
#include "stats/polynomial.h"
#include "stats/result.h"

namespace sigpak {
namespace {

struct interval {
  double low;
  double high;
};

// Lagrange's bound of the positive roots: 1 + (m / |lead|)^(1/k), m the largest magnitude among the
// coefficients of the sign opposite to the leading one, the first of them k places below it. Mirrored, of
// p(-x).
template <class C> double upper_bound(polynomial<C> p, bool mirrored) noexcept {
  const auto coefficient = [=](index k) { return mirrored && k % 2 != 0 ? -p[k].hi : p[k].hi; };
  index top = p.count - 1;
  while (top >= 0 && p[top].hi == 0) --top;
  const double lead = top >= 0 ? coefficient(top) : 1.0;
  index places = 0;
  double largest = 0;
  for (index k = top - 1; k >= 0; --k) {
    const double a = coefficient(k);
    if (!(lead > 0 ? a < 0 : a > 0)) continue;
    if (places == 0) places = top - k;
    largest = std::max(largest, std::abs(a));
  }
  if (places == 0) return 1;
  return 1 + std::exp(std::log(largest / std::abs(lead)) / static_cast<double>(places));
}

// Laguerre's step for degree count - 1, the sign of the root such that the denominator is the larger.
double laguerre_step(const expansion<double>& at, index count, const search_limits& limits) noexcept {
  if (at.value == 0) return 0;
  const auto n = static_cast<double>(count - 1);
  const double g = at.slope / at.value;
  const double h = g * g - 2 * at.half_curvature / at.value;
  const double r = (n - 1) * (n * h - g * g);
  double denominator = g;
  if (r > 0) denominator += g >= 0 ? std::sqrt(r) : -std::sqrt(r);
  return denominator != 0 ? n / denominator : limits.huge;
}

double newton_step(const expansion<double>& at, index, const search_limits& limits) noexcept {
  return at.slope != 0 ? at.value / at.slope : at.value * limits.huge;
}

using real_step = double (*)(const expansion<double>&, index, const search_limits&) noexcept;

// Iterates from `x`. A step across a bound bounces back, each time a little farther.
template <class C>
real_search iterate(polynomial<C> p, double x, interval bounds, real_step step,
                    const search_limits& limits) noexcept {
  constexpr double bounce = 0.0078125;
  const double span = bounds.high - bounds.low;
  const auto n = static_cast<double>(p.count);
  double bounces = 0;
  double relative = 0;
  for (index i = 0; i < 16 * p.count; ++i) {
    double d = step(expand(p, x), p.count, limits);
    double next = x - d;
    if (next > bounds.high || next < bounds.low) {
      next =
          next > bounds.high ? bounds.high - span * bounces * bounce : bounds.low + span * bounces * bounce;
      bounces += 1;
      d = x - next;
    }
    relative = next != 0 ? d / next : d * limits.huge;
    x = next;
    if (std::isnan(x)) return {x, false};  // and would stay so
    if (std::abs(relative) < limits.epsilon) return {x, is_root(expand(p, x), p.count, limits.epsilon)};
  }
  const bool settled = std::abs(relative) < 4 * n * limits.epsilon;
  return {x, settled && is_root(expand(p, x), p.count, 4 * limits.epsilon)};
}

}  // namespace

template <class C>
real_search find_real_root(polynomial<C> p, double guess, const search_limits& limits) noexcept {
  if (p.count == 0) return {0, true};
  const interval bounds{-upper_bound(p, true), upper_bound(p, false)};
  const double start = guess < bounds.low ? bounds.low : guess > bounds.high ? bounds.high : guess;
  const double starts[] = {start, (bounds.low + bounds.high) * 0.5, bounds.low, bounds.high};
  real_search last{0, false};
  for (const real_step step : {laguerre_step, newton_step}) {
    for (const double from : starts) {
      last = iterate(p, from, bounds, step, limits);
      if (last.found) return last;
    }
  }
  return last;
}

template real_search find_real_root(polynomial<double>, double, const search_limits&) noexcept;
template real_search find_real_root(polynomial<float>, double, const search_limits&) noexcept;

namespace {

template <record V> status solve_real(const V* v, V* result, scalar<V> guess) noexcept {
  using T = scalar<V>;
  const kept_errno kept;
  if (is_complex(v)) return failed;
  return run_apart(v, result, [guess](const V* in, V* out) {
    const polynomial<T> p{in->data, length(in)};
    const real_search search = find_real_root(p, wide(guess), limits_of<T>());
    if (store(out, search.root) != ok) return failed;
    return search.found ? ok : failed;
  });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_psolve(const dsp_vec* p, dsp_vec* result, double guess) { return solve_real(p, result, guess); }
int32_t dspfs_psolve(const dspf_vec* p, dspf_vec* result, float guess) {
  return solve_real(p, result, guess);
}
