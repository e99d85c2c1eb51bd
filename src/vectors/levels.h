// SPDX-License-Identifier: MIT
// The tables of functions that the levels offer, and the one that runs: the only place, beside isa, that
// knows which levels there are.
//
// A family of kernels declares a struct of function pointers. Its source, compiled once per level, fills one
// for each precision with SIGPAK_LEVEL_TABLE; callers ask `at_level` for it, or for one of its functions.
#pragma once

#include <type_traits>

#include "core/isa.h"

namespace sigpak {

template <isa::level level, class Table> struct offered { static const Table table; };

// Whether a family has a table at the baseline too, in the vectors that every processor has. The plain loops
// of the operations run where it has none.
template <class Table> inline constexpr bool has_baseline_table = requires { Table::at_baseline; };

#define SIGPAK_LEVEL_TABLE(...) \
  template <> constinit const __VA_ARGS__ offered<isa::level::SIGPAK_LEVEL, __VA_ARGS__>::table

#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wundefined-var-template"  // defined in the source of its level
#endif

// Null where the plain loop of the operation runs.
template <class Table> const Table* at_level([[maybe_unused]] isa::level level) noexcept {
#if SIGPAK_WIDE_LEVELS
  if (level == isa::level::avx512) return &offered<isa::level::avx512, Table>::table;
  if (level == isa::level::avx2) return &offered<isa::level::avx2, Table>::table;
#endif
  if constexpr (has_baseline_table<Table>) return &offered<isa::level::baseline, Table>::table;
  return nullptr;
}
template <class Table> const Table* at_level() noexcept { return at_level<Table>(isa::current()); }

// The same without a branch, where the shortest operations look first: null until the level is chosen, and at
// the baseline, at which such a family has no table.
template <class Table> const Table* at_chosen_level() noexcept {
  static_assert(!has_baseline_table<Table> && isa::detail::unknown == -1);
#if SIGPAK_WIDE_LEVELS
  static constexpr const Table* tables[] = {nullptr, nullptr, &offered<isa::level::avx2, Table>::table,
                                            &offered<isa::level::avx512, Table>::table};
  return tables[static_cast<unsigned>(isa::detail::chosen.load(std::memory_order_relaxed) + 1)];
#else
  return nullptr;
#endif
}

// The same of one function of the table.
template <class Table, class Function> Function at_level(Function Table::*function) noexcept {
  const Table* const table = at_level<Table>();
  return table != nullptr ? table->*function : nullptr;
}

// Runs a function that every level has, the baseline too.
template <class Table, class... Arguments>
void run_at_level(void (*Table::*function)(Arguments...),
                  std::type_identity_t<Arguments>... arguments) noexcept {
  at_level(function)(arguments...);
}

#if defined(__clang__)
#pragma clang diagnostic pop
#endif

}  // namespace sigpak
