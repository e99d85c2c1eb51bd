// SPDX-License-Identifier: MIT
// Hyperbolic functions, in place.
#include "elementwise/in_place.h"
#include "kernels/elementary/functions.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> void hyperbolic_sine(T* x, index n) noexcept {
  run_at_level(&kernels::exponential_functions<T>::hyperbolic_sine, x, n);
}

template <class T> void hyperbolic_cosine(T* x, index n) noexcept {
  run_at_level(&kernels::exponential_functions<T>::hyperbolic_cosine, x, n);
}

template <class T> void hyperbolic_tangent(T* x, index n) noexcept {
  run_at_level(&kernels::exponential_functions<T>::hyperbolic_tangent, x, n);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_sinh(dsp_vec* v) { return apply(v, hyperbolic_sine<double>); }
int32_t dspfi_sinh(dspf_vec* v) { return apply(v, hyperbolic_sine<float>); }
int32_t dspi_cosh(dsp_vec* v) { return apply(v, hyperbolic_cosine<double>); }
int32_t dspfi_cosh(dspf_vec* v) { return apply(v, hyperbolic_cosine<float>); }
int32_t dspi_tanh(dsp_vec* v) { return apply(v, hyperbolic_tangent<double>); }
int32_t dspfi_tanh(dspf_vec* v) { return apply(v, hyperbolic_tangent<float>); }
