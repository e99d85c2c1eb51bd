// SPDX-License-Identifier: MIT
// Raw tables: storage that belongs to no record and bypasses the allocation hooks.
#pragma once

#include <cstdint>

#include "core/record.h"

namespace sigpak {

// The one point that every raw table comes from. It is a variable so that a test can make any of them fail.
// A null block asks for a fresh one; null comes back on failure, and the old block is then still valid.
using table_source = void* (*)(void* block, std::size_t bytes);
extern constinit table_source resize_table_bytes;

void free_table(void* table) noexcept;

// The first touch of fresh memory costs more than any pass over it, most of it for every page: a large block
// asks for large pages. Advice only, so it may fail. It takes in the pages where the block begins and ends: a
// mapping advised in part is two to the kernel, which then cannot grow it without a copy.
void advise_large_pages(void* block, std::size_t bytes) noexcept;

// A block that free and realloc of the C library accept, `block` grown to `bytes` with its first `kept` of
// them or a fresh one; null on failure, `block` then being as it was. From `worth_a_line` on it begins at a
// line of the caches, so that no vector is split between two of them; below, asking for that takes longer
// than it saves.
inline constexpr std::size_t worth_a_line = 1024;
void* resize_on_lines(void* block, std::size_t kept, std::size_t bytes) noexcept;

template <class T> T* resize_table(T* table, index count) noexcept {
  if (count < 0 || static_cast<std::uint64_t>(count) > PTRDIFF_MAX / sizeof(T)) return nullptr;
  return static_cast<T*>(resize_table_bytes(table, static_cast<std::size_t>(count) * sizeof(T)));
}

template <class T> T* allocate_table(index count) noexcept { return resize_table<T>(nullptr, count); }

}  // namespace sigpak
