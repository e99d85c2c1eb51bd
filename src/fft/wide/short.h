// SPDX-License-Identifier: MIT
// Transforms of short lengths that are no powers of two, in registers and without tables: one complex point
// to a vector, odd lengths and products of coprime factors: those that are too short for products of vectors,
// and where it is faster.
#pragma once

#include "fft/wide/butterflies_composite.h"
#include "fft/wide/kernels.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The factor 1/N, which enters with the cosines and sines, where it keeps nothing waiting; that of the first
// point in two parts where its rounding would be seen: among those of few sums, and in single precision. The
// second is not negative, so that infinite sums stay what they are.
template <class E, int N> struct one_over {
  using T = typename E::scalar;
  static constexpr bool is_power = (N & (N - 1)) == 0;
  static constexpr bool has_rest = !is_power && (is_single<T> || (N % 3 == 0 && N <= 12));
  static constexpr auto nearest = static_cast<T>(1.0L / N);
  static constexpr T below = nearest * (1 - T(is_single<T> ? 0x1p-24 : 0x1p-53));
  static constexpr T part = has_rest && nearest > 1.0L / N ? below : nearest;
  static constexpr auto rest = static_cast<T>(1.0L / N - part);
};

// a / N + q.
template <class E, int N> SIGPAK_INLINE E joined(one_over<E, N> f, E a, E q) {
  if constexpr (N == 1) return a + q;
  if constexpr (f.has_rest) q = fma(a, splat<E>(f.rest), q);
  return fma(a, splat<E>(f.part), q);
}
template <class E, int N> SIGPAK_INLINE E scaled(one_over<E, N> f, E a) {
  if constexpr (N == 1) return a;
  if constexpr (f.has_rest) return fma(a, splat<E>(f.part), a * splat<E>(f.rest));
  return a * splat<E>(f.part);
}
// The same where the rest of the factor does not count.
template <class E, int N> SIGPAK_INLINE E plus(one_over<E, N> f, E a, E b) {
  if constexpr (N == 1) return a + b;
  return fma(a, splat<E>(f.nearest), b);
}

// As the transform of odd length of any vectors (butterflies_odd.h), for the shortest way from load to store:
// the real and imaginary parts of the differences are exchanged first, and the first point comes last where
// its factor has two parts. Long sums take the factor at the end, where the adders have less to do.
template <class T, int W, int R, int N>
requires(R % 2 == 1 && R > 1 && R <= 13) SIGPAK_INLINE
    void transform(pack<T, W> (&x)[R], one_over<pack<T, W>, N> factor) {
  using E = pack<T, W>;
  constexpr int half = R / 2;
  constexpr bool is_long = R > 9;
  constexpr bool is_last = !is_long && factor.has_rest;
  E t[half], u[half];
  unroll<half>([&](auto k) SIGPAK_LAMBDA {
    t[k] = x[k + 1] + x[R - 1 - k];
    u[k] = exchanged(x[k + 1] - x[R - 1 - k]);
  });
  E total = t[0];
  unroll<half - 1>([&](auto k) SIGPAK_LAMBDA { total = total + t[k + 1]; });
  const E x0 = is_long ? x[0] : scaled(factor, x[0]);
  x[0] = is_long ? scaled(factor, x0 + total) : plus(factor, total, x0);
  unroll<half>([&](auto j) SIGPAK_LAMBDA {
    E a = x0;
    E q = {};
    unroll<half>([&](auto k) SIGPAK_LAMBDA {
      constexpr int turn = (j + 1) * (k + 1) % R;
      const E cosine = splat_constant<E>(kernels::cosine_of(turn, R) / (is_long ? 1 : N));
      const E sine = alternating(splat_constant<E>(kernels::sine_of(turn, R) / N));
      a = k == 0 && is_last ? cosine * t[k] : fma(cosine, t[k], a);
      q = k > 0 ? fma(sine, u[k], q) : sine * u[k];
    });
    if constexpr (is_last) a = a + x0;
    x[j + 1] = is_long ? joined(factor, a, q) : a + q;
    x[R - 1 - j] = is_long ? joined(factor, a, -q) : a - q;
  });
}

// N = A B, coprime; with A = 1 an odd length alone.
template <class T, int A, int B, bool inverse> void run_short(T* x) {
  constexpr int N = A * B;
  using E = typename point_vector<T>::type;
  const one_over<E, (inverse ? 1 : N)> factor;
  E a[N];
  unroll<N>([&](auto i) SIGPAK_LAMBDA { a[i] = load_point(x + 2 * i); });
  if constexpr (A == 1) {
    transform(a, factor);
  } else {
    coprime_transform<A, B>(a, factor);
  }
  unroll<N>([&](auto k) SIGPAK_LAMBDA { store_point(x + 2 * k, a[result_at<N, inverse>(k)]); });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
