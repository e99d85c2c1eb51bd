// Bit-reversal lists, and the permutation as an operation of its own.
#include "core/frame.h"
#include "core/memory.h"
#include "spectral/tables.h"

namespace sigpak {
namespace {

template <class T> constinit keyed_list<std::uint32_t> swap_lists;
template <class T> constinit keyed_list<std::uint32_t> fixed_point_lists;

template <class T> status release_lists() noexcept {
  const status swaps = swap_lists<T>.release();
  const status fixed = fixed_point_lists<T>.release();
  return swaps == ok ? fixed : failed;
}

constexpr std::uint32_t reversed(std::uint32_t x, int bits) noexcept {
  std::uint32_t out = 0;
  for (int i = 0; i < bits; ++i) out |= (x >> i & 1U) << (bits - 1 - i);
  return out;
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

template <record V> status permute(V* v) noexcept {
  const index points = length(v);
  if (!is_power_of_two(points)) return failed;
  const std::uint32_t* const swaps = swap_list<scalar<V>>(address_bits(points));
  if (swaps == nullptr) return failed;
  if (is_complex(v)) {
    reverse_bits<2>(v->data, swaps);
  } else {
    reverse_bits<1>(v->data, swaps);
  }
  return ok;
}

template <record V> status permute_scaled(V* v) noexcept {
  using T = scalar<V>;
  const index points = length(v);
  if (!is_power_of_two(points)) return failed;
  const std::uint32_t* const swaps = swap_list<T>(address_bits(points));
  const std::uint32_t* const fixed = fixed_point_list<T>(address_bits(points));
  if (swaps == nullptr || fixed == nullptr) return failed;
  const T factor = T(1) / static_cast<T>(points);
  if (is_complex(v)) {
    reverse_bits_scaled<2>(v->data, swaps, fixed, factor);
  } else {
    reverse_bits_scaled<1>(v->data, swaps, fixed, factor);
  }
  return ok;
}

}  // namespace

template <class T> const std::uint32_t* swap_list(int bits) noexcept {
  auto& lists = swap_lists<T>;
  if (const std::uint32_t* known = lists.find(bits); known != nullptr) return known;
  register_cache<record_of<T>>(cache::bit_reversal, release_lists<T>);
  std::uint32_t* const list = lists.append(bits, index{1} << bits);
  if (list != nullptr) fill_swap_list(list, {bits});
  return list;
}

template <class T> const std::uint32_t* fixed_point_list(int bits) noexcept {
  auto& lists = fixed_point_lists<T>;
  if (const std::uint32_t* known = lists.find(bits); known != nullptr) return known;
  register_cache<record_of<T>>(cache::bit_reversal, release_lists<T>);
  std::uint32_t* const list = lists.append(bits, (index{1} << (bits + 1) / 2) + 1);
  if (list != nullptr) fill_fixed_point_list(list, {bits});
  return list;
}

template const std::uint32_t* swap_list<double>(int) noexcept;
template const std::uint32_t* swap_list<float>(int) noexcept;
template const std::uint32_t* fixed_point_list<double>(int) noexcept;
template const std::uint32_t* fixed_point_list<float>(int) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_bitrev(dsp_vec* v) { return permute(v); }
int32_t dspfi_bitrev(dspf_vec* v) { return permute(v); }

int32_t dspi_bitrev_scale(dsp_vec* v) { return permute_scaled(v); }
int32_t dspfi_bitrev_scale(dspf_vec* v) { return permute_scaled(v); }
