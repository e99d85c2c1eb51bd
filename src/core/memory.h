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

template <class T> T* resize_table(T* table, index count) noexcept {
  if (count < 0 || static_cast<std::uint64_t>(count) > PTRDIFF_MAX / sizeof(T)) return nullptr;
  return static_cast<T*>(resize_table_bytes(table, static_cast<std::size_t>(count) * sizeof(T)));
}

template <class T> T* allocate_table(index count) noexcept { return resize_table<T>(nullptr, count); }

}  // namespace sigpak
