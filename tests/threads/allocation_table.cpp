// Prints how often operations allocate, as the table of docs/allocation.md.
#include <cstdio>

#include "core/isa.h"
#include "core/memory.h"
#include "threads/operations.h"

namespace sigpak::test {
namespace {

int count = 0;

void* counted(void* block, std::size_t bytes) {
  ++count;
  return std::realloc(block, bytes != 0 ? bytes : 1);
}
std::int32_t reallocate(dsp_vec* v, std::uint32_t, std::int32_t) {
  v->data = static_cast<double*>(counted(v->data, static_cast<std::size_t>(index{v->points} * width(v)) * 8));
  return 0;
}
std::int32_t allocate(dsp_vec* v) {
  if (v->alloc <= 0) v->data = nullptr;
  return reallocate(v, 0, 0);
}

int allocations_of(const operation<dsp_vec>& op, workplace<dsp_vec>& w) {
  count = 0;
  return op.call(w) == ok ? count : -1;
}

void print_table() {
  const isa::level levels[] = {isa::level::baseline, isa::widest()};
  std::printf("| |");
  for (const auto level : levels) std::printf(" %s: first call | second |", isa::name_of(level));
  std::printf("\n|---|--:|--:|--:|--:|\n");
  for (const auto& op : operations<dsp_vec>()) {
    std::printf("| %s |", op.name);
    for (const auto level : levels) {
      isa::force(level);
      dsp_free_internal();
      workplace<dsp_vec> w;
      const int first = allocations_of(op, w);
      std::printf(" %d | %d |", first, allocations_of(op, w));
    }
    std::printf("\n");
  }
}

}  // namespace
}  // namespace sigpak::test

int main() {
  sigpak::resize_table_bytes = sigpak::test::counted;
  dsp_lib_alloc(sigpak::test::allocate, nullptr);
  dsp_lib_realloc(sigpak::test::reallocate, nullptr);
  sigpak::test::print_table();
}
