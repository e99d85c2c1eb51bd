// SPDX-License-Identifier: MIT
// Between the transform of real data and that of half as many points, each made of two neighbours: one sweep
// over pairs of bins k and H - k, H = N / 2. With Z the transform of the points,
//   2 X[k] = (Z[k] + conj Z[H-k]) - i w_N^k (Z[k] - conj Z[H-k]),
// conj X[H-k] has the other sign, and the way back conj w_N^k for w_N^k and the other signs.
#pragma once

#include "fft/plans/half_plan.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::half_plan;

// The change of W / 2 pairs, of interleaved points: Z[k] and Z[H-k] to X[k] and X[H-k], or back.
template <class P, bool inverse> class bin_change {
 public:
  SIGPAK_INLINE explicit bin_change(typename P::scalar scale)
      : factor_(splat<P>(scale)), alternating_(alternating(splat<P>(inverse ? 1 : scale))) {}

  // w_N^k = c - i s.
  SIGPAK_INLINE void run(P& a, P& b, P c, P s) const {
    const P sum = fma_even(a, splat_constant<P>(1), b);
    const P difference = turned_sum(a, b);
    const P crossed = exchanged(difference);
    if constexpr (inverse) {
      const P turn = fma_even(crossed, c, difference * s);
      a = turned_sum(sum, turn);
      b = fma(sum, alternating_, turn);
    } else {
      const P turn = fma_odd(crossed, c, difference * s) * factor_;
      a = fma_even(sum, factor_, turn);
      b = fms(sum, alternating_, turn);
    }
  }

 private:
  P factor_, alternating_;
};

// The bins k, H - k, and H/2 - k, H/2 + k, whose roots have cosine and sine exchanged, for `count` of k;
// `first` is k times two.
template <class P, bool inverse, class Root>
SIGPAK_INLINE void change_run(const bin_change<P, inverse>& change, index half, index first, index count,
                              typename P::scalar* x, const Root& root) {
  constexpr int W = P::width;
  for (index i = 0; i < 2 * count; i += W) {
    const index low = first + i;
    const index high = 2 * half + 2 - W - low;
    const index below = half + 2 - W - low;
    const index above = half + low;
    P a = load<P>(x + low), b = backwards(load<P>(x + high));
    P c = backwards(load<P>(x + below)), d = load<P>(x + above);
    const cplx<P> w = root(i);
    change.run(a, b, w.re, w.im);
    change.run(c, d, w.im, w.re);
    store(x + low, a);
    store(x + high, backwards(b));
    store(x + below, backwards(c));
    store(x + above, d);
  }
}

// Cosines and sines of W / 2 points, each twice.
template <class P> SIGPAK_INLINE cplx<P> twice(P roots) { return {evens_twice(roots), odds_twice(roots)}; }

// The outer bins are real, and the one in the middle is its own.
template <class T, bool inverse> void change_single_bins(index half, T scale, T* x) {
  const T factor = inverse ? T(1) : 2 * scale;
  const T first = x[0];
  const T other = inverse ? x[2 * half] : x[1];
  const T difference = factor * (first - other);
  x[0] = factor * (first + other);
  x[1] = inverse ? difference : T(0);
  x[2 * half] = inverse ? T(0) : difference;
  x[2 * half + 1] = 0;
  x[half] *= 2 * (inverse ? T(1) : scale);
  x[half + 1] *= -2 * (inverse ? T(1) : scale);
}

template <class P, bool inverse>
void change_bins(const half_plan<typename P::scalar>& plan, typename P::scalar* x) {
  using T = typename P::scalar;
  const index half = plan.points / 2;
  const bin_change<P, inverse> change(plan.scale);
  change_single_bins<T, inverse>(half, plan.scale, x);
  if (plan.runs == 1) {
    return change_run(change, half, 2, plan.run, x,
                      [fine = plan.fine](index i) SIGPAK_LAMBDA { return twice(load<P>(fine + i)); });
  }
  const T* coarse = plan.coarse;
  for (index run = 0; run < plan.runs; ++run, coarse += 2) {
    const cplx<P> first = {splat<P>(coarse[0]), splat<P>(coarse[1])};
    change_run(change, half, 2 + 2 * run * plan.run, plan.run, x,
               [first, fine = plan.fine](index i)
                   SIGPAK_LAMBDA { return joined(first, twice(load<P>(fine + i))); });
  }
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
