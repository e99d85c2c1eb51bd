// SPDX-License-Identifier: MIT
// Between the transform of long real data and that of half as many points, each made of two neighbours: one
// sweep, in place, over pairs of bins k and H - k, H = N / 2. With Z the transform of the points,
//   2 X[k] = (Z[k] + conj Z[H-k]) - i w_N^k (Z[k] - conj Z[H-k]),
// conj X[H-k] has the other sign, and the way back conj w_N^k for w_N^k and the other signs.
#pragma once

#include "fft/plans/half_plan.h"
#include "fft/wide/real.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::fine_vectors;
using kernels::half_plan;

// Twice X[k] and conj X[H-k] of Z[k] and Z[H-k]; backwards, Z[k] and conj Z[H-k] of X[k] and X[H-k].
template <class P, bool inverse> SIGPAK_INLINE void change_pair(cplx<P>& a, cplx<P>& b, cplx<P> w) {
  const cplx<P> mirrored = conjugate(b);
  const cplx<P> sum = a + mirrored;
  const P s = inverse ? -w.im : w.im;
  const cplx<P> difference = turned(a - mirrored, w.re, s);
  a = inverse ? plus_i(sum, difference) : minus_i(sum, difference);
  b = inverse ? minus_i(sum, difference) : plus_i(sum, difference);
}

// Of the pairs from k = 0 on the first has its second half at H, where there is room for it; the bin in the
// middle is its own.
template <class P, bool inverse>
void change_bins(const half_plan<typename P::scalar>& plan, typename P::scalar* x) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  const index half = plan.points / 2;
  const auto factor = factor_of<P, inverse>(plan.scale);
  if constexpr (inverse) {
    x[1] = 0;
    x[2 * half + 1] = 0;
  } else {
    x[2 * half] = x[0];
    x[2 * half + 1] = x[1];
  }
  const T* coarse = plan.coarse;
  for (index begin = 0; 2 * begin < half; begin += fine_vectors * W, coarse += 2) {
    const cplx<P> first = {splat<P>(coarse[0]), splat<P>(coarse[1])};
    for (index v = 0; v < fine_vectors; ++v) {
      const index k = begin + W * v;
      cplx<P> a = load_points<P, false>(x + 2 * k);
      cplx<P> b = load_backwards<P>(x + 2 * (half - k));
      change_pair<P, inverse>(a, b, joined(first, load_pair<P>(plan.fine, v)));
      store_points<P, false>(x + 2 * k, scaled(factor, a));
      store_backwards(x + 2 * (half - k), scaled(factor, conjugate(b)));
    }
  }
  const T twice = inverse ? T(2) : 2 * plan.scale;
  x[half] *= twice;
  x[half + 1] *= -twice;
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
