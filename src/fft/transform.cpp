// SPDX-License-Identifier: MIT
// The one door to the transforms: which algorithm runs.
#include "fft/transform.h"

#include "core/frame.h"
#include "core/machine.h"
#include "core/power_of_two.h"
#include "fft/any_length.h"
#include "fft/baseline/bluestein.h"
#include "fft/baseline/packed_real.h"
#include "fft/baseline/split_radix.h"
#include "fft/small_transform.h"
#include "fft/workshop.h"

namespace sigpak {

using kernels::fft_kernels;

template <class T> void own_plans() noexcept {
  register_cache<record_of<T>>(cache::plans, []() noexcept {
    kernels::release_lane_plans<T>();
    kernels::release_real_plans<T>();
    kernels::release_half_plans<T>();
    kernels::release_short_product_plans<T>();
    kernels::release_direct_plans<T>();
    return workshops<T>.release();
  });
}

namespace {

template <class T> const kernels::lane_plan<T>* lane_plan_of(index points, int lanes) noexcept {
  if (const auto* const plan = kernels::find_lane_plan<T>(points, lanes); plan != nullptr) return plan;
  own_plans<T>();
  return kernels::make_lane_plan<T>(points, lanes, kernels::choose_lanes<T>(points, lanes));
}

// Calls body(scratch), with null where the plan needs none for these data.
template <class T, class Body>
status with_scratch_of(const kernels::lane_plan<T>& plan, const T* x, const Body& body) noexcept {
  const index vectors = kernels::scratch_vectors(plan, kernels::course_of(plan, x));
  if (vectors == 0) {
    body(nullptr);
    return ok;
  }
  return with_scratch(workshops<T>, 2 * plan.lanes * vectors, x, [&body](T* scratch) {
    body(scratch);
    return ok;
  });
}

template <class T>
status transform_lanes(const fft_kernels<T>& level, T* x, index points, bool inverse) noexcept {
  const auto* const plan = lane_plan_of<T>(points, level.widest_lanes);
  if (plan == nullptr) return failed;
  return with_scratch_of(*plan, x, [=, &level](T* scratch) { level.run(*plan, x, x, scratch, inverse); });
}

// The scale of the forward transform waits for the last sums.
template <class T>
status forward_by_half(const fft_kernels<T>& level, const kernels::half_plan<T>& half, const T* from,
                       T* to) noexcept {
  const auto* const plan = lane_plan_of<T>(half.points / 2, level.widest_lanes);
  if (plan == nullptr) return failed;
  auto unscaled = *plan;
  unscaled.scale = 1;
  return with_scratch_of(unscaled, to, [&](T* scratch) {
    level.run(unscaled, from, to, scratch, false);
    level.change_bins(half, to, false);
  });
}

template <class T>
status inverse_by_half(const fft_kernels<T>& level, const kernels::half_plan<T>& half, T* from,
                       T* to) noexcept {
  const auto* const plan = lane_plan_of<T>(half.points / 2, level.widest_lanes);
  if (plan == nullptr) return failed;
  return with_scratch_of(*plan, to, [&](T* scratch) {
    level.change_bins(half, from, true);
    level.run(*plan, from, to, scratch, true);
  });
}

template <class T, class Body>
status with_scratch_of(const kernels::real_plan<T>& plan, bool inverse, const T* x,
                       const Body& body) noexcept {
  const index spectrum = inverse ? plan.vectors + 1 : 0;
  const index count = 2 * plan.lanes * (plan.stride * plan.radix[0] + spectrum);
  return with_scratch(workshops<T>, count, x, [&body](T* scratch) {
    body(scratch);
    return ok;
  });
}

template <class T>
status forward_lanes(const fft_kernels<T>& level, const kernels::real_plan<T>& plan, const T* from,
                     T* to) noexcept {
  return with_scratch_of(plan, false, from, [&](T* scratch) { level.run_real(plan, from, to, scratch); });
}
template <class T>
status inverse_lanes(const fft_kernels<T>& level, const kernels::real_plan<T>& plan, T* from,
                     T* to) noexcept {
  return with_scratch_of(plan, true, from,
                         [&](T* scratch) { level.run_real_inverse(plan, from, to, scratch); });
}

template <class T> const kernels::half_plan<T>* half_plan_of(index points, int lanes) noexcept {
  if (const auto* const plan = kernels::find_half_plan<T>(points, lanes)) return plan;
  own_plans<T>();
  return kernels::make_half_plan<T>(points, lanes);
}
template <class T> const kernels::real_plan<T>* real_plan_of(index points, int lanes) noexcept {
  if (const auto* const plan = kernels::find_real_plan<T>(points, lanes)) return plan;
  own_plans<T>();
  return kernels::make_real_plan<T>(points, lanes);
}

// The plan of half the length tells which of the two ways suits.
template <class T>
status forward_apart(const fft_kernels<T>& level, const T* from, T* to, index points) noexcept {
  const auto* const half = half_plan_of<T>(points, level.widest_lanes);
  if (half == nullptr) return failed;
  if (half->suits_forward) return forward_by_half(level, *half, from, to);
  const auto* const plan = real_plan_of<T>(points, level.widest_lanes);
  return plan != nullptr ? forward_lanes(level, *plan, from, to) : failed;
}
template <class T> status inverse_apart(const fft_kernels<T>& level, T* from, T* to, index points) noexcept {
  const auto* const half = half_plan_of<T>(points, level.widest_lanes);
  if (half == nullptr) return failed;
  if (half->suits_inverse) return inverse_by_half(level, *half, from, to);
  const auto* const plan = real_plan_of<T>(points, level.widest_lanes);
  return plan != nullptr ? inverse_lanes(level, *plan, from, to) : failed;
}

// The level that takes real data from one place to another as fast as in place; null where none does.
template <class T> const fft_kernels<T>* level_apart(index points) noexcept {
  const bool planned = points >> kernels::small_real_sizes != 0 && is_power_of_two(points);
  return planned ? at_level<fft_kernels<T>>() : nullptr;
}

template <class T> void transform_pair(T* x, bool inverse) noexcept {
  const T scale = inverse ? T(1) : T(0.5);
  for (index part = 0; part < 2; ++part) {
    const T a = scale * x[part];
    const T b = scale * x[2 + part];
    x[part] = a + b;
    x[2 + part] = a - b;
  }
}

// Half a spectrum to the whole: X[N-k] = conj X[k].
template <class T> void mirror(T* z, index points) noexcept {
  for (index k = 1; 2 * k < points; ++k) {
    z[2 * (points - k)] = z[2 * k];
    z[2 * (points - k) + 1] = -z[2 * k + 1];
  }
}

}  // namespace

template <class T> algorithm algorithm_for(index points) noexcept {
  if (points < 2) return algorithm::identity;
  if (points == 2) return algorithm::pair;
  const bool power = is_power_of_two(points);
  const auto* const level = at_level<fft_kernels<T>>();
  if (level == nullptr) return power ? algorithm::split_radix : algorithm::bluestein;
  const bool is_small = small_transform(at_level<kernels::small_kernels<T>>(), points, false) != nullptr;
  if (power) return is_small ? algorithm::small : algorithm::lanes;
  if (is_small) return algorithm::coprime;
  if (kernels::has_direct_plan(points)) return algorithm::direct;
  return has_short_factors<T>(points) ? cheapest_passes<T>(points) : algorithm::chirp;
}

namespace {

// Powers of two are met first.
template <class T> [[gnu::noinline]] status transform_longer(T* data, index points, bool inverse) noexcept {
  const auto* const level = at_level<fft_kernels<T>>();
  const bool power = is_power_of_two(points);
  if (level != nullptr && power && points > kernels::most_small) {
    return transform_lanes(*level, data, points, inverse);
  }
  if (level != nullptr && points > 2 && !power) return transform_any(data, points, inverse);
  switch (algorithm_for<T>(points)) {
    case algorithm::identity:
      return ok;
    case algorithm::pair:
      transform_pair(data, inverse);
      return ok;
    case algorithm::split_radix:
      return split_radix_transform(data, points, inverse);
    case algorithm::bluestein:
      return bluestein_transform(data, domain::complex, points, inverse);
    default:
      break;  // met before
  }
  return failed;
}

}  // namespace

// A length that needs no plan takes no longer than finding out what it is.
template <class T> status transform(T* data, index points, bool inverse) noexcept {
  const auto run = small_transform(at_level<kernels::small_kernels<T>>(), points, inverse);
  if (run == nullptr) return transform_longer(data, points, inverse);
  run(data);
  return ok;
}

template <class T> status transform_reals(T* data, index points, bool inverse) noexcept {
  if (isa::current() == isa::level::baseline && algorithm_for<T>(points) == algorithm::bluestein) {
    return bluestein_transform(data, domain::real, points, inverse);
  }
  widen(data, points);
  if (transform(data, points, inverse) == ok) return ok;
  narrow(data, points);
  return failed;
}

namespace {

template <class T> [[gnu::noinline]] status forward_longer(T* data, index points) noexcept {
  if (!has_packed(points)) return transform_reals(data, points, false);
  const auto* const level = at_level<fft_kernels<T>>();
  return level != nullptr ? forward_apart<T>(*level, data, data, points) : forward_packed(data, points);
}

template <class T> [[gnu::noinline]] status inverse_longer(T* data, index points) noexcept {
  if (!has_packed(points)) {
    mirror(data, points);
    if (transform(data, points, true) != ok) return failed;
    narrow(data, points);
    return ok;
  }
  const auto* const level = at_level<fft_kernels<T>>();
  return level != nullptr ? inverse_apart(*level, data, data, points) : inverse_packed(data, points);
}

}  // namespace

template <class T> status forward_real(T* data, index points) noexcept {
  const auto run = small_real_transform(at_level<kernels::small_kernels<T>>(), points, false);
  if (run == nullptr) return forward_longer(data, points);
  run(data);
  return ok;
}

template <class T> status inverse_real(T* data, index points) noexcept {
  const auto run = small_real_transform(at_level<kernels::small_kernels<T>>(), points, true);
  if (run == nullptr) return inverse_longer(data, points);
  run(data);
  return ok;
}

template <class T> status forward_real_apart(const T* from, T* to, index points) noexcept {
  if (const auto* const level = level_apart<T>(points)) {
    return forward_apart(*level, from, to, points);
  }
  std::copy_n(from, points, to);
  return forward_real(to, points);
}

template <class T> status inverse_real_apart(T* from, T* to, index points) noexcept {
  if (const auto* const level = level_apart<T>(points)) {
    return inverse_apart(*level, from, to, points);
  }
  if (inverse_real(from, points) != ok) return failed;
  std::copy_n(from, points, to);
  return ok;
}

// Where the two places that the passes take turns in stay in the second cache.
template <class T> int circle_order(index points) noexcept {
  const auto* const level = level_apart<T>(points);
  const bool stays = 2 * points * index{sizeof(T)} <= machine::caches().second;
  return level != nullptr && stays ? level->widest_lanes : 0;
}

template <class T> status make_filter(T* x, index points) noexcept {
  const auto* const level = at_level<fft_kernels<T>>();
  const auto* const plan = real_plan_of<T>(points, level->widest_lanes);
  if (plan == nullptr) return failed;
  return with_scratch_of(*plan, false, x, [=](T* scratch) { level->run_filter(*plan, x, scratch); });
}

template <class T> status run_circle(const T* filter, const T* from, T* to, index points) noexcept {
  const auto* const level = at_level<fft_kernels<T>>();
  const auto* const plan = real_plan_of<T>(points, level->widest_lanes);
  if (plan == nullptr) return failed;
  return with_scratch_of(*plan, true, from,
                         [=](T* scratch) { level->run_circle(*plan, filter, from, to, scratch); });
}

template void own_plans<double>() noexcept;
template void own_plans<float>() noexcept;
template algorithm algorithm_for<double>(index) noexcept;
template algorithm algorithm_for<float>(index) noexcept;
template status transform(double*, index, bool) noexcept;
template status transform(float*, index, bool) noexcept;
template status transform_reals(double*, index, bool) noexcept;
template status transform_reals(float*, index, bool) noexcept;
template status forward_real(double*, index) noexcept;
template status forward_real(float*, index) noexcept;
template status inverse_real(double*, index) noexcept;
template status inverse_real(float*, index) noexcept;
template status forward_real_apart(const double*, double*, index) noexcept;
template status forward_real_apart(const float*, float*, index) noexcept;
template status inverse_real_apart(double*, double*, index) noexcept;
template status inverse_real_apart(float*, float*, index) noexcept;
template int circle_order<double>(index) noexcept;
template int circle_order<float>(index) noexcept;
template status make_filter(double*, index) noexcept;
template status make_filter(float*, index) noexcept;
template status run_circle(const double*, const double*, double*, index) noexcept;
template status run_circle(const float*, const float*, float*, index) noexcept;

}  // namespace sigpak
