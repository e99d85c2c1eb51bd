// SPDX-License-Identifier: MIT
// What the wide transforms keep between calls.
#pragma once

#include "core/recent_list.h"
#include "core/scratch.h"

namespace sigpak {

// What a wide transform borrows. Lengths that are no power of two are many, so that only the plans of the
// last ones are kept; they are borrowed with the memory.
template <class T> struct workshop {
  static constexpr index kept_bytes = index{64} << 20;
  scratch_memory<T> scratch;
  recent_list plans{kept_bytes};

  status release() noexcept {
    plans.release();
    return scratch.release();
  }
};
template <class T> inline constinit lender<workshop<T>> workshops;

template <class T> constexpr index bytes_of(index points) noexcept { return 2 * points * index{sizeof(T)}; }

// Has the tables and the scratch memory of the wide transforms released with the library's other caches.
template <class T> void own_plans() noexcept;

}  // namespace sigpak
