// SPDX-License-Identifier: MIT
// Transforms of 2 M and 4 M points, M odd, in registers, with the transform of two or four across a vector:
// its points are loaded into all places at once, and a fused product with the sign of each place adds and
// subtracts them. So the transforms of M that follow are side by side without a transposition.
#pragma once

#include "fft/wide/short.h"
#include "vectors/places.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// One sign for all points in the same place of four, for the real and for the imaginary parts.
template <class P> struct place_signs {
  using T = typename P::scalar;
  alignas(64) T values[P::width] = {};
  constexpr place_signs(const int (&re)[4], const int (&im)[4]) {
    for (int i = 0; i < P::width; ++i) values[i] = static_cast<T>((i % 2 == 0 ? re : im)[i / 2 % 4]);
  }
};
template <class P> constinit const place_signs<P> by_turns({1, -1, 1, -1}, {1, -1, 1, -1});
// Of the sum and of i times the difference, parts exchanged, in the transform of four.
template <class P, bool inverse>
constinit const place_signs<P> by_quarters({1, inverse ? -1 : 1, -1, inverse ? 1 : -1},
                                           {1, inverse ? 1 : -1, -1, inverse ? -1 : 1});

// The transform of A points, at(0) ... at(A - 1), each in all places: result k in place k % C of y[k / C], C
// points to a vector.
template <class P, int A, bool inverse, class Source>
SIGPAK_INLINE void transform_across(const Source& at, P (&y)[2 * A / P::width]) {
  const P turns = load<P>(by_turns<P>.values);
  if constexpr (A == 2) {
    y[0] = fma(at(constant<1>{}), turns, at(constant<0>{}));
  } else {
    const P even = fma(at(constant<2>{}), turns, at(constant<0>{}));
    const P odd = second_exchanged(fma(at(constant<3>{}), turns, at(constant<1>{})));
    const P quarters = load<P>(by_quarters<P, inverse>.values);
    y[0] = fma(odd, quarters, even);
    if constexpr (P::width == 4) y[1] = fnma(odd, quarters, even);
  }
}

// The k below A M with these remainders.
template <int A, int M> constexpr int point_with(int k1, int k2) {
  int k = k1;
  while (k % M != k2) k += A;
  return k;
}

// n = M n1 + A n2; k = k1 mod A, k2 mod M.
template <class P, int A, int M, bool inverse> void run_across(typename P::scalar* x) {
  constexpr int N = A * M;
  constexpr int C = P::width / 2;
  const one_over<P, (inverse ? 1 : N)> factor;
  P y[A / C][M];
  unroll<M>([&](auto n2) SIGPAK_LAMBDA {
    P across[A / C];
    const auto point = [=](auto n1) SIGPAK_LAMBDA {
      P a;
      load_repeated(x + 2 * ((M * n1 + A * n2) % N), a);
      return a;
    };
    transform_across<P, A, inverse>(point, across);
    unroll<A / C>([&](auto v) SIGPAK_LAMBDA { y[v][n2] = across[v]; });
  });
  unroll<A / C>([&](auto v) SIGPAK_LAMBDA { transform(y[v], factor); });
  unroll<M>([&](auto k2) SIGPAK_LAMBDA {
    unroll<A>([&](auto k1) SIGPAK_LAMBDA {
      constexpr int k = point_with<A, M>(k1, k2);
      store_point_of<k1 % C>(x + 2 * k, y[k1 / C][result_at<M, inverse>(k2)]);
    });
  });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
