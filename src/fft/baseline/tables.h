// Tables that the power-of-two transforms share, built once per length: twiddle triples, bit-reversal lists.
#pragma once

#include <bit>
#include <type_traits>

#include "core/record.h"

namespace sigpak {

template <class T> using record_of = std::conditional_t<std::is_same_v<T, double>, dsp_vec, dspf_vec>;

// Not by counting bits, which takes a call where the processor may lack the instruction.
constexpr bool is_power_of_two(index n) noexcept { return n > 0 && (n & (n - 1)) == 0; }

constexpr int address_bits(index points) noexcept {
  return std::countr_zero(static_cast<std::uint64_t>(points));
}

// The triple of an angle is (cos, -(cos + sin), sin - cos): with it a complex product takes three real ones.
// A group is the triple of one angle followed by that of three times the angle.
inline constexpr index triple = 3;
inline constexpr index group = 2 * triple;

// (p + iq)(cos - i sin) by the triple of the angle; with the parts of every number exchanged it is the
// product with cos + i sin.
template <class T> void store_product(T* re, T* im, T p, T q, const T* of) noexcept {
  const T t = of[0] * (p + q);
  *re = t + q * of[2];
  *im = t + p * of[1];
}

// To be called by every user of tables that the release of this cache frees: the triples, the wide kernels'
// own.
template <class T> void own_twiddle_cache() noexcept;

// points / 4 groups, the k-th for the angle 2 pi k / points; points a power of two, at least 4. Null on
// failure.
template <class T> const T* twiddles(index points) noexcept;

// Pairs (i, j) of indices that are each other's reversal, i != j, each pair once; ended by a single 0.
template <class T> const std::uint32_t* swap_list(int bits) noexcept;

// Indices that are their own reversal, 0 among them; ended by the marker.
template <class T> const std::uint32_t* fixed_point_list(int bits) noexcept;
inline constexpr std::uint32_t end_of_fixed_points = 0x12345678;  // reads differently backwards

}  // namespace sigpak
