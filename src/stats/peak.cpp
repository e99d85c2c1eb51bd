// SPDX-License-Identifier: MIT
// The place and the height of a peak, between the samples where asked for.
#include <cmath>

#include "core/kept_errno.h"
#include "stats/extremes.h"
#include "stats/result.h"

namespace sigpak {
namespace {

constexpr std::int32_t interpolation_field = 0x0700;

struct peak {
  double height;
  double position;
  status outcome = ok;
};

template <record V> index peak_index(const V* v, std::int32_t flags, std::int32_t wanted) noexcept {
  const index points = length(v);
  if ((flags & DSP_PEAK_AT_INDEX) != 0) return std::clamp<index>(wanted, 0, points - 1);
  const bool complex = is_complex(v);
  const index found = (flags & DSP_PEAK_MINIMUM) != 0
                          ? find_extreme<extreme::smallest>(v->data, points, complex)
                          : find_extreme<extreme::largest>(v->data, points, complex);
  return std::max<index>(found, 0);
}

// The heights that peaks are measured in: samples, of a complex record squared magnitudes.
template <record V> double height(const V* v, index i) noexcept {
  const scalar<V>* const x = v->data + i * width(v);
  const double re = wide(x[0]);
  if (!is_complex(v)) return re;
  const double im = wide(x[1]);
  return re * re + im * im;
}

// The vertex of the parabola through three points. A flat one has none, and divides by zero.
template <record V> peak parabola_vertex(const V* v, index i) noexcept {
  const double a = height(v, i - 1);
  const double b = height(v, i);
  const double c = height(v, i + 1);
  const double p = (c - a) * 0.5;
  const double q = (c - 2 * b + a) * 0.5;
  return {b - p * p / (q * 4.0), static_cast<double>(i) - p / (q + q)};
}

// Two neighbours on a main lobe taken as Gaussian: the logarithm of their ratio is linear in the offset of
// the top. An offset that leaves the neighbourhood of the pair is limited and reported.
template <record V> peak log_ratio_line(const V* v, index i, bool shaped) noexcept {
  constexpr double offset_per_neper = 0.792233201343665;
  constexpr double lobe = 0.315563649157834;  // 1 / (4 offset_per_neper)
  constexpr double shape = 0.02036;
  const index last = length(v) - 1;
  const bool left = i == last || (i >= 1 && height(v, i - 1) > height(v, i + 1));
  const index j = left ? i - 1 : i;
  const double y0 = height(v, j);
  double d = std::log(height(v, j + 1) / y0) * offset_per_neper;
  if (shaped) d *= 1 - (d * d - 0.25) * shape;
  d += 0.5;
  const bool outside = d < -0.5 || d > 1.5;
  if (outside) d = d < -0.5 ? -0.5 : 1.5;
  return {y0 * std::exp(lobe * (d * d)), static_cast<double>(j) + d, outside ? failed : ok};
}

template <record V> peak interpolated_peak(const V* v, std::int32_t method, index i) noexcept {
  const index points = length(v);
  const bool inside = i > 0 && i < points - 1;
  const bool log_ratio = method == DSP_PEAK_LOG_RATIO || method == DSP_PEAK_SHAPED_LOG_RATIO;
  if (method == DSP_PEAK_PARABOLA && inside) return parabola_vertex(v, i);
  if (log_ratio && points >= 2) return log_ratio_line(v, i, method == DSP_PEAK_SHAPED_LOG_RATIO);
  return {height(v, i), static_cast<double>(i)};
}

template <record V>
status find_peak(const V* v, V* result, std::int32_t flags, std::int32_t wanted) noexcept {
  const std::int32_t method = flags & interpolation_field;
  if (method > DSP_PEAK_SHAPED_LOG_RATIO) return failed;
  const kept_errno kept;
  return run_apart(v, result, [=](const V* in, V* out) {
    peak found{0, 0};
    if (length(in) > 0) {
      found = interpolated_peak(in, method, peak_index(in, flags, wanted));
    }
    if (prepare_result(out, 2, false) != ok) return failed;
    out->data[0] = static_cast<scalar<V>>(found.height);
    out->data[1] = static_cast<scalar<V>>(found.position);
    return found.outcome;
  });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_peak(const dsp_vec* v, dsp_vec* result, int32_t flags, int32_t index) {
  return find_peak(v, result, flags, index);
}
int32_t dspfs_peak(const dspf_vec* v, dspf_vec* result, int32_t flags, int32_t index) {
  return find_peak(v, result, flags, index);
}
