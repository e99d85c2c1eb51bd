// SPDX-License-Identifier: MIT
// Scale factors of the windows, and their equivalent noise bandwidth.
#include <cmath>

#include "core/guard.h"
#include "core/storage.h"
#include "stats/stats.h"
#include "windows/catalogue.h"
#include "windows/shapes.h"
#include "windows/windows.h"

namespace sigpak {
namespace {

using terms = std::span<const double>;

// The mean of a sum of cosines over n points: the terms whose index is a multiple of n alias onto the
// constant.
double mean_of(terms a, index n) noexcept {
  double sum = 0;
  for (std::size_t k = 0; k < a.size(); k += static_cast<std::size_t>(n)) sum += a[k];
  return sum;
}

// The mean square over n points: 1/2 sum over j, k of a[j] a[k] ([n divides j - k] + [n divides j + k]).
double mean_square_of(terms a, index n) noexcept {
  const auto count = static_cast<index>(a.size());
  double sum = 0;
  for (index j = 0; j < count; ++j) {
    for (index k = 0; k < count; ++k) {
      const int hits = ((j - k) % n == 0 ? 1 : 0) + ((j + k) % n == 0 ? 1 : 0);
      sum += hits * a[static_cast<std::size_t>(j)] * a[static_cast<std::size_t>(k)];
    }
  }
  return sum / 2;
}

// From the stored coefficients alone, corrected where so few points make terms alias.
double scale_from_terms(const catalogued_window& window, int mode, index n) noexcept {
  const terms raw = window.terms_of(DSP_WINDOW_FLAG_PEAK);
  const terms set = window.terms_of(mode);
  const auto count = static_cast<index>(set.size());
  const double plain = set[0] / raw[0];
  if (mode == DSP_WINDOW_FLAG_MEAN) return n >= count ? plain : plain * set[0] / mean_of(set, n);
  return n >= 2 * count - 1 ? plain : plain / std::sqrt(mean_square_of(set, n));
}

template <record V>
status scale_from_points(double* scale, int window, int flags, index n, double width) noexcept {
  constexpr int shape = DSP_WINDOW_FLAG_WIDTH | DSP_WINDOW_FLAG_SYMMETRIC;
  temporary<V> u;
  temporary<V> level;
  u.points = static_cast<std::uint32_t>(n);
  if (allocate<V>(&u) != ok) return failed;
  if (generate_window<V>(&u, window, (flags & shape) | DSP_WINDOW_FLAG_PEAK, width) != ok) return failed;
  const bool by_mean = mode_of(flags) == DSP_WINDOW_FLAG_MEAN;
  if ((by_mean ? mean<V>(&u, &level) : root_mean_square<V>(&u, &level)) != ok) return failed;
  const auto unnormalised = static_cast<double>(level.data[0]);
  *scale = unnormalised != 0 ? 1 / unnormalised : static_cast<double>(guard<scalar<V>>::huge);
  return ok;
}

template <record V> status find_scale(double* scale, int window, int flags, index n, double width) noexcept {
  const int mode = mode_of(flags);
  if (mode == DSP_WINDOW_FLAG_PEAK || n < 1) {
    *scale = 1;
    return ok;
  }
  if (mode == refused_mode) return failed;
  const catalogued_window* const row = find_window(window);
  if (row == nullptr) return failed;
  if (!has(flags, DSP_WINDOW_FLAG_WIDTH) && row->kind == window_kind::triangle) {
    *scale = triangle_peak(n, mode);
    return ok;
  }
  if (!has(flags, DSP_WINDOW_FLAG_WIDTH) && row->terms > 0) {
    *scale = scale_from_terms(*row, mode, n);
    return ok;
  }
  return scale_from_points<V>(scale, window, flags, n, width);
}

template <record V>
status window_scale(scalar<V>* out, int window, int flags, std::int32_t n, double width) noexcept {
  double scale = 0;
  if (out == nullptr || find_scale<V>(&scale, window, flags, n, width) != ok) return failed;
  *out = static_cast<scalar<V>>(scale);
  return ok;
}

template <record V>
status whole_window_scale(scalar<V>* out, int window, int flags, std::int32_t n) noexcept {
  return has(flags, DSP_WINDOW_FLAG_WIDTH) ? failed : window_scale<V>(out, window, flags, n, 0);
}

// mean(u^2) / mean(u)^2.
template <record V>
status noise_bandwidth(scalar<V>* out, int window, int flags, std::int32_t n, double width) noexcept {
  double by_mean = 0;
  double by_rms = 0;
  if (out == nullptr) return failed;
  if (find_scale<V>(&by_mean, window, flags | DSP_WINDOW_FLAG_MEAN, n, width) != ok) return failed;
  if (find_scale<V>(&by_rms, window, flags | DSP_WINDOW_FLAG_RMS, n, width) != ok) return failed;
  const double ratio = by_mean / by_rms;
  *out = static_cast<scalar<V>>(ratio * ratio);
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsp_window_scale(double* scale, int32_t window, int32_t flags, int32_t points) {
  return whole_window_scale<dsp_vec>(scale, window, flags, points);
}
int32_t dspf_window_scale(float* scale, int32_t window, int32_t flags, int32_t points) {
  return whole_window_scale<dspf_vec>(scale, window, flags, points);
}

int32_t dsp_window2_scale(double* scale, int32_t window, int32_t flags, int32_t points, double width) {
  return window_scale<dsp_vec>(scale, window, flags, points, width);
}
int32_t dspf_window2_scale(float* scale, int32_t window, int32_t flags, int32_t points, float width) {
  return window_scale<dspf_vec>(scale, window, flags, points, static_cast<double>(width));
}

int32_t dsp_window_enbw(double* bins, int32_t window, int32_t points) {
  return noise_bandwidth<dsp_vec>(bins, window, 0, points, 0);
}
int32_t dspf_window_enbw(float* bins, int32_t window, int32_t points) {
  return noise_bandwidth<dspf_vec>(bins, window, 0, points, 0);
}

int32_t dsp_window2_enbw(double* bins, int32_t window, int32_t points, double width) {
  return noise_bandwidth<dsp_vec>(bins, window, DSP_WINDOW_FLAG_WIDTH, points, width);
}
int32_t dspf_window2_enbw(float* bins, int32_t window, int32_t points, float width) {
  return noise_bandwidth<dspf_vec>(bins, window, DSP_WINDOW_FLAG_WIDTH, points, static_cast<double>(width));
}
