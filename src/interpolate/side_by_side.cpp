// SPDX-License-Identifier: MIT
// The elimination depends on the knots alone: it is carried out once, and what is left for every line are
// products and sums without a division, of many lines at a time.
#include "interpolate/side_by_side.h"

#include <algorithm>
#include <utility>

#include "core/isa.h"
#include "core/memory.h"
#include "interpolate/tridiagonal.h"

namespace sigpak {
namespace {

constexpr index least_knots = 4;
constexpr index abreast = 32;

// z[i] = early * (y[k+1] - y[k]) + late * (y[k+2] - y[k+1]) - back * z[i-1], then s[i] = z[i] - ahead *
// s[i+1].
struct step_of_line {
  double early;
  double late;
  double back;
  double ahead;
};

// The first of the two intervals that row i depends on.
constexpr index interval_of(index i, index n) noexcept { return std::clamp<index>(i - 1, 0, n - 3); }

double length(const double* x, index k) noexcept { return x[k + 1] - x[k]; }

// The row of knot i without a right side, and its parts for chords of 1 in either of its intervals.
slope_row row_of(const double* x, index n, spline_ends kind, index i, double early, double late) noexcept {
  const index k = interval_of(i, n);
  const double h0 = length(x, k);
  const double h1 = length(x, k + 1);
  if (i > 0 && i < n - 1) return inner_row(h0, h1, early, late);
  if (i == 0) return end_row(kind, 0, h0, h1, early, late);
  const slope_row row = end_row(kind, 0, h1, h0, late, early);
  return {row.after, row.pivot, 0, row.right};
}

void eliminate(const double* x, index n, spline_ends kind, step_of_line* steps) noexcept {
  double ahead = 0;
  for (index i = 0; i < n; ++i) {
    const slope_row early = row_of(x, n, kind, i, 1, 0);
    const slope_row late = row_of(x, n, kind, i, 0, 1);
    const index k = interval_of(i, n);
    const double per_pivot = 1 / (early.pivot - early.before * ahead);
    ahead = early.after * per_pivot;
    steps[i] = {early.right / length(x, k) * per_pivot, late.right / length(x, k + 1) * per_pivot,
                early.before * per_pivot, ahead};
  }
}

// s[0 .. n-1] of `abreast` lines from their values, both as rows.
void solve(const step_of_line* steps, index n, const double* y, double* s) noexcept {
  for (index i = 0; i < n; ++i) {
    const step_of_line step = steps[i];
    const double* const from = y + interval_of(i, n) * abreast;
    const double* const before = i > 0 ? s + (i - 1) * abreast : from;
    const double back = i > 0 ? step.back : 0;
    double* const to = s + i * abreast;
#pragma GCC ivdep
    for (index j = 0; j < abreast; ++j) {
      to[j] = step.early * (from[abreast + j] - from[j]) +
              step.late * (from[2 * abreast + j] - from[abreast + j]) - back * before[j];
    }
  }
  for (index i = n - 2; i >= 0; --i) {
    const double ahead = steps[i].ahead;
    double* const to = s + i * abreast;
#pragma GCC ivdep
    for (index j = 0; j < abreast; ++j) to[j] -= ahead * to[abreast + j];
  }
}

// With both end slopes 0 solved, the first slope is what its own row asks for; a slope of 1 at either end
// adds `gained`.
void close_period(const double* x, index n, const double* gained, const double* y, double* s) noexcept {
  const double h0 = length(x, n - 2);
  const double h1 = length(x, 0);
  const slope_row row = inner_row(h0, h1, 0, 0);
  const double per_pivot = 1 / (row.pivot + row.before * gained[n - 2] + row.after * gained[1]);
  const double* const last = y + (n - 2) * abreast;
  for (index j = 0; j < abreast; ++j) {
    const double right = inner_row(h0, h1, (y[j] - last[j]) / h0, (y[abreast + j] - y[j]) / h1).right;
    const double known = row.before * s[(n - 2) * abreast + j] + row.after * s[abreast + j];
    const double slope = (right - known) * per_pivot;
    for (index i = 0; i < n; ++i) s[i * abreast + j] += slope * gained[i];
  }
}

// The slopes that one of 1 at both ends adds to those of no data.
void solve_gain(const step_of_line* steps, index n, double* gained) noexcept {
  gained[0] = 1;
  for (index i = 1; i < n - 1; ++i) gained[i] = -steps[i].back * gained[i - 1];
  gained[n - 1] = 1;
  for (index i = n - 2; i > 0; --i) gained[i] -= steps[i].ahead * gained[i + 1];
}

// Too few knots for two intervals behind either end.
status slopes_of_short_lines(const double* x, index n, const lines& of, end_rule rule) noexcept {
  double y[least_knots];
  for (index j = 0; j < of.count; ++j) {
    for (index i = 0; i < n; ++i) y[i] = of.y[i * of.stride + j * of.step];
    if (irregular_slopes<double>(x, y, n, rule, {of.slopes + j * of.step, of.stride}) != ok) return failed;
  }
  return ok;
}

// The order in which values follow each other in memory: line by line where that is the shorter step.
template <class Body> void for_values(const lines& of, index n, index some, Body body) noexcept {
  if (of.step < of.stride) {
    for (index i = 0; i < n; ++i) {
      for (index j = 0; j < some; ++j) body(i, j);
    }
  } else {
    for (index j = 0; j < some; ++j) {
      for (index i = 0; i < n; ++i) body(i, j);
    }
  }
}

void take_lines(const lines& of, index n, bool periodic, index begin, index some, double* y) noexcept {
  const double* const from = of.y + begin * of.step;
  for_values(of, n, some, [=](index i, index j) { y[i * abreast + j] = from[i * of.stride + j * of.step]; });
  for (index i = 0; i < n; ++i) std::fill(y + i * abreast + some, y + (i + 1) * abreast, 0.0);
  if (periodic) std::copy_n(y, abreast, y + (n - 1) * abreast);
}

void put_slopes(const lines& of, index n, index begin, index some, const double* s) noexcept {
  double* const to = of.slopes + begin * of.step;
  for_values(of, n, some, [=](index i, index j) { to[i * of.stride + j * of.step] = s[i * abreast + j]; });
}

}  // namespace

status slopes_of_lines(const double* x, index n, const lines& of, end_rule rule) noexcept {
  if (n < least_knots) return slopes_of_short_lines(x, n, of, rule);
  constexpr index parts = sizeof(step_of_line) / sizeof(double);
  double* const table = allocate_table<double>((parts + 1 + 2 * abreast) * n);
  if (table == nullptr) return failed;
  const bool periodic = rule.kind == spline_ends::periodic;
  auto* const steps = reinterpret_cast<step_of_line*>(table);
  double* const gained = table + parts * n;
  double* const y = gained + n;
  double* const s = y + abreast * n;
  eliminate(x, n, periodic ? spline_ends::clamped : rule.kind, steps);
  if (periodic) solve_gain(steps, n, gained);
  isa::run([=] {
    for (index begin = 0; begin < of.count; begin += abreast) {
      const index some = std::min(abreast, of.count - begin);
      take_lines(of, n, periodic, begin, some, y);
      solve(steps, n, y, s);
      if (periodic) close_period(x, n, gained, y, s);
      put_slopes(of, n, begin, some, s);
    }
  });
  free_table(table);
  return ok;
}

}  // namespace sigpak
