// SPDX-License-Identifier: MIT
// The passes of transforms that run side by side in the lanes: what the plans of all wide transforms share. A
// plan is built once and read by the kernels of every level.
#pragma once

#include <cstddef>
#include <cstdint>

namespace sigpak::kernels {

inline constexpr int most_passes = 16;
inline constexpr int most_lanes = 16;

struct radix_list {
  int passes;
  int radix[most_passes];
};

// Transforms of M = `vectors` points by decimation in frequency, one in each of the lanes.
template <class T> struct pass_plan {
  std::int64_t vectors;
  int lanes;
  int passes;                       // the first reads the data
  int radix[most_passes];           // their product is M
  std::int64_t block[most_passes];  // vectors in one block of the pass
  std::int64_t stride;              // vectors from one block of the second pass to the next, padding included
  std::int64_t resident;     // vectors that the first cache holds: larger blocks are finished one by one
  T* twiddles[most_passes];  // of the passes, broadcast; the last of several passes has none
};

// Deinterleaving two vectors of complex points leaves the points of a group in this order, p the place in the
// vector: all shuffles stay within 128 bits.
template <class T> constexpr int point_at(int p, int lanes) noexcept {
  constexpr int half = 8 / static_cast<int>(sizeof(T));
  const int block = p / (2 * half);
  const int inside = p % (2 * half);
  return inside < half ? half * block + inside : lanes / 2 + half * block + inside - half;
}

}  // namespace sigpak::kernels
