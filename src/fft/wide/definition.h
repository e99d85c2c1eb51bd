// SPDX-License-Identifier: MIT
// Transforms of short primes p, and of twice and three times one, by the definition. With c and s the cosine
// and sine of 2 pi j k / p,
//   X[k], X[p-k] = x[0] + sum over j of c (x[j] + x[p-j]) -/+ i s (x[j] - x[p-j]),  j, k = 1 ... (p-1)/2.
// The k lie in the lanes. Those of the last vector may go beyond (p-1)/2, where results are found twice.
#pragma once

#include "fft/plans/direct_plan.h"
#include "fft/wide/butterflies_odd.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::direct_plan;

// Sums and differences of the points j and p - j of A columns, `pitch` scalars from one to the next, and of
// all their points.
template <class T, int A> struct folded {
  static constexpr int most = kernels::most_direct_prime / 2;
  T sum[most][A][2];
  T difference[most][A][2];
  T first[A][2];
  T total[A][2];

  folded(const T* x, index length, index pitch) {
    for (int column = 0; column < A; ++column, x += pitch) {
      const auto x0 = load_point(x);
      auto all = x0;
      for (index j = 1; j <= length / 2; ++j) {
        const auto a = load_point(x + 2 * j);
        const auto b = load_point(x + 2 * (length - j));
        store_point(sum[j - 1][column], a + b);
        store_point(difference[j - 1][column], a - b);
        all = all + (a + b);
      }
      store_point(first[column], x0);
      store_point(total[column], all);
    }
  }
};

template <class P> SIGPAK_INLINE cplx<P> times(cplx<P> a, P factor, P rest) {
  return {fma(a.re, factor, a.re * rest), fma(a.im, factor, a.im * rest)};
}

// K vectors of results of each column, from k on, and as many from p - k downwards, times the factors.
template <class P, int A, int K, bool inverse>
SIGPAK_INLINE void direct_results(const direct_plan<typename P::scalar>& plan,
                                  const folded<typename P::scalar, A>& in, index k, typename P::scalar* x,
                                  index pitch) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  // Of few sums two parts each, for half the latency and fewer roundings in a row.
  constexpr int parts = 4 * A * K < 8 ? 2 : 1;
  const index half = plan.length / 2;
  const T* table = plan.table + 2 * half * (k - 1);
  cplx<P> even[K][A][parts] = {};
  cplx<P> odd[K][A][parts] = {};
  unroll<K>([&](auto i) SIGPAK_LAMBDA {
    unroll<A>([&](auto a) SIGPAK_LAMBDA { even[i][a][0] = {splat<P>(in.first[a][0]), splat<P>(in.first[a][1])}; });
  });
  const auto add = [&](index j, auto part) SIGPAK_LAMBDA {
    P c[K], s[K];
    unroll<K>([&](auto i) SIGPAK_LAMBDA {
      c[i] = load<P>(table + 2 * W * half * i);
      s[i] = load<P>(table + 2 * W * half * i + W);
    });
    table += 2 * W;
    unroll<A>([&](auto a) SIGPAK_LAMBDA {
      const cplx<P> sum = {splat<P>(in.sum[j][a][0]), splat<P>(in.sum[j][a][1])};
      const cplx<P> difference = {splat<P>(in.difference[j][a][0]), splat<P>(in.difference[j][a][1])};
      unroll<K>([&](auto i) SIGPAK_LAMBDA {
        even[i][a][part] = fma(c[i], sum, even[i][a][part]);
        odd[i][a][part] = fma(s[i], difference, odd[i][a][part]);
      });
    });
  };
  index j = 0;
  for (; j + parts <= half; j += parts) unroll<parts>([&](auto part) SIGPAK_LAMBDA { add(j + part, part); });
  if (j < half) add(j, constant<0>{});
  const P factor = splat<P>(inverse ? T(1) : plan.scale);
  const P rest = splat<P>(inverse ? T(0x1p-60) : plan.scale_rest);
  unroll<A>([&](auto column) SIGPAK_LAMBDA {
    unroll<K>([&](auto i) SIGPAK_LAMBDA {
      cplx<P> a = even[i][column][0], b = odd[i][column][0];
      if constexpr (parts > 1) a = a + even[i][column][1], b = b + odd[i][column][1];
      const cplx<P> low = times(inverse ? plus_i(a, b) : minus_i(a, b), factor, rest);
      const cplx<P> high = times(inverse ? minus_i(a, b) : plus_i(a, b), factor, rest);
      T* const up = x + pitch * column + 2 * (k + W * i);
      store_points<P, false>(up, low);
      T* const down = x + pitch * column + 2 * (plan.length - k - W * (i + 1) + 1);
      store(down, backwards(high_parts(high.re, high.im)));
      store(down + W, backwards(low_parts(high.re, high.im)));
    });
  });
}

// The columns in place.
template <class P, int A, bool inverse>
void transform_columns(const direct_plan<typename P::scalar>& plan, typename P::scalar* x, index pitch) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  constexpr int most = A == 1 || sizeof(P) == 64 ? 2 : 1;  // vectors at a time that the registers hold
  const index half = plan.length / 2;
  const folded<T, A> in(x, plan.length, pitch);
  unroll<A>([&](auto column) SIGPAK_LAMBDA {
    for (int part = 0; part < 2; ++part) {
      x[pitch * column + part] = in.total[column][part] * (inverse ? T(1) : plan.scale);
    }
  });
  index k = 1;
  for (; k + W * (most - 1) <= half; k += W * most) direct_results<P, A, most, inverse>(plan, in, k, x, pitch);
  if constexpr (most > 1) {
    if (k <= half) direct_results<P, A, 1, inverse>(plan, in, k, x, pitch);
  }
}

// Columns, their transforms, and the results in order.
template <class P, int A, bool inverse>
void transform_by_columns(const direct_plan<typename P::scalar>& plan, typename P::scalar* x) {
  using T = typename P::scalar;
  using E = typename point_vector<T>::type;
  constexpr index pitch = 2 * kernels::most_direct_prime;
  alignas(64) T columns[A * pitch];
  const index p = plan.length;
  const index n = A * p;
  for (index n2 = 0, start = 0; n2 < p; ++n2, start += A) {
    E a[A];
    unroll<A>([&](auto n1) SIGPAK_LAMBDA {
      const index at = start + p * n1;
      a[n1] = load_point(x + 2 * (at < n ? at : at - n));
    });
    transform(a);
    unroll<A>([&](auto k1) SIGPAK_LAMBDA {
      store_point(columns + pitch * result_at<A, inverse>(k1) + 2 * n2, a[k1]);
    });
  }
  transform_columns<P, A, inverse>(plan, columns, pitch);
  for (index k = 0, k1 = 0, k2 = 0; k < n; ++k) {
    store_point(x + 2 * k, load_point(columns + pitch * k1 + 2 * k2));
    k1 = k1 + 1 < A ? k1 + 1 : 0;
    k2 = k2 + 1 < p ? k2 + 1 : 0;
  }
}

template <class P, bool inverse>
void run_direct(const direct_plan<typename P::scalar>& plan, typename P::scalar* x) {
  if (plan.columns == 1) return transform_columns<P, 1, inverse>(plan, x, 0);
  if (plan.columns == 2) return transform_by_columns<P, 2, inverse>(plan, x);
  transform_by_columns<P, 3, inverse>(plan, x);
}
template <class P>
void run_direct_either(const direct_plan<typename P::scalar>& plan, typename P::scalar* x, bool inverse) {
  inverse ? run_direct<P, true>(plan, x) : run_direct<P, false>(plan, x);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
