// SPDX-License-Identifier: MIT
// Direct sums of taps and samples.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

// out[j] = sum over k < count of taps[k * tap_stride] * x[j + (count - 1 - k) * x_stride], j < n; strides 1
// or 2. Every output is the same chain of products, fused where the level fuses them, whatever n is and
// wherever it stands.
template <class T>
using fir_sum = void (*)(const T* taps, std::int64_t count, std::int64_t tap_stride, const T* x,
                         std::int64_t x_stride, T* out, std::int64_t n);

template <class T> struct fir_table {
  static constexpr bool at_baseline = true;
  fir_sum<T> sum;
  std::int64_t transformed_from;  // taps from which on a transform takes less time than the sums
  std::int64_t transformed_beyond_cache_from;
};

}  // namespace sigpak::kernels
