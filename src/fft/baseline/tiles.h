// SPDX-License-Identifier: MIT
// Bit reversal by square tiles, without lists.
//
// L. Carter, K. S. Gatlin, "Towards an optimal bit-reversal permutation program", FOCS 1998: an index is
// (i, m, j) with i and j of q bits, and its reversal (rev j, rev m, rev i). With the rows i of a tile m in
// reversed order, tile m transposed is what belongs into tile rev m, whose rows are in reversed order too.
#pragma once

#include <cstring>

#include "core/record.h"

namespace sigpak {

constexpr std::uint32_t reversed(std::uint32_t x, int bits) noexcept {
  std::uint32_t out = 0;
  for (int i = 0; i < bits; ++i) out |= (x >> i & 1U) << (bits - 1 - i);
  return out;
}

template <int bits> struct reversed_order {
  std::uint8_t of[1 << bits] = {};
  constexpr reversed_order() noexcept {
    for (std::uint32_t i = 0; i < 1U << bits; ++i) of[i] = static_cast<std::uint8_t>(reversed(i, bits));
  }
};

// The rows of a tile in reversed order, and those of a buffer in order.
template <int tile_bits, class T> struct tile_rows {
  static constexpr reversed_order<tile_bits> order{};
  T* start;
  index stride;
  T* operator[](index row) const noexcept { return start + stride * order.of[row]; }
};
template <index stride, class T> struct buffer_rows {
  T* start;
  T* operator[](index row) const noexcept { return start + stride * row; }
};

// As many points of as many rows as fill vectors of 16 bytes: wider ones would cross cache lines in memory
// from malloc.
template <index width, class T> class square {
 public:
  static constexpr index side = 16 / (width * static_cast<index>(sizeof(T)));

  template <bool scaled, class Rows> void load(Rows from, index row, index column, T factor) noexcept {
    for (index i = 0; i < side; ++i) {
      std::memcpy(&rows_[i], from[row + i] + width * column, sizeof rows_[i]);
      if constexpr (scaled) rows_[i] *= factor;
    }
  }
  void transpose() noexcept {
    if constexpr (side == 4) {
      const square all = *this;
      for (index i = 0; i < 2; ++i) {
        rows_[i] = __builtin_shufflevector(all.rows_[i], all.rows_[i + 2], 0, 4, 1, 5);
        rows_[i + 2] = __builtin_shufflevector(all.rows_[i], all.rows_[i + 2], 2, 6, 3, 7);
      }
      const square half = *this;
      for (index i = 0; i < 2; ++i) {
        rows_[2 * i] = __builtin_shufflevector(half.rows_[2 * i], half.rows_[2 * i + 1], 0, 4, 1, 5);
        rows_[2 * i + 1] = __builtin_shufflevector(half.rows_[2 * i], half.rows_[2 * i + 1], 2, 6, 3, 7);
      }
    } else if constexpr (side == 2) {
      const square both = *this;
      if constexpr (width == 1) {
        rows_[0] = __builtin_shufflevector(both.rows_[0], both.rows_[1], 0, 2);
        rows_[1] = __builtin_shufflevector(both.rows_[0], both.rows_[1], 1, 3);
      } else {
        rows_[0] = __builtin_shufflevector(both.rows_[0], both.rows_[1], 0, 1, 4, 5);
        rows_[1] = __builtin_shufflevector(both.rows_[0], both.rows_[1], 2, 3, 6, 7);
      }
    }
  }
  template <class Rows> void store(Rows to, index row, index column) const noexcept {
    for (index i = 0; i < side; ++i) std::memcpy(to[row + i] + width * column, &rows_[i], sizeof rows_[i]);
  }

 private:
  using vector [[gnu::vector_size(16)]] = T;
  vector rows_[side];
};

// One tile in two forms of its rows: point (i, j) of the one becomes point (j, i) of the other.
template <index width, bool scaled, int tile_bits, class T, class From, class To>
void transpose(From from, To to, T factor) noexcept {
  using block = square<width, T>;
  constexpr index side = index{1} << tile_bits;
  for (index i = 0; i < side; i += block::side) {
    for (index j = 0; j < side; j += block::side) {
      block points;
      points.template load<scaled>(from, i, j, factor);
      points.transpose();
      points.store(to, j, i);
    }
  }
}

template <index width, int tile_bits, class T>
void copy_rows(const T* buffer, tile_rows<tile_bits, T> to) noexcept {
  constexpr index row = width << tile_bits;
  for (index i = 0; i < index{1} << tile_bits; ++i) std::memcpy(to[i], buffer + row * i, row * sizeof(T));
}

// While all data stay in the first cache: no detour.
template <index width, bool scaled, class T> class direct_exchange {
 public:
  static constexpr int tile_bits = 4;
  using tile = tile_rows<tile_bits, T>;

  void operator()(tile a, tile b, T factor) noexcept {
    using block = square<width, T>;
    constexpr index side = index{1} << tile_bits;
    for (index i = 0; i < side; i += block::side) {
      for (index j = a.start == b.start ? i : 0; j < side; j += block::side) {
        block of_a;
        block of_b;
        of_a.template load<scaled>(a, i, j, factor);
        of_b.template load<scaled>(b, j, i, factor);
        of_a.transpose();
        of_b.transpose();
        of_a.store(b, j, i);
        of_b.store(a, i, j);
      }
    }
  }
};

// Beyond, the rows of two tiles, a power of two apart, drive each other out of the cache: every tile is read
// as a whole before it is written.
template <index width, bool scaled, class T> class buffered_exchange {
 public:
  static constexpr int tile_bits = 5;
  using tile = tile_rows<tile_bits, T>;

  void operator()(tile a, tile b, T factor) noexcept {
    transpose<width, scaled, tile_bits>(a, buffer_rows<row, T>{of_a_}, factor);
    transpose<width, scaled, tile_bits>(b, buffer_rows<row, T>{of_b_}, factor);
    copy_rows<width>(of_b_, a);
    copy_rows<width>(of_a_, b);
  }

 private:
  static constexpr index row = width << tile_bits;
  alignas(64) T of_a_[row << tile_bits];
  alignas(64) T of_b_[row << tile_bits];
};

// Points that fill a vector: tiles with as few rows as the cache has ways, of which one is buffered.
template <bool scaled> class buffered_exchange<2, scaled, double> {
 public:
  static constexpr int tile_bits = 3;
  using tile = tile_rows<tile_bits, double>;

  void operator()(tile a, tile b, double factor) noexcept {
    transpose(a, buffer_rows<2 * side, double>{of_a_}, factor);
    if (a.start != b.start) transpose(b, a, factor);
    copy_rows<2>(of_a_, b);
  }

 private:
  static constexpr index side = index{1} << tile_bits;

  // Row by row of what is written.
  template <class From, class To> static void transpose(From from, To to, double factor) noexcept {
    for (index j = 0; j < side; ++j) {
      for (index i = 0; i < side; ++i) {
        square<2, double> point;
        point.load<scaled>(from, i, j, factor);
        point.store(to, j, i);
      }
    }
  }

  alignas(64) double of_a_[2 * side * side];
};

template <class Exchange, index width, class T> void exchange_tiles(T* x, int bits, T factor) noexcept {
  using tile = typename Exchange::tile;
  constexpr int tile_bits = Exchange::tile_bits;
  const int middle_bits = bits - 2 * tile_bits;
  const index stride = width << (bits - tile_bits);
  const auto at = [x, stride](std::uint32_t m) {
    return tile{x + (width << tile_bits) * static_cast<index>(m), stride};
  };
  Exchange exchange;
  for (std::uint32_t m = 0; m < 1U << middle_bits; ++m) {
    const std::uint32_t mirrored = reversed(m, middle_bits);
    if (m <= mirrored) exchange(at(m), at(mirrored), factor);
  }
}

inline constexpr int least_tiled_bits = 8;
inline constexpr index first_cache_bytes = 32768;

// bits at least least_tiled_bits.
template <index width, bool scaled, class T> void reverse_by_tiles(T* x, int bits, T factor) noexcept {
  if ((width * static_cast<index>(sizeof(T))) << bits <= first_cache_bytes) {
    exchange_tiles<direct_exchange<width, scaled, T>, width>(x, bits, factor);
  } else {
    exchange_tiles<buffered_exchange<width, scaled, T>, width>(x, bits, factor);
  }
}

}  // namespace sigpak
