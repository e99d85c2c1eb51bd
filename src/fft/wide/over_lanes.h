// SPDX-License-Identifier: MIT
// The last of the wide transforms: over the lanes, of interleaved points.
#pragma once

#include "fft/wide/butterflies.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The last transform, over the lanes, of all groups: its constants, found out once.
template <class P, bool inverse> class lanes_transform {
 public:
  using T = typename P::scalar;
  SIGPAK_INLINE explicit lanes_transform(T scale) : factor_(factor_of<P, inverse>(scale)) {}

  // Of rows of W points, as many as a vector holds, row(p, half): each column, to X[k' M].
  //
  // The first sums, over points half a row apart, come before the transposition, as they join the two vectors
  // of a row: additions and shuffles, which fewer ports take, then alternate.
  template <class Row> SIGPAK_INLINE void run(const Row& row, T* x, index vectors) const {
    P sum[rows], difference[rows];
    unroll<rows>([&](auto p) SIGPAK_LAMBDA {
      const P low = row(p, constant<0>{});
      const P high = row(p, constant<1>{});
      sum[p] = low + high;
      difference[p] = low - high;
    });
    if constexpr (W == 16) {
      finish_by_quarters(sum, difference, x, vectors);
    } else {
      P y[W];
      transpose_points(sum);
      transpose_points(difference);
      finish(sum, difference, y);
      unroll<W>([&](auto k) SIGPAK_LAMBDA { put(x, vectors, k, y[k]); });
    }
  }

 private:
  static constexpr int W = P::width;
  static constexpr int rows = W / 2;
  using factor = decltype(factor_of<P, inverse>(T()));

  template <int k> SIGPAK_INLINE static void put(T* x, index vectors, constant<k>, P y) {
    store(x + 2 * result_at<W, inverse>(k) * vectors, y);
  }

  SIGPAK_INLINE void finish(const P (&sum)[2], const P (&difference)[2], P (&y)[4]) const {
    finish4(factor_, sum[0], difference[0], scaled(factor_, sum[1]), scaled(factor_, difference[1]), y[0],
            y[1], y[2], y[3]);
  }
  SIGPAK_INLINE void finish(const P (&sum)[4], const P (&difference)[4], P (&y)[8]) const {
    P e[4], o[4];
    evens_of_8(factor_, sum[0], difference[0], sum[2], difference[2], e);
    odds_of_8(factor_, sum[1], difference[1], sum[3], difference[3], o);
    join_8(factor_, e, o, y);
  }

  // The second sums too, over points a quarter of a row apart.
  SIGPAK_INLINE void finish_by_quarters(const P (&sum)[rows], const P (&difference)[rows], T* x,
                                        index vectors) const {
    const rows_of_16<P, factor> last(factor_);
    const P one = splat_constant<P>(1);
    P quarter[4][4];
    unroll<4>([&](auto q) SIGPAK_LAMBDA {
      constexpr int p = q < 2 ? q : q + 2;
      const P a = lower_halves(sum[p], sum[p + 2]);
      const P b = upper_halves(sum[p], sum[p + 2]);
      const P c = lower_halves(difference[p], difference[p + 2]);
      const P d = upper_halves_exchanged(difference[p], difference[p + 2]);
      quarter[0][q] = a + b;
      quarter[1][q] = fma_even(c, one, d);  // c - i d, whose parts are exchanged already
      quarter[2][q] = a - b;
      quarter[3][q] = fma_odd(c, one, d);
    });
    unroll<4>([&](auto k) SIGPAK_LAMBDA {
      transpose_half_rows(quarter[k]);
      last.run(k, quarter[k]);
      unroll<4>([&](auto j) SIGPAK_LAMBDA { put(x, vectors, constant<k + 4 * j>{}, quarter[k][j]); });
    });
  }

  factor factor_;
};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
