// SPDX-License-Identifier: MIT
// Sums of samples and a filter that changes with the time between them as cubics do, at the wide levels.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

// The coefficients of v^0 .. v^3 for `size` samples, as four rows `stride` apart.
template <class T> struct cubic_rows {
  const T* at;
  std::int64_t stride;
  std::int64_t size;
};

// out[k] = sum over i < size of x[k][i] * (a[i] + v[k] (b[i] + v[k] (c[i] + v[k] d[i]))), k < outputs. Every
// output is summed in the same order, whatever stands beside it.
template <class T>
using cubic_sum = void (*)(const cubic_rows<T>& rows, const T* const* x, const T* v, std::int64_t outputs,
                           T* out);

template <class T> struct cubic_table { cubic_sum<T> sum; };

}  // namespace sigpak::kernels
