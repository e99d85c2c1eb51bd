// SPDX-License-Identifier: MIT
// The plans of the wide transforms of real data, one per length and number of lanes.
#include "fft/plans/real_plan.h"

#include "core/published.h"
#include "fft/plans/pass_tables.h"

namespace sigpak::kernels {
namespace {

template <class T> constinit published<std::byte, plan_keys> plans;

// Groups of consecutive kb, with one vector of twiddles per lane but the first.
template <class T> void fill_by_group(T* out, const real_plan<T>& plan, const roots& w) noexcept {
  const int lanes = plan.lanes;
  for (index kb = 0; kb < plan.vectors; kb += lanes) {
    for (index l = 1; l < lanes; ++l, out += 2 * lanes) {
      for (int p = 0; p < lanes; ++p) {
        put_root(out + p, lanes, w[l * (kb + point_at<T>(p, lanes))]);
      }
    }
  }
}

template <class T> void carve(real_plan<T>& plan, carver& memory) noexcept {
  carve_passes(plan, memory);
  plan.last = memory.take<T>(2 * (plan.lanes - 1) * plan.vectors);
  plan.unpack = memory.take<T>(2 * plan.vectors);
  plan.start = memory.take<std::uint32_t>(plan.vectors / plan.lanes);
  plan.result = memory.take<std::uint32_t>(plan.vectors / plan.radix[plan.passes - 1]);
}

template <class T> void fill(real_plan<T>& plan) noexcept {
  const roots w(plan.points);
  fill_passes(plan, plan.points, w);
  fill_by_group(plan.last, plan, w);
  for (index k = 0; k < plan.vectors; ++k) put_root(plan.unpack + 2 * k, 1, w[k * plan.lanes]);
  fill_places(plan, plan.lanes);
  fill_results(plan.result, plan);
}

template <class T> real_plan<T> lay_out(index points, int lanes) noexcept {
  real_plan<T> plan = {};
  plan.points = points;
  plan.lanes = lanes;
  plan.vectors = points / lanes / 2;
  plan.scale = T(0.5) / static_cast<T>(points);
  const pass_costs costs = costs_of<T>(lanes);
  const index vectors = plan.vectors;
  const auto cost = [&](const radix_list& list) { return costs.passes(list, vectors); };
  lay_out_blocks(plan, radix_search(costs, cost).run(vectors));
  return plan;
}

}  // namespace

template <class T> const real_plan<T>* find_real_plan(index points, int lanes) noexcept {
  return kept_plan<real_plan<T>>(plans<T>.find(plan_key(points, lanes)));
}

template <class T> const real_plan<T>* make_real_plan(index points, int lanes) noexcept {
  return publish_plan(plans<T>, plan_key(points, lanes), lay_out<T>(points, lanes), carve<T>, fill<T>);
}

template <class T> void release_real_plans() noexcept { plans<T>.release(); }

template const real_plan<double>* find_real_plan(index, int) noexcept;
template const real_plan<float>* find_real_plan(index, int) noexcept;
template const real_plan<double>* make_real_plan(index, int) noexcept;
template const real_plan<float>* make_real_plan(index, int) noexcept;
template void release_real_plans<double>() noexcept;
template void release_real_plans<float>() noexcept;

}  // namespace sigpak::kernels
