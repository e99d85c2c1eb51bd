// SPDX-License-Identifier: MIT
// Where raw tables come from.
#include "core/memory.h"
#include "core/kept_errno.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

#include <cstdlib>

#include "core/machine.h"

namespace sigpak {
namespace {

// A request for no bytes still gives a block, so that null always means failure.
void* resize_on_heap(void* block, std::size_t bytes) {
  void* const resized = std::realloc(block, bytes != 0 ? bytes : 1);
  advise_large_pages(resized, bytes);
  return resized;
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

void free_table(void* table) noexcept { std::free(table); }

}  // namespace sigpak
