// SPDX-License-Identifier: MIT
// The parts of the plans that stand on products of short transforms.
#pragma once

#include <algorithm>
#include <cmath>

#include "fft/plans/factor_search.h"
#include "fft/plans/pass_tables.h"
#include "fft/plans/prime_table.h"

namespace sigpak::kernels {

// Of the forward transform.
template <class Plan> void set_scale(Plan& plan, index points) noexcept {
  using T = decltype(plan.scale);
  const long double scale = 1.0L / static_cast<long double>(points);
  plan.scale = T(1) / static_cast<T>(points);
  if (sizeof(T) == sizeof(float) && static_cast<long double>(plan.scale) > scale)
    plan.scale = std::nextafter(plan.scale, T(0));
  plan.scale_rest = static_cast<T>(scale - static_cast<long double>(plan.scale));
}

template <class T> product_plan<T> lay_out_product(index points, const factors& chosen) noexcept {
  product_plan<T> plan = {};
  plan.points = points;
  plan.lanes = chosen.lanes;
  plan.passes = chosen.passes;
  std::copy_n(chosen.radix, chosen.passes, plan.radix);
  plan.rows = points / plan.radix[0];
  index block = plan.rows;
  for (int pass = 1; pass < plan.passes; ++pass) {
    plan.block[pass] = block;
    block /= plan.radix[pass];
  }
  const pass_costs costs = costs_of<T>(plan.lanes);
  const index row_vectors = ceiling(plan.radix[0], plan.lanes / 2);
  plan.stride = row_vectors * (plan.lanes / 2);
  plan.resident = 2 * costs.resident() / row_vectors;
  set_scale(plan, points);
  return plan;
}

template <class T> index last_blocks(const product_plan<T>& plan) noexcept {
  return plan.rows / plan.radix[plan.passes - 1];
}

// The pass, of those up to this one, that goes over the same long prime first.
template <class T> int first_with_radix(const product_plan<T>& plan, int pass) noexcept {
  return static_cast<int>(std::find(plan.radix, plan.radix + pass, plan.radix[pass]) - plan.radix);
}

template <class T> void carve_terms(product_plan<T>& plan, carver& memory) noexcept {
  for (int pass = 0; pass < plan.passes; ++pass) {
    if (long_factor(plan.radix[pass]) == 1) continue;
    const int first = first_with_radix(plan, pass);
    plan.terms[pass] = first < pass ? plan.terms[first] : memory.take<T>(prime_scalars(plan.radix[pass]));
  }
}

// What the passes over the rows need.
template <class T> void carve_rows(product_plan<T>& plan, carver& memory) noexcept {
  carve_terms(plan, memory);
  for (int pass = 1; pass < plan.passes - 1; ++pass) {
    plan.turns[pass] = memory.take<T>(2 * plan.block[pass + 1] * (plan.radix[pass] - 1));
  }
  plan.order = memory.take<std::uint32_t>(last_blocks(plan));
}

template <class T> void fill_turns(const product_plan<T>& plan, const roots& w) noexcept {
  for (int pass = 1; pass < plan.passes - 1; ++pass) {
    T* out = plan.turns[pass];
    const index step = plan.points / plan.block[pass];
    for (index i = 0; i < plan.block[pass + 1]; ++i) {
      for (index j = 1; j < plan.radix[pass]; ++j, out += 2) put_root(out, 1, w[i * j * step]);
    }
  }
}

// The digits of k2 that the passes before the last have found, the first of the lowest weight.
template <class T> void fill_order(const product_plan<T>& plan) noexcept {
  for (index block = 0; block < last_blocks(plan); ++block) {
    index rest = block;
    index weight = last_blocks(plan);
    index k2 = 0;
    for (int pass = plan.passes - 2; pass > 0; --pass) {
      weight /= plan.radix[pass];
      k2 += rest % plan.radix[pass] * weight;
      rest /= plan.radix[pass];
    }
    plan.order[block] = static_cast<std::uint32_t>(k2);
  }
}

// Out of the roots of unity of the plan's points.
template <class T> void fill_rows(const product_plan<T>& plan, const roots& w) noexcept {
  for (int pass = 0; pass < plan.passes; ++pass) {
    if (plan.terms[pass] != nullptr) fill_prime(plan.terms[pass], plan.radix[pass]);
  }
  fill_turns(plan, w);
  fill_order(plan);
}

}  // namespace sigpak::kernels
