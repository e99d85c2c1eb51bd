// SPDX-License-Identifier: MIT
// Tables that are kept while they are in use.
#pragma once

#include <algorithm>

#include "core/memory.h"

namespace sigpak {

// Tables of bytes, each found by its key, those used last in front. All but the largest together take no more
// than the budget: the ones that were not used for longest go, but never the last one.
class recent_list {
 public:
  explicit constexpr recent_list(index budget) noexcept : budget_(budget) {}

  // Null where there is none; stays valid until the next table comes.
  [[nodiscard]] std::byte* find(index key) noexcept {
    for (entry** at = &first_; *at != nullptr; at = &(*at)->next) {
      if ((*at)->key != key) continue;
      entry* const found = *at;
      *at = found->next;
      return put_first(found);
    }
    return nullptr;
  }

  // A fresh table under `key`, for the caller to fill; null leaves the list as it was.
  [[nodiscard]] std::byte* append(index key, index bytes) noexcept {
    auto* const fresh = reinterpret_cast<entry*>(allocate_table<std::byte>(bytes + index{sizeof(entry)}));
    if (fresh == nullptr) return nullptr;
    *fresh = {nullptr, key, bytes};
    std::byte* const table = put_first(fresh);
    drop_oldest();
    return table;
  }

  // Takes away the one found or appended last.
  void drop_first() noexcept {
    entry* const gone = first_;
    first_ = gone->next;
    free_table(gone);
  }

  void release() noexcept { drop(&first_); }

 private:
  struct entry {
    entry* next;
    index key;
    index bytes;
  };

  std::byte* put_first(entry* e) noexcept {
    e->next = first_;
    first_ = e;
    return reinterpret_cast<std::byte*>(e + 1);
  }

  // The list ends before the first entry with which it would exceed the budget.
  void drop_oldest() noexcept {
    index all = 0;
    index largest = 0;
    for (entry** at = &first_; *at != nullptr; at = &(*at)->next) {
      all += (*at)->bytes;
      largest = std::max(largest, (*at)->bytes);
      if (all - largest > budget_) return drop(at);
    }
  }

  static void drop(entry** from) noexcept {
    entry* e = *from;
    *from = nullptr;
    while (e != nullptr) {
      entry* const next = e->next;
      free_table(e);
      e = next;
    }
  }

  entry* first_ = nullptr;
  index budget_;
};

}  // namespace sigpak
