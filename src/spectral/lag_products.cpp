// SPDX-License-Identifier: MIT
// Correlations of one section: by sums of products, or as the product of two spectra.
#include "spectral/lag_products.h"

#include <algorithm>
#include <concepts>

#include "kernels/lag_sums.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> void sum_plainly(const T* a, index stride, const T* b, index n, T* out, index lags) {
  constexpr index chains = 8;
  for (index k = 0; k < lags; ++k) {
    const T* const x = a + k * stride;
    T sums[chains] = {};
    index i = 0;
    for (; i + chains <= n; i += chains) {
      for (index j = 0; j < chains; ++j) sums[j] += x[i + j] * b[i + j];
    }
    for (; i < n; ++i) sums[i % chains] += x[i] * b[i];
    for (index half = chains / 2; half > 0; half /= 2) {
      for (index j = 0; j < half; ++j) sums[j] += sums[j + half];
    }
    out[k] = sums[0];
  }
}

template <class T> kernels::lag_sums<T> current_sums() noexcept {
  const auto* const wide = at_level<kernels::lag_table<T>>();
  return wide != nullptr ? wide->sum : sum_plainly<T>;
}

template <class T> [[gnu::always_inline]] inline void add_to(sums_in<T> sums, index i, T x) noexcept {
  if constexpr (std::same_as<T, double>) {
    sums.hi[i] += x;
  } else {
    const double sum =
        static_cast<double>(sums.hi[i]) + static_cast<double>(sums.lo[i]) + static_cast<double>(x);
    sums.hi[i] = static_cast<float>(sum);
    sums.lo[i] = static_cast<float>(sum - static_cast<double>(sums.hi[i]));
  }
}

}  // namespace

// The real parts are products of the scalars as they lie, the imaginary ones those with i conj(b).
template <class T>
void sum_lags(const T* a, const T* b, index n, bool complex, T* out, index lags, T* turned) noexcept {
  const kernels::lag_sums<T> sum = current_sums<T>();
  if (!complex) return sum(a, 1, b, n, out, lags);
  for (index i = 0; i < n; ++i) {
    turned[2 * i] = -b[2 * i + 1];
    turned[2 * i + 1] = b[2 * i];
  }
  T* const re = turned + 2 * n;
  T* const im = re + lags;
  sum(a, 2, b, 2 * n, re, lags);
  sum(a, 2, turned, 2 * n, im, lags);
  for (index k = 0; k < lags; ++k) {
    out[2 * k] = re[k];
    out[2 * k + 1] = im[k];
  }
}

template <class T> double energy(const T* x, index n) noexcept {
  T sum = 0;
  current_sums<T>()(x, 1, x, n, &sum, 1);
  return static_cast<double>(sum);
}

template <class T> void accumulate(sums_in<T> sums, const T* x, index n) noexcept {
  isa::run([=] {
#pragma GCC ivdep
    for (index i = 0; i < n; ++i) add_to(sums, i, x[i]);
  });
}

template <class T> void accumulate_products(sums_in<T> sums, const T* a, const T* b, index n) noexcept {
  isa::run([=] {
#pragma GCC ivdep
    for (index k = 0; k < 2 * n; k += 2) {
      add_to(sums, k, a[k] * b[k] + a[k + 1] * b[k + 1]);
      add_to(sums, k + 1, a[k + 1] * b[k] + (-a[k]) * b[k + 1]);
    }
  });
}

template <class T> void multiply_conjugate(T* a, const T* b, index n) noexcept {
  isa::run([=] {
#pragma GCC ivdep
    for (index k = 0; k < 2 * n; k += 2) {
      const T re = a[k] * b[k] + a[k + 1] * b[k + 1];
      a[k + 1] = a[k + 1] * b[k] + (-a[k]) * b[k + 1];
      a[k] = re;
    }
  });
}

template void multiply_conjugate(double*, const double*, index) noexcept;
template void multiply_conjugate(float*, const float*, index) noexcept;
template void sum_lags(const double*, const double*, index, bool, double*, index, double*) noexcept;
template void sum_lags(const float*, const float*, index, bool, float*, index, float*) noexcept;
template double energy(const double*, index) noexcept;
template double energy(const float*, index) noexcept;
template void accumulate(sums_in<double>, const double*, index) noexcept;
template void accumulate(sums_in<float>, const float*, index) noexcept;
template void accumulate_products(sums_in<double>, const double*, const double*, index) noexcept;
template void accumulate_products(sums_in<float>, const float*, const float*, index) noexcept;

}  // namespace sigpak
