// SPDX-License-Identifier: MIT
// Wide transforms of all lengths that are no powers of two.
#include "fft/any_length.h"

#include <limits>

#include "core/power_of_two.h"
#include "fft/plans/radices.h"
#include "fft/wide/kernels.h"
#include "fft/workshop.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> void run(const kernels::product_plan<T>& plan, T* x, T* scratch, bool inverse) noexcept {
  at_level<kernels::product_kernels<T>>()->run(plan, x, scratch, inverse);
}
template <class T> void run(const kernels::square_plan<T>& plan, T* x, T* scratch, bool inverse) noexcept {
  at_level<kernels::product_kernels<T>>()->run_square(plan, x, scratch, inverse);
}
template <class T> void run(const kernels::mixed_plan<T>& plan, T* x, T* scratch, bool inverse) noexcept {
  at_level<kernels::fft_kernels<T>>()->run_mixed(plan, x, scratch, inverse);
}
template <class T> void run(const kernels::chirp_plan<T>& plan, T* x, T* scratch, bool inverse) noexcept {
  at_level<kernels::chirp_kernels<T>>()->run(plan, x, scratch, inverse);
}

// Null where none could be made.
template <class Plan, class T>
status run_kept(const Plan* plan, workshop<T>& shop, T* x, bool inverse) noexcept {
  T* const scratch = plan != nullptr ? shop.scratch.at_least(kernels::scratch_of(*plan), x) : nullptr;
  if (scratch == nullptr) return failed;
  run(*plan, x, scratch, inverse);
  return ok;
}

}  // namespace

template <class T> bool has_short_factors(index points) noexcept {
  const auto* const level = at_level<kernels::fft_kernels<T>>();
  return level != nullptr && !is_power_of_two(points) &&
         (kernels::has_product_plan<T>(points) || kernels::has_mixed_plan<T>(points, level->widest_lanes));
}

// The chirp, whose errors are larger, is to be faster than products by so much.
constexpr double chirp_gain = 1.13;

// Of the plans of small prime factors the cheapest. Where data and scratch memory stay in the second cache
// nothing is gained in place.
template <class T> algorithm cheapest_passes(index points) noexcept {
  const int lanes = at_level<kernels::fft_kernels<T>>()->widest_lanes;
  const bool product = kernels::has_product_plan<T>(points);
  if (product && points <= kernels::most_short_product) return algorithm::product;
  algorithm best = algorithm::chirp;
  double least = std::numeric_limits<double>::infinity();
  const auto consider = [&](algorithm way, double cost) {
    if (cost >= least) return;
    least = cost;
    best = way;
  };
  if (product) consider(algorithm::product, kernels::product_cost<T>(points));
  if (!kernels::is_smooth(points, kernels::most_short_prime))
    consider(algorithm::chirp, chirp_gain * kernels::chirp_cost<T>(points));
  if (kernels::has_mixed_plan<T>(points, lanes))
    consider(algorithm::mixed, kernels::mixed_cost<T>(points, lanes));
  if (!product && kernels::has_square_plan<T>(points))
    consider(algorithm::square, kernels::square_cost<T>(points));
  return best;
}

namespace {

template <class T> status run_directly(const kernels::direct_plan<T>* plan, T* x, bool inverse) noexcept {
  if (plan == nullptr) return failed;
  at_level<kernels::chirp_kernels<T>>()->run_direct(*plan, x, inverse);
  return ok;
}

// By one of the plans of which the last ones are kept, or by a new one.
template <class T> [[gnu::noinline]] status transform_listed(T* x, index points, bool inverse) noexcept {
  own_plans<T>();
  const int widest = at_level<kernels::fft_kernels<T>>()->widest_lanes;
  const loan<workshop<T>> shop(workshops<T>, bytes_of<T>(points));
  if (const auto* const plan = kernels::find_chirp_plan<T>(shop->plans, points); plan != nullptr) {
    return run_kept(plan, *shop, x, inverse);
  }
  if (const auto* const plan = kernels::find_product_plan<T>(shop->plans, points); plan != nullptr) {
    return run_kept(plan, *shop, x, inverse);
  }
  if (const auto* const plan = kernels::find_square_plan<T>(shop->plans, points); plan != nullptr) {
    return run_kept(plan, *shop, x, inverse);
  }
  if (const auto* const plan = kernels::find_mixed_plan<T>(shop->plans, points, widest); plan != nullptr) {
    return run_kept(plan, *shop, x, inverse);
  }
  switch (algorithm_for<T>(points)) {
    case algorithm::direct:
      return run_directly(kernels::make_direct_plan<T>(points), x, inverse);
    case algorithm::product:
      return run_kept(points <= kernels::most_short_product
                          ? kernels::make_short_product_plan<T>(points)
                          : kernels::make_product_plan<T>(shop->plans, points),
                      *shop, x, inverse);
    case algorithm::square:
      return run_kept(kernels::make_square_plan<T>(shop->plans, points), *shop, x, inverse);
    case algorithm::mixed:
      return run_kept(kernels::make_mixed_plan<T>(shop->plans, points, widest), *shop, x, inverse);
    default:
      return run_kept(kernels::make_chirp_plan(shop->plans, shop->scratch, points), *shop, x, inverse);
  }
}

}  // namespace

// The plans of short lengths are met first; all others are looked up in one list, without finding out first
// which kind a length is.
template <class T> status transform_any(T* x, index points, bool inverse) noexcept {
  if (points <= kernels::most_short_product) {
    const auto* const plan = kernels::find_short_product_plan<T>(points);
    if (plan != nullptr) {
      return with_scratch(workshops<T>, kernels::scratch_of(*plan), x, [=](T* scratch) {
        run(*plan, x, scratch, inverse);
        return ok;
      });
    }
  }
  if (points <= kernels::most_direct_points) {
    const auto* const plan = kernels::find_direct_plan<T>(points);
    if (plan != nullptr) return run_directly(plan, x, inverse);
  }
  return transform_listed(x, points, inverse);
}

template bool has_short_factors<double>(index) noexcept;
template bool has_short_factors<float>(index) noexcept;
template algorithm cheapest_passes<double>(index) noexcept;
template algorithm cheapest_passes<float>(index) noexcept;
template status transform_any(double*, index, bool) noexcept;
template status transform_any(float*, index, bool) noexcept;

}  // namespace sigpak
