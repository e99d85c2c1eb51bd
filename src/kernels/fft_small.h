// Transforms that stay in registers from load to store.
#pragma once

#include "kernels/fft_passes.h"
#include "kernels/roots.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// N = M C interleaved points, C of them in a vector, n = C i + l and k = kb + M k': w_N^(l kb) for
// kb = 1 ... M - 1, once for the real and once for the imaginary part; times 1/N for the forward transform,
// conjugate for the inverse.
template <class P, int M, bool inverse> struct point_twiddles {
  using T = typename P::scalar;
  static constexpr int N = M * P::width / 2;
  static constexpr T scale = static_cast<T>(inverse ? 1.0 : 1.0 / N);
  alignas(64) T c[M - 1][P::width] = {};
  alignas(64) T s[M - 1][P::width] = {};
  constexpr point_twiddles() {
    for (int kb = 1; kb < M; ++kb) {
      for (int p = 0; p < P::width; ++p) {
        const int k = kb * (p / 2) * (64 / N);
        c[kb - 1][p] = static_cast<T>(kernels::cosine(k)) * scale;
        s[kb - 1][p] = static_cast<T>(inverse ? -kernels::sine(k) : kernels::sine(k)) * scale;
      }
    }
  }
};
template <class P, int M, bool inverse> constinit const point_twiddles<P, M, inverse> point_twiddles_of{};

// One point to a vector leaves nothing but the transform itself.
template <class P, int M, bool inverse>
requires(P::width == 2) void run_small(typename P::scalar* x) {
  constexpr auto scale = typename P::scalar(1) / M;
  P a[M];
  unroll<M>([&](auto i) __attribute__((always_inline)) { a[i] = load<P>(x + 2 * i); });
  transform(a);
  unroll<M>([&](auto k) __attribute__((always_inline)) {
    const P result = a[result_at<M, inverse>(k)];
    store(x + 2 * k, inverse ? result : result * splat<P>(scale));
  });
}

template <class P, int M, bool inverse>
requires(P::width > 2) void run_small(typename P::scalar* x) {
  constexpr int W = P::width;
  constexpr int C = W / 2;
  const auto& w = point_twiddles_of<P, M, inverse>;
  P a[M];
  unroll<M>([&](auto i) __attribute__((always_inline)) { a[i] = load<P>(x + W * i); });
  transform(a);
  P y[M];
  y[0] = inverse ? a[0] : a[0] * splat<P>(w.scale);
  unroll<M - 1>([&](auto i) __attribute__((always_inline)) {
    y[i + 1] = turned(a[result_at<M, inverse>(i + 1)], load<P>(w.c[i]), load<P>(w.s[i]));
  });
  unroll<M / C>([&](auto group) __attribute__((always_inline)) {
    P row[C];
    unroll<C>([&](auto p) __attribute__((always_inline)) { row[p] = y[C * group + p]; });
    transpose_points(row);
    transform(row);
    unroll<C>([&](auto k) __attribute__((always_inline)) {
      store(x + 2 * (C * group + k * M), row[result_at<C, inverse>(k)]);
    });
  });
}

// N = M W points as in fft_plan, with its twiddles for the last transform; times 1/N for the forward one.
template <class P, int M, bool inverse> struct lane_twiddles {
  using T = typename P::scalar;
  static constexpr int N = M * P::width;
  static constexpr T scale = static_cast<T>(inverse ? 1.0 : 1.0 / N);
  alignas(64) T values[M - 1][2][P::width] = {};
  constexpr lane_twiddles() {
    for (int kb = 1; kb < M; ++kb) {
      for (int p = 0; p < P::width; ++p) {
        const int k = kb * point_at<T>(p, P::width) * (64 / N);
        values[kb - 1][0][p] = static_cast<T>(kernels::cosine(k)) * scale;
        values[kb - 1][1][p] = static_cast<T>(kernels::sine(k)) * scale;
      }
    }
  }
};
template <class P, int M, bool inverse> constinit const lane_twiddles<P, M, inverse> lane_twiddles_of{};

// Half as many vectors per transform, where interleaved points would need too many.
template <class P, int M, bool inverse> void run_small_split(typename P::scalar* x) {
  constexpr int rows = P::width / 2;
  const auto& w = lane_twiddles_of<P, M, inverse>;
  cplx<P> a[M];
  unroll<M>([&](auto i)
                __attribute__((always_inline)) { a[i] = load_points<P, inverse>(x + 2 * P::width * i); });
  transform(a);
  if constexpr (!inverse) a[0] = a[0] * splat<P>(w.scale);
  unroll<M - 1>([&](auto i) __attribute__((always_inline)) {
    a[i + 1] = turned(a[i + 1], load<P>(w.values[i][0]), load<P>(w.values[i][1]));
  });
  unroll<M / rows>([&](auto group) __attribute__((always_inline)) {
    transform_columns<P, inverse>(
        [&](auto p, auto half) __attribute__((always_inline)) {
          const cplx<P> y = a[rows * group + p];
          const P first = inverse ? y.im : y.re;
          const P second = inverse ? y.re : y.im;
          return half ? high_parts(first, second) : low_parts(first, second);
        },
        x + 2 * rows * group, M);
  });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
