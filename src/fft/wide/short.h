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

// The factor 1/N, which enters with the sines and with the last sums; in two parts where its rounding would
// be seen: among those of few sums, and in single precision. The second is not negative, so that infinite
// sums stay what they are.
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

// As the transform of odd length of any vectors (butterflies_odd.h), for the shortest way from load to store:
// the real and imaginary parts of the differences are exchanged first.
template <class T, int W, int R, int N>
requires(R % 2 == 1 && R > 1 && R <= 13) SIGPAK_INLINE
    void transform(pack<T, W> (&x)[R], one_over<pack<T, W>, N> factor) {
  using E = pack<T, W>;
  constexpr int half = R / 2;
  E t[half], u[half];
  E total = x[0];
  unroll<half>([&](auto k) SIGPAK_LAMBDA {
    t[k] = x[k + 1] + x[R - 1 - k];
    u[k] = exchanged(x[k + 1] - x[R - 1 - k]);
    total = total + t[k];
  });
  const E x0 = x[0];
  x[0] = scaled(factor, total);
  unroll<half>([&](auto j) SIGPAK_LAMBDA {
    E a = x0;
    E q = {};
    unroll<half>([&](auto k) SIGPAK_LAMBDA {
      constexpr int turn = (j + 1) * (k + 1) % R;
      const E sine = alternating(splat_constant<E>(kernels::sine_of(turn, R) / N));
      a = fma(splat<E>(cosine_constant<T, turn, R>), t[k], a);
      q = k > 0 ? fma(sine, u[k], q) : sine * u[k];
    });
    x[j + 1] = joined(factor, a, q);
    x[R - 1 - j] = joined(factor, a, -q);
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
