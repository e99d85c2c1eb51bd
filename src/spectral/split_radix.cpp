// The split-radix transform, decimation in frequency, in place.
//
// P. Duhamel, H. Hollmann, "Split radix FFT algorithm", Electronics Letters 20 (1984); three real products
// per twiddle by precombined terms as in H. V. Sorensen et al., "On computing the split-radix FFT", IEEE
// Trans. ASSP 34 (1986).
#include "spectral/kernel.h"
#include "spectral/tables.h"

namespace sigpak {
namespace {

// Where a block of one length finds its twiddles: every stride-th group of a table.
template <class T> struct rung {
  const T* groups = nullptr;
  index stride = 0;
};

// One rung per block length of a transform. Blocks that fit the first cache share one table; larger ones have
// a table each, because a large table at a large stride would miss the cache at every group.
template <class T> class ladder {
 public:
  status climb(index points) noexcept {
    const index shared = points < cached ? points : cached;
    if (points < 4) return ok;
    const T* const common = twiddles<T>(shared);
    if (common == nullptr) return failed;
    for (index block = shared; block >= 4; block /= 2) rungs_[address_bits(block)] = {common, shared / block};
    for (index block = 2 * shared; block <= points; block *= 2) {
      const T* const own = twiddles<T>(block);
      if (own == nullptr) return failed;
      rungs_[address_bits(block)] = {own, 1};
    }
    return ok;
  }
  rung<T> at(index block) const noexcept { return rungs_[address_bits(block)]; }

 private:
  static constexpr index cached = 1024;
  rung<T> rungs_[32];
};

// (p + iq)(cos - i sin) by the triple of the angle.
template <class T> void store_product(T* re, T* im, T p, T q, const T* of) noexcept {
  const T t = of[0] * (p + q);
  *re = t + q * of[2];
  *im = t + p * of[1];
}

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

  // Depth first: a block is finished while it is in the cache.
  static void run(T* x, index points, const ladder<T>& twiddle) noexcept {
    if (points == 2) return pair(x);
    split(x, points, twiddle.at(points));
    if (points == 4) return pair(x);
    run(x, points / 2, twiddle);
    run(x + points, points / 4, twiddle);
    run(x + points + points / 2, points / 4, twiddle);
  }
};

}  // namespace

template <class T> status transform(T* data, index points, bool inverse) noexcept {
  ladder<T> twiddle;
  if (twiddle.climb(points) != ok) return failed;
  const std::uint32_t* const swaps = swap_list<T>(address_bits(points));
  if (swaps == nullptr) return failed;
  if (inverse) {
    network<true, T>::run(data, points, twiddle);
    reverse_bits<2>(data, swaps);
    return ok;
  }
  const std::uint32_t* const fixed = fixed_point_list<T>(address_bits(points));
  if (fixed == nullptr) return failed;
  network<false, T>::run(data, points, twiddle);
  reverse_bits_scaled<2>(data, swaps, fixed, T(1) / static_cast<T>(points));
  return ok;
}

template status transform(double*, index, bool) noexcept;
template status transform(float*, index, bool) noexcept;

}  // namespace sigpak
