// SPDX-License-Identifier: MIT
// The vectors of one instruction-set level, and the transpositions made of their shuffles. The vector header
// of the level gives, for every width that it has:
//   fma fms fnma fma_even fma_odd                       fused products
//   low_parts high_parts evens odds low_pairs high_pairs evens_twice odds_twice exchanged middle_exchanged
//   evens_first backwards mirrored joined alternately transpose_blocks  shuffles
//   load_first store_first store_lanes write_some made_of load_point store_point
//   any_zero all_below turned_sum lanes_below lanes_at_most lanes_alike left_first left_only
//   lesser greater
//   lesser_in greater_in
// and for the doubles of the level the masks and choices that compare.h describes.
#pragma once

#include "vectors/pack.h"
#include SIGPAK_VECTORS

namespace sigpak::SIGPAK_LEVEL {
namespace {

// In the square of rows r, scalar j of row i goes to scalar i of row j.
template <class P> SIGPAK_INLINE void transpose(P (&r)[P::width]) {
  constexpr int per_block = 16 / sizeof(typename P::scalar);
  constexpr int blocks = P::width / per_block;
  unroll<blocks>([&](auto q) SIGPAK_LAMBDA {
    constexpr int first = per_block * q;
    if constexpr (per_block == 2) {
      const P low = low_parts(r[first], r[first + 1]);
      r[first + 1] = high_parts(r[first], r[first + 1]);
      r[first] = low;
    } else {
      const P low01 = low_parts(r[first], r[first + 1]);
      const P high01 = high_parts(r[first], r[first + 1]);
      const P low23 = low_parts(r[first + 2], r[first + 3]);
      const P high23 = high_parts(r[first + 2], r[first + 3]);
      r[first] = low_pairs(low01, low23);
      r[first + 1] = high_pairs(low01, low23);
      r[first + 2] = low_pairs(high01, high23);
      r[first + 3] = high_pairs(high01, high23);
    }
  });
  unroll<per_block>([&](auto c) SIGPAK_LAMBDA {
    if constexpr (blocks == 2) {
      transpose_blocks(r[c], r[c + per_block]);
    } else if constexpr (blocks == 4) {
      transpose_blocks(r[c], r[c + per_block], r[c + 2 * per_block], r[c + 3 * per_block]);
    }
  });
}

// The same for rows of interleaved points.
template <class P> SIGPAK_INLINE void transpose_points(P (&r)[P::width / 2]) {
  if constexpr (sizeof(typename P::scalar) == 4) {
    constexpr int points = P::width / 2;
    pack<double, points> moved[points];
    unroll<points>([&](auto i) SIGPAK_LAMBDA { moved[i] = as_doubles(r[i]); });
    transpose(moved);
    unroll<points>([&](auto i) SIGPAK_LAMBDA { r[i] = as_floats(moved[i]); });
  } else if constexpr (P::width == 4) {
    transpose_blocks(r[0], r[1]);
  } else if constexpr (P::width == 8) {
    transpose_blocks(r[0], r[1], r[2], r[3]);
  }
}

// The same for eight rows of four points, rows 0 and 2, 1 and 3, 4 and 6, 5 and 7 side by side in a vector.
template <class P> SIGPAK_INLINE void transpose_half_rows(P (&r)[4]) {
  const auto even = even_blocks(as_doubles(r[0]), as_doubles(r[2]));
  const auto even_next = even_blocks(as_doubles(r[1]), as_doubles(r[3]));
  const auto odd = odd_blocks(as_doubles(r[0]), as_doubles(r[2]));
  const auto odd_next = odd_blocks(as_doubles(r[1]), as_doubles(r[3]));
  r[0] = as_floats(low_parts(even, even_next));
  r[1] = as_floats(high_parts(even, even_next));
  r[2] = as_floats(low_parts(odd, odd_next));
  r[3] = as_floats(high_parts(odd, odd_next));
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
