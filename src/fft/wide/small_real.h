// SPDX-License-Identifier: MIT
// The shortest transforms of real data, in registers, one complex point to a vector.
//
// The half sums u[n] = x[n] + x[n+N/2] have the even bins. The differences v have the odd ones, of which
// every second gives all, as the others are their conjugates, by a complex transform of a quarter of the
// length:
//   X[4k+1] = sum over m < N/4 of w_(N/4)^(m k) w_N^m (v[m] - i v[m+N/4]).
// (H. V. Sorensen et al., "Real-valued fast Fourier transform algorithms", IEEE Trans. ASSP 35 (1987).)
#pragma once

#include "fft/plans/sines.h"
#include "fft/wide/butterflies.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Bin 4k + 1, or the conjugate of the one below 4j, j = N/4 - k, among the bins up to N/2.
template <int N> struct odd_bin {
  static constexpr int quarter = N / 4;
  static constexpr bool is_conjugate(int k) { return 2 * k >= quarter; }
  static constexpr int at(int k) { return is_conjugate(k) ? 4 * (quarter - k) - 1 : 4 * k + 1; }
};

// a times f w_N^m, m below N / 4, where b is a with its parts exchanged.
template <int N, int m, class E> SIGPAK_INLINE E turned_by(E a, E b, typename E::scalar f) {
  using T = typename E::scalar;
  constexpr auto c = static_cast<T>(kernels::cosine_of(m, N));
  constexpr auto s = static_cast<T>(kernels::sine_of(m, N));
  if constexpr (m == 0) return a;
  if constexpr (8 * m == N) return fma_even(a, splat<E>(1), b) * splat<E>(c * f);
  return fma_even(a, splat<E>(c * f), b * splat<E>(s * f));
}

// a times conj w_N^m.
template <int N, int m, class E> SIGPAK_INLINE E turned_back(E a) {
  if constexpr (m == 0) return a;
  if constexpr (8 * m == N) return plus_i(a, a) * splat_constant<E>(half_root);
  return turned(a, splat_constant<E>(kernels::cosine_of(m, N)), splat_constant<E>(-kernels::sine_of(m, N)));
}

// Of N reals, two to a vector, the bins of a transform of `all`: bin k to the point `step` k. The factor
// comes with the last sums, for their second operands with the twiddles.
template <int N, int step, int all, class E>
SIGPAK_INLINE void to_bins(const E (&r)[N / 2], typename E::scalar* x) {
  using T = typename E::scalar;
  constexpr T scale = T(1) / all;
  const E factor = splat<E>(scale);
  if constexpr (N == 4) {
    const E sum = (r[0] + r[1]) * factor;
    const E crossed = exchanged(sum);
    const E nothing = splat<E>(0);
    store_point(x, low_parts(sum + crossed, nothing));
    store_point(x + 4 * step, low_parts(sum - crossed, nothing));
    store_point(x + 2 * step, conjugate((r[0] - r[1]) * factor));
  } else {
    constexpr int quarter = N / 4;
    constexpr int eighth = N / 8;
    E z[quarter], u[quarter];
    unroll<eighth>([&](auto i) SIGPAK_LAMBDA {
      const E re = r[i] - r[i + quarter];
      const E im = r[i + eighth + quarter] - r[i + eighth];
      z[2 * i] = turned_by<N, 2 * i>(low_parts(re, im), low_parts(im, re), T(1));
      z[2 * i + 1] = turned_by<N, 2 * i + 1>(second_parts(re, im), second_parts(im, re), scale);
      u[i] = r[i] + r[i + quarter];
      u[i + eighth] = r[i + eighth] + r[i + eighth + quarter];
    });
    transform_turned(z, factor);
    unroll<quarter>([&](auto k) SIGPAK_LAMBDA {
      const bool is_conjugate = odd_bin<N>::is_conjugate(k);
      store_point(x + 2 * step * odd_bin<N>::at(k), is_conjugate ? conjugate(z[k]) : z[k]);
    });
    to_bins<N / 2, 2 * step, all>(u, x);
  }
}

// The way back, unscaled: with q the sums of the bins 4k + 1, v[m] = 2 Re q[m] and v[m+N/4] = -2 Im q[m].
template <int N, int step, class E> SIGPAK_INLINE void from_bins(const typename E::scalar* x, E (&r)[N / 2]) {
  const E two = splat<E>(2);
  if constexpr (N == 4) {
    const auto first = x[0];
    const auto last = x[4 * step];
    const E ends = point_of(first + last, first - last);
    const E middle = conjugate(load_point(x + 2 * step));
    r[0] = fma(two, middle, ends);
    r[1] = fnma(two, middle, ends);
  } else {
    constexpr int quarter = N / 4;
    constexpr int eighth = N / 8;
    E z[quarter], u[quarter];
    unroll<quarter>([&](auto k) SIGPAK_LAMBDA {
      const E bin = load_point(x + 2 * step * odd_bin<N>::at(k));
      z[k] = odd_bin<N>::is_conjugate(k) ? conjugate(bin) : bin;
    });
    transform(z);
    from_bins<N / 2, 2 * step>(x, u);
    unroll<eighth>([&](auto i) SIGPAK_LAMBDA {
      const E even = turned_back<N, 2 * i>(z[result_at<quarter, true>(2 * i)]);
      const E odd = turned_back<N, 2 * i + 1>(z[result_at<quarter, true>(2 * i + 1)]);
      const E re = low_parts(even, odd);
      const E im = second_parts(even, odd);
      r[i] = fma(two, re, u[i]);
      r[i + quarter] = fnma(two, re, u[i]);
      r[i + eighth] = fnma(two, im, u[i + eighth]);
      r[i + eighth + quarter] = fma(two, im, u[i + eighth]);
    });
  }
}

template <class T, int N> void run_small_real(T* x) {
  typename point_vector<T>::type r[N / 2];
  unroll<N / 2>([&](auto i) SIGPAK_LAMBDA { r[i] = load_point(x + 2 * i); });
  to_bins<N, 1, N>(r, x);
}

template <class T, int N> void run_small_real_inverse(T* x) {
  typename point_vector<T>::type r[N / 2];
  from_bins<N, 1>(x, r);
  unroll<N / 2>([&](auto i) SIGPAK_LAMBDA { store_point(x + 2 * i, r[i]); });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
