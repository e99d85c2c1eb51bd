// SPDX-License-Identifier: MIT
// Correlations of one section: by sums of products, or as the product of two spectra.
#pragma once

#include "core/record.h"

namespace sigpak {

// out[k] = sum over i < n of a[i + k] conj(b[i]), k < lags, of real samples or of complex ones.
// turned: room for 2 (n + lags) scalars, with complex samples.
template <class T>
void sum_lags(const T* a, const T* b, index n, bool complex, T* out, index lags, T* turned) noexcept;

// The sum of squares of n scalars.
template <class T> double energy(const T* x, index n) noexcept;

// A sum that is kept in the scalars of a record: in double precision in one, in single precision in two that
// add up to it. `lo` is null in double.
template <class T> struct sums_in {
  T* hi;
  T* lo;
};

// sums[i] += x[i].
template <class T> void accumulate(sums_in<T> sums, const T* x, index n) noexcept;

// sums[k] += a[k] conj(b[k]) of n complex points.
template <class T> void accumulate_products(sums_in<T> sums, const T* a, const T* b, index n) noexcept;

// a[k] = a[k] conj(b[k]) of n complex points; b may be a.
template <class T> void multiply_conjugate(T* a, const T* b, index n) noexcept;

}  // namespace sigpak
