// SPDX-License-Identifier: MIT
// Selection in registers: numbers are padded by infinities of both signs until the wanted one is the first of
// the upper half of a block, whose halves need no order of their own.
#pragma once

#include "kernels/order/networks.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The negative ones, then as many positive ones: of either sign as many as the largest block has numbers.
template <class T, int block> struct infinities { T all[2 * block]; };
template <class T, int block> constexpr infinities<T, block> make_infinities() {
  infinities<T, block> made{};
  for (int i = 0; i < 2 * block; ++i)
    made.all[i] = static_cast<T>(i < block ? -__builtin_inf() : __builtin_inf());
  return made;
}

template <int distance, class P> SIGPAK_INLINE typename P::scalar least_of(P a) {
  if constexpr (distance < P::width) return least_of<2 * distance>(lesser(a, flipped<distance>(a)));
  return a.v[0];
}
template <int distance, class P> SIGPAK_INLINE typename P::scalar greatest_of(P a) {
  if constexpr (distance < P::width) return greatest_of<2 * distance>(greater(a, flipped<distance>(a)));
  return a.v[0];
}

// The last number of the lower half of them all, and the first of the upper half. Either half of the lanes is
// put in order; the second is met backwards, and of every two numbers one belongs to each half.
template <int rows, class P, class T = typename P::scalar>
SIGPAK_INLINE void find_middle(P (&row)[rows], T* found) {
  constexpr int W = P::width;
  sort_lanes<0, rows>(row);
  merge_columns<1, W / 2, rows>(row);
  unroll<rows / 2>([&](auto r) SIGPAK_LAMBDA {
    const P other = flipped<W - 1>(row[rows - 1 - r]);
    row[rows - 1 - r] = greater(other, row[r]);
    row[r] = lesser(row[r], other);
  });
  P below = row[0];
  P above = row[rows - 1];
  unroll<rows / 2 - 1>([&](auto r) SIGPAK_LAMBDA {
    below = greater(below, row[r + 1]);
    above = lesser(above, row[rows - 2 - r]);
  });
  found[0] = greatest_of<1>(below);
  found[1] = least_of<1>(above);
}

// Of at most rows * width numbers. False when a NaN is met.
template <class P, int rows, int most, class T = typename P::scalar>
[[gnu::noinline]] bool find_in_block(const T* x, index n, index rank, T* found) {
  constexpr int W = P::width;
  static constexpr infinities<T, most> padding = make_infinities<T, most>();
  const T* const behind = padding.all + most - (n + rows * W / 2 - rank);
  P row[rows];
  unsigned numbers = (1U << W) - 1;
  unroll<rows>([&](auto r) SIGPAK_LAMBDA {
    row[r] = load_first(x + r * W, n - r * W, load<P>(behind + r * W));
    numbers &= lanes_at_most(row[r], row[r]);
  });
  if (numbers != (1U << W) - 1) return false;
  find_middle(row, found);
  return true;
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
