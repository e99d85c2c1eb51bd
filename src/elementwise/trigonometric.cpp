// Trigonometric functions and their inverses, in place.
#include <cmath>

#include "elementwise/in_place.h"
#include "elementwise/precise.h"
#include "kernels/elementary/circular.h"
#include "kernels/elementary/functions.h"
#include "kernels/elementary/sine_parts.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

// y, the C library's near zero; its reduction of far angles loses digits beside the multiples of pi / 2.
template <double y(double), double careful(double) noexcept> double near_or(double x) noexcept {
  return std::abs(x) <= sine_reduction_end ? y(x) : careful(x);
}

template <class T> void sine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::circular_functions<T>>()) return wide->sine(x, n);
  map_nearest_one_by_one(x, n, near_or<std::sin, kernels::careful_sine<T>>, kernels::careful_sine<T>);
}

template <class T> void cosine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::circular_functions<T>>()) return wide->cosine(x, n);
  map_nearest_one_by_one(x, n, near_or<std::cos, kernels::careful_cosine<T>>, kernels::careful_cosine<T>);
}

template <class T> void tangent(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::circular_functions<T>>()) return wide->tangent(x, n);
  map_nearest_one_by_one(x, n, near_or<std::tan, kernels::careful_tangent<T>>, kernels::careful_tangent<T>);
}

// In double precision the sine carries more digits, so that the quotient is rounded once.
template <class T> double unnormalised_sinc(double x) noexcept {
  if (std::abs(x) < 0x1p-27) return 1;  // to which it rounds
  if (!(std::abs(x) <= sine_reduction_end)) [[unlikely]]
    return kernels::careful_sine_quotient<T>(x);
  if constexpr (sizeof(T) < sizeof(double)) {
    return std::sin(x) / x;
  } else {
    return rounded(quotient(sine_parts(x), x));
  }
}

template <class T> void sine_quotient(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::circular_functions<T>>()) return wide->sine_quotient(x, n);
  map_nearest_one_by_one(x, n, unnormalised_sinc<T>, kernels::careful_sine_quotient<T>);
}

template <class T> void arctangent(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::inverse_functions<T>>()) return wide->arctangent(x, n);
  map_nearest(
      x, n, [](double u) { return std::atan(u); }, precise_atan);
}

template <class T> void arcsine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::inverse_functions<T>>()) return wide->arcsine(x, n);
  map_nearest_one_by_one(
      x, n, [](double u) { return std::abs(u) > 1 ? 0.0 : std::asin(u); }, precise_asin);
}

template <class T> void arccosine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::inverse_functions<T>>()) return wide->arccosine(x, n);
  map_nearest_one_by_one(
      x, n, [](double u) { return std::abs(u) > 1 ? 0.0 : std::acos(u); }, precise_acos);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_sin(dsp_vec* v) { return apply(v, sine<double>); }
int32_t dspfi_sin(dspf_vec* v) { return apply(v, sine<float>); }
int32_t dspi_cos(dsp_vec* v) { return apply(v, cosine<double>); }
int32_t dspfi_cos(dspf_vec* v) { return apply(v, cosine<float>); }
int32_t dspi_tan(dsp_vec* v) { return apply(v, tangent<double>); }
int32_t dspfi_tan(dspf_vec* v) { return apply(v, tangent<float>); }
int32_t dspi_sinc(dsp_vec* v) { return apply(v, sine_quotient<double>); }
int32_t dspfi_sinc(dspf_vec* v) { return apply(v, sine_quotient<float>); }
int32_t dspi_atan(dsp_vec* v) { return apply(v, arctangent<double>); }
int32_t dspfi_atan(dspf_vec* v) { return apply(v, arctangent<float>); }
int32_t dspi_asin(dsp_vec* v) { return apply(v, arcsine<double>); }
int32_t dspfi_asin(dspf_vec* v) { return apply(v, arcsine<float>); }
int32_t dspi_acos(dsp_vec* v) { return apply(v, arccosine<double>); }
int32_t dspfi_acos(dspf_vec* v) { return apply(v, arccosine<float>); }
