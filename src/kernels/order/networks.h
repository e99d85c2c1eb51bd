// SPDX-License-Identifier: MIT
// Sorting networks in registers. A square or a column of squares of scalars is sorted lane by lane through
// its rows, then its columns are merged two by two, four by four and so on (K. E. Batcher, Sorting networks
// and their applications, AFIPS Spring Joint Computing Conference 32, 1968).
#pragma once

#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Calls body with first, first + step, ... below end, as constants.
template <int first, int end, int step, class Body> SIGPAK_INLINE void unroll_from(Body body) {
  if constexpr (first < end) {
    unroll<(end - first + step - 1) / step>([&](auto i)
                                                SIGPAK_LAMBDA { body(constant<first + step * i>{}); });
  }
}

template <class P> SIGPAK_INLINE void exchange(P& a, P& b) {
  const P least = lesser(a, b);
  b = greater(b, a);
  a = least;
}

// Rows at distance `step`, from `first` to `end`, of which the even ones and the odd ones are in order.
template <int first, int end, int step, class P> SIGPAK_INLINE void merge_odd_even(P* row) {
  if constexpr (2 * step < end - first) {
    merge_odd_even<first, end, 2 * step>(row);
    merge_odd_even<first + step, end, 2 * step>(row);
    unroll_from<first + step, end - step, 2 * step>([&](auto i)
                                                        SIGPAK_LAMBDA { exchange(row[i], row[i + step]); });
  } else {
    exchange(row[first], row[first + step]);
  }
}

template <int first, int count, class P> SIGPAK_INLINE void sort_lanes(P* row) {
  if constexpr (count > 1) {
    sort_lanes<first, count / 2>(row);
    sort_lanes<first + count / 2, count / 2>(row);
    merge_odd_even<first, first + count, 1>(row);
  }
}

// Lane l from lane l ^ flip.
template <int flip, class P, int... lanes> SIGPAK_INLINE P flipped(P a, sequence<lanes...>) {
  return {__builtin_shufflevector(a.v, a.v, (lanes ^ flip)...)};
}
template <int flip, class P> SIGPAK_INLINE P flipped(P a) {
  return flipped<flip>(a, typename counting<P::width>::type{});
}

// Of W lanes, those that have `bit`.
template <int W> constexpr unsigned lanes_with(int bit) {
  unsigned m = 0;
  for (int l = 0; l < W; ++l) m |= (l & bit) != 0 ? 1U << l : 0;
  return m;
}

// Pairs of lanes l and l ^ flip in order, where `bit` tells the upper one.
template <int flip, int bit, class P> SIGPAK_INLINE P paired(P a) {
  const P other = flipped<flip>(a);
  return greater_in<lanes_with<P::width>(bit)>(lesser(a, other), a, other);
}

// Halves of 2^k lanes of a bitonic sequence of columns, then quarters, down to single columns.
template <int distance, int rows, class P> SIGPAK_INLINE void merge_lanes(P* row) {
  if constexpr (distance > 0) {
    unroll<rows>([&](auto r) SIGPAK_LAMBDA { row[r] = paired<distance, distance>(row[r]); });
    merge_lanes<distance / 2, rows>(row);
  }
}

template <int distance, int rows, class P> SIGPAK_INLINE void merge_rows(P* row) {
  if constexpr (distance > 0) {
    unroll<rows / 2>([&](auto i) SIGPAK_LAMBDA {
      constexpr int r = i / distance * 2 * distance + i % distance;
      exchange(row[r], row[r + distance]);
    });
    merge_rows<distance / 2, rows>(row);
  }
}

// Groups of `columns` lanes, each in order down its columns one after the other, become groups of twice as
// many, up to `end`. The second of two is met backwards, which makes them one bitonic sequence.
template <int columns, int end, int rows, class P> SIGPAK_INLINE void merge_columns(P* row) {
  if constexpr (columns < end) {
    unroll<rows / 2>([&](auto r) SIGPAK_LAMBDA {
      constexpr int opposite = rows - 1 - r;
      constexpr unsigned upper = lanes_with<P::width>(columns);
      const P other = flipped<2 * columns - 1>(row[opposite]);
      const P here = row[r];
      row[r] = greater_in<upper>(lesser(here, other), here, other);
      row[opposite] = flipped<2 * columns - 1>(lesser_in<upper>(greater(other, here), other, here));
    });
    merge_lanes<columns / 2, rows>(row);
    merge_rows<rows / 2, rows>(row);
    merge_columns<2 * columns, end, rows>(row);
  }
}

// In order down the columns, one after the other.
template <int rows, class P> SIGPAK_INLINE void sort_columns(P (&row)[rows]) {
  sort_lanes<0, rows>(row);
  merge_columns<1, P::width, rows>(row);
}

// The first n numbers of a row, whose place a record that is sorted next may follow: its loads would wait for
// a store in a mask that reaches there.
template <class P, class T = typename P::scalar> SIGPAK_INLINE void store_piecewise(T* to, P a, index n) {
  if (n >= P::width) return store(to, a);
  if (n > 0) store_some(to, a, n);
}

// Sorts at most rows * width numbers, `least` vectors of them or more.
template <class P, int rows, int least, class T = typename P::scalar>
[[gnu::noinline]] void sort_block(T* x, index n) {
  constexpr int W = P::width;
  const P last = splat<P>(static_cast<T>(__builtin_inf()));
  P row[rows];
  unroll<rows>([&](auto r) SIGPAK_LAMBDA {
    if constexpr (r < least) {
      row[r] = load<P>(x + r * W);
    } else {
      row[r] = load_first(x + r * W, n - r * W, last);
    }
  });
  sort_columns(row);
  unroll<rows / W>([&](auto q) SIGPAK_LAMBDA { transpose(reinterpret_cast<P(&)[W]>(row[q * W])); });
  unroll<rows>([&](auto i) SIGPAK_LAMBDA {
    constexpr int squares = rows / W;
    const P next = row[i % squares * W + i / squares];
    if constexpr (i < least) {
      store(x + i * W, next);
    } else if constexpr (rows * W == 16) {
      store_piecewise(x + i * W, next, n - i * W);
    } else {
      store_first(x + i * W, next, n - i * W);
    }
  });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
