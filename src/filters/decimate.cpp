// SPDX-License-Identifier: MIT
// Every k-th sample of a stream.
#include <algorithm>
#include <limits>

#include "core/record.h"
#include "core/storage.h"

namespace sigpak {
namespace {

// Rounded half up; below zero, and for NaN, the first sample.
template <record V> index start_of(const V* state) noexcept {
  constexpr double most = std::numeric_limits<std::int32_t>::max();
  const double value = static_cast<double>(state->data[0]) + 0.5;
  return value >= 1 ? static_cast<index>(std::min(value, most)) : 0;
}

// A state that holds no point yet starts at the first sample.
template <record V> status prepare_state(V* state) noexcept {
  if (length(state) > 0 && state->data != nullptr) return ok;
  state->points = 1;
  state->complex = 0;
  if (allocate(state) != ok) {
    state->points = 0;
    return failed;
  }
  state->data[0] = 0;
  return ok;
}

// Forwards, so that the kept points may move within their own record.
template <class T>
void keep_every(const T* x, index width, index start, index factor, T* out, index count) noexcept {
  for (index i = 0; i < count; ++i) {
    for (index part = 0; part < width; ++part) out[i * width + part] = x[(start + i * factor) * width + part];
  }
}

template <record V> status decimate(const V* in, V* out, std::int32_t wanted, V* state) noexcept {
  const index factor = std::max<index>(wanted, 1);
  if (state != nullptr && prepare_state(state) != ok) return failed;
  const index start = state != nullptr ? start_of(state) : 0;
  const index points = length(in);
  const index w = width(in);
  const index count = start < points ? (factor - start + points - 1) / factor : 0;
  const index next = start < points ? factor - (points - start + factor - 1) % factor - 1 : start - points;
  const bool shared = out->data == in->data;
  out->delta = static_cast<scalar<V>>(factor) * in->delta;
  out->complex = in->complex;
  out->points = static_cast<std::uint32_t>(count);
  if (!shared && allocate(out) != ok) return failed;
  keep_every(in->data, w, start, factor, out->data, count);
  if (state != nullptr) state->data[0] = static_cast<scalar<V>>(next);
  return ok;
}

}  // namespace
}  // namespace sigpak

int32_t dspd_deci(const dsp_vec* in, dsp_vec* out, int32_t factor, dsp_vec* state) {
  return sigpak::decimate(in, out, factor, state);
}
int32_t dspfd_deci(const dspf_vec* in, dspf_vec* out, int32_t factor, dspf_vec* state) {
  return sigpak::decimate(in, out, factor, state);
}
