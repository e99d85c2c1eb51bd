// SPDX-License-Identifier: MIT
// The plans of the wide transforms of powers of two, one per length and number of lanes.
#include "fft/plans/lane_plan.h"

#include "core/published.h"
#include "fft/plans/pass_tables.h"

namespace sigpak::kernels {
namespace {

template <class T> constinit published<std::byte, plan_keys> plans;

// One vector of twiddles for all lanes.
template <class T> T* fill_lanes(T* out, const lane_plan<T>& plan, index kb, const roots& w) noexcept {
  const int lanes = plan.lanes;
  for (int p = 0; p < lanes; ++p) put_root(out + p, lanes, w[point_at<T>(p, lanes) * kb]);
  return out + 2 * lanes;
}

// In the order of the places, those of every step-th place.
template <class T> void fill_by_place(T* out, const lane_plan<T>& plan, index step, const roots& w) noexcept {
  for (index at = 0; at < plan.vectors; at += step) out = fill_lanes(out, plan, output(plan, at), w);
}

template <class T> void fill_steps(T* out, const lane_plan<T>& plan, const roots& w) noexcept {
  const int radix = plan.radix[plan.passes - 1];
  for (index k = 1; k < radix; ++k) out = fill_lanes(out, plan, k * (plan.vectors / radix), w);
}

// Places from one vector of twiddles of the last transform to the next.
template <class T> index last_step(const lane_plan<T>& plan) noexcept {
  return plan.is_stepped ? plan.radix[plan.passes - 1] : 1;
}

// Of the last pass, in one block of the first.
template <class T> index butterflies_of_block(const lane_plan<T>& plan) noexcept {
  return plan.block[1] / plan.radix[plan.passes - 1];
}

template <class T> void carve(lane_plan<T>& plan, carver& memory) noexcept {
  carve_passes(plan, memory);
  const index step = last_step(plan);
  plan.last = memory.take<T>(2 * plan.lanes * (plan.vectors / step));
  plan.steps = step > 1 ? memory.take<T>(2 * plan.lanes * (step - 1)) : nullptr;
  plan.start = memory.take<std::uint32_t>(2 * plan.vectors / plan.lanes);
  plan.mirror = plan.middle > 0 ? memory.take<std::uint32_t>(plan.middle) : nullptr;
  plan.order = plan.passes > 1 ? memory.take<std::uint32_t>(butterflies_of_block(plan)) : nullptr;
}

// The places of the middle digits of a column.
template <class T> void fill_mirror(const lane_plan<T>& plan) noexcept {
  for (index m = 0; m < plan.middle; ++m) {
    index reversed = 0;
    index rest = m;
    for (int pass = 2; pass < plan.passes - 1; rest /= plan.radix[pass++]) {
      reversed = reversed * plan.radix[pass] + rest % plan.radix[pass];
    }
    plan.mirror[m] = static_cast<std::uint32_t>(reversed);
  }
}

template <class T> void fill_order(const lane_plan<T>& plan) noexcept {
  for (index i = 0; i < butterflies_of_block(plan); ++i) {
    plan.order[i] = static_cast<std::uint32_t>(output(plan, i * plan.radix[plan.passes - 1]) / plan.radix[0]);
  }
}

template <class T> void fill(lane_plan<T>& plan) noexcept {
  const roots w(plan.points);
  fill_passes(plan, plan.points, w);
  fill_by_place(plan.last, plan, last_step(plan), w);
  if (plan.steps != nullptr) fill_steps(plan.steps, plan, w);
  fill_places(plan, plan.lanes / 2);
  fill_mirror(plan);
  if (plan.order != nullptr) fill_order(plan);
}

template <class T> lane_plan<T> lay_out(index points, int lanes, const lane_choice& choice) noexcept {
  lane_plan<T> plan = {};
  plan.points = points;
  plan.lanes = lanes;
  plan.vectors = points / lanes;
  plan.scale = T(1) / static_cast<T>(points);
  lay_out_blocks(plan, choice.radices);
  plan.at_line = choice.at_line;
  plan.elsewhere = choice.elsewhere;
  const pass_costs costs = costs_of<T>(lanes);
  plan.is_stepped = costs.missing(2 * plan.vectors, costs.caches().second) > 0;
  if (pairs_columns(choice.radices, lanes)) {
    plan.square = plan.radix[1];
    plan.middle = plan.vectors / lanes / plan.square / plan.square;
  }
  return plan;
}

}  // namespace

template <class T> const lane_plan<T>* find_lane_plan(index points, int lanes) noexcept {
  return kept_plan<lane_plan<T>>(plans<T>.find(plan_key(points, lanes)));
}

template <class T>
const lane_plan<T>* make_lane_plan(index points, int lanes, const lane_choice& choice) noexcept {
  return publish_plan(plans<T>, plan_key(points, lanes), lay_out<T>(points, lanes, choice), carve<T>,
                      fill<T>);
}

template <class T> void release_lane_plans() noexcept { plans<T>.release(); }

template const lane_plan<double>* find_lane_plan(index, int) noexcept;
template const lane_plan<float>* find_lane_plan(index, int) noexcept;
template const lane_plan<double>* make_lane_plan(index, int, const lane_choice&) noexcept;
template const lane_plan<float>* make_lane_plan(index, int, const lane_choice&) noexcept;
template void release_lane_plans<double>() noexcept;
template void release_lane_plans<float>() noexcept;

}  // namespace sigpak::kernels
