// SPDX-License-Identifier: MIT
// Sums of products at several lags: a vector of b is loaded once for all lags that registers hold sums of.
#include "kernels/lag_sums.h"

#include "vectors/lanes.h"
#include "vectors/levels.h"
#include "vectors/sum.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <class P, int R, class T = typename P::scalar>
void sum_some(const T* a, index stride, const T* b, index n, T* out) {
  constexpr int W = P::width;
  P sums[R];
  unroll<R>([&](auto r) SIGPAK_LAMBDA { sums[r] = splat<P>(T(0)); });
  index i = 0;
  for (; i + W <= n; i += W) {
    const P y = load<P>(b + i);
    unroll<R>([&](auto r) SIGPAK_LAMBDA { sums[r] = fma(load<P>(a + i + r * stride), y, sums[r]); });
  }
  for (int r = 0; r < R; ++r) {
    T rest = 0;
    for (index j = i; j < n; ++j) rest = fused(a[j + r * stride], b[j], rest);
    out[r] = rest;
  }
  unroll<R>([&](auto r) SIGPAK_LAMBDA { out[r] += sum_of_lanes(sums[r]); });
}

template <class P, class T = typename P::scalar>
void sum(const T* a, index stride, const T* b, index n, T* out, index lags) {
  constexpr int most = 11;
  constexpr int few = 4;
  index k = 0;
  for (; k + most <= lags; k += most) sum_some<P, most>(a + k * stride, stride, b, n, out + k);
  for (; k + few <= lags; k += few) sum_some<P, few>(a + k * stride, stride, b, n, out + k);
  for (; k < lags; ++k) sum_some<P, 1>(a + k * stride, stride, b, n, out + k);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::lag_table<double>) = {SIGPAK_LEVEL::sum<SIGPAK_LEVEL::widest<double>>};
SIGPAK_LEVEL_TABLE(kernels::lag_table<float>) = {SIGPAK_LEVEL::sum<SIGPAK_LEVEL::widest<float>>};

}  // namespace sigpak
