// SPDX-License-Identifier: MIT
// Where raw tables come from.
#include "core/memory.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "core/kept_errno.h"
#include "core/machine.h"

namespace sigpak {
namespace {

// A request for no bytes still gives a block, so that null always means failure.
void* resize_on_heap(void* block, std::size_t bytes) {
  void* const resized = std::realloc(block, bytes != 0 ? bytes : 1);
  advise_large_pages(resized, bytes);
  return resized;
}

void* fresh_block(std::size_t bytes) noexcept {
  void* block = nullptr;
  if (bytes < worth_a_line) return std::malloc(bytes);
  return posix_memalign(&block, machine::line_bytes, bytes) == 0 ? block : nullptr;
}

// Growth where the block lies, and that of a mapping by new pages, keeps its place in the line; a block that
// the heap has moved is copied once more.
void* grown_block(void* block, std::size_t kept, std::size_t bytes) noexcept {
  void* const grown = std::realloc(block, bytes);
  if (grown == nullptr || bytes < worth_a_line || machine::begins_line(grown)) return grown;
  void* const moved = fresh_block(bytes);
  if (moved == nullptr) return grown;
  std::memcpy(moved, grown, std::min(kept, bytes));
  std::free(grown);
  return moved;
}

}  // namespace

constinit table_source resize_table_bytes = resize_on_heap;

void advise_large_pages([[maybe_unused]] void* block, [[maybe_unused]] std::size_t bytes) noexcept {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
  constexpr std::uintptr_t page = machine::page_bytes;
  if (block == nullptr || bytes < machine::worth_large_pages) return;
  const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(block) / page * page;
  const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(block) + bytes + page - 1) / page * page;
  const kept_errno kept;
  madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

void* resize_on_lines(void* block, std::size_t kept, std::size_t bytes) noexcept {
  void* const resized = block != nullptr ? grown_block(block, kept, bytes) : fresh_block(bytes);
  advise_large_pages(resized, bytes);
  return resized;
}

void free_table(void* table) noexcept { std::free(table); }

}  // namespace sigpak
