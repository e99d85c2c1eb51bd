// SPDX-License-Identifier: MIT
// The bit-reversal permutation: by lists of index pairs where the points are few, else by tiles.
#include "fft/baseline/bit_reversal.h"

#include <utility>

#include "core/frame.h"
#include "core/power_of_two.h"
#include "core/published.h"
#include "fft/baseline/tiles.h"

namespace sigpak {
namespace {

using lists = published<std::uint32_t, 31>;  // by address bits
template <class T> constinit lists swap_lists;
template <class T> constinit lists fixed_point_lists;

template <class T> status release_lists() noexcept {
  swap_lists<T>.release();
  fixed_point_lists<T>.release();
  return ok;
}

// An index of b bits is (high, middle, low) with halves of h bits and, for odd b, a middle bit that stays:
// (i, m, rev j) and (j, m, rev i) are each other's reversal.
struct halves {
  int bits;
  int half = bits / 2;
  int shift = bits - half;
  std::uint32_t middles = (bits & 1) != 0 ? 2U : 1U;

  constexpr std::uint32_t joined(std::uint32_t high, std::uint32_t low) const noexcept {
    return high << shift | reversed(low, half);
  }
};

// i and j step through their high bits inside a tile, so that a tile of pairs touches few cache lines: the
// high bits of the one are the low bits of the other's address.
void fill_swap_list(std::uint32_t* out, halves h) noexcept {
  constexpr int tile_bits = 3;
  const std::uint32_t size = 1U << h.half;
  const std::uint32_t tiles = size >> (h.half < tile_bits ? h.half : tile_bits);
  for (std::uint32_t ti = 0; ti < tiles; ++ti) {
    for (std::uint32_t tj = 0; tj < tiles; ++tj) {
      for (std::uint32_t i = ti; i < size; i += tiles) {
        for (std::uint32_t j = tj; j < size; j += tiles) {
          if (i >= j) continue;
          for (std::uint32_t m = 0; m < h.middles; ++m) {
            *out++ = h.joined(i, j) + (m << h.half);
            *out++ = h.joined(j, i) + (m << h.half);
          }
        }
      }
    }
  }
  *out = 0;
}

void fill_fixed_point_list(std::uint32_t* out, halves h) noexcept {
  for (std::uint32_t i = 0; i < 1U << h.half; ++i) {
    for (std::uint32_t m = 0; m < h.middles; ++m) *out++ = h.joined(i, i) + (m << h.half);
  }
  *out = end_of_fixed_points;
}

// The permutation that ends a transform, on points of `width` scalars.
template <index width, class T> void follow_lists(T* x, const std::uint32_t* swaps) noexcept {
  for (; *swaps != 0; swaps += 2) {
    T* const a = x + width * static_cast<index>(swaps[0]);
    T* const b = x + width * static_cast<index>(swaps[1]);
    for (index i = 0; i < width; ++i) std::swap(a[i], b[i]);
  }
}

// The same with every scalar times `factor`, in one pass.
template <index width, class T>
void follow_lists(T* x, const std::uint32_t* swaps, const std::uint32_t* fixed, T factor) noexcept {
  for (; *swaps != 0; swaps += 2) {
    T* const a = x + width * static_cast<index>(swaps[0]);
    T* const b = x + width * static_cast<index>(swaps[1]);
    for (index i = 0; i < width; ++i) {
      const T t = a[i] * factor;
      a[i] = b[i] * factor;
      b[i] = t;
    }
  }
  for (; *fixed != end_of_fixed_points; ++fixed) {
    T* const a = x + width * static_cast<index>(*fixed);
    for (index i = 0; i < width; ++i) a[i] *= factor;
  }
}

}  // namespace

template <class T> const std::uint32_t* swap_list(int bits) noexcept {
  if (const std::uint32_t* known = swap_lists<T>.find(bits); known != nullptr) return known;
  register_cache<record_of<T>>(cache::bit_reversal, release_lists<T>);
  auto* const list = allocate_table<std::uint32_t>(index{1} << bits);
  if (list == nullptr) return nullptr;
  fill_swap_list(list, {bits});
  return swap_lists<T>.keep(bits, list);
}

template <class T> const std::uint32_t* fixed_point_list(int bits) noexcept {
  if (const std::uint32_t* known = fixed_point_lists<T>.find(bits); known != nullptr) return known;
  register_cache<record_of<T>>(cache::bit_reversal, release_lists<T>);
  auto* const list = allocate_table<std::uint32_t>((index{1} << (bits + 1) / 2) + 1);
  if (list == nullptr) return nullptr;
  fill_fixed_point_list(list, {bits});
  return fixed_point_lists<T>.keep(bits, list);
}

template <class T> status bit_reversal<T>::prepare(index points, bool scaled) noexcept {
  bits_ = address_bits(points);
  scaled_ = scaled;
  factor_ = T(1) / static_cast<T>(points);
  if (bits_ >= least_tiled_bits) return ok;
  swaps_ = swap_list<T>(bits_);
  if (swaps_ == nullptr) return failed;
  if (!scaled) return ok;
  fixed_points_ = fixed_point_list<T>(bits_);
  return fixed_points_ != nullptr ? ok : failed;
}

template <class T> template <index width> void bit_reversal<T>::move(T* x) const noexcept {
  if (bits_ >= least_tiled_bits) {
    scaled_ ? reverse_by_tiles<width, true>(x, bits_, factor_)
            : reverse_by_tiles<width, false>(x, bits_, factor_);
  } else if (scaled_) {
    follow_lists<width>(x, swaps_, fixed_points_, factor_);
  } else {
    follow_lists<width>(x, swaps_);
  }
}

template <class T> void bit_reversal<T>::run(T* x) const noexcept { move<1>(x); }
template <class T> void bit_reversal<T>::run_pairs(T* z) const noexcept { move<2>(z); }

template const std::uint32_t* swap_list<double>(int) noexcept;
template const std::uint32_t* swap_list<float>(int) noexcept;
template const std::uint32_t* fixed_point_list<double>(int) noexcept;
template const std::uint32_t* fixed_point_list<float>(int) noexcept;
template class bit_reversal<double>;
template class bit_reversal<float>;

}  // namespace sigpak
