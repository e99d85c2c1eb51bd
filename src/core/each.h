// SPDX-License-Identifier: MIT
// The walk over points that do not depend on each other, at the speed of the memory.
#pragma once

#include "core/machine.h"
#include "core/record.h"

namespace sigpak {

// What a walk waits for.
enum class bound { memory, divider };

// Calls body(i) for i = 0 .. points - 1. body(i) writes `width` scalars from out + i * width on, and no later
// call reads them: the operands are apart from out, in step with it, or run ahead of it. The compiler cannot
// know that and would take them one by one. Stores that straddle two cache lines cost up to 1.5 times as
// much, so a walk of some length brings `out` to a line first, one point at a time; behind a division they
// cost nothing.
template <index width = 1, bound limit = bound::memory, class T, class Body>
[[gnu::always_inline]] inline void each(const T* out, index points, Body body) noexcept {
  constexpr index worth_aligning = 64;
  constexpr index worth_unrolling = 32;
  index i = 0;
  if (limit == bound::memory && points >= worth_aligning) {
    const index head = machine::bytes_to_line(out) / (width * static_cast<index>(sizeof(T)));
    for (; i < head; ++i) {
      asm volatile("");  // keeps the compiler from making vectors of these few
      body(i);
    }
  }
  // A loop of a single vector runs at half speed wherever it crosses a line of code.
  if (width == 1 && points > worth_unrolling) {
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC ivdep
#pragma GCC unroll 4
#endif
    for (; i < points; ++i) body(i);
    return;
  }
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC ivdep
#endif
  for (; i < points; ++i) body(i);
}

// Calls body(i) for every point, the last half of them first, then the last half of what is left: an operand
// whose points are half as wide as those of out, or less, may stand at the start of out. What is written then
// lies behind every operand still to be read, so that each half is a walk like any other. One walk does for
// operands apart from out.
template <index width, class T, class Body>
[[gnu::always_inline]] inline void each_from_end(const T* out, index points, Body body,
                                                 bool apart = false) noexcept {
  constexpr index few = 8;
  index left = points;
  while (left > few) {
    const index begin = apart ? 0 : (left + 1) / 2;
    each<width>(out + begin * width, left - begin, [=](index i) { body(begin + i); });
    left = begin;
  }
  while (left > 0) {
    asm volatile("");
    body(--left);
  }
}

}  // namespace sigpak
