// SPDX-License-Identifier: MIT
// The memory of the machine: lines, pages, and the sizes of the caches that a choice depends on. Choices
// decide the order in which memory is met, and by the plans of transforms the last bits of their results.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/record.h"

namespace sigpak::machine {

// Of the caches: what is read or written at once.
inline constexpr std::size_t line_bytes = 64;

// The smallest page, and a way of the first cache: places so far apart share a set and drive each other out.
inline constexpr std::size_t page_bytes = 4096;
inline constexpr index way_bytes = index{page_bytes};

// From here on large pages are worth asking for.
inline constexpr std::size_t worth_large_pages = std::size_t{4} << 20;

// Bytes of the first two caches of a core, and of the last one as far as one core may count on it; the ways
// of the first.
struct cache_sizes {
  index first;
  index first_ways;
  index second;
  index last;
};

// Where the system does not say.
inline constexpr cache_sizes usual_caches{
    .first = index{32} << 10, .first_ways = 8, .second = index{1} << 20, .last = index{16} << 20};

// Asked from the system once, or forced.
cache_sizes caches() noexcept;

// Makes `caches` answer `wanted`, each size more than a way; for tests and measurements.
void force(cache_sizes wanted) noexcept;

// Bytes from p to the next line. Always inline, as wide kernels use it too.
[[gnu::always_inline]] inline index bytes_to_line(const void* p) noexcept {
  return static_cast<index>(-reinterpret_cast<std::uintptr_t>(p) % line_bytes);
}
[[gnu::always_inline]] inline bool begins_line(const void* p) noexcept { return bytes_to_line(p) == 0; }

}  // namespace sigpak::machine
