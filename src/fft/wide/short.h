// SPDX-License-Identifier: MIT
// Transforms of short lengths that are no powers of two, in registers and without tables: one complex point
// to a vector, odd lengths and products of coprime factors: those that are too short for products of vectors,
// and where it is faster. Single precision is computed in double.
#pragma once

#include "fft/wide/butterflies_composite.h"
#include "fft/wide/kernels.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// a / N by the two parts of 1 / N, rounded once.
template <int N> SIGPAK_INLINE d2 divided(d2 a) {
  constexpr double part = 1.0 / N;
  constexpr auto rest = static_cast<double>(1.0L / N - part);
  return fma(a, splat<d2>(part), a * splat<d2>(rest));
}

// N = A B, coprime; with A = 1 an odd length alone. The rounding of 1/3 is seen among those of few sums.
template <class T, int A, int B, bool inverse> void run_short(T* x) {
  constexpr int N = A * B;
  constexpr bool is_divided = !inverse && !is_single<T> && N % 3 == 0 && N <= 12;
  const auto factor = factor_of<d2, (inverse || is_divided)>(1.0 / N);
  d2 a[N];
  unroll<N>([&](auto i) SIGPAK_LAMBDA { a[i] = load_point(x + 2 * i); });
  if constexpr (A == 1) {
    transform(a, factor);
  } else {
    coprime_transform<A, B>(a, factor);
  }
  unroll<N>([&](auto k) SIGPAK_LAMBDA {
    const d2 result = a[result_at<N, inverse>(k)];
    store_point(x + 2 * k, is_divided ? divided<N>(result) : result);
  });
}

template <class T> class short_table {
 public:
  constexpr short_table() {
    add<1, 3>(), add<1, 5>(), add<1, 7>(), add<1, 9>(), add<1, 11>(), add<1, 13>();
    add<2, 3>(), add<2, 5>(), add<2, 7>(), add<2, 9>();
    add<3, 5>(), add<3, 7>(), add<4, 3>(), add<4, 5>();
    add<2, 11>(), add<2, 13>(), add<1, 25>(), add<1, 27>(), add<3, 11>(), add<3, 13>();
    add<8, 3>(), add<4, 7>(), add<6, 5>();
    if constexpr (!is_single<T>) add<4, 9>(), add<8, 5>();
    if constexpr (widest<T>::width == 4) add<16, 3>(), add<8, 7>(), add<12, 5>();
  }
  constexpr const kernels::short_ffts<T>& all() const { return all_; }

 private:
  template <int A, int B> constexpr void add() {
    all_.by_length[A * B] = {run_short<T, A, B, false>, run_short<T, A, B, true>};
  }
  kernels::short_ffts<T> all_ = {};
};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
