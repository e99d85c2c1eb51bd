// SPDX-License-Identifier: MIT
// Trigonometric functions and their inverses, in place.
#include <cmath>

#include "elementwise/in_place.h"
#include "kernels/elementary/circular.h"
#include "kernels/elementary/functions.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

// Farther from 0 the C library's reduction loses digits beside the multiples of pi / 2.
constexpr double tangent_end = 0x1p20;

template <class T> void sine(T* x, index n) noexcept {
  run_at_level(&kernels::circular_functions<T>::sine, x, n);
}

template <class T> void cosine(T* x, index n) noexcept {
  run_at_level(&kernels::circular_functions<T>::cosine, x, n);
}

template <class T> void tangent(T* x, index n) noexcept {
  map_at_level(at_level(&kernels::circular_functions<T>::tangent), x, n, [](double u) {
    return std::abs(u) <= tangent_end ? std::tan(u) : kernels::careful_tangent<T>(u);
  });
}

template <class T> void sine_quotient(T* x, index n) noexcept {
  run_at_level(&kernels::circular_functions<T>::sine_quotient, x, n);
}

template <class T> void arctangent(T* x, index n) noexcept {
  map_at_level(at_level(&kernels::inverse_functions<T>::arctangent), x, n,
               [](double u) { return std::atan(u); });
}

template <class T> void arcsine(T* x, index n) noexcept {
  map_at_level(at_level(&kernels::inverse_functions<T>::arcsine), x, n,
               [](double u) { return std::abs(u) > 1 ? 0.0 : std::asin(u); });
}

template <class T> void arccosine(T* x, index n) noexcept {
  map_at_level(at_level(&kernels::inverse_functions<T>::arccosine), x, n,
               [](double u) { return std::abs(u) > 1 ? 0.0 : std::acos(u); });
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
