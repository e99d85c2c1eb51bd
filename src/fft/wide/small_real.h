// SPDX-License-Identifier: MIT
// Short transforms of real data in registers, one complex point to a vector.
//
// The half sums u[n] = x[n] + x[n+N/2] have the even bins. The differences v have the odd ones, of which
// every second gives all, as the others are their conjugates, by a complex transform of a quarter of the
// length:
//   X[4k+1] = sum over m < N/4 of w_(N/4)^(m k) w_N^m (v[m] - i v[m+N/4]).
// (H. V. Sorensen et al., "Real-valued fast Fourier transform algorithms", IEEE Trans. ASSP 35 (1987).)
// Single precision is computed in double.
#pragma once

#include "fft/plans/sines.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Bin 4k + 1, or the conjugate of the one below 4j, j = N/4 - k, among the bins up to N/2.
template <int N> struct odd_bin {
  static constexpr int quarter = N / 4;
  static constexpr bool is_conjugate(int k) { return 2 * k >= quarter; }
  static constexpr int at(int k) { return is_conjugate(k) ? 4 * (quarter - k) - 1 : 4 * k + 1; }
};

// a times w_N^m, m below N / 4; backwards, times its conjugate.
template <int N, int m, bool inverse> SIGPAK_INLINE d2 turned_by(d2 a) {
  const d2 h = splat_constant<d2>(half_root);
  const d2 c = splat_constant<d2>(kernels::cosine_of(m, N));
  const d2 s = splat_constant<d2>(inverse ? -kernels::sine_of(m, N) : kernels::sine_of(m, N));
  if constexpr (m == 0) return a;
  if constexpr (8 * m == N) return (inverse ? plus_i(a, a) : minus_i(a, a)) * h;
  return turned(a, c, s);
}

// Of N reals, two to a vector, the bins times the factor: bin k to the point `step` k.
template <class T, int N, int step> SIGPAK_INLINE void to_bins(const d2 (&r)[N / 2], d2 factor, T* x) {
  if constexpr (N == 4) {
    const d2 sum = (r[0] + r[1]) * factor;
    const d2 crossed = exchanged(sum);
    const d2 nothing = splat<d2>(0);
    store_point(x, low_parts(sum + crossed, nothing));
    store_point(x + 4 * step, low_parts(sum - crossed, nothing));
    store_point(x + 2 * step, conjugate((r[0] - r[1]) * factor));
  } else {
    constexpr int quarter = N / 4;
    constexpr int eighth = N / 8;
    d2 z[quarter], u[quarter];
    unroll<eighth>([&](auto i) SIGPAK_LAMBDA {
      const d2 re = r[i] - r[i + quarter];
      const d2 im = r[i + eighth + quarter] - r[i + eighth];
      z[2 * i] = turned_by<N, 2 * i, false>(low_parts(re, im));
      z[2 * i + 1] = turned_by<N, 2 * i + 1, false>(high_parts(re, im));
      u[i] = r[i] + r[i + quarter];
      u[i + eighth] = r[i + eighth] + r[i + eighth + quarter];
    });
    transform(z, factor);
    unroll<quarter>([&](auto k) SIGPAK_LAMBDA {
      const bool is_conjugate = odd_bin<N>::is_conjugate(k);
      store_point(x + 2 * step * odd_bin<N>::at(k), is_conjugate ? conjugate(z[k]) : z[k]);
    });
    to_bins<T, N / 2, 2 * step>(u, factor, x);
  }
}

// The way back, unscaled: with q the sums of the bins 4k + 1, v[m] = 2 Re q[m] and v[m+N/4] = -2 Im q[m].
template <class T, int N, int step> SIGPAK_INLINE void from_bins(const T* x, d2 (&r)[N / 2]) {
  const d2 two = splat<d2>(2);
  if constexpr (N == 4) {
    const auto last = static_cast<double>(x[4 * step]);
    const d2 ends = splat<d2>(static_cast<double>(x[0])) + point_of(last, -last);
    const d2 middle = conjugate(load_point(x + 2 * step));
    r[0] = fma(two, middle, ends);
    r[1] = fnma(two, middle, ends);
  } else {
    constexpr int quarter = N / 4;
    constexpr int eighth = N / 8;
    d2 z[quarter], u[quarter];
    unroll<quarter>([&](auto k) SIGPAK_LAMBDA {
      const d2 bin = load_point(x + 2 * step * odd_bin<N>::at(k));
      z[k] = odd_bin<N>::is_conjugate(k) ? conjugate(bin) : bin;
    });
    transform(z);
    from_bins<T, N / 2, 2 * step>(x, u);
    unroll<eighth>([&](auto i) SIGPAK_LAMBDA {
      const d2 even = turned_by<N, 2 * i, true>(z[result_at<quarter, true>(2 * i)]);
      const d2 odd = turned_by<N, 2 * i + 1, true>(z[result_at<quarter, true>(2 * i + 1)]);
      const d2 re = low_parts(even, odd);
      const d2 im = high_parts(even, odd);
      r[i] = fma(two, re, u[i]);
      r[i + quarter] = fnma(two, re, u[i]);
      r[i + eighth] = fnma(two, im, u[i + eighth]);
      r[i + eighth + quarter] = fma(two, im, u[i + eighth]);
    });
  }
}

template <class T, int N> void run_small_real(T* x) {
  d2 r[N / 2];
  unroll<N / 2>([&](auto i) SIGPAK_LAMBDA { r[i] = load_point(x + 2 * i); });
  to_bins<T, N, 1>(r, splat<d2>(1.0 / N), x);
}

template <class T, int N> void run_small_real_inverse(T* x) {
  d2 r[N / 2];
  from_bins<T, N, 1>(x, r);
  unroll<N / 2>([&](auto i) SIGPAK_LAMBDA { store_point(x + 2 * i, r[i]); });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
