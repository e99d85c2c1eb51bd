// SPDX-License-Identifier: MIT
// Transforms of complex points that stay in registers from load to store.
#pragma once

#include "fft/plans/sines.h"
#include "fft/wide/passes.h"
#include "vectors/places.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// N = A B interleaved points in A rows of B, n = B i + l and k = kb + A k', C of them in a vector:
//   X[k] = sum over l of w_B^(l k') w_N^(l kb) (sum over i of w_A^(i kb) x[n]).
// The factors w_N^(l kb), kb = 0 ... A - 1, once for the real and once for the imaginary part; conjugate for
// the inverse. Of short rows the points with odd l take the factor 1/N of a scaled transform here.
template <class P, int A, int B, bool inverse, bool is_scaled> struct row_twiddles {
  using T = typename P::scalar;
  static constexpr int vectors = 2 * B / P::width;
  static constexpr bool has_factor = is_scaled && B <= 4;
  alignas(64) T c[A][vectors][P::width] = {};
  alignas(64) T s[A][vectors][P::width] = {};
  constexpr row_twiddles() {
    for (int kb = 0; kb < A; ++kb) {
      for (int i = 0; i < vectors * P::width; ++i) {
        const int l = i / 2;
        const T factor = has_factor && l % 2 != 0 ? T(1) / (A * B) : T(1);
        const long double sine = kernels::sine_of(l * kb, A * B);
        c[kb][i / P::width][i % P::width] = static_cast<T>(kernels::cosine_of(l * kb, A * B)) * factor;
        s[kb][i / P::width][i % P::width] = static_cast<T>(inverse ? -sine : sine) * factor;
      }
    }
  }
};
template <class P, int A, int B, bool inverse, bool is_scaled>
constinit const row_twiddles<P, A, B, inverse, is_scaled> row_twiddles_of{};

// In place and in natural order.
template <class P, int A, int B, bool inverse, bool is_scaled>
SIGPAK_INLINE void transform_small(P (&z)[2 * A * B / P::width]) {
  using T = typename P::scalar;
  constexpr int C = P::width / 2;
  constexpr int vectors = B / C;
  const auto factor = factor_of<P, !is_scaled>(T(1) / (A * B));
  const auto& w = row_twiddles_of<P, A, B, inverse, is_scaled>;
  P y[vectors][A];
  unroll<vectors>([&](auto v) SIGPAK_LAMBDA {
    P a[A];
    unroll<A>([&](auto i) SIGPAK_LAMBDA { a[i] = z[i * vectors + v]; });
    transform(a);
    y[v][0] = w.has_factor ? a[0] * load<P>(w.c[0][v]) : a[0];
    unroll<A - 1>([&](auto i) SIGPAK_LAMBDA {
      constexpr int kb = i + 1;
      y[v][kb] = turned(a[result_at<A, inverse>(kb)], load<P>(w.c[kb][v]), load<P>(w.s[kb][v]));
    });
  });
  unroll<A / C>([&](auto group) SIGPAK_LAMBDA {
    P row[B];
    unroll<vectors>([&](auto v) SIGPAK_LAMBDA {
      P square[C];
      unroll<C>([&](auto p) SIGPAK_LAMBDA { square[p] = y[v][C * group + p]; });
      transpose_points(square);
      unroll<C>([&](auto l) SIGPAK_LAMBDA { row[C * v + l] = square[l]; });
    });
    if constexpr (w.has_factor) {
      transform_turned(row, factor);
    } else {
      transform(row, factor);
    }
    unroll<B>([&](auto k) SIGPAK_LAMBDA { z[group + k * (A / C)] = row[result_at<B, inverse>(k)]; });
  });
}

template <class P, int A, int B, bool inverse> void run_small(typename P::scalar* x) {
  constexpr int vectors = 2 * A * B / P::width;
  P z[vectors];
  unroll<vectors>([&](auto i) SIGPAK_LAMBDA { z[i] = load<P>(x + P::width * i); });
  transform_small<P, A, B, inverse, !inverse>(z);
  unroll<vectors>([&](auto i) SIGPAK_LAMBDA { store(x + P::width * i, z[i]); });
}

// One point to a vector leaves nothing but the transform itself.
template <class T, int N, bool inverse> void run_points(T* x) {
  using E = typename point_vector<T>::type;
  E a[N];
  unroll<N>([&](auto i) SIGPAK_LAMBDA { a[i] = load_point(x + 2 * i); });
  transform(a, factor_of<E, inverse>(T(1) / N));
  unroll<N>([&](auto k) SIGPAK_LAMBDA { store_point(x + 2 * k, a[result_at<N, inverse>(k)]); });
}

// Four points, by the operations that take the least time one after the other.
template <class T, bool inverse> void run_four(T* x) {
  using E = typename point_vector<T>::type;
  const E x0 = load_point(x), x1 = load_point(x + 2), x2 = load_point(x + 4), x3 = load_point(x + 6);
  const E a = x0 + x2, b = x0 - x2, c = x1 + x3, d = x1 - x3;
  if constexpr (inverse) {
    store_point(x, a + c);
    store_point(x + 2, quick_plus_i(b, d));
    store_point(x + 4, a - c);
    store_point(x + 6, quick_minus_i(b, d));
  } else {
    const E quarter = splat<E>(T(0.25));
    const E sum = a * quarter, difference = b * quarter;
    store_point(x, fma(c, quarter, sum));
    store_point(x + 2, fma(exchanged(d), alternating(quarter), difference));
    store_point(x + 4, fnma(c, quarter, sum));
    store_point(x + 6, fnma(exchanged(d), alternating(quarter), difference));
  }
}

// Eight points in the same way. Of d, the differences of points four apart, and r, the root of one half,
//   X[1], X[7] = a -/+ i b, a = d0 + r (d1 - d3), b = d2 + r (d1 + d3),
// and X[5], X[3] the same with -r. The factor is on the way of a alone, which is the shorter one.
template <class T, bool inverse> void run_eight(T* x) {
  using E = typename point_vector<T>::type;
  constexpr T scale = inverse ? T(1) : T(0.125);
  constexpr auto r = static_cast<T>(half_root);
  const auto factor = factor_of<E, inverse>(scale);
  const E s = splat<E>(scale);
  const auto store_both = [&](auto k, E a, E b) SIGPAK_LAMBDA {
    store_point(x + 2 * result_at<8, inverse>(k), fnma_i(s, b, a));
    store_point(x + 2 * result_at<8, inverse>(8 - k), fma_i(s, b, a));
  };
  E sum[4], difference[4];
  unroll<4>([&](auto i) SIGPAK_LAMBDA {
    const E low = load_point(x + 2 * i);
    const E high = load_point(x + 2 * (i + 4));
    sum[i] = low + high;
    difference[i] = low - high;
  });
  const E t1 = difference[1] - difference[3];
  const E t3 = difference[1] + difference[3];
  const E first = scaled(factor, difference[0]);
  store_both(constant<1>{}, fma(splat<E>(r * scale), t1, first), fma(splat<E>(r), t3, difference[2]));
  store_both(constant<5>{}, fnma(splat<E>(r * scale), t1, first), fnma(splat<E>(r), t3, difference[2]));
  store_both(constant<2>{}, scaled(factor, sum[0] - sum[2]), sum[1] - sum[3]);
  const E even = scaled(factor, sum[0] + sum[2]);
  const E odd = sum[1] + sum[3];
  store_point(x, fma(s, odd, even));
  store_point(x + 8, fnma(s, odd, even));
}

// Scaled before the sum, which then cannot overflow.
template <class T, bool inverse> void run_pair(T* x) {
  using E = typename point_vector<T>::type;
  const auto half = factor_of<E, inverse>(T(0.5));
  const E a = scaled(half, load_point(x));
  const E b = scaled(half, load_point(x + 2));
  store_point(x, a + b);
  store_point(x + 2, a - b);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
