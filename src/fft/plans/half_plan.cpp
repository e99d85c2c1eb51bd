// SPDX-License-Identifier: MIT
// The plans of real data by half the length.
#include "fft/plans/half_plan.h"

#include "core/published.h"
#include "fft/plans/lane_plan.h"
#include "fft/plans/pass_tables.h"

namespace sigpak::kernels {
namespace {

template <class T> constinit published<std::byte, plan_keys> plans;

constexpr index short_run = 128;

template <class T> void carve(half_plan<T>& plan, carver& memory) noexcept {
  plan.coarse = plan.runs > 1 ? memory.take<T>(2 * plan.runs) : nullptr;
  plan.fine = memory.take<T>(2 * plan.run);
}

template <class T> void fill(half_plan<T>& plan) noexcept {
  const roots w(plan.points);
  for (index i = 0; plan.runs > 1 && i < plan.runs; ++i) put_root(plan.coarse + 2 * i, 1, w[i * plan.run]);
  for (index k = 1; k <= plan.run; ++k) put_root(plan.fine + 2 * (k - 1), 1, w[k]);
}

template <class T> bool leaves_second_cache(index points, int lanes) noexcept {
  const pass_costs costs = costs_of<T>(lanes);
  return costs.missing(points / lanes, costs.caches().second) > 0;
}

// What the transform over the lanes of real data costs beyond that of half as many complex points, whose
// bins are fetched once more.
template <class T> double saving(index points, int lanes) noexcept {
  const index vectors = points / lanes / 2;
  const pass_costs costs = costs_of<T>(lanes);
  const auto cost = [&](const radix_list& list) { return costs.passes(list, vectors); };
  const double in_lanes =
      costs.passes(radix_search(costs, cost).run(vectors), vectors) + 2 * costs.passage(vectors);
  return in_lanes - choose_lanes<T>(points / 2, lanes).cost - costs.sweep(vectors);
}

template <class T> half_plan<T> lay_out(index points, int lanes) noexcept {
  half_plan<T> plan = {};
  plan.points = points;
  plan.lanes = lanes;
  plan.scale = T(0.5) / static_cast<T>(points);
  const double saved = saving<T>(points, lanes);
  const bin_costs bins = costs_of<T>(lanes).bins(lanes);
  plan.suits_forward = saved > bins.forward;
  plan.suits_inverse = saved > bins.inverse;
  if (plan.suits_forward || plan.suits_inverse) {
    const index roots = points / 8;
    plan.run = leaves_second_cache<T>(points, lanes) ? std::min(roots, short_run) : roots;
    plan.runs = roots / plan.run;
  }
  return plan;
}

}  // namespace

template <class T> const half_plan<T>* find_half_plan(index points, int lanes) noexcept {
  return kept_plan<half_plan<T>>(plans<T>.find(plan_key(points, lanes)));
}

template <class T> const half_plan<T>* make_half_plan(index points, int lanes) noexcept {
  return publish_plan(plans<T>, plan_key(points, lanes), lay_out<T>(points, lanes), carve<T>, fill<T>);
}

template <class T> void release_half_plans() noexcept { plans<T>.release(); }

template const half_plan<double>* find_half_plan(index, int) noexcept;
template const half_plan<float>* find_half_plan(index, int) noexcept;
template const half_plan<double>* make_half_plan(index, int) noexcept;
template const half_plan<float>* make_half_plan(index, int) noexcept;
template void release_half_plans<double>() noexcept;
template void release_half_plans<float>() noexcept;

}  // namespace sigpak::kernels
