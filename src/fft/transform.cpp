// The one door to the transforms: which algorithm runs, and the memory that the wide ones share.
#include "fft/transform.h"

#include <bit>

#include "core/frame.h"
#include "core/power_of_two.h"
#include "core/storage.h"
#include "fft/baseline/bluestein.h"
#include "fft/baseline/packed_real.h"
#include "fft/baseline/split_radix.h"
#include "fft/plans/chirp_plan.h"
#include "fft/wide/kernels.h"
#include "fft/wide_chirp.h"
#include "fft/wide_fft.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

constexpr index least_packed = 4;

// The tables and the scratch memory of the wide transforms.
template <class T> void own_plans() noexcept {
  register_cache<record_of<T>>(cache::plans, []() noexcept {
    kernels::release_wide_fft<T>();
    kernels::release_wide_chirp<T>();
    return ok;
  });
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
  if (at_level<kernels::fft_kernels<T>>() == nullptr)
    return power ? algorithm::split_radix : algorithm::bluestein;
  if (power) return points < index{1} << kernels::small_sizes ? algorithm::small : algorithm::lanes;
  if (kernels::has_wide_dft<T>(points)) return algorithm::mixed;
  return points % 2 != 0 && points <= kernels::most_direct_points<T> ? algorithm::direct : algorithm::chirp;
}

template <class T> status transform(T* data, index points, bool inverse) noexcept {
  switch (algorithm_for<T>(points)) {
    case algorithm::identity:
      return ok;
    case algorithm::pair:
      transform_pair(data, inverse);
      return ok;
    case algorithm::small:
      kernels::small_wide_fft(data, points, inverse);
      return ok;
    case algorithm::lanes:
      own_plans<T>();
      return kernels::wide_fft(data, points, inverse);
    case algorithm::mixed:
      own_plans<T>();
      return kernels::wide_dft(data, points, inverse);
    case algorithm::direct:
    case algorithm::chirp:
      own_plans<T>();
      return kernels::wide_chirp(data, points, inverse);
    case algorithm::split_radix:
      return split_radix_transform(data, points, inverse);
    case algorithm::bluestein:
      return bluestein_transform(data, domain::complex, points, inverse);
  }
  return failed;
}

template <class T> status transform_reals(T* data, index points, bool inverse) noexcept {
  if (algorithm_for<T>(points) == algorithm::bluestein) {
    return bluestein_transform(data, domain::real, points, inverse);
  }
  widen(data, points);
  if (transform(data, points, inverse) == ok) return ok;
  narrow(data, points);
  return failed;
}

index half_spectrum_room(index points) noexcept { return has_packed(points) ? points + 2 : 2 * points; }

template <class T> status forward_real(T* data, index points) noexcept {
  if (!has_packed(points)) return transform_reals(data, points, false);
  if (at_level<kernels::fft_kernels<T>>() == nullptr) return forward_packed(data, points);
  if (kernels::small_wide_real_fft(data, points, false)) return ok;
  own_plans<T>();
  return kernels::wide_real_fft(data, points, false);
}

template <class T> status inverse_real(T* data, index points) noexcept {
  if (!has_packed(points)) {
    mirror(data, points);
    if (transform(data, points, true) != ok) return failed;
    narrow(data, points);
    return ok;
  }
  if (at_level<kernels::fft_kernels<T>>() == nullptr) return inverse_packed(data, points);
  if (kernels::small_wide_real_fft(data, points, true)) return ok;
  own_plans<T>();
  return kernels::wide_real_fft(data, points, true);
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
