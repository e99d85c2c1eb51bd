// SPDX-License-Identifier: MIT
// Powers of e and of ten, in place.
#include <cmath>

#include "core/guard.h"
#include "elementwise/elementwise.h"
#include "elementwise/in_place.h"
#include "kernels/elementary/functions.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> void exponential(T* x, index n) noexcept {
  map_at_level(at_level(&kernels::exponential_functions<T>::exponential), x, n,
               [](double u) { return u > wide_guard<T>::log_huge ? wide_guard<T>::huge : std::exp(u); });
}

template <class T> void exponential_points(T* z, index points) noexcept {
  run_at_level(&kernels::exponential_functions<T>::exponential_points, z, points);
}

template <class T> void exponential10(T* x, index n) noexcept {
  run_at_level(&kernels::exponential_functions<T>::exponential10, x, n);
}

template <class T> void exponential10_points(T* z, index points) noexcept {
  run_at_level(&kernels::exponential_functions<T>::exponential10_points, z, points);
}

template <record V> status exponentiate10(V* v) noexcept {
  return apply(v, exponential10<scalar<V>>, exponential10_points<scalar<V>>);
}

}  // namespace

template <record V> status exponentiate(V* v) noexcept {
  return apply(v, exponential<scalar<V>>, exponential_points<scalar<V>>);
}

template status exponentiate(dsp_vec*) noexcept;
template status exponentiate(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_exp(dsp_vec* v) { return exponentiate(v); }
int32_t dspfi_exp(dspf_vec* v) { return exponentiate(v); }
int32_t dspi_exp10(dsp_vec* v) { return exponentiate10(v); }
int32_t dspfi_exp10(dspf_vec* v) { return exponentiate10(v); }
