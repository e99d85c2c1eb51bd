// SPDX-License-Identifier: MIT
// The plans of long real data by half the length.
#include "fft/plans/half_plan.h"

#include "core/published.h"
#include "fft/plans/lane_plan.h"
#include "fft/plans/pass_tables.h"

namespace sigpak::kernels {
namespace {

template <class T> constinit published<std::byte, plan_keys> plans;

template <class T> index coarse_steps(const half_plan<T>& plan) noexcept {
  return plan.points / 4 / (fine_vectors * plan.lanes);
}

template <class T> void carve(half_plan<T>& plan, carver& memory) noexcept {
  plan.coarse = memory.take<T>(2 * coarse_steps(plan));
  plan.fine = memory.take<T>(2 * fine_vectors * plan.lanes);
}

template <class T> void fill(half_plan<T>& plan) noexcept {
  const roots w(plan.points);
  const index lanes = plan.lanes;
  for (index i = 0; i < coarse_steps(plan); ++i)
    put_root(plan.coarse + 2 * i, 1, w[i * fine_vectors * lanes]);
  for (index v = 0; v < fine_vectors; ++v) {
    for (int p = 0; p < lanes; ++p) {
      put_root(plan.fine + 2 * lanes * v + p, lanes, w[v * lanes + point_at<T>(p, plan.lanes)]);
    }
  }
}

}  // namespace

template <class T> bool suits_half(index points, int lanes) noexcept {
  const index half = points / 2;
  if (half < index{4} * lanes * fine_vectors) return false;
  const pass_costs costs = costs_of<T>(lanes);
  const bool fetches = costs.missing(2 * half / lanes, costs.caches().second) > 0;
  return fetches && choose_lanes<T>(half, lanes).at_line == course::in_place;
}

template <class T> const half_plan<T>* find_half_plan(index points, int lanes) noexcept {
  return kept_plan<half_plan<T>>(plans<T>.find(plan_key(points, lanes)));
}

template <class T> const half_plan<T>* make_half_plan(index points, int lanes) noexcept {
  const half_plan<T> plan = {points, lanes, T(0.5) / static_cast<T>(points), nullptr, nullptr};
  return publish_plan(plans<T>, plan_key(points, lanes), plan, carve<T>, fill<T>);
}

template <class T> void release_half_plans() noexcept { plans<T>.release(); }

template bool suits_half<double>(index, int) noexcept;
template bool suits_half<float>(index, int) noexcept;
template const half_plan<double>* find_half_plan(index, int) noexcept;
template const half_plan<float>* find_half_plan(index, int) noexcept;
template const half_plan<double>* make_half_plan(index, int) noexcept;
template const half_plan<float>* make_half_plan(index, int) noexcept;
template void release_half_plans<double>() noexcept;
template void release_half_plans<float>() noexcept;

}  // namespace sigpak::kernels
