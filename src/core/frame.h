// SPDX-License-Identifier: MIT
// The process-wide frame: allocation hooks and the registry of scratch caches.
#pragma once

#include "core/record.h"

namespace sigpak {

template <record V> struct hooks {
  std::int32_t (*allocate)(V*) = nullptr;
  std::int32_t (*reallocate)(V*, std::uint32_t old_points, std::int32_t old_complex) = nullptr;
  std::int32_t (*release)(V*) = nullptr;
};

// The hooks in force for one precision.
template <record V> hooks<V>& current_hooks() noexcept;

// The scratch caches of one precision, in the order of their release.
enum class cache : int {
  fir,
  half_fir,
  bit_reversal,
  dct,
  dft,
  filter_output,
  filter_edge,
  correlation,
  twiddles,
  plans,
  windows
};
inline constexpr int cache_count = 11;

// Called by an owner when its cache comes into use; release empties the cache again. Writes only where
// another was registered: threads that call it over and over do not disturb each other.
template <record V> void register_cache(cache slot, status (*release)() noexcept) noexcept;

// Empties every registered cache; stops at the first failure.
template <record V> status release_caches() noexcept;

}  // namespace sigpak
