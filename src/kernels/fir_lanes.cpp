// SPDX-License-Identifier: MIT
// Direct sums of taps and samples: several vectors of outputs in registers, and, in wide ones, taps that are
// a whole number of vectors apart taken together, so that a vector of samples is loaded once for all of them.
#include "kernels/fir.h"

#include "kernels/single.h"
#include "vectors/lanes.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Wide vectors speed up sums more than transforms. Measured at 10^4 and 10^5 points: from 64 to 1024 taps
// neither way takes more than about a tenth longer than the other would, in either precision of the wide
// levels. In vectors of 128 bits 46 has stayed what it was when sums were slower there. Sums read and write
// memory as they go, sections by bursts: beyond the second cache, measured at 10^6 and 4 * 10^6 points, they
// pay later.
constexpr int bytes = SIGPAK_VECTOR_BYTES;
constexpr index transformed_from = bytes == 16 ? 46 : bytes == 32 ? 64 : 72;
constexpr index transformed_beyond_cache_from = bytes == 16 ? 46 : bytes == 32 ? 72 : 96;

// Keeps a loaded vector in its register: folded into every product that uses it, it would be loaded as often,
// and most of these loads cross a cache line. Those of 128 bits are not folded.
template <class P> SIGPAK_INLINE P held(P a) {
  if constexpr (sizeof(P) > 16) asm("" : "+v"(a.v));
  return a;
}

template <class T> struct filter {
  const T* taps;
  index count;
  index tap_stride;
  index x_stride;
};

// M taps, W / x_stride apart, onto R vectors of outputs; h is the first of them, x its samples. From the
// oldest sample to the newest.
template <int M, int W, class P, int R, class T>
SIGPAK_INLINE void add_taps(P (&sums)[R], const T* h, index spacing, const T* x) {
  P tap[M];
  unroll<M>([&](auto m) SIGPAK_LAMBDA { tap[m] = splat<P>(h[m * spacing]); });
  unroll<R + M - 1>([&](auto place) SIGPAK_LAMBDA {
    constexpr int q = place - (M - 1);
    const P samples = held(load<P>(x + q * W));
    unroll<M>([&](auto m) SIGPAK_LAMBDA {
      constexpr int r = q + m;
      if constexpr (r >= 0 && r < R) sums[r] = fma(tap[m], samples, sums[r]);
    });
  });
}

// Sets of M rows of taps, from the last taps down, while a whole set is left; a row is W / x_stride taps.
template <int M, int W, class P, int R, class T>
SIGPAK_INLINE index add_sets(P (&sums)[R], const filter<T>& f, index left, const T* x) {
  const index row = W / f.x_stride;
  while (left >= M * row) {
    left -= M * row;
    for (index k = left + row - 1; k >= left; --k) {
      add_taps<M, W>(sums, f.taps + k * f.tap_stride, row * f.tap_stride, x + (f.count - 1 - k) * f.x_stride);
    }
  }
  return left;
}

// R vectors of outputs. W is the level's width, also for single scalars, which must go the same way. In
// vectors of 128 bits the taps come one by one, from the last to the first: few loads cross a line there, and
// they take less time than the products.
template <int W, class P, int R, class T>
SIGPAK_INLINE void sum_vectors(const filter<T>& f, const T* x, T* out) {
  P sums[R];
  unroll<R>([&](auto r) SIGPAK_LAMBDA { sums[r] = splat<P>(T(0)); });
  index left = f.count;
  if constexpr (W * sizeof(T) > 16) {
    left = add_sets<4, W>(sums, f, left, x);
    left = add_sets<2, W>(sums, f, left, x);
    left = add_sets<1, W>(sums, f, left, x);
  }
  for (index k = left - 1; k >= 0; --k) {
    add_taps<1, W>(sums, f.taps + k * f.tap_stride, 0, x + (f.count - 1 - k) * f.x_stride);
  }
  unroll<R>([&](auto r) SIGPAK_LAMBDA { store(out + r * P::width, sums[r]); });
}

template <class P, int R, class T = typename P::scalar>
void sum(const T* taps, index count, index tap_stride, const T* x, index x_stride, T* out, index n) {
  constexpr int W = P::width;
  const filter<T> f = {taps, count, tap_stride, x_stride};
  index j = 0;
  for (; j + R * W <= n; j += R * W) sum_vectors<W, P, R>(f, x + j, out + j);
  for (; j + W <= n; j += W) sum_vectors<W, P, 1>(f, x + j, out + j);
  if (j == n) return;
  if (n >= W) {
    sum_vectors<W, P, 1>(f, x + n - W, out + n - W);  // some outputs once more, with the same bits
  } else {
    for (; j < n; ++j) sum_vectors<W, single<T>, 1>(f, x + j, out + j);
  }
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::fir_table<double>) = {SIGPAK_LEVEL::sum<SIGPAK_LEVEL::widest<double>, 8>,
                                                  SIGPAK_LEVEL::transformed_from,
                                                  SIGPAK_LEVEL::transformed_beyond_cache_from};
SIGPAK_LEVEL_TABLE(kernels::fir_table<float>) = {SIGPAK_LEVEL::sum<SIGPAK_LEVEL::widest<float>, 8>,
                                                 SIGPAK_LEVEL::transformed_from,
                                                 SIGPAK_LEVEL::transformed_beyond_cache_from};

}  // namespace sigpak
