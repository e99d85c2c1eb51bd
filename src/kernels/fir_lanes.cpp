// SPDX-License-Identifier: MIT
// Direct sums of taps and samples: several vectors of outputs in registers, and, in wide ones, taps that are
// a whole number of vectors apart taken together, so that a vector of samples is loaded once for all of them.
#include "kernels/fir.h"

#include "kernels/single.h"
#include "vectors/lanes.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Wide vectors speed up sums more than transforms. Measured from 10^3 to 10^5 points: neither way takes more
// than a tenth longer than the other would, in either precision of the wide levels. In vectors of 128 bits 46
// has stayed what it was when sums were slower there. Sums read and write memory as they go, sections by
// bursts: beyond the second cache, measured from 3 10^5 to 10^7 points, they pay later.
constexpr int bytes = SIGPAK_VECTOR_BYTES;
constexpr index transformed_from = bytes == 16 ? 46 : bytes == 32 ? 50 : 58;
constexpr index transformed_beyond_cache_from = bytes == 16 ? 46 : bytes == 32 ? 64 : 72;

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
  index row;  // taps whose samples are a vector apart
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

// For each k from end - 1 down to `from`: taps k and those M - 1 that follow it by rows.
template <int M, int W, class P, int R, class T>
SIGPAK_INLINE void add_columns(P (&sums)[R], const filter<T>& f, index from, index end, const T* x) {
  for (index k = end - 1; k >= from; --k) {
    add_taps<M, W>(sums, f.taps + k * f.tap_stride, f.row * f.tap_stride, x + (f.count - 1 - k) * f.x_stride);
  }
}

// R vectors of outputs. W is the level's width, also for single scalars, which must go the same way. From the
// last taps down, four rows at a time, until `rows` are left and less than another: as many columns are one
// tap longer. In vectors of 128 bits the taps come one by one, from the last to the first: few loads cross a
// line there, and they take less time than the products.
template <int rows, int W, class P, int R, class T>
SIGPAK_INLINE void sum_vectors(const filter<T>& f, const T* x, T* out) {
  P sums[R];
  unroll<R>([&](auto r) SIGPAK_LAMBDA { sums[r] = splat<P>(T(0)); });
  if constexpr (W * sizeof(T) > 16) {
    index left = f.count;
    for (; left >= 4 * f.row; left -= 4 * f.row) {
      add_columns<4, W>(sums, f, left - 4 * f.row, left - 3 * f.row, x);
    }
    left -= rows * f.row;
    if constexpr (rows > 0) add_columns<rows, W>(sums, f, left, f.row, x);
    add_columns<rows + 1, W>(sums, f, 0, left, x);
  } else {
    add_columns<1, W>(sums, f, 0, f.count, x);
  }
  unroll<R>([&](auto r) SIGPAK_LAMBDA { store(out + r * P::width, sums[r]); });
}

template <int rows, class P, int R, class T>
SIGPAK_INLINE void sum_rows(const filter<T>& f, const T* x, T* out, index n) {
  constexpr int W = P::width;
  index j = 0;
  for (; j + R * W <= n; j += R * W) sum_vectors<rows, W, P, R>(f, x + j, out + j);
  if (j + R / 2 * W <= n) {
    sum_vectors<rows, W, P, R / 2>(f, x + j, out + j);
    j += R / 2 * W;
  }
  for (; j + W <= n; j += W) sum_vectors<rows, W, P, 1>(f, x + j, out + j);
  if (j == n) return;
  if (n >= W) {
    sum_vectors<rows, W, P, 1>(f, x + n - W, out + n - W);  // some outputs once more, with the same bits
  } else {
    for (; j < n; ++j) sum_vectors<rows, W, single<T>, 1>(f, x + j, out + j);
  }
}

template <class P, int R, class T = typename P::scalar>
void sum(const T* taps, index count, index tap_stride, const T* x, index x_stride, T* out, index n) {
  const index row = P::width / x_stride;
  const filter<T> f = {taps, count, tap_stride, x_stride, row};
  if constexpr (sizeof(P) == 16) return sum_rows<0, P, R>(f, x, out, n);
  switch (count / row % 4) {
    case 0:
      return sum_rows<0, P, R>(f, x, out, n);
    case 1:
      return sum_rows<1, P, R>(f, x, out, n);
    case 2:
      return sum_rows<2, P, R>(f, x, out, n);
    default:
      return sum_rows<3, P, R>(f, x, out, n);
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
