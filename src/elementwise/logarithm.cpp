// SPDX-License-Identifier: MIT
// Logarithms and decibels, in place.
#include <cmath>
#include <type_traits>

#include "core/double_double.h"
#include "core/guard.h"
#include "core/kept_errno.h"
#include "elementwise/elementwise.h"
#include "elementwise/in_place.h"
#include "kernels/elementary/functions.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

using kernels::logarithm_constants;

// The logarithms of the smallest normal number, and log10 e as a precision takes it for angles.
template <class T> struct logarithm_factors;

template <> struct logarithm_factors<double> {
  static constexpr double_double log10_e = {0x1.bcb7b1526e50ep-2, 0x1.95355baaafad3p-57};
  static constexpr double log_tiny = -708.3964185322641;
  static constexpr double log10_tiny = -307.6526555685888;
};

template <> struct logarithm_factors<float> {
  static constexpr double_double log10_e = {double(0.4342945F), 0};
  static constexpr double log_tiny = -87.33654475055311;
  static constexpr double log10_tiny = -37.92977945366163;
};

template <class T>
constexpr logarithm_constants natural_constants = {
    0.5, 0, 1, 0, logarithm_factors<T>::log_tiny, 0.5 * wide_guard<T>::log_huge};

template <class T> void natural(T* x, index n) noexcept {
  const auto wide = at_level(&kernels::logarithm_functions<T>::logarithm);
  if constexpr (std::is_same_v<T, double>) {
    if (wide == nullptr) {
      return map(x, n,
                 [](double u) { return u < guard<T>::tiny ? natural_constants<T>.floor : std::log(u); });
    }
  }
  wide(x, n, natural_constants<T>);
}

template <class T> constexpr bool is_floored(double sum) noexcept { return sum < wide_guard<T>::tiny; }

// A point beyond H keeps its direction and counts as |z|^2 = H.
template <class T> void natural_point(double* z, const logarithm_constants& c) noexcept {
  const kept_errno kept;
  const double a = wide_guard<T>::clamp(z[0]);
  const double b = wide_guard<T>::clamp(z[1]);
  const bool beyond = wide_guard<T>::excludes(z[0], z[1]);
  const double sum = a * a + b * b;
  const bool below = !beyond && is_floored<T>(sum);
  z[0] = beyond ? c.ceiling : below ? c.floor : c.scale * std::log(sum);
  z[1] = below ? 0 : std::atan2(b, a);
}

template <class T> void natural_points(T* z, index points) noexcept {
  run_at_level(&kernels::logarithm_functions<T>::logarithm_points, z, points, natural_constants<T>,
               natural_point<T>);
}

// Of magnitudes, in both precisions; angles take the constant of the precision.
constexpr double_double log10_e = logarithm_factors<double>::log10_e;

// Beyond H the product of the factor and a constant could overflow: those are scaled plainly.
bool is_exact_factor(double factor) noexcept { return std::abs(factor) <= wide_guard<double>::huge; }

template <class T> void decimal_scaled(T* x, index n, double factor) noexcept {
  if (!is_exact_factor(factor)) {
    decimal_scaled(x, n, 1);
    map(x, n, [=](double log10) { return factor * log10; });
    return;
  }
  const double_double scale = product({factor, 0}, log10_e);
  const double floor = factor * logarithm_factors<T>::log10_tiny;
  run_at_level(&kernels::logarithm_functions<T>::scaled_logarithm, x, n,
               {scale.hi, scale.lo, 0, 0, floor, 0});
}

// The products rounded once.
template <class T> void decimal_point(double* z, const logarithm_constants& c) noexcept {
  const kept_errno kept;
  const double a = wide_guard<T>::clamp(z[0]);
  const double b = wide_guard<T>::clamp(z[1]);
  const double sum = a * a + b * b;
  const bool below = is_floored<T>(sum);
  using W = long double;
  const auto times = [](W x, double hi, double lo) { return static_cast<double>(x * (W(hi) + W(lo))); };
  z[0] = below ? c.floor : times(std::log(W(sum)), c.scale, c.scale_rest);
  z[1] = below ? 0 : times(std::atan2(W(b), W(a)), c.angle_scale, c.angle_scale_rest);
}

template <class T> void decimal_scaled_points(T* z, index points, double factor) noexcept {
  if (!is_exact_factor(factor)) {
    decimal_scaled_points(z, points, 1);
    map_pairs(z, points, [=](double log10, double angle) {
      return point<double>{factor * log10, factor * angle};
    });
    return;
  }
  const double_double scale = product({factor / 2, 0}, log10_e);
  const double_double angle_scale = product({factor, 0}, logarithm_factors<T>::log10_e);
  const logarithm_constants c = {
      scale.hi, scale.lo, angle_scale.hi, angle_scale.lo, factor * logarithm_factors<T>::log10_tiny, 0};
  run_at_level(&kernels::logarithm_functions<T>::scaled_logarithm_points, z, points, c, decimal_point<T>);
}

template <record V> status take_decibels(V* v, scalar<V> factor) noexcept {
  return apply(
      v, [=](auto* x, index n) { decimal_scaled(x, n, static_cast<double>(factor)); },
      [=](auto* z, index points) { decimal_scaled_points(z, points, static_cast<double>(factor)); });
}

}  // namespace

template <record V> status take_logarithm(V* v) noexcept {
  return apply(v, natural<scalar<V>>, natural_points<scalar<V>>);
}

template status take_logarithm(dsp_vec*) noexcept;
template status take_logarithm(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_log(dsp_vec* v) { return take_logarithm(v); }
int32_t dspfi_log(dspf_vec* v) { return take_logarithm(v); }
int32_t dspi_log10(dsp_vec* v) { return take_decibels(v, 1); }
int32_t dspfi_log10(dspf_vec* v) { return take_decibels(v, 1); }
int32_t dspi_db(dsp_vec* v, double factor) { return take_decibels(v, factor); }
int32_t dspfi_db(dspf_vec* v, float factor) { return take_decibels(v, factor); }
