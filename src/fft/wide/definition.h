// SPDX-License-Identifier: MIT
// Transforms of short odd lengths by the definition. With c and s the cosine and sine of 2 pi j k / N,
//   X[k], X[N-k] = x[0] + sum over j of c (x[j] + x[N-j]) -/+ i s (x[j] - x[N-j]),  j, k = 1 ... (N-1)/2.
// The k lie in the lanes.
#pragma once

#include "fft/plans/chirp_plan.h"
#include "fft/wide/butterflies.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Sums and differences of the points j and N - j, and of all points.
template <class T> struct folded {
  static constexpr int most = kernels::most_direct_points<T> / 2;
  T sum[most][2];
  T difference[most][2];
  T total[2];

  folded(const T* x, index points) {
    for (int part = 0; part < 2; ++part) total[part] = x[part];
    for (index j = 1; j <= points / 2; ++j) {
      for (int part = 0; part < 2; ++part) {
        const T a = x[2 * j + part];
        const T b = x[2 * (points - j) + part];
        sum[j - 1][part] = a + b;
        difference[j - 1][part] = a - b;
        total[part] += a + b;
      }
    }
  }
};

// One term of the cosine and sine sums.
template <class P>
SIGPAK_INLINE void add_term(cplx<P>& even, cplx<P>& odd, const folded<typename P::scalar>& in, index j,
                            const typename P::scalar* table) {
  const P c = load<P>(table);
  const P s = load<P>(table + P::width);
  even = {fma(c, splat<P>(in.sum[j][0]), even.re), fma(c, splat<P>(in.sum[j][1]), even.im)};
  odd = {fma(s, splat<P>(in.difference[j][0]), odd.re), fma(s, splat<P>(in.difference[j][1]), odd.im)};
}

template <class P>
void run_direct(const typename P::scalar* table, index points, typename P::scalar* x, bool inverse) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  const folded<T> in(x, points);
  const index half = points / 2;
  const T scale = inverse ? T(1) : T(1) / static_cast<T>(points);
  const P factor = splat<P>(scale);
  const cplx<P> first = {splat<P>(x[0]), splat<P>(x[1])};
  x[0] = in.total[0] * scale;
  x[1] = in.total[1] * scale;
  for (index k = 1; k <= half; k += W) {
    // Two sums each, for half the latency and fewer roundings in a row.
    cplx<P> even[2] = {first, {}};
    cplx<P> odd[2] = {};
    index j = 0;
    for (; j + 1 < half; j += 2, table += 4 * W) {
      add_term(even[0], odd[0], in, j, table);
      add_term(even[1], odd[1], in, j + 1, table + 2 * W);
    }
    if (j < half) {
      add_term(even[0], odd[0], in, j, table);
      table += 2 * W;
    }
    const cplx<P> a = even[0] + even[1];
    const cplx<P> b = odd[0] + odd[1];
    const cplx<P> low = (inverse ? plus_i(a, b) : minus_i(a, b)) * factor;
    const cplx<P> high = (inverse ? minus_i(a, b) : plus_i(a, b)) * factor;
    alignas(64) T parts[4][W];
    store(parts[0], low.re);
    store(parts[1], low.im);
    store(parts[2], high.re);
    store(parts[3], high.im);
    const index count = half + 1 - k < W ? half + 1 - k : W;
    T* up = x + 2 * k;
    T* down = x + 2 * (points - k);
    for (index p = 0; p < count; ++p, up += 2, down -= 2) {
      up[0] = parts[0][p];
      up[1] = parts[1][p];
      down[0] = parts[2][p];
      down[1] = parts[3][p];
    }
  }
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
