// Logarithms and decibels, in place.
#include <cmath>
#include <limits>

#include "elementwise/elementwise.h"
#include "elementwise/in_place.h"
#include "elementwise/logarithm_parts.h"
#include "elementwise/wide_guard.h"
#include "kernels/elementary.h"

namespace sigpak {
namespace {

// What the wide kernels need to know of ln x and, in points, of ln(a^2 + b^2) / 2.
template <class T> constexpr kernels::logarithm_constants natural_constants(double scale) noexcept {
  return {scale, 0, 1, wide_guard<T>::log_tiny, 0.5 * wide_guard<T>::log_huge};
}

template <class T> void natural(T* x, index n) noexcept {
  if (const auto* wide = kernels::logarithm<T>()) return wide->logarithm(x, n, natural_constants<T>(1));
  map(x, n, [](double u) { return u < wide_guard<T>::tiny ? wide_guard<T>::log_tiny : std::log(u); });
}

// At T the parts of an exact sum of squares underflow and no longer tell: the plain sum decides.
template <class T> constexpr bool is_floored(double a, double b) noexcept {
  return a * a + b * b < wide_guard<T>::tiny;
}

// A point beyond H keeps its direction and counts as |z|^2 = H.
template <class T> void natural_points(T* z, index points) noexcept {
  if (const auto* wide = kernels::logarithm<T>()) {
    return wide->logarithm_points(z, points, natural_constants<T>(0.5));
  }
  map_pairs(z, points, [](double a, double b) {
    if (wide_guard<T>::excludes(a, b)) {
      return point<double>{0.5 * wide_guard<T>::log_huge,
                           std::atan2(wide_guard<T>::clamp(b), wide_guard<T>::clamp(a))};
    }
    if (is_floored<T>(a, b)) return point<double>{wide_guard<T>::log_tiny, 0.0};
    return point<double>{0.5 * rounded(logarithm(sum_of_squares(a, b))), std::atan2(b, a)};
  });
}

// factor * log10 x from ln x, rounded once; scale is factor * log10 e.
double decibels(double_double ln, double_double scale) noexcept {
  const double_double top = exact_product(ln.hi, scale.hi);
  return top.hi + (top.lo + (ln.hi * scale.lo + ln.lo * scale.hi));
}

// Beyond H the product of the factor and a constant could overflow: those are scaled plainly.
bool is_exact_factor(double factor) noexcept { return std::abs(factor) <= wide_guard<double>::huge; }

template <class T> void decimal_scaled(T* x, index n, double factor) noexcept {
  if (!is_exact_factor(factor)) {
    decimal_scaled(x, n, 1);
    map(x, n, [=](double log10) { return factor * log10; });
    return;
  }
  const double_double scale = product({factor, 0}, log10_e);
  if (const auto* wide = kernels::logarithm<T>()) {
    return wide->scaled_logarithm(x, n, {scale.hi, scale.lo, 0, factor * wide_guard<T>::log10_tiny, 0});
  }
  map(x, n, [=](double u) {
    if (u < wide_guard<T>::tiny) return factor * wide_guard<T>::log10_tiny;
    return u <= std::numeric_limits<double>::max() ? decibels(logarithm(u), scale) : factor * u;
  });
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
  const double angle_scale = factor * wide_guard<T>::log10_e;
  if (const auto* wide = kernels::logarithm<T>()) {
    const double floor = factor * wide_guard<T>::log10_tiny;
    return wide->scaled_logarithm_points(z, points, {scale.hi, scale.lo, angle_scale, floor, 0});
  }
  map_pairs(z, points, [=](double re, double im) {
    const double a = wide_guard<T>::clamp(re);
    const double b = wide_guard<T>::clamp(im);
    if (is_floored<T>(a, b)) return point<double>{factor * wide_guard<T>::log10_tiny, 0.0};
    return point<double>{decibels(logarithm(sum_of_squares(a, b)), scale), angle_scale * std::atan2(b, a)};
  });
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
