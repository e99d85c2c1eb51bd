// SPDX-License-Identifier: MIT
// Transforms of complex points that stay in registers from load to store.
#pragma once

#include "fft/plans/sines.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// N = A B interleaved points in A rows of B, n = B i + l and k = kb + A k', C of them in a vector:
//   X[k] = sum over l of w_B^(l k') w_N^(l kb) (sum over i of w_A^(i kb) x[n]).
// The factors w_N^(l kb), kb = 0 ... A - 1, once for the real and once for the imaginary part; conjugate for
// the inverse. Of short rows the points with odd l take the factor 1/N of the forward transform here.
template <class P, int A, int B, bool inverse> struct row_twiddles {
  using T = typename P::scalar;
  static constexpr int vectors = 2 * B / P::width;
  static constexpr bool has_factor = !inverse && B <= 4;
  static constexpr T scale = T(1) / (A * B);
  alignas(64) T c[A][vectors][P::width] = {};
  alignas(64) T s[A][vectors][P::width] = {};
  constexpr row_twiddles() {
    for (int kb = 0; kb < A; ++kb) {
      for (int i = 0; i < vectors * P::width; ++i) {
        const int l = i / 2;
        const T factor = has_factor && l % 2 != 0 ? scale : T(1);
        const long double sine = kernels::sine_of(l * kb, A * B);
        c[kb][i / P::width][i % P::width] = static_cast<T>(kernels::cosine_of(l * kb, A * B)) * factor;
        s[kb][i / P::width][i % P::width] = static_cast<T>(inverse ? -sine : sine) * factor;
      }
    }
  }
};
template <class P, int A, int B, bool inverse>
constinit const row_twiddles<P, A, B, inverse> row_twiddles_of{};

// One vector of every row: the transforms over the rows, and the twiddles.
template <class P, int A, int B, bool inverse>
SIGPAK_INLINE void transform_rows(const typename P::scalar* x, int vector, P (&y)[A]) {
  const auto& w = row_twiddles_of<P, A, B, inverse>;
  P a[A];
  unroll<A>([&](auto i) SIGPAK_LAMBDA { a[i] = load<P>(x + 2 * B * i + P::width * vector); });
  transform(a);
  y[0] = w.has_factor ? a[0] * load<P>(w.c[0][vector]) : a[0];
  unroll<A - 1>([&](auto i) SIGPAK_LAMBDA {
    constexpr int kb = i + 1;
    y[kb] = turned(a[result_at<A, inverse>(kb)], load<P>(w.c[kb][vector]), load<P>(w.s[kb][vector]));
  });
}

template <class P, int A, int B, bool inverse> void run_small(typename P::scalar* x) {
  constexpr int C = P::width / 2;
  constexpr int vectors = B / C;
  using twiddles = row_twiddles<P, A, B, inverse>;
  const auto factor = factor_of<P, inverse>(twiddles::scale);
  P y[vectors][A];
  unroll<vectors>([&](auto v) SIGPAK_LAMBDA { transform_rows<P, A, B, inverse>(x, v, y[v]); });
  unroll<A / C>([&](auto group) SIGPAK_LAMBDA {
    P row[B];
    unroll<vectors>([&](auto v) SIGPAK_LAMBDA {
      P square[C];
      unroll<C>([&](auto p) SIGPAK_LAMBDA { square[p] = y[v][C * group + p]; });
      transpose_points(square);
      unroll<C>([&](auto l) SIGPAK_LAMBDA { row[C * v + l] = square[l]; });
    });
    if constexpr (twiddles::has_factor) {
      transform_turned(row, factor);
    } else {
      transform(row, factor);
    }
    unroll<B>([&](auto k)
                  SIGPAK_LAMBDA { store(x + 2 * (C * group + k * A), row[result_at<B, inverse>(k)]); });
  });
}

// One point to a vector leaves nothing but the transform itself.
template <int N, bool inverse> void run_points(double* x) {
  d2 a[N];
  unroll<N>([&](auto i) SIGPAK_LAMBDA { a[i] = load<d2>(x + 2 * i); });
  transform(a, factor_of<d2, inverse>(1.0 / N));
  unroll<N>([&](auto k) SIGPAK_LAMBDA { store(x + 2 * k, a[result_at<N, inverse>(k)]); });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
