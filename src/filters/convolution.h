// SPDX-License-Identifier: MIT
// Fast convolution of long real filters through the real transform.
#pragma once

#include <algorithm>

#include "core/record.h"

namespace sigpak {

// Neither NaN nor infinite: x - x is then 0. Several sums side by side become vectors.
template <class T> bool all_finite(const T* x, index n) noexcept {
  constexpr index lanes = 8;
  T zeros[lanes] = {};
  index i = 0;
  for (; i + lanes <= n; i += lanes) {
    for (index k = 0; k < lanes; ++k) zeros[k] += x[i + k] - x[i + k];
  }
  for (; i < n; ++i) zeros[0] += x[i] - x[i];
  return std::all_of(zeros, zeros + lanes, [](T sum) { return sum == 0; });
}

// The outputs of a block from its real input, with the samples before it in `history`, or zeros when that is
// null. The first taps - 1 outputs may be left to the caller: the return value tells how many are, -1 after a
// failure.
template <record V> index convolve_fast(const V* in, V* out, const V* taps, const V* history) noexcept;

}  // namespace sigpak
