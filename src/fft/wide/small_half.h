// SPDX-License-Identifier: MIT
// Transforms of real data that stay in registers from load to store, by complex ones of half the length. With
// Z the transform of the H = N / 2 points that neighbours make, and w = w_N^k = c - i s,
//   2 X[k] = (Z[k] + conj Z[H-k]) - i w (Z[k] - conj Z[H-k]),
// and back Z[k] = (X[k] + conj X[H-k]) + i conj w (X[k] - conj X[H-k]).
// The shortest are more exact, and no slower, by split radix (small_real.h).
#pragma once

#include "fft/wide/small.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Of -i w, times the factor of the results, or of i conj w: s and the signed c, once for each part.
template <class P, int N, bool inverse> struct bin_twiddles {
  using T = typename P::scalar;
  static constexpr T factor = inverse ? T(1) : T(0.5) / N;
  alignas(64) T c[N / P::width][P::width] = {};
  alignas(64) T s[N / P::width][P::width] = {};
  constexpr bin_twiddles() {
    for (int i = 0; i < N; ++i) {
      const auto cosine = static_cast<T>(kernels::cosine_of(i / 2, N));
      c[i / P::width][i % P::width] = ((i % 2 != 0) == inverse ? cosine : -cosine) * factor;
      s[i / P::width][i % P::width] = static_cast<T>(kernels::sine_of(i / 2, N)) * factor;
    }
  }
};
template <class P, int N, bool inverse> constinit const bin_twiddles<P, N, inverse> bin_twiddles_of{};

// Vector j of the bins of z, or the other way round, where `mirror` has the points H - k.
template <class P, int N, bool inverse> SIGPAK_INLINE P changed_bins(P z, P mirror, int j) {
  const auto& w = bin_twiddles_of<P, N, inverse>;
  const P one = splat<P>(1);
  const P sum = fma_even(z, one, mirror);
  const P difference = fma_odd(z, one, mirror);
  const P scaled_sum = inverse ? sum : sum * splat<P>(w.factor);
  return fma(exchanged(difference), load<P>(w.c[j]), fnma(difference, load<P>(w.s[j]), scaled_sum));
}

template <class P, int A, int B> void run_small_half(typename P::scalar* x) {
  using T = typename P::scalar;
  constexpr int N = 2 * A * B;
  constexpr int vectors = N / P::width;
  P z[vectors];
  unroll<vectors>([&](auto i) SIGPAK_LAMBDA { z[i] = load<P>(x + P::width * i); });
  transform_small<P, A, B, false, false>(z);
  const T last = (z[0].v[0] - z[0].v[1]) * (T(1) / N);
  unroll<vectors>([&](auto j) SIGPAK_LAMBDA {
    const P mirror = mirrored(z[(vectors - j) % vectors], z[vectors - 1 - j]);
    store(x + P::width * j, changed_bins<P, N, false>(z[j], mirror, j));
  });
  x[N] = last;
  x[N + 1] = 0;
}

// The imaginary parts of the outer bins do not count.
template <class P, int A, int B> void run_small_half_inverse(typename P::scalar* x) {
  constexpr int N = 2 * A * B;
  constexpr int vectors = N / P::width;
  P bins[vectors + 1], z[vectors];
  unroll<vectors>([&](auto i) SIGPAK_LAMBDA { bins[i] = load<P>(x + P::width * i); });
  bins[0].v[1] = 0;
  bins[vectors] = P{};
  bins[vectors].v[0] = x[N];
  unroll<vectors>([&](auto j) SIGPAK_LAMBDA {
    z[j] = changed_bins<P, N, true>(bins[j], mirrored(bins[vectors - j], bins[vectors - 1 - j]), j);
  });
  transform_small<P, A, B, true, false>(z);
  unroll<vectors>([&](auto i) SIGPAK_LAMBDA { store(x + P::width * i, z[i]); });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
