// SPDX-License-Identifier: MIT
// Short transforms of odd length: the points j and R - j by their sum and difference.
#pragma once

#include "fft/wide/butterflies.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <class T, int k, int n> constexpr T cosine_constant = static_cast<T>(kernels::cosine_of(k, n));
template <class T, int k, int n> constexpr T sine_constant = static_cast<T>(kernels::sine_of(k, n));

// X[j], X[R-j] = (x0 + sum c_jk t_k) -/+ i sum s_jk u_k with t_k = x_k + x_R-k, u_k = x_k - x_R-k.
template <class E, int R, class S = unit>
requires(R % 2 == 1 && R > 1) SIGPAK_INLINE void transform(E (&x)[R], S factor = {}) {
  using P = real_of<E>;
  using T = typename P::scalar;
  constexpr int half = R / 2;
  E t[half], u[half];
  E total = x[0];
  unroll<half>([&](auto k) SIGPAK_LAMBDA {
    t[k] = x[k + 1] + x[R - 1 - k];
    u[k] = x[k + 1] - x[R - 1 - k];
    total = total + t[k];
  });
  const E x0 = x[0];
  x[0] = scaled(factor, total);
  unroll<half>([&](auto j) SIGPAK_LAMBDA {
    E a = x0;
    E b = u[0] * splat<P>(sine_constant<T, j + 1, R>);
    unroll<half>([&](auto k) SIGPAK_LAMBDA {
      a = fma(splat<P>(cosine_constant<T, (j + 1) * (k + 1) % R, R>), t[k], a);
      if constexpr (k > 0) b = fma(splat<P>(sine_constant<T, (j + 1) * (k + 1) % R, R>), u[k], b);
    });
    b = scaled(factor, b);
    x[j + 1] = minus_i(factor, a, b);
    x[R - 1 - j] = plus_i(factor, a, b);
  });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
