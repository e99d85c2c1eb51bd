// SPDX-License-Identifier: MIT
// Transforms of any prime length p from 17 on, one code for all of them: the sums of butterflies_odd.h with
// cosines and sines from a table. Several results at a time, of two vectors where there are as many, keep the
// adders busy: each sum and difference of points is loaded once for all of them.
#pragma once

#include "fft/plans/prime_table.h"
#include "fft/wide/butterflies.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Where V vectors of each point are: the points `step` scalars from one to the next, the vectors `apart`.
template <class T> struct point_rows {
  const T* first;
  index step;
  index apart;
};

// Sums and differences of the points k and p - k, side by side: in places of their own they would be 4 KiB
// apart, so that loads of one wait for stores of the other.
template <class P, int V> struct folded_points {
  P first[V];
  struct {
    P sum[V], difference[V];
  } pairs[kernels::most_prime / 2];
};

// The inverse transform takes the points in the opposite order. The sum of all points comes back.
template <class P, int V>
SIGPAK_INLINE void fold(const point_rows<typename P::scalar>& from, index p, bool inverse,
                        folded_points<P, V>& out, P (&total)[V]) {
  const auto* low = from.first + from.step * (inverse ? p - 1 : 1);
  const auto* high = from.first + from.step * (inverse ? 1 : p - 1);
  const index step = inverse ? -from.step : from.step;
  unroll<V>([&](auto v) SIGPAK_LAMBDA { total[v] = out.first[v] = load<P>(from.first + from.apart * v); });
  for (index k = 0; k < p / 2; ++k, low += step, high -= step) {
    unroll<V>([&](auto v) SIGPAK_LAMBDA {
      const P a = load<P>(low + from.apart * v);
      const P b = load<P>(high + from.apart * v);
      out.pairs[k].sum[v] = a + b;
      out.pairs[k].difference[v] = a - b;
      total[v] = total[v] + out.pairs[k].sum[v];
    });
  }
}

// The results j to j + J - 1 and p - j - J + 1 to p - j, times the factor; w are the cosines and sines of j
// to j + J - 1 in turns, those of the next sum and difference `pairs` further on.
template <int J, class P, int V>
SIGPAK_INLINE void prime_sums(const folded_points<P, V>& in, index pairs, const typename P::scalar* w,
                              P factor, P (*low)[V], P (*high)[V]) {
  P a[J][V], b[J][V];
  unroll<J>([&](auto j) SIGPAK_LAMBDA {
    unroll<V>([&](auto v) SIGPAK_LAMBDA {
      a[j][v] = in.first[v];
      b[j][v] = P{};
    });
  });
  for (index k = 0; k < pairs; ++k, w += 2 * pairs) {
    P t[V], u[V];
    unroll<V>([&](auto v) SIGPAK_LAMBDA { t[v] = in.pairs[k].sum[v]; });
    unroll<J>([&](auto j) SIGPAK_LAMBDA {
      const P c = splat<P>(w[2 * j]);
      unroll<V>([&](auto v) SIGPAK_LAMBDA { a[j][v] = fma(c, t[v], a[j][v]); });
    });
    unroll<V>([&](auto v) SIGPAK_LAMBDA { u[v] = in.pairs[k].difference[v]; });
    unroll<J>([&](auto j) SIGPAK_LAMBDA {
      const P s = splat<P>(w[2 * j + 1]);
      unroll<V>([&](auto v) SIGPAK_LAMBDA { b[j][v] = fma(s, u[v], b[j][v]); });
    });
  }
  unroll<J>([&](auto j) SIGPAK_LAMBDA {
    unroll<V>([&](auto v) SIGPAK_LAMBDA {
      const P odd = scaled(factor, b[j][v]);
      low[j][v] = minus_i(factor, a[j][v], odd);
      high[-j][v] = plus_i(factor, a[j][v], odd);
    });
  });
}

// Of V vectors side by side, to out[k], times the factor.
template <class P, int V>
[[gnu::noinline]] void prime_transform(const typename P::scalar* w, index p,
                                       const point_rows<typename P::scalar>& from, bool inverse, P factor,
                                       P (*out)[V]) {
  constexpr bool few_registers = sizeof(P) < 64;
  constexpr int most = few_registers && V > 1 ? 3 : 4;  // results at a time, or one less
  folded_points<P, V> in;
  P total[V];
  fold(from, p, inverse, in, total);
  unroll<V>([&](auto v) SIGPAK_LAMBDA { out[0][v] = scaled(factor, total[v]); });
  const index pairs = p / 2;
  index j = 0;
  for (; (pairs - j) % most != 0; j += most - 1) {
    prime_sums<most - 1>(in, pairs, w + 2 * j, factor, out + 1 + j, out + p - 1 - j);
  }
  for (; j < pairs; j += most) prime_sums<most>(in, pairs, w + 2 * j, factor, out + 1 + j, out + p - 1 - j);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
