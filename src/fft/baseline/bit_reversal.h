// SPDX-License-Identifier: MIT
// The permutation that sends every point to the index with its address bits reversed.
#pragma once

#include "core/record.h"

namespace sigpak {

// Pairs (i, j) of indices that are each other's reversal, i != j, each pair once; ended by a single 0.
template <class T> const std::uint32_t* swap_list(int bits) noexcept;

// Indices that are their own reversal, 0 among them; ended by the marker.
template <class T> const std::uint32_t* fixed_point_list(int bits) noexcept;
inline constexpr std::uint32_t end_of_fixed_points = 0x12345678;  // reads differently backwards

template <class T> class bit_reversal {
 public:
  // points a power of two. With `scaled`, every scalar is multiplied by 1 / points on its way.
  status prepare(index points, bool scaled) noexcept;

  // In place, on single scalars or on pairs.
  void run(T* x) const noexcept;
  void run_pairs(T* z) const noexcept;

 private:
  template <index width> void move(T* x) const noexcept;

  int bits_ = 0;
  bool scaled_ = false;
  T factor_ = 1;
  const std::uint32_t* swaps_ = nullptr;  // null where tiles do without
  const std::uint32_t* fixed_points_ = nullptr;
};

}  // namespace sigpak
