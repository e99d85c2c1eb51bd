// Direct sums of taps and samples at the wide levels.
#pragma once

#include <cstddef>

namespace sigpak::kernels {

// out[j] = sum over k < count of taps[k * tap_stride] * x[j + (count - 1 - k) * x_stride], j < n; strides 1
// or 2. Every output is the same chain of fused products, whatever n is and wherever it stands.
template <class T>
using fir_sum = void (*)(const T* taps, std::ptrdiff_t count, std::ptrdiff_t tap_stride, const T* x,
                         std::ptrdiff_t x_stride, T* out, std::ptrdiff_t n);

template <class T> struct fir_table { fir_sum<T> sum; };

}  // namespace sigpak::kernels
