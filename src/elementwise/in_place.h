// SPDX-License-Identifier: MIT
// The common shape of the in-place functions: a form check, then one pass over the samples.
#pragma once

#include "core/kept_errno.h"
#include "core/product.h"
#include "core/record.h"

namespace sigpak {

// Replaces every x by f(x), computed in double and rounded once.
template <class T, class F> void map(T* x, index n, F f) noexcept {
  const kept_errno kept;
  for (index i = 0; i < n; ++i) x[i] = static_cast<T>(f(static_cast<double>(x[i])));
}

// Replaces every (a, b) by the point f(a, b), computed in double and rounded once.
template <class T, class F> void map_pairs(T* z, index points, F f) noexcept {
  for (index i = 0; i < 2 * points; i += 2) {
    const point<double> w = f(static_cast<double>(z[i]), static_cast<double>(z[i + 1]));
    z[i] = static_cast<T>(w.re);
    z[i + 1] = static_cast<T>(w.im);
  }
}

// The function of a level, or the C library's in double precision where the level has none.
template <class T, class F> void map_at_level(void (*wide)(T* x, index n), T* x, index n, F plain) noexcept {
  if constexpr (sizeof(T) == sizeof(double)) {
    if (wide == nullptr) return map(x, n, plain);
  }
  wide(x, n);
}

// Real records only.
template <record V, class Real> status apply(V* v, Real on_real) noexcept {
  if (is_complex(v)) return failed;
  on_real(v->data, length(v));
  return ok;
}

// One function for real samples, another for complex points.
template <record V, class Real, class Complex> status apply(V* v, Real on_real, Complex on_complex) noexcept {
  if (is_complex(v)) {
    on_complex(v->data, length(v));
  } else {
    on_real(v->data, length(v));
  }
  return ok;
}

}  // namespace sigpak
