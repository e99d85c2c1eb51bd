// SPDX-License-Identifier: MIT
// Sum, mean, sum of squared magnitudes, root mean square. Float records accumulate in double.
#include <cmath>

#include "core/guard.h"
#include "kernels/sums/block_sums.h"
#include "stats/result.h"
#include "stats/stats.h"

namespace sigpak {
namespace {

template <record V> status scaled_sum(const V* v, V* result, double factor) noexcept {
  using T = scalar<V>;
  using table = kernels::lane_sum_table<T>;
  const T* const x = v->data;
  if (is_complex(v)) {
    const auto [re, im] = blocked_sums(
        length(v),
        [x](index i) {
          return sums<2>{wide(x[2 * i]), wide(x[2 * i + 1])};
        },
        [x] { return lane_terms<T>{.kernel = &table::points, .x = x, .width = 2, .blocks = 3}; });
    return store(result, re * factor, im * factor);
  }
  const auto [total] = blocked_sums(
      length(v), [x](index i) { return sums<1>{wide(x[i])}; },
      [x] { return lane_terms<T>{.kernel = &table::samples, .x = x}; });
  return store(result, total * factor);
}

template <class T, class Limits> constexpr double clamped_square(T x, Limits limits) noexcept {
  const double part = wide_guard<T>::clamp(wide(x), limits);
  return part * part;
}

template <record V> double sum_of_squares(const V* v) noexcept {
  using T = scalar<V>;
  using table = kernels::lane_sum_table<T>;
  const T* const x = v->data;
  if (is_complex(v)) {
    return limited_sums<0>(
        length(v), wide_guard<T>::huge,
        [x](index i, auto limits) {
          return sums<1>{clamped_square(x[2 * i], limits) + clamped_square(x[2 * i + 1], limits)};
        },
        [x] {
          return lane_terms<T>{&table::point_squares, x, 2, {.huge = wide_guard<T>::huge}};
        })[0];
  }
  return limited_sums<0>(
      length(v), wide_guard<T>::huge,
      [x](index i, auto limits) { return sums<1>{clamped_square(x[i], limits)}; },
      [x] {
        return lane_terms<T>{&table::squares, x, 1, {.huge = wide_guard<T>::huge}};
      })[0];
}

template <record V> status sum_squared_magnitudes(const V* v, V* result) noexcept {
  return store(result, sum_of_squares(v));
}

}  // namespace

template <record V> status sum(const V* v, V* result) noexcept { return scaled_sum(v, result, 1.0); }

template <record V> status mean(const V* v, V* result) noexcept {
  const index points = length(v);
  return scaled_sum(v, result, points > 0 ? 1.0 / static_cast<double>(points) : 1.0);
}

template <record V> status root_mean_square(const V* v, V* result) noexcept {
  const index points = length(v);
  if (points == 0) return store(result, 0.0);
  return store(result, std::sqrt(sum_of_squares(v) / static_cast<double>(points)));
}

template status sum(const dsp_vec*, dsp_vec*) noexcept;
template status sum(const dspf_vec*, dspf_vec*) noexcept;
template status mean(const dsp_vec*, dsp_vec*) noexcept;
template status mean(const dspf_vec*, dspf_vec*) noexcept;
template status root_mean_square(const dsp_vec*, dsp_vec*) noexcept;
template status root_mean_square(const dspf_vec*, dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dsps_sum(const dsp_vec* v, dsp_vec* result) { return sum(v, result); }
int32_t dspfs_sum(const dspf_vec* v, dspf_vec* result) { return sum(v, result); }

int32_t dsps_mean(const dsp_vec* v, dsp_vec* result) { return mean(v, result); }
int32_t dspfs_mean(const dspf_vec* v, dspf_vec* result) { return mean(v, result); }

int32_t dsps_magsq_sum(const dsp_vec* v, dsp_vec* result) { return sum_squared_magnitudes(v, result); }
int32_t dspfs_magsq_sum(const dspf_vec* v, dspf_vec* result) { return sum_squared_magnitudes(v, result); }

int32_t dsps_rms(const dsp_vec* v, dsp_vec* result) { return root_mean_square(v, result); }
int32_t dspfs_rms(const dspf_vec* v, dspf_vec* result) { return root_mean_square(v, result); }
