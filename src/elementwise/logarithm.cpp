// Logarithms and decibels, in place.
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "core/guard.h"
#include "elementwise/elementwise.h"
#include "elementwise/in_place.h"
#include "elementwise/logarithm_factors.h"
#include "elementwise/logarithm_parts.h"
#include "elementwise/precise.h"
#include "kernels/elementary/functions.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

using kernels::logarithm_constants;

template <class T>
constexpr logarithm_constants natural_constants = {
    0.5, 0, 1, 0, logarithm_factors<T>::log_tiny, 0.5 * wide_guard<T>::log_huge};

template <class T> void natural(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::logarithm_functions<T>>())
    return wide->logarithm(x, n, natural_constants<T>);
  map_nearest(
      x, n, [](double u) { return u < wide_guard<T>::tiny ? logarithm_factors<T>::log_tiny : std::log(u); },
      precise_log);
}

// At T the parts of an exact sum of squares underflow and no longer tell: the plain sum decides.
template <class T> constexpr bool is_floored(double sum) noexcept { return sum < wide_guard<T>::tiny; }

// Whether the rounding of a sum of squares shows in its logarithm, in `sum` as rounded.
constexpr bool needs_exact_sum(double sum) noexcept {
  constexpr double low = 0x1p-6;
  constexpr double high = 0x1p6;
  return !(sum <= low || sum >= high);
}

// A point beyond H keeps its direction and counts as |z|^2 = H.
template <class T> void natural_point(double* z, const logarithm_constants& c) noexcept {
  const double a = wide_guard<T>::clamp(z[0]);
  const double b = wide_guard<T>::clamp(z[1]);
  const bool beyond = wide_guard<T>::excludes(z[0], z[1]);
  const double sum = a * a + b * b;
  const bool below = !beyond && is_floored<T>(sum);
  z[0] = beyond                 ? c.ceiling
         : below                ? c.floor
         : needs_exact_sum(sum) ? c.scale * rounded(logarithm(sum_of_squares(a, b)))
                                : c.scale * std::log(sum);
  z[1] = below ? 0 : std::atan2(b, a);
}

template <kernels::plain_logarithm plain, class T>
void map_plain(T* z, index points, logarithm_constants c) noexcept {
  map_pairs(z, points, [=](double a, double b) {
    double w[2] = {a, b};
    plain(w, c);
    return point<double>{w[0], w[1]};
  });
}

template <class T> void natural_points(T* z, index points) noexcept {
  if (const auto* wide = at_level<kernels::logarithm_functions<T>>()) {
    return wide->logarithm_points(z, points, natural_constants<T>, natural_point<T>);
  }
  map_plain<natural_point<T>>(z, points, natural_constants<T>);
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
  if (const auto* wide = at_level<kernels::logarithm_functions<T>>()) {
    return wide->scaled_logarithm(x, n, {scale.hi, scale.lo, 0, 0, floor, 0});
  }
  const auto plain = [=](double u) {
    if (u < wide_guard<T>::tiny) return floor;
    return u <= std::numeric_limits<double>::max() ? rounded_product(logarithm(u), scale) : factor * u;
  };
  map_nearest(x, n, plain, [=](double u) {
    return u < wide_guard<T>::tiny ? floor : precise_scaled_log(u, scale.hi, scale.lo);
  });
}

template <class T> void decimal_point(double* z, const logarithm_constants& c) noexcept {
  const double a = wide_guard<T>::clamp(z[0]);
  const double b = wide_guard<T>::clamp(z[1]);
  const double sum = a * a + b * b;
  const bool below = is_floored<T>(sum);
  z[0] = below ? c.floor
               : rounded_product(needs_exact_sum(sum) ? logarithm(sum_of_squares(a, b)) : logarithm(sum),
                                 {c.scale, c.scale_rest});
  const double angle = std::atan2(b, a);
  z[1] = below        ? 0
         : angle == 0 ? angle * c.angle_scale  // with its sign
                      : rounded_product({angle, 0}, {c.angle_scale, c.angle_scale_rest});
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
  if (const auto* wide = at_level<kernels::logarithm_functions<T>>()) {
    return wide->scaled_logarithm_points(z, points, c, decimal_point<T>);
  }
  map_plain<decimal_point<T>>(z, points, c);
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
