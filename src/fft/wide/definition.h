// SPDX-License-Identifier: MIT
// Transforms of short primes p, and of twice and three times one, by the definition. With c and s the cosine
// and sine of 2 pi j k / p,
//   X[k], X[p-k] = x[0] + sum over j of c (x[j] + x[p-j]) -/+ i s (x[j] - x[p-j]),  j, k = 1 ... (p-1)/2.
// The k lie in the lanes. Those of the last vector may go beyond (p-1)/2, where results are found twice.
#pragma once

#include "fft/plans/direct_plan.h"
#include "fft/wide/butterflies_odd.h"
#include "fft/wide/exact_scale.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::direct_plan;

// The A-point transforms of the points n = p n1 + A n2, whose result k1 is point n2 of column k1.
template <class T, int A, bool inverse> class direct_columns {
 public:
  using E = typename point_vector<T>::type;
  SIGPAK_INLINE direct_columns(const T* x, index length) : x_(x), length_(length) {}

  SIGPAK_INLINE void take(index n2, E (&out)[A]) const {
    E a[A];
    unroll<A>([&](auto n1) SIGPAK_LAMBDA {
      const index n = A * n2 + length_ * n1;
      a[n1] = load_point(x_ + 2 * (A == 1 || n < A * length_ ? n : n - A * length_));
    });
    transform(a);
    unroll<A>([&](auto k1) SIGPAK_LAMBDA { out[k1] = a[result_at<A, inverse>(k1)]; });
  }

 private:
  const T* x_;
  index length_;
};

// Sums and differences of the points j and p - j of all columns, their first points, and the sums of all.
template <class T, int A> struct folded {
  static constexpr int most = kernels::most_direct_prime / 2;
  T sum[most][A][2];
  T difference[most][A][2];
  T first[A][2];
  T total[A][2];

  template <bool inverse> SIGPAK_INLINE folded(const direct_columns<T, A, inverse>& columns, index length) {
    typename point_vector<T>::type low[A], high[A], all[A];
    columns.take(0, all);
    unroll<A>([&](auto k1) SIGPAK_LAMBDA { store_point(first[k1], all[k1]); });
    for (index j = 1; j <= length / 2; ++j) {
      columns.take(j, low);
      columns.take(length - j, high);
      unroll<A>([&](auto k1) SIGPAK_LAMBDA {
        const auto both = low[k1] + high[k1];
        store_point(sum[j - 1][k1], both);
        store_point(difference[j - 1][k1], low[k1] - high[k1]);
        all[k1] = all[k1] + both;
      });
    }
    unroll<A>([&](auto k1) SIGPAK_LAMBDA { store_point(total[k1], all[k1]); });
  }
};

// The cosine and sine sums of K vectors of results of each column, from k on.
template <class P, int A, int K>
SIGPAK_INLINE void direct_sums(const direct_plan<typename P::scalar>& plan,
                               const folded<typename P::scalar, A>& in, index k, cplx<P> (&even)[K][A],
                               cplx<P> (&odd)[K][A]) {
  // Where the registers hold them two parts of each sum, for half the latency and fewer roundings in a row.
  constexpr int parts = A == 1 && (K == 1 || sizeof(P) == 64) ? 2 : 1;
  const index half = plan.length / 2;
  const index row = 2 * P::width * half;
  const auto* table = plan.table + 2 * half * (k - 1);
  cplx<P> a[parts][K][A] = {};
  cplx<P> b[parts][K][A] = {};
  const auto each = [](const auto& body) SIGPAK_LAMBDA {
    unroll<K * A>([&](auto i) SIGPAK_LAMBDA { body(constant<i / A>{}, constant<i % A>{}); });
  };
  each([&](auto i, auto column) SIGPAK_LAMBDA {
    a[0][i][column] = {splat<P>(in.first[column][0]), splat<P>(in.first[column][1])};
  });
  const auto add = [&](index j, auto part) SIGPAK_LAMBDA {
    unroll<A>([&](auto column) SIGPAK_LAMBDA {
      const cplx<P> sum = {splat<P>(in.sum[j][column][0]), splat<P>(in.sum[j][column][1])};
      const cplx<P> difference = {splat<P>(in.difference[j][column][0]),
                                  splat<P>(in.difference[j][column][1])};
      unroll<K>([&](auto i) SIGPAK_LAMBDA {
        a[part][i][column] = fma(load<P>(table + row * i), sum, a[part][i][column]);
        b[part][i][column] = fma(load<P>(table + row * i + P::width), difference, b[part][i][column]);
      });
    });
    table += 2 * P::width;
  };
  index j = 0;
  for (; j + parts <= half; j += parts) unroll<parts>([&](auto part) SIGPAK_LAMBDA { add(j + part, part); });
  if (j < half) add(j, constant<0>{});
  each([&](auto i, auto column) SIGPAK_LAMBDA {
    even[i][column] = parts > 1 ? a[0][i][column] + a[parts - 1][i][column] : a[0][i][column];
    odd[i][column] = parts > 1 ? b[0][i][column] + b[parts - 1][i][column] : b[0][i][column];
  });
}

// Those results of each column, and as many from p - k downwards.
template <class P, int A, int K, bool inverse>
SIGPAK_INLINE void direct_results(const direct_plan<typename P::scalar>& plan,
                                  const folded<typename P::scalar, A>& in, index k, typename P::scalar* x,
                                  index pitch) {
  constexpr int W = P::width;
  const exact_scale<P> scale(plan, inverse);
  cplx<P> even[K][A], odd[K][A];
  direct_sums(plan, in, k, even, odd);
  unroll<A>([&](auto column) SIGPAK_LAMBDA {
    unroll<K>([&](auto i) SIGPAK_LAMBDA {
      const cplx<P> plus = plus_i(even[i][column], odd[i][column]);
      const cplx<P> minus = minus_i(even[i][column], odd[i][column]);
      const cplx<P> low = inverse ? plus : minus;
      const cplx<P> high = inverse ? minus : plus;
      auto* const up = x + pitch * column + 2 * (k + W * i);
      store_points<P, false>(up, {scale(low.re), scale(low.im)});
      auto* const down = x + pitch * column + 2 * (plan.length - k - W * (i + 1) + 1);
      store(down, backwards(high_parts(scale(high.re), scale(high.im))));
      store(down + W, backwards(low_parts(scale(high.re), scale(high.im))));
    });
  });
}

// The results of the columns, `pitch` scalars from one to the next, which may be where the data are.
template <class P, int A, bool inverse>
SIGPAK_INLINE void transform_columns(const direct_plan<typename P::scalar>& plan, const typename P::scalar* x,
                                     typename P::scalar* out, index pitch) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  constexpr int most = A == 1 || sizeof(P) == 64 ? 2 : 1;  // vectors at a time that the registers hold
  const index half = plan.length / 2;
  const folded<T, A> in(direct_columns<T, A, inverse>(x, plan.length), plan.length);
  const exact_scale<typename point_vector<T>::type> scale(plan, inverse);
  unroll<A>([&](auto column)
                SIGPAK_LAMBDA { store_point(out + pitch * column, scale(load_point(in.total[column]))); });
  index k = 1;
  for (; k + W * (most - 1) <= half; k += W * most)
    direct_results<P, A, most, inverse>(plan, in, k, out, pitch);
  if constexpr (most > 1) {
    if (k <= half) direct_results<P, A, 1, inverse>(plan, in, k, out, pitch);
  }
}

// The same, and the results k = k1 mod A = k2 mod p in order.
template <class P, int A, bool inverse>
void transform_by_columns(const direct_plan<typename P::scalar>& plan, typename P::scalar* x) {
  using T = typename P::scalar;
  constexpr index pitch = 2 * kernels::most_direct_prime;
  alignas(machine::line_bytes) T columns[A * pitch];
  transform_columns<P, A, inverse>(plan, x, columns, pitch);
  const index p = plan.length;
  const T* of[2 * A];
  for (index i = 0; i < 2 * A; ++i) of[i] = columns + pitch * (i % A);
  for (index k2 = 0, k1 = 0; k2 < p; ++k2, k1 = k1 + 1 < A ? k1 + 1 : 0) {
    unroll<A>([&](auto i) SIGPAK_LAMBDA {
      const index k = k2 + p * i;
      store_point(x + 2 * k, load_point(of[k1 + i * p % A] + 2 * k2));
    });
  }
}

template <class P, bool inverse>
void run_direct(const direct_plan<typename P::scalar>& plan, typename P::scalar* x) {
  if (plan.columns == 1) return transform_columns<P, 1, inverse>(plan, x, x, 0);
  if (plan.columns == 2) return transform_by_columns<P, 2, inverse>(plan, x);
  transform_by_columns<P, 3, inverse>(plan, x);
}
template <class P>
void run_direct_either(const direct_plan<typename P::scalar>& plan, typename P::scalar* x, bool inverse) {
  inverse ? run_direct<P, true>(plan, x) : run_direct<P, false>(plan, x);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
