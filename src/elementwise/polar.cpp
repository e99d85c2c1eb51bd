// SPDX-License-Identifier: MIT
// Phases, polar form and back.
#include <cmath>
#include <numbers>

#include "elementwise/elementwise.h"
#include "elementwise/packing.h"
#include "kernels/elementary/functions.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> T phase_of(T x) noexcept { return x < 0 ? std::numbers::pi_v<T> : T(0); }

template <record V> status take_phase(V* v) noexcept {
  using T = scalar<V>;
  if (is_complex(v)) {
    run_at_level(&kernels::inverse_functions<T>::phase, v->data, v->data, length(v));
    v->complex = 0;
  } else {
    map_reals(v->data, v->data, length(v), [](T x) { return phase_of(x); });
  }
  return ok;
}

template <record V> status to_polar(V* v) noexcept {
  using T = scalar<V>;
  if (!is_complex(v)) return spread_reals(v, [](T x) { return point<T>{std::abs(x), phase_of(x)}; });
  run_at_level(&kernels::inverse_functions<T>::polar, v->data, length(v));
  return ok;
}

template <record V> status to_rectangular(V* v) noexcept {
  if (is_complex(v)) run_at_level(&kernels::circular_functions<scalar<V>>::rectangular, v->data, length(v));
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_phase(dsp_vec* v) { return take_phase(v); }
int32_t dspfi_phase(dspf_vec* v) { return take_phase(v); }

int32_t dspi_rtop(dsp_vec* v) { return to_polar(v); }
int32_t dspfi_rtop(dspf_vec* v) { return to_polar(v); }

int32_t dspi_ptor(dsp_vec* v) { return to_rectangular(v); }
int32_t dspfi_ptor(dspf_vec* v) { return to_rectangular(v); }
