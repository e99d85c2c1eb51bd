// SPDX-License-Identifier: MIT
// The plans of the wide transforms of lengths without large prime factors.
#include "fft/plans/mixed_plan.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numeric>

#include "core/recent_list.h"
#include "fft/plans/pass_tables.h"
#include "fft/plans/radices.h"

namespace sigpak::kernels {
namespace {

constexpr int odd_radices[] = {13, 11, 7, 5, 3};

// Beside the passes, per vector: of a column, and of output whose vectors are split between lines.
constexpr double transposition_cost = 7.5;
constexpr double split_output_cost = 2;
// Per group of columns or rows: the latency of its last results.
constexpr double group_cost = 100;
// Of all in the cycles that the costs of products count, with vectors of 512 bits and of 256.
constexpr double wide_cycles = 0.95;
constexpr double narrow_cycles = 0.65;

template <class T> void append(pass_plan<T>& plan, const radix_list& list) noexcept {
  for (int i = 0; i < list.passes && plan.passes < most_passes; ++i)
    plan.radix[plan.passes++] = list.radix[i];
}

// The even radices of the least work; a two alone is one too.
radix_list even_radices(index n, const pass_costs& costs) noexcept {
  if (n == 2) return {1, {2}};
  const auto work = [&costs](const radix_list& list) {
    return std::accumulate(list.radix, list.radix + list.passes, 0.0,
                           [&costs](double sum, int radix) { return sum + costs.work(radix); });
  };
  return radix_search(costs, work).run(n);
}

// Odd factors first, then powers of two. Passes stay 0 where a larger prime is left; the cost comes back.
template <class T> double choose_radices(pass_plan<T>& plan, const pass_costs& costs) noexcept {
  index rest = plan.vectors;
  index product = 1;
  plan.passes = 0;
  for (const int odd : odd_radices) {
    for (; rest % odd == 0 && plan.passes < most_passes; rest /= odd) append(plan, {1, {odd}});
  }
  if (is_power_of_two(rest)) append(plan, even_radices(rest, costs));
  for (int pass = 0; pass < plan.passes; ++pass) product *= plan.radix[pass];
  if (product != plan.vectors) plan.passes = 0;
  return costs.passes(plan, plan.vectors);
}

struct split {
  index columns = 0;  // A, the length of the transforms over the columns; 0 where there is no split
  double cost = 0;
};

template <class T> void consider(split& best, index points, index a, int lanes) noexcept {
  const index b = points / a;
  if (a < lanes || b < lanes) return;
  pass_plan<T> columns = {};
  pass_plan<T> rows = {};
  columns.vectors = a;
  rows.vectors = b;
  const pass_costs costs = costs_of<T>(lanes);
  constexpr index points_of_line = index{machine::line_bytes} / (2 * static_cast<index>(sizeof(T)));
  const auto column_groups = static_cast<double>((b + lanes - 1) / lanes);
  const auto row_groups = static_cast<double>((a + lanes - 1) / lanes);
  const double output = a % points_of_line != 0 ? split_output_cost : 0;
  const double of_columns = choose_radices(columns, costs) + transposition_cost;
  const double of_rows = choose_radices(rows, costs) + output;
  const double cost = column_groups * (group_cost + static_cast<double>(a) * of_columns) +
                      row_groups * (group_cost + static_cast<double>(b) * of_rows);
  if (columns.passes == 0 || rows.passes == 0) return;
  const double passages = 2 * static_cast<double>(points / lanes) * costs.passage(points / lanes);
  if (best.columns == 0 || cost + passages < best.cost) best = {a, cost + passages};
}

template <class T> bool has_split(index points, int lanes) noexcept {
  split any;
  auto a = static_cast<index>(std::sqrt(static_cast<double>(points)));
  for (; a > 1 && any.columns == 0; --a) {
    if (points % a == 0) consider<T>(any, points, a, lanes);
  }
  return any.columns != 0;
}

template <class T> split choose_split(index points, int lanes) noexcept {
  split best;
  for (index a = 2; a * a <= points; ++a) {
    if (points % a != 0) continue;
    consider<T>(best, points, a, lanes);
    consider<T>(best, points, points / a, lanes);
  }
  return best;
}

template <class T> pass_plan<T> lay_out_passes(index vectors, int lanes) noexcept {
  pass_plan<T> plan = {};
  plan.vectors = vectors;
  plan.lanes = lanes;
  choose_radices(plan, costs_of<T>(lanes));
  lay_out_blocks(plan);
  plan.stride = vectors / plan.radix[0];
  return plan;
}

template <class T> mixed_plan<T> lay_out(index points, int lanes) noexcept {
  const split chosen = choose_split<T>(points, lanes);
  mixed_plan<T> plan = {};
  plan.points = points;
  plan.lanes = lanes;
  plan.scale = T(1) / static_cast<T>(points);
  plan.columns = lay_out_passes<T>(chosen.columns, lanes);
  plan.rows = lay_out_passes<T>(points / chosen.columns, lanes);
  const pass_costs costs = costs_of<T>(lanes);
  plan.is_stepped = costs.missing(3 * points / lanes, costs.caches().second) > 0;
  return plan;
}

template <class T> index column_groups(const mixed_plan<T>& plan) noexcept {
  return (plan.rows.vectors + plan.lanes - 1) / plan.lanes;
}

// The first column of a group, the last of which overlaps the one before.
template <class T> index first_column(const mixed_plan<T>& plan, index group) noexcept {
  return std::min(group * plan.lanes, plan.rows.vectors - plan.lanes);
}

// w_N^(n2 k1) for so many groups of n2.
template <class T>
void fill_twiddles(T* out, const mixed_plan<T>& plan, index groups, const roots& w) noexcept {
  const int lanes = plan.lanes;
  const double missing = missing_length<T>(plan.points, static_cast<long double>(plan.scale));
  for (index group = 0; group < groups; ++group) {
    const index n2 = first_column(plan, group);
    for (index k1 = 0; k1 < plan.columns.vectors; ++k1, out += 2 * lanes) {
      for (int p = 0; p < lanes; ++p) {
        put_root(out + p, lanes, lengthened(w[(n2 + point_at<T>(p, lanes)) * k1], missing));
      }
    }
  }
}

// w_N^(n2 k1), n2 the first of its group.
template <class T> void fill_steps(T* out, const mixed_plan<T>& plan, const roots& w) noexcept {
  for (index group = 0; group < column_groups(plan); ++group) {
    for (index k1 = 0; k1 < plan.columns.vectors; ++k1, out += 2) {
      put_root(out, 1, w[first_column(plan, group) * k1]);
    }
  }
}

template <class T> index twiddle_groups(const mixed_plan<T>& plan) noexcept {
  return plan.is_stepped ? 1 : column_groups(plan);
}

template <class T> void carve(mixed_plan<T>& plan, carver& memory) noexcept {
  carve_passes(plan.columns, memory);
  carve_passes(plan.rows, memory);
  plan.place = memory.take<std::uint32_t>(plan.columns.vectors);
  plan.result = memory.take<std::uint32_t>(plan.rows.vectors / plan.rows.radix[plan.rows.passes - 1]);
  plan.twiddles = memory.take<T>(2 * plan.lanes * twiddle_groups(plan) * plan.columns.vectors);
  plan.steps = plan.is_stepped ? memory.take<T>(2 * column_groups(plan) * plan.columns.vectors) : nullptr;
}

template <class T> void fill(mixed_plan<T>& plan) noexcept {
  const roots w(plan.points);
  fill_passes(plan.columns, plan.points, w);
  fill_passes(plan.rows, plan.points, w);
  for (index k = 0; k < plan.columns.vectors; ++k) {
    plan.place[k] = static_cast<std::uint32_t>(place(plan.columns, k));
  }
  fill_results(plan.result, plan.rows);
  fill_twiddles(plan.twiddles, plan, twiddle_groups(plan), w);
  if (plan.is_stepped) fill_steps(plan.steps, plan, w);
}

constexpr index key_of(index points, int lanes) noexcept { return points * most_lanes + lanes - 1; }

}  // namespace

template <class T> bool has_mixed_plan(index points, int lanes) noexcept {
  return is_smooth(points, most_short_prime) && has_split<T>(points, lanes);
}

template <class T> double mixed_cost(index points, int lanes) noexcept {
  const bool wide = lanes * index{sizeof(T)} == 64;
  return (wide ? wide_cycles : narrow_cycles) * choose_split<T>(points, lanes).cost;
}

template <class T>
const mixed_plan<T>* find_mixed_plan(recent_list& plans, index points, int lanes) noexcept {
  return kept_plan<mixed_plan<T>>(plans.find(key_of(points, lanes)));
}

template <class T>
const mixed_plan<T>* make_mixed_plan(recent_list& plans, index points, int lanes) noexcept {
  return keep_plan(lay_out<T>(points, lanes), carve<T>, fill<T>,
                   [&plans, key = key_of(points, lanes)](index bytes) { return plans.append(key, bytes); });
}

template bool has_mixed_plan<double>(index, int) noexcept;
template bool has_mixed_plan<float>(index, int) noexcept;
template double mixed_cost<double>(index, int) noexcept;
template double mixed_cost<float>(index, int) noexcept;
template const mixed_plan<double>* find_mixed_plan(recent_list&, index, int) noexcept;
template const mixed_plan<float>* find_mixed_plan(recent_list&, index, int) noexcept;
template const mixed_plan<double>* make_mixed_plan(recent_list&, index, int) noexcept;
template const mixed_plan<float>* make_mixed_plan(recent_list&, index, int) noexcept;

}  // namespace sigpak::kernels
