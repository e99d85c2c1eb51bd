// Where raw tables come from.
#include "core/memory.h"

#include <cstdlib>

namespace sigpak {
namespace {

// A request for no bytes still gives a block, so that null always means failure.
void* resize_on_heap(void* block, std::size_t bytes) { return std::realloc(block, bytes != 0 ? bytes : 1); }

}  // namespace

constinit table_source resize_table_bytes = resize_on_heap;

void free_table(void* table) noexcept { std::free(table); }

}  // namespace sigpak
