// SPDX-License-Identifier: MIT
// Partition in place by whole vectors (B. Bramas, A novel hybrid quicksort algorithm vectorized using
// AVX-512, Int. J. Adv. Computer Science and Applications 8, 2017).
#pragma once

#include "vectors/rows.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// What goes to the left, as bits of lanes.
template <class P> struct less_than {
  P pivot;
  SIGPAK_INLINE unsigned operator()(P a) const { return lanes_below(a, pivot); }
};
template <class P> struct at_most_as {
  P pivot;
  SIGPAK_INLINE unsigned operator()(P a) const { return lanes_at_most(a, pivot); }
};
template <class P> struct is_number {
  SIGPAK_INLINE unsigned operator()(P a) const { return lanes_at_most(a, a); }
};

// Where the numbers go that have no place yet: from both ends inwards.
template <class P> struct gap {
  using T = typename P::scalar;
  T* begin;
  index size;

  // Either end has room for a whole vector. What its store writes beyond its own is written again.
  SIGPAK_INLINE void fill(P a, unsigned left) {
    const P parted = left_first(a, left);
    size -= P::width;
    store(begin, parted);
    store(begin + size, parted);
    begin += __builtin_popcount(left);
  }

  // The first `count` lanes of the vector, and nothing beyond them.
  SIGPAK_INLINE void fill(P a, unsigned left, index count) {
    left &= (1U << count) - 1;
    const P parted = left_first(a, left);
    const index before = __builtin_popcount(left);
    size -= count;
    store_lanes(begin, parted, 0, before);
    store_lanes(begin + size, parted, before, count);
    begin += before;
  }
};

template <class P, int count> struct several { P at[count]; };
template <class P, int count> SIGPAK_INLINE several<P, count> load_several(const typename P::scalar* from) {
  several<P, count> read;
  unroll<count>([&](auto i) SIGPAK_LAMBDA { read.at[i] = load<P>(from + i * P::width); });
  return read;
}
template <class P, int count> SIGPAK_INLINE void store_several(typename P::scalar* to, several<P, count> a) {
  unroll<count>([&](auto i) SIGPAK_LAMBDA { store(to + i * P::width, a.at[i]); });
}

// Moves what is_left says to the front; the count of it. A block is so many vectors, and n four blocks or
// more. Two blocks at one end, one at the other and what is left of whole blocks are kept apart, which makes
// room. Every further block is read at the side that has less of it, while the one before is not yet written,
// so that nothing waits for its counts: the other side has two blocks of room then, of which that one takes
// one.
template <int vectors, class T, class Side> index partition(T* x, index n, Side is_left) {
  using P = widest<T>;
  constexpr index block = vectors * P::width;
  constexpr index ahead = 24 * P::width;
  const index first = 2 * block + n % block;
  T kept[4 * block];
  unroll<3>([&](auto i)
                SIGPAK_LAMBDA { store_several(kept + i * block, load_several<P, vectors>(x + i * block)); });
  store_several(kept + first, load_several<P, vectors>(x + n - block));

  gap<P> room = {x, n};
  const auto fill = [&](const several<P, vectors>& read) SIGPAK_LAMBDA {
    unroll<vectors>([&](auto i) SIGPAK_LAMBDA { room.fill(read.at[i], is_left(read.at[i])); });
  };
  const T* left = x + first;
  const T* right = x + n - block;
  if (left != right) {
    auto read = load_several<P, vectors>(left);
    left += block;
    while (left != right) {
      // All ones where the left side has less room: a branch would be guessed wrong half the time.
      const index from_left = ((left - room.begin) - (room.begin + room.size - right)) >> 63;
      const T* const from = right - block + (from_left & (left - right + block));
      const auto next = load_several<P, vectors>(from);
      const T* const later = from - ahead + (from_left & 2 * ahead);
      unroll<vectors>([&](auto i) SIGPAK_LAMBDA { prefetch(later + i * P::width); });
      left += from_left & block;
      right -= ~from_left & block;
      fill(read);
      read = next;
    }
    fill(read);
  }

  constexpr int whole = 3 * vectors - 1;
  unroll<whole>([&](auto i) SIGPAK_LAMBDA {
    const P a = load<P>(kept + i * P::width);
    room.fill(a, is_left(a));
  });
  for (const T* from = kept + whole * P::width; room.size > 0; from += P::width) {
    const index count = room.size < P::width ? room.size : P::width;
    const P a = load<P>(from);
    room.fill(a, is_left(a), count);
  }
  return room.begin - x;
}

template <class T, class Side> index partition(T* x, index n, Side is_left) {
  constexpr index worth_eight = 64 * widest<T>::width;
  return n < worth_eight ? partition<4>(x, n, is_left) : partition<8>(x, n, is_left);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
