// SPDX-License-Identifier: MIT
// The passes of products (products.h) over a prime factor without a butterfly of its own. They take two
// vectors at a time, by way of the stack.
#pragma once

#include "fft/plans/product_plan.h"
#include "fft/wide/butterflies_composite.h"
#include "fft/wide/butterflies_prime.h"
#include "fft/wide/exact_scale.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::product_plan;

// a times w or, for the inverse, its conjugate; c and s hold its parts once for each part of a.
template <bool inverse, class P> SIGPAK_INLINE P turned_forth_or_back(P a, P c, P s) {
  if constexpr (inverse) return fma_odd(a, c, exchanged(a) * s);
  return turned(a, c, s);
}

// Calls body(constant<V>, first, at) for pairs of groups of C points, and for one that is left: the points
// from `first` on, `at` those of the last vector. A last group overlaps the one before.
template <int C, class Body>
SIGPAK_INLINE void with_groups(index from, index to, index points, const Body& body) {
  const auto start = [=](index group) { return group < points - C ? group : points - C; };
  for (; to - from > C; from += 2 * C) body(constant<2>{}, start(from), start(from + C));
  if (from < to) body(constant<1>{}, start(from), start(from));
}

// Rows of points to rows of `stride` scalars, which end with the last repeated up to whole vectors.
template <class P, int V>
SIGPAK_INLINE void store_rows_transposed(P (*y)[V], index rows, int v, typename P::scalar* out,
                                         index stride) {
  constexpr int C = P::width / 2;
  for (index row = 0; row < rows; row += C) {
    P square[C];
    unroll<C>([&](auto i) SIGPAK_LAMBDA { square[i] = y[row + i < rows ? row + i : rows - 1][v]; });
    transpose_points(square);
    unroll<C>([&](auto l) SIGPAK_LAMBDA { store(out + stride * l + 2 * row, square[l]); });
  }
}

template <class P, bool inverse>
void prime_columns(const product_plan<typename P::scalar>& plan, index from, index to,
                   const typename P::scalar* w, const typename P::scalar* x, typename P::scalar* s) {
  constexpr int C = P::width / 2;
  const index p = plan.radix[0];
  const P one = splat<P>(1);
  with_groups<C>(from, to, plan.rows, [&](auto count, index first, index last) {
    constexpr int V = count;
    P y[kernels::most_prime][V];
    prime_transform<P, V>(plan.terms[0], p, {x + 2 * first, 2 * plan.rows, 2 * (last - first)}, inverse, one,
                          y);
    for (int v = 0; v < V; ++v) {
      for (index k = 1; k < p; ++k, w += P::width) {
        const P t = load<P>(w);
        y[k][v] = turned_forth_or_back<inverse>(y[k][v], evens_twice(t), odds_twice(t));
      }
      store_rows_transposed(y, p, v, s + 2 * plan.stride * (v == 0 ? first : last), 2 * plan.stride);
    }
  });
}

// In place alone, as lengths in squares have no such factors.
template <class P, bool inverse>
void prime_block(const product_plan<typename P::scalar>& plan, int pass, const typename P::scalar*,
                 typename P::scalar* row) {
  constexpr int C = P::width / 2;
  const index p = plan.radix[pass];
  const index count = plan.block[pass] / p;
  const index step = 2 * plan.stride * count;
  const index row_points = (plan.radix[0] + C - 1) / C * C;
  const P one = splat<P>(1);
  const auto* w = plan.turns[pass];
  for (index i = 0; i < count; ++i, w += 2 * (p - 1), row += 2 * plan.stride) {
    with_groups<C>(0, row_points, row_points, [&](auto vectors, index first, index) {
      constexpr int V = vectors;
      P y[kernels::most_prime][V];
      prime_transform<P, V>(plan.terms[pass], p, {row + 2 * first, step, P::width}, inverse, one, y);
      auto* to = row + 2 * first;
      unroll<V>([&](auto v) SIGPAK_LAMBDA { store(to + P::width * v, y[0][v]); });
      for (index k = 1; k < p; ++k) {
        to += step;
        const P c = splat<P>(w[2 * k - 2]);
        const P sine = splat<P>(w[2 * k - 1]);
        unroll<V>([&](auto v) SIGPAK_LAMBDA {
          store(to + P::width * v, turned_forth_or_back<inverse>(y[k][v], c, sine));
        });
      }
    });
  }
}

template <class P>
void prime_results(const product_plan<typename P::scalar>& plan, index row, index rows,
                   const typename P::scalar* s, typename P::scalar* x, bool inverse) {
  using T = typename P::scalar;
  constexpr int C = P::width / 2;
  const int pass = plan.passes - 1;
  const index p = plan.radix[pass];
  const index a_points = plan.radix[0];
  const index out_step = 2 * a_points * (plan.rows / p);
  const exact_scale<P> scale(plan, inverse);
  for (index at = row; at < row + rows; at += p) {
    T* const out = x + 2 * a_points * static_cast<index>(plan.order[at / p]);
    with_groups<C>(0, a_points, a_points, [&](auto vectors, index first, index last) {
      constexpr int V = vectors;
      P y[kernels::most_prime][V];
      const point_rows<T> from = {s + 2 * (plan.stride * at + first), 2 * plan.stride, 2 * (last - first)};
      prime_transform<P, V>(plan.terms[pass], p, from, inverse, is_single<T> ? splat<P>(1) : scale.nearest,
                            y);
      T* to = out + 2 * first;
      for (index k = 0; k < p; ++k, to += out_step) {
        unroll<V>([&](auto v) SIGPAK_LAMBDA {
          if constexpr (is_single<T>) y[k][v] = scale(y[k][v]);
          store(to + from.apart * v, y[k][v]);
        });
      }
    });
  }
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
