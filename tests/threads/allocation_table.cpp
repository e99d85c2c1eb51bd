// SPDX-License-Identifier: MIT
// Prints how often operations allocate, as the table of docs/allocation.md.
#include <cstdio>

#include "core/isa.h"
#include "threads/operations.h"

namespace {

using namespace sigpak;
using namespace sigpak::test;

long allocations_of(const operation<dsp_vec>& op, workplace<dsp_vec>& w) {
  const failing_memory counted;
  return op.call(w) == ok ? counted.calls() : -1;
}

}  // namespace

int main() {
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
      const long first = allocations_of(op, w);
      std::printf(" %ld | %ld |", first, allocations_of(op, w));
    }
    std::printf("\n");
  }
}
