// SPDX-License-Identifier: MIT
// Tables that are made once and stay, for every thread to read.
#pragma once

#include <atomic>

#include "core/memory.h"

namespace sigpak {

// One table for each key from 0 on. A table is made in private and published whole: of two threads that make
// the same one at the same time the later takes that of the other. Nothing published changes, so that reading
// costs a load.
template <class T, int keys> class published {
 public:
  constexpr published() noexcept = default;

  // Null where there is none yet.
  [[nodiscard]] T* find(int key) const noexcept { return tables_[key].load(std::memory_order_acquire); }

  // The table that is there from now on: this one, unless there is one already.
  [[nodiscard]] T* offer(int key, T* table) noexcept {
    T* there = nullptr;
    return tables_[key].compare_exchange_strong(there, table, std::memory_order_acq_rel,
                                                std::memory_order_acquire)
               ? table
               : there;
  }

  // The same for a raw table, which is freed where it comes too late.
  [[nodiscard]] T* keep(int key, T* table) noexcept {
    T* const kept = offer(key, table);
    if (kept != table) free_table(table);
    return kept;
  }

  // The table under the key, which is no longer published; while nobody reads it.
  [[nodiscard]] T* withdraw(int key) noexcept {
    return tables_[key].exchange(nullptr, std::memory_order_acq_rel);
  }

  // Frees all raw tables; while nobody reads them.
  void release() noexcept {
    for (int key = 0; key < keys; ++key) free_table(withdraw(key));
  }

 private:
  std::atomic<T*> tables_[keys] = {};
};

}  // namespace sigpak
