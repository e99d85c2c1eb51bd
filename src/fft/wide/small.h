// SPDX-License-Identifier: MIT
// Transforms that stay in registers from load to store.
#pragma once

#include "fft/plans/sines.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// N = M C interleaved points, C of them in a vector, n = C i + l and k = kb + M k': w_N^(l kb) for
// kb = 1 ... M - 1, once for the real and once for the imaginary part; conjugate for the inverse.
// Of the forward transform the points with odd l take their factor 1/N here, kb = 0 in `unturned`.
template <class P, int M, bool inverse> struct point_twiddles {
  using T = typename P::scalar;
  static constexpr int N = M * P::width / 2;
  static constexpr T scale = T(inverse ? 1 : T(1) / N);
  alignas(64) T unturned[P::width] = {};
  alignas(64) T c[M - 1][P::width] = {};
  alignas(64) T s[M - 1][P::width] = {};
  constexpr point_twiddles() {
    for (int p = 0; p < P::width; ++p) unturned[p] = factor(p);
    for (int kb = 1; kb < M; ++kb) {
      for (int p = 0; p < P::width; ++p) {
        const int k = kb * (p / 2);
        c[kb - 1][p] = static_cast<T>(kernels::cosine_of(k, N)) * factor(p);
        s[kb - 1][p] = static_cast<T>(inverse ? -kernels::sine_of(k, N) : kernels::sine_of(k, N)) * factor(p);
      }
    }
  }
  static constexpr T factor(int p) { return p / 2 % 2 != 0 ? scale : T(1); }
};
template <class P, int M, bool inverse> constinit const point_twiddles<P, M, inverse> point_twiddles_of{};

// One point to a vector leaves nothing but the transform itself.
template <class P, int M, bool inverse>
requires(P::width == 2) void run_small(typename P::scalar* x) {
  P a[M];
  unroll<M>([&](auto i) SIGPAK_LAMBDA { a[i] = load<P>(x + 2 * i); });
  transform(a, factor_of<P, inverse>(typename P::scalar(1) / M));
  unroll<M>([&](auto k) SIGPAK_LAMBDA { store(x + 2 * k, a[result_at<M, inverse>(k)]); });
}

template <class P, int M, bool inverse>
requires(P::width > 2) void run_small(typename P::scalar* x) {
  constexpr int W = P::width;
  constexpr int C = W / 2;
  const auto& w = point_twiddles_of<P, M, inverse>;
  const auto factor = factor_of<P, inverse>(w.scale);
  P a[M];
  unroll<M>([&](auto i) SIGPAK_LAMBDA { a[i] = load<P>(x + W * i); });
  transform(a);
  P y[M];
  y[0] = inverse ? a[0] : a[0] * load<P>(w.unturned);
  unroll<M - 1>([&](auto i) SIGPAK_LAMBDA {
    y[i + 1] = turned(a[result_at<M, inverse>(i + 1)], load<P>(w.c[i]), load<P>(w.s[i]));
  });
  unroll<M / C>([&](auto group) SIGPAK_LAMBDA {
    P row[C];
    unroll<C>([&](auto p) SIGPAK_LAMBDA { row[p] = y[C * group + p]; });
    transpose_points(row);
    transform_turned(row, factor);
    unroll<C>([&](auto k)
                  SIGPAK_LAMBDA { store(x + 2 * (C * group + k * M), row[result_at<C, inverse>(k)]); });
  });
}

// N = M W points as in lane_plan, with its twiddles for the last transform.
template <class P, int M> struct lane_twiddles {
  using T = typename P::scalar;
  static constexpr int N = M * P::width;
  alignas(64) T values[M - 1][2][P::width] = {};
  constexpr lane_twiddles() {
    for (int kb = 1; kb < M; ++kb) {
      for (int p = 0; p < P::width; ++p) {
        const int k = kb * point_at<T>(p, P::width);
        values[kb - 1][0][p] = static_cast<T>(kernels::cosine_of(k, N));
        values[kb - 1][1][p] = static_cast<T>(kernels::sine_of(k, N));
      }
    }
  }
};
template <class P, int M> constinit const lane_twiddles<P, M> lane_twiddles_of{};

// Half as many vectors per transform, where interleaved points would need too many.
template <class P, int M, bool inverse> void run_small_split(typename P::scalar* x) {
  constexpr int rows = P::width / 2;
  const auto& w = lane_twiddles_of<P, M>;
  cplx<P> a[M];
  unroll<M>([&](auto i) SIGPAK_LAMBDA { a[i] = load_points<P, inverse>(x + 2 * P::width * i); });
  transform(a);
  unroll<M - 1>([&](auto i) SIGPAK_LAMBDA {
    a[i + 1] = turned(a[i + 1], load<P>(w.values[i][0]), load<P>(w.values[i][1]));
  });
  unroll<M / rows>([&](auto group) SIGPAK_LAMBDA {
    transform_columns<P, inverse>(
        [&](auto p, auto half) SIGPAK_LAMBDA {
          const cplx<P> y = a[rows * group + p];
          const P first = inverse ? y.im : y.re;
          const P second = inverse ? y.re : y.im;
          return half ? high_parts(first, second) : low_parts(first, second);
        },
        typename P::scalar(1) / w.N, x + 2 * rows * group, M);
  });
}

// With w = w_2H^k: even - i w odd, and even + i w odd.
template <int H, int k> SIGPAK_INLINE void split_pair(d2 even, d2 odd, d2& sum, d2& difference) {
  constexpr auto c = static_cast<double>(kernels::cosine_of(k, 2 * H));
  constexpr auto sine = static_cast<double>(kernels::sine_of(k, 2 * H));
  const d2 s = splat<d2>(sine);
  const d2 crossed = exchanged(odd);
  sum = fma(crossed, point_of(c, -c), fnma(odd, s, even));
  difference = fma(crossed, point_of(-c, c), fma(odd, s, even));
}

// Real data of 2 H points, two to a complex one. With Z their transform,
//   2 X[k] = (Z[k] + conj Z[H-k]) - i w_2H^k (Z[k] - conj Z[H-k]),
// and 2 X[H-k] is the conjugate of the sum of the same terms.
template <class T, int H> void run_small_real(T* x) {
  const d2 scale = splat<d2>(0.5 / H);
  const d2 half = splat<d2>(0.25 / H);
  d2 z[H];
  unroll<H>([&](auto i) SIGPAK_LAMBDA { z[i] = load_point(x + 2 * i); });
  transform(z);
  const d2 crossed = exchanged(z[0]);
  const d2 nothing = splat<d2>(0);
  store_point(x, low_parts((z[0] + crossed) * scale, nothing));
  store_point(x + 2 * H, low_parts((z[0] - crossed) * scale, nothing));
  unroll<H / 2 - 1>([&](auto i) SIGPAK_LAMBDA {
    constexpr int k = i + 1;
    const d2 mirrored = conjugate(z[H - k]);
    d2 low, high;
    split_pair<H, k>(z[k] + mirrored, z[k] - mirrored, low, high);
    store_point(x + 2 * k, low * half);
    store_point(x + 2 * (H - k), conjugate(high * half));
  });
  store_point(x + H, conjugate(z[H / 2] * scale));
}

// Z[k] = (X[k] + conj X[H-k]) + i conj w_2H^k (X[k] - conj X[H-k]), from which the inverse transform follows
// by results in the opposite order.
template <class T, int H> void run_small_real_inverse(T* x) {
  d2 z[H];
  const d2 first = splat<d2>(static_cast<double>(x[0]));
  const d2 last = point_of(static_cast<double>(x[2 * H]), -static_cast<double>(x[2 * H]));
  z[0] = first + last;
  unroll<H / 2 - 1>([&](auto i) SIGPAK_LAMBDA {
    constexpr int k = i + 1;
    const d2 a = load_point(x + 2 * k);
    const d2 mirrored = conjugate(load_point(x + 2 * (H - k)));
    d2 low, high;
    split_pair<H, k>(conjugate(a + mirrored), conjugate(a - mirrored), low, high);
    z[k] = conjugate(low);
    z[H - k] = high;
  });
  z[H / 2] = conjugate(load_point(x + H)) * splat<d2>(2);
  transform(z);
  unroll<H>([&](auto i) SIGPAK_LAMBDA { store_point(x + 2 * i, z[result_at<H, true>(i)]); });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
