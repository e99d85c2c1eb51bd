// SPDX-License-Identifier: MIT
// Sums of products at several lags at the wide levels.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

// out[k] = sum over i < n of a[i + k * stride] * b[i], k < lags. One sum is the same chains of fused products
// whatever lags are asked for with it, and wherever a and b lie.
template <class T>
using lag_sums = void (*)(const T* a, std::int64_t stride, const T* b, std::int64_t n, T* out,
                          std::int64_t lags);

template <class T> struct lag_table { lag_sums<T> sum; };

}  // namespace sigpak::kernels
