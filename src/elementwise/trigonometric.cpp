// Trigonometric functions and their inverses, in place.
#include <cmath>

#include "elementwise/in_place.h"
#include "elementwise/sine_parts.h"
#include "kernels/elementary/functions.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> void sine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::circular_functions<T>>()) return wide->sine(x, n);
  map(x, n, [](double u) { return std::sin(u); });
}

template <class T> void cosine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::circular_functions<T>>()) return wide->cosine(x, n);
  map(x, n, [](double u) { return std::cos(u); });
}

template <class T> void tangent(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::circular_functions<T>>()) return wide->tangent(x, n);
  map(x, n, [](double u) { return std::tan(u); });
}

// sin(x) / x; in double precision the sine carries more digits, so that the quotient is rounded once.
template <class T> double unnormalised_sinc(double x) noexcept {
  if (x == 0) return 1;
  if constexpr (sizeof(T) < sizeof(double)) {
    return std::sin(x) / x;
  } else {
    if (std::abs(x) <= sine_reduction_end) return quotient(sine_parts(x), {x, 0});
    const auto wide = static_cast<long double>(x);
    return static_cast<double>(std::sin(wide) / wide);
  }
}

template <class T> void sine_quotient(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::circular_functions<T>>()) return wide->sine_quotient(x, n);
  map(x, n, [](double u) { return unnormalised_sinc<T>(u); });
}

template <class T> void arctangent(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::inverse_functions<T>>()) return wide->arctangent(x, n);
  map(x, n, [](double u) { return std::atan(u); });
}

template <class T> void arcsine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::inverse_functions<T>>()) return wide->arcsine(x, n);
  map(x, n, [](double u) { return std::abs(u) > 1 ? 0.0 : std::asin(u); });
}

template <class T> void arccosine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::inverse_functions<T>>()) return wide->arccosine(x, n);
  map(x, n, [](double u) { return std::abs(u) > 1 ? 0.0 : std::acos(u); });
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
