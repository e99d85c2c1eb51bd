// The one door to the transforms: which algorithm runs, and the memory that the wide ones share.
#include "fft/transform.h"

#include <algorithm>

#include "core/frame.h"
#include "core/power_of_two.h"
#include "core/storage.h"
#include "fft/baseline/bluestein.h"
#include "fft/baseline/packed_real.h"
#include "fft/baseline/split_radix.h"
#include "fft/wide/kernels.h"
#include "fft/wide/workspace.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

using kernels::fft_kernels;

constexpr index least_packed = 4;
constexpr index least_mixed = 16;

// The tables and the scratch memory of the wide transforms.
template <class T> void own_plans() noexcept {
  register_cache<record_of<T>>(cache::plans, []() noexcept {
    kernels::release_lane_plans<T>();
    kernels::release_real_plans<T>();
    kernels::release_mixed_plans<T>();
    kernels::release_chirp_plan<T>();
    kernels::workspace<T>.release();
    return ok;
  });
}

// Fewer lanes where N < lanes^2.
int lanes_for(index points, int widest) noexcept {
  int lanes = widest;
  while (static_cast<index>(lanes) * lanes > points) lanes /= 2;
  return lanes;
}

template <class T>
status transform_lanes(const fft_kernels<T>& level, T* x, index points, bool inverse) noexcept {
  own_plans<T>();
  const auto* const plan = kernels::find_lane_plan<T>(points, lanes_for(points, level.widest_lanes));
  if (plan == nullptr) return failed;
  T* const scratch = kernels::workspace<T>.at_least(2 * plan->lanes * plan->stride * plan->radix[0], x);
  if (scratch == nullptr) return failed;
  level.run(*plan, x, scratch, inverse);
  return ok;
}

template <class T>
status transform_real_lanes(const fft_kernels<T>& level, T* x, index points, bool inverse) noexcept {
  own_plans<T>();
  const auto* const plan = kernels::find_real_plan<T>(points, lanes_for(points / 2, level.widest_lanes));
  if (plan == nullptr) return failed;
  const index spectrum = inverse ? plan->vectors + 1 : 0;
  T* const scratch =
      kernels::workspace<T>.at_least(2 * plan->lanes * (plan->stride * plan->radix[0] + spectrum), x);
  if (scratch == nullptr) return failed;
  level.run_real(*plan, x, scratch, inverse);
  return ok;
}

// A power of two, at least 4.
template <class T>
status transform_packed(const fft_kernels<T>& level, T* x, index points, bool inverse) noexcept {
  if (points >= index{1} << kernels::small_real_sizes) return transform_real_lanes(level, x, points, inverse);
  level.small_real[address_bits(points)].run[inverse](x);
  return ok;
}

template <class T> bool suits_mixed(const fft_kernels<T>& level, index points) noexcept {
  if (points < least_mixed) return false;
  const int widest = level.widest_lanes;
  return kernels::find_mixed_plan<T>(points, widest) != nullptr || kernels::has_mixed_plan<T>(points, widest);
}

template <class T>
status transform_mixed(const fft_kernels<T>& level, T* x, index points, bool inverse) noexcept {
  own_plans<T>();
  const auto* plan = kernels::find_mixed_plan<T>(points, level.widest_lanes);
  if (plan == nullptr) plan = kernels::make_mixed_plan<T>(points, level.widest_lanes);
  if (plan == nullptr) return failed;
  const index a = plan->columns.vectors;
  const index b = plan->rows.vectors;
  const index row_groups = (a + plan->lanes - 1) / plan->lanes;
  T* const scratch = kernels::workspace<T>.at_least(2 * plan->lanes * (row_groups * b + std::max(a, b)), x);
  if (scratch == nullptr) return failed;
  level.run_mixed(*plan, x, scratch, inverse);
  return ok;
}

template <class T> status transform_chirp(T* x, index points, bool inverse) noexcept {
  own_plans<T>();
  const auto* const plan = kernels::find_chirp_plan<T>(points);
  if (plan == nullptr) return failed;
  T* const scratch = kernels::workspace<T>.at_least(kernels::scratch_of(*plan), x);
  if (scratch == nullptr) return failed;
  at_level<kernels::chirp_kernels<T>>()->run(*plan, x, scratch, inverse);
  return ok;
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

bool has_packed(index points) noexcept { return points >= least_packed && is_power_of_two(points); }

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
  if (power) return points < index{1} << kernels::small_sizes ? algorithm::small : algorithm::lanes;
  if (suits_mixed(*level, points)) return algorithm::mixed;
  return points % 2 != 0 && points <= kernels::most_direct_points<T> ? algorithm::direct : algorithm::chirp;
}

namespace {

template <class T> status transform_by(algorithm chosen, T* data, index points, bool inverse) noexcept {
  const auto* const level = at_level<fft_kernels<T>>();
  switch (chosen) {
    case algorithm::identity:
      return ok;
    case algorithm::pair:
      transform_pair(data, inverse);
      return ok;
    case algorithm::small:
      level->small[address_bits(points)].run[inverse](data);
      return ok;
    case algorithm::lanes:
      return transform_lanes(*level, data, points, inverse);
    case algorithm::mixed:
      return transform_mixed(*level, data, points, inverse);
    case algorithm::direct:
      at_level<kernels::chirp_kernels<T>>()->run_direct(kernels::direct_table<T>(points), points, data,
                                                        inverse);
      return ok;
    case algorithm::chirp:
      return transform_chirp(data, points, inverse);
    case algorithm::split_radix:
      return split_radix_transform(data, points, inverse);
    case algorithm::bluestein:
      return bluestein_transform(data, domain::complex, points, inverse);
  }
  return failed;
}

}  // namespace

template <class T> status transform(T* data, index points, bool inverse) noexcept {
  return transform_by(algorithm_for<T>(points), data, points, inverse);
}

template <class T> status transform_reals(T* data, index points, bool inverse) noexcept {
  const algorithm chosen = algorithm_for<T>(points);
  if (chosen == algorithm::bluestein) return bluestein_transform(data, domain::real, points, inverse);
  widen(data, points);
  if (transform_by(chosen, data, points, inverse) == ok) return ok;
  narrow(data, points);
  return failed;
}

index half_spectrum_room(index points) noexcept { return has_packed(points) ? points + 2 : 2 * points; }

template <class T> status forward_real(T* data, index points) noexcept {
  if (!has_packed(points)) return transform_reals(data, points, false);
  const auto* const level = at_level<fft_kernels<T>>();
  return level != nullptr ? transform_packed(*level, data, points, false) : forward_packed(data, points);
}

template <class T> status inverse_real(T* data, index points) noexcept {
  if (!has_packed(points)) {
    mirror(data, points);
    if (transform(data, points, true) != ok) return failed;
    narrow(data, points);
    return ok;
  }
  const auto* const level = at_level<fft_kernels<T>>();
  return level != nullptr ? transform_packed(*level, data, points, true) : inverse_packed(data, points);
}

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

}  // namespace sigpak
