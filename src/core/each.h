// The walk over points that do not depend on each other, at the speed of the memory.
#pragma once

#include <cstdint>

#include "core/record.h"

namespace sigpak {

// Calls body(i) for i = 0 .. points - 1. body(i) writes `width` scalars from out + i * width on, and no later
// call reads them: the operands are apart from out, in step with it, or run ahead of it. The compiler cannot
// know that and would take them one by one. Stores that straddle two cache lines cost up to 1.5 times as
// much, so a long walk brings `out` to a line first, one point at a time.
template <index width = 1, class T, class Body>
[[gnu::always_inline]] inline void each(const T* out, index points, Body body) noexcept {
  constexpr std::uintptr_t line = 64;
  constexpr index worth_aligning = 256;
  index i = 0;
  if (points >= worth_aligning) {
    const auto before_line = static_cast<index>(-reinterpret_cast<std::uintptr_t>(out) % line);
    const index head = before_line / (width * static_cast<index>(sizeof(T)));
    for (; i < head; ++i) {
      asm volatile("");  // keeps the compiler from making vectors of these few
      body(i);
    }
  }
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC ivdep
#endif
  for (; i < points; ++i) body(i);
}

// Calls put(i, x[i]) for every point, the last first, where put(i, ...) writes two scalars from z + 2 i on
// and x may stand at the start of z. Tile by tile, each held apart while its place is written: that place
// then is no operand any more, and the tile becomes vectors.
template <class T, class Put>
[[gnu::always_inline]] inline void spread_from_end(const T* x, const T* z, index points, Put put) noexcept {
  constexpr index tile = 16;  // larger ones upset the prefetching of a walk that goes down
  constexpr std::uintptr_t line = 64;
  index left = points;
  if (points >= tile) {
    for (; reinterpret_cast<std::uintptr_t>(z + 2 * left) % line >= 2 * sizeof(T); --left) {
      asm volatile("");
      put(left - 1, x[left - 1]);
    }
  }
  for (; left >= tile; left -= tile) {
    alignas(line) T held[tile];
    const index begin = left - tile;
    for (index i = 0; i < tile; ++i) held[i] = x[begin + i];
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC ivdep
#endif
    for (index i = 0; i < tile; ++i) put(begin + i, held[i]);
  }
  for (index i = left - 1; i >= 0; --i) put(i, x[i]);
}

}  // namespace sigpak
