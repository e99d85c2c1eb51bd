// The tables of functions that the levels offer, and the one that runs: the only place, beside isa, that
// knows which levels there are.
//
// A family of kernels declares a struct of function pointers. Its source, compiled once per level, fills one
// for each precision with SIGPAK_LEVEL_TABLE; callers ask `at_level` for it.
#pragma once

#include "core/isa.h"

namespace sigpak {

template <isa::level level, class Table> struct offered { static const Table table; };

#define SIGPAK_LEVEL_TABLE(...) \
  template <> constinit const __VA_ARGS__ offered<isa::level::SIGPAK_LEVEL, __VA_ARGS__>::table

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wundefined-var-template"  // defined in the source of its level
#endif

// Null at the baseline, where the plain loops of the operations run.
template <class Table> const Table* at_level([[maybe_unused]] isa::level level) noexcept {
#if SIGPAK_WIDE_LEVELS
  if (level == isa::level::avx512) return &offered<isa::level::avx512, Table>::table;
  if (level == isa::level::avx2) return &offered<isa::level::avx2, Table>::table;
#endif
  return nullptr;
}
template <class Table> const Table* at_level() noexcept { return at_level<Table>(isa::current()); }

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

}  // namespace sigpak
