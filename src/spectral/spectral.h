// SPDX-License-Identifier: MIT
// Workers of the transforms that other families call. Direction 0 is forward, with the factor 1/N.
#pragma once

#include "core/record.h"
#include "fft/small_transform.h"
#include "fft/transform.h"

namespace sigpak {

// Complex from two points on; delta stays. A failure leaves points and form as they were.
template <record V> status transform_real_record(V* v, bool inverse) noexcept;  // of two points at least
template <record V> status transform_record(V* v, bool inverse) noexcept {
  const index points = length(v);
  if (points < 2) return ok;
  return is_complex(v) ? transform(v->data, points, inverse) : transform_real_record(v, inverse);
}

// The same of a complex record whose length needs no plan; whether it is one.
template <record V> bool transform_small(V* v, bool inverse) noexcept {
  const auto* const level = at_chosen_level<kernels::small_kernels<scalar<V>>>();
  const auto run = is_complex(v) ? small_transform(level, index{v->points}, inverse) : nullptr;
  if (run != nullptr) run(v->data);
  return run != nullptr;
}

template <record V> status fft(V* v, int direction) noexcept;
template <record V> status dft(V* v, int direction) noexcept;
// The lower half of the spectrum of a real record of any length, and back.
template <record V> status real_dft(V* v) noexcept;
template <record V> status inverse_real_dft(V* v, bool odd) noexcept;

template <record V> status real_fft(V* v) noexcept;
template <record V> status inverse_real_fft(V* v) noexcept;

// Half a spectrum to the whole: 2 (points - 1) points, one more when odd.
template <record V> status reconstruct(V* v, bool odd) noexcept;

}  // namespace sigpak
