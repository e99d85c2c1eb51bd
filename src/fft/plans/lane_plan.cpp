// SPDX-License-Identifier: MIT
// The plans of the wide transforms of powers of two, one per length and number of lanes.
#include "fft/plans/lane_plan.h"

#include <bit>

#include "core/published.h"
#include "fft/plans/pass_tables.h"
#include "fft/plans/radices.h"

namespace sigpak::kernels {

constinit long_lengths long_from = {index{1} << 13, index{1} << 22, index{1} << 24};

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
  constexpr index stepped_from = index{1} << 16;
  return plan.points >= stepped_from ? plan.radix[plan.passes - 1] : 1;
}

template <class T> void carve(lane_plan<T>& plan, carver& memory) noexcept {
  carve_passes(plan, memory);
  const index step = last_step(plan);
  plan.last = memory.take<T>(2 * plan.lanes * (plan.vectors / step));
  plan.steps = step > 1 ? memory.take<T>(2 * plan.lanes * (step - 1)) : nullptr;
  plan.start = memory.take<std::uint32_t>(2 * plan.vectors / plan.lanes);
}

template <class T> void fill(lane_plan<T>& plan) noexcept {
  const roots w(plan.points);
  fill_passes(plan, plan.points, w);
  fill_by_place(plan.last, plan, last_step(plan), w);
  if (plan.steps != nullptr) fill_steps(plan.steps, plan, w);
  fill_places(plan, plan.lanes / 2);
}

constexpr int first_cache_ways = 8;

// The blocks of long transforms are put apart by a vector, away from the strides of powers of two.
constexpr index padded_from = 4096;

template <class T> lane_plan<T> lay_out(index points, int lanes) noexcept {
  lane_plan<T> plan = {};
  plan.points = points;
  plan.lanes = lanes;
  plan.vectors = points / lanes;
  plan.scale = T(1) / static_cast<T>(points);
  choose_power_of_two(plan, std::countr_zero(static_cast<std::uint64_t>(plan.vectors)));
  lay_out_blocks(plan);
  const index bytes = 2 * points * static_cast<index>(sizeof(T));
  plan.collected = bytes >= long_from.collected || (lanes > first_cache_ways && points >= long_from.crowded);
  plan.streamed = plan.collected && bytes >= long_from.streamed;
  plan.stride = plan.vectors / plan.radix[0] + (points >= padded_from ? 1 : 0);
  return plan;
}

}  // namespace

template <class T> const lane_plan<T>* find_lane_plan(index points, int lanes) noexcept {
  return kept_plan<lane_plan<T>>(plans<T>.find(plan_key(points, lanes)));
}

template <class T> const lane_plan<T>* make_lane_plan(index points, int lanes) noexcept {
  return publish_plan(plans<T>, plan_key(points, lanes), lay_out<T>(points, lanes), carve<T>, fill<T>);
}

template <class T> void release_lane_plans() noexcept { plans<T>.release(); }

template const lane_plan<double>* find_lane_plan(index, int) noexcept;
template const lane_plan<float>* find_lane_plan(index, int) noexcept;
template const lane_plan<double>* make_lane_plan(index, int) noexcept;
template const lane_plan<float>* make_lane_plan(index, int) noexcept;
template void release_lane_plans<double>() noexcept;
template void release_lane_plans<float>() noexcept;

}  // namespace sigpak::kernels
