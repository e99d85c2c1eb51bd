// SPDX-License-Identifier: MIT
// Stores past the cache, for results that are too large to stay there: a plain store reads a line before it
// writes it, a streaming one does not.
#pragma once

#include <cstdint>
#include <cstring>

#include "core/isa.h"
#include "core/machine.h"
#include "core/record.h"

#if SIGPAK_WIDE_LEVELS
#include <emmintrin.h>
#endif

namespace sigpak {

// Scalars streamed at a time, computed in the nearest cache.
template <class T> inline constexpr index streamed_piece = machine::way_bytes / 2 / sizeof(T);

// Calls for what lies two pieces of n scalars behind x; there may be nothing any more.
template <class T> void call_for_next(const T* x, index n) noexcept {
  constexpr index line = machine::line_bytes / sizeof(T);
  for (index i = 2 * n; i < 3 * n; i += line) __builtin_prefetch(x + i);
}

// A result as large as the last cache exceeds it with its operands.
template <class T> bool worth_streaming(const T* out, index n) noexcept {
  return SIGPAK_WIDE_LEVELS && n * index{sizeof(T)} >= machine::caches().last &&
         reinterpret_cast<std::uintptr_t>(out) % 16 == 0;
}

// Copies; `to` is aligned to 16 bytes, `from` too. Ordered with other stores by finish_streaming.
template <class T> void stream(T* to, const T* from, index n) noexcept {
#if SIGPAK_WIDE_LEVELS
  constexpr index step = 16 / sizeof(T);
  index i = 0;
  for (; i + step <= n; i += step) {
    _mm_stream_si128(reinterpret_cast<__m128i*>(to + i),
                     _mm_load_si128(reinterpret_cast<const __m128i*>(from + i)));
  }
  for (; i < n; ++i) to[i] = from[i];
#else
  std::memcpy(to, from, static_cast<std::size_t>(n) * sizeof(T));
#endif
}

inline void finish_streaming() noexcept {
#if SIGPAK_WIDE_LEVELS
  _mm_sfence();
#endif
}

}  // namespace sigpak
