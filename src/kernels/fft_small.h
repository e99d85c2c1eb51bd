// Transforms that stay in registers from load to store.
#pragma once

#include "kernels/fft_passes.h"
#include "kernels/roots.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Twiddle vectors of N points, laid out as fft_plan::last; times 1/N for the forward transform.
template <class P, int M, bool inverse> struct small_twiddles {
  static constexpr int W = P::width;
  alignas(64) typename P::scalar values[M / W][W - 1][2][W] = {};
  static constexpr auto scale = static_cast<typename P::scalar>(inverse ? 1.0 : 1.0 / (M * W));
  constexpr small_twiddles() {
    using T = typename P::scalar;
    for (int group = 0; group < M / W; ++group) {
      for (int l = 1; l < W; ++l) {
        for (int p = 0; p < W; ++p) {
          const int k = l * (W * group + point_at<T>(p, W)) * (64 / (W * M));
          values[group][l - 1][0][p] = static_cast<T>(kernels::cosine(k)) * scale;
          values[group][l - 1][1][p] = static_cast<T>(kernels::sine(k)) * scale;
        }
      }
    }
  }
};
template <class P, int M, bool inverse> constinit const small_twiddles<P, M, inverse> twiddles_of{};

template <class P, int M, bool inverse> SIGPAK_INLINE cplx<P> load_small(const typename P::scalar* x) {
  if constexpr (M == 4 && sizeof(typename P::scalar) == 8) {
    return separated<P, inverse>(load_pieces(x), load_pieces(x + P::width));
  } else {
    return load_points<P, inverse>(x);
  }
}
template <class P, int M, bool inverse> SIGPAK_INLINE void store_small(typename P::scalar* x, cplx<P> a) {
  if constexpr (M == 4 && sizeof(typename P::scalar) == 8) {
    const P re = inverse ? a.im : a.re;
    const P im = inverse ? a.re : a.im;
    store_pieces(x, low_parts(re, im));
    store_pieces(x + P::width, high_parts(re, im));
  } else {
    store_points<P, inverse>(x, a);
  }
}

// N = M W points, M a multiple of W.
template <class P, int M, bool inverse> void run_small(typename P::scalar* x) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  cplx<P> a[M];
  unroll<M>([&](auto i) __attribute__((always_inline)) { a[i] = load_small<P, M, inverse>(x + 2 * W * i); });
  transform(a);
  unroll<M / W>([&](auto group) __attribute__((always_inline)) {
    cplx<P> y[W];
    unroll<W>([&](auto p) __attribute__((always_inline)) { y[p] = a[W * group + point_at<T>(p, W)]; });
    lanes_to_rows(y);
    const auto& w = twiddles_of<P, M, inverse>;
    if constexpr (!inverse) y[0] = y[0] * splat<P>(w.scale);
    unroll<W - 1>([&](auto l) __attribute__((always_inline)) {
      y[l + 1] = turned(y[l + 1], load<P>(w.values[group][l][0]), load<P>(w.values[group][l][1]));
    });
    transform(y);
    unroll<W>([&](auto k) __attribute__((always_inline)) {
      store_small<P, M, inverse>(x + 2 * (W * group + k * M), y[k]);
    });
  });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
