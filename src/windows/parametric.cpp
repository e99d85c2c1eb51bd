// SPDX-License-Identifier: MIT
// The Kaiser and Gaussian windows.
#include <cmath>
#include <numbers>

#include "core/guard.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "windows/catalogue.h"
#include "windows/generated.h"
#include "windows/normalise.h"
#include "windows/shapes.h"
#include "windows/windows.h"

namespace sigpak {
namespace {

template <record V> bool refused(const V* v, int flags) noexcept {
  return is_complex(v) || has(flags, DSP_WINDOW_FLAG_WIDTH) || mode_of(flags) == refused_mode;
}

// The limit keeps I0, and where squares are averaged its square, far from overflow.
double limited_beta(double beta, int mode) noexcept {
  using g = guard<double>;
  const double limit = mode == DSP_WINDOW_FLAG_RMS ? g::log_huge : 2 * g::log_huge;
  return std::abs(beta) <= limit ? beta : limit;
}

}  // namespace

// I0(beta sqrt(1 - (2 x / d)^2)) at the distance x from the middle; J. F. Kaiser, "Nonrecursive digital
// filter design using the I0-sinh window function", ISCAS 1974. The samples carry a power of two that brings
// the largest near 1, so that single precision holds them for every beta; the normalisation takes it out
// again, exactly.
template <record V> status kaiser(V* v, double beta, int flags) noexcept {
  if (refused(v, flags)) return failed;
  const index n = length(v);
  if (n == 0) return ok;
  if (n == 1) {
    v->data[0] = 1;
    return ok;
  }
  const int mode = mode_of(flags);
  const bool symmetric = has(flags, DSP_WINDOW_FLAG_SYMMETRIC);
  const auto d = static_cast<double>(symmetric ? n - 1 : n);
  beta = limited_beta(beta, mode);
  const auto sample = [=](double x) {
    const double rest = (d - 2 * x) * (d + 2 * x);
    return rest > 0 ? bessel_i0(beta * (std::sqrt(rest) / d)) : 1.0;
  };
  const double largest = sample(symmetric && n % 2 == 0 ? 0.5 : 0.0);
  const double unit = std::ldexp(1.0, -std::ilogb(largest));
  fill_mirrored(v->data, n, symmetric, [=](double x) { return unit * sample(x); });
  return normalise(v, mode, unit * bessel_i0(beta));
}

// exp(-x^2 / (2 (a n)^2)) at the distance x from the middle, as a power of 2.
template <record V> status gaussian(V* v, double a, int flags) noexcept {
  if (refused(v, flags) || std::isnan(a)) return failed;
  const index n = length(v);
  if (n == 0) return ok;
  const auto points = static_cast<double>(n);
  const double slope = -0.5 / (points * points * a * a) * std::numbers::log2e;
  fill_mirrored(v->data, n, has(flags, DSP_WINDOW_FLAG_SYMMETRIC), [=](double x) {
    if (a == 0) return x < 1 ? 1.0 : 0.0;  // the innermost points alone
    return x == 0 ? 1.0 : std::exp2(x * x * slope);
  });
  return normalise(v, mode_of(flags), 1);
}

template status kaiser(dsp_vec*, double, int) noexcept;
template status kaiser(dspf_vec*, double, int) noexcept;
template status gaussian(dsp_vec*, double, int) noexcept;
template status gaussian(dspf_vec*, double, int) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_window_kaiser(dsp_vec* v, double beta, int32_t flags) {
  return apply_generated(v, flags, [=](dsp_vec* w) { return kaiser(w, beta, flags); });
}
int32_t dspfi_window_kaiser(dspf_vec* v, float beta, int32_t flags) {
  return apply_generated(v, flags, [=](dspf_vec* w) { return kaiser(w, static_cast<double>(beta), flags); });
}

int32_t dspi_window_gauss(dsp_vec* v, double a, int32_t flags) {
  return apply_generated(v, flags, [=](dsp_vec* w) { return gaussian(w, a, flags); });
}
int32_t dspfi_window_gauss(dspf_vec* v, float a, int32_t flags) {
  return apply_generated(v, flags, [=](dspf_vec* w) { return gaussian(w, static_cast<double>(a), flags); });
}
