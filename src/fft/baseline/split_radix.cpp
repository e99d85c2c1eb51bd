// SPDX-License-Identifier: MIT
// The split-radix transform, decimation in frequency, in place.
//
// P. Duhamel, H. Hollmann, "Split radix FFT algorithm", Electronics Letters 20 (1984); three real products
// per twiddle by precombined terms as in H. V. Sorensen et al., "On computing the split-radix FFT", IEEE
// Trans. ASSP 34 (1986).
#include "fft/baseline/split_radix.h"

namespace sigpak {
namespace {

template <class T> void exchange_sums(T& a, T& b) noexcept {
  const T difference = a - b;
  a += b;
  b = difference;
}

// Butterflies of a block. The inverse transform is the forward one with the parts of every point exchanged.
template <bool inverse, class T> struct network {
  static constexpr index re = inverse ? 1 : 0;
  static constexpr index im = 1 - re;

  static void pair(T* x) noexcept {
    exchange_sums(x[0], x[2]);
    exchange_sums(x[1], x[3]);
  }

  // x0 + x2, x1 + x3 for the half-length block; (d0 - i d1) w^k, (d0 + i d1) w^3k for the two quarters.
  static void split(T* x, index points, rung<T> twiddle) noexcept {
    const index quarter = points / 2;
    for (index k = 0; k < points / 4; ++k) {
      T* const x0 = x + 2 * k;
      T* const x1 = x0 + quarter;
      T* const x2 = x1 + quarter;
      T* const x3 = x2 + quarter;
      const T d0re = x0[re] - x2[re];
      const T d0im = x0[im] - x2[im];
      const T d1re = x1[re] - x3[re];
      const T d1im = x1[im] - x3[im];
      x0[re] += x2[re];
      x0[im] += x2[im];
      x1[re] += x3[re];
      x1[im] += x3[im];
      if (k == 0) {
        x2[re] = d0re + d1im;
        x2[im] = d0im - d1re;
        x3[re] = d0re - d1im;
        x3[im] = d0im + d1re;
      } else {
        const T* const of = twiddle.groups + group * twiddle.stride * k;
        store_product(x2 + re, x2 + im, d0re + d1im, d0im - d1re, of);
        store_product(x3 + re, x3 + im, d0re - d1im, d0im + d1re, of + triple);
      }
    }
  }

  // A block of a length known to the compiler, which unrolls it whole.
  template <index points> static void leaf(T* x, const ladder<T>& twiddle) noexcept {
    if constexpr (points == 2) {
      pair(x);
    } else {
      split(x, points, twiddle.at(points));
      leaf<points / 2>(x, twiddle);
      if constexpr (points > 4) {
        leaf<points / 4>(x + points, twiddle);
        leaf<points / 4>(x + points + points / 2, twiddle);
      }
    }
  }

  // Depth first: a block is finished while it is in the cache.
  static void run(T* x, index points, const ladder<T>& twiddle) noexcept {
    switch (points) {
      case 2:
        return leaf<2>(x, twiddle);
      case 4:
        return leaf<4>(x, twiddle);
      case 8:
        return leaf<8>(x, twiddle);
      case 16:
        return leaf<16>(x, twiddle);
      default:
        split(x, points, twiddle.at(points));
        run(x, points / 2, twiddle);
        run(x + points, points / 4, twiddle);
        run(x + points + points / 2, points / 4, twiddle);
    }
  }
};

}  // namespace

template <class T> status split_radix<T>::prepare(index points, bool inverse) noexcept {
  points_ = points;
  inverse_ = inverse;
  return order_.prepare(points, !inverse) == ok ? twiddle_.climb(points) : failed;
}

template <class T> void split_radix<T>::run(T* data) const noexcept {
  if (inverse_) {
    network<true, T>::run(data, points_, twiddle_);
  } else {
    network<false, T>::run(data, points_, twiddle_);
  }
  order_.run_pairs(data);
}

template class split_radix<double>;
template class split_radix<float>;

}  // namespace sigpak
