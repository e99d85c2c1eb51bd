// SPDX-License-Identifier: MIT
// Bessel functions in place, and the names kept for functions that are not provided.
#include <math.h>  // j0, j1, y0, y1 are POSIX, not C++

#include <cmath>

#include "core/guard.h"
#include "elementwise/elementwise.h"
#include "elementwise/in_place.h"

namespace sigpak {
namespace {

template <class T> void modified_bessel0(T* x, index n) noexcept {
  constexpr T largest = 700;
  for (index i = 0; i < n; ++i) x[i] = std::abs(x[i]) > largest ? guard<T>::huge : bessel_i0(x[i]);
}

template <class T> void bessel_j0(T* x, index n) noexcept {
  map(x, n, [](double u) { return ::j0(u); });
}

template <class T> void bessel_j1(T* x, index n) noexcept {
  map(x, n, [](double u) { return ::j1(u); });
}

template <class T> void bessel_y0(T* x, index n) noexcept {
  map(x, n, [](double u) { return u <= 0 ? 0.0 : ::y0(u); });
}

template <class T> void bessel_y1(T* x, index n) noexcept {
  map(x, n, [](double u) { return u <= 0 ? 0.0 : ::y1(u); });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_besi0(dsp_vec* v) { return apply(v, modified_bessel0<double>); }
int32_t dspfi_besi0(dspf_vec* v) { return apply(v, modified_bessel0<float>); }
int32_t dspi_besj0(dsp_vec* v) { return apply(v, bessel_j0<double>); }
int32_t dspfi_besj0(dspf_vec* v) { return apply(v, bessel_j0<float>); }
int32_t dspi_besj1(dsp_vec* v) { return apply(v, bessel_j1<double>); }
int32_t dspfi_besj1(dspf_vec* v) { return apply(v, bessel_j1<float>); }
int32_t dspi_besy0(dsp_vec* v) { return apply(v, bessel_y0<double>); }
int32_t dspfi_besy0(dspf_vec* v) { return apply(v, bessel_y0<float>); }
int32_t dspi_besy1(dsp_vec* v) { return apply(v, bessel_y1<double>); }
int32_t dspfi_besy1(dspf_vec* v) { return apply(v, bessel_y1<float>); }

int32_t dspi_erf(dsp_vec*) { return failed; }
int32_t dspfi_erf(dspf_vec*) { return failed; }
int32_t dspi_erfc(dsp_vec*) { return failed; }
int32_t dspfi_erfc(dspf_vec*) { return failed; }
int32_t dspi_gamma(dsp_vec*) { return failed; }
int32_t dspfi_gamma(dspf_vec*) { return failed; }
int32_t dspi_lgamma(dsp_vec*) { return failed; }
int32_t dspfi_lgamma(dspf_vec*) { return failed; }
