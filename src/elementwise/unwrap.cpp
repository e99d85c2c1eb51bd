// SPDX-License-Identifier: MIT
// Phase unwrapping.
#include <cmath>
#include <numbers>

#include "core/kept_errno.h"
#include "elementwise/elementwise.h"

namespace sigpak {
namespace {

// Every output follows its predecessor, 0 before the first, by the step to the input reduced into [-pi, pi];
// a step of exactly pi keeps its sign. In the record's own precision, so that its pi is exactly half a turn.
template <class T> void unwrap_phases(T* phase, index points) noexcept {
  const kept_errno kept;
  constexpr T half_turn = std::numbers::pi_v<T>;
  constexpr T turn = 2 * half_turn;
  T previous = 0;
  for (index i = 0; i < points; ++i) {
    T step = phase[i] - previous;
    if (!(std::abs(step) < turn)) step = std::fmod(step, turn);  // what is less stays as it is
    if (step > half_turn) {
      step -= turn;
    } else if (step < -half_turn) {
      step += turn;
    }
    previous += step;
    phase[i] = previous;
  }
}

template <record V> status unwrap(V* v) noexcept {
  if (is_complex(v)) return failed;
  unwrap_phases(v->data, length(v));
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_unwrap(dsp_vec* v) { return unwrap(v); }
int32_t dspfi_unwrap(dspf_vec* v) { return unwrap(v); }
