// SPDX-License-Identifier: MIT
// Storage of a state, which a failure leaves as it was.
#pragma once

#include <algorithm>
#include <limits>
#include <utility>

#include "core/machine.h"
#include "core/storage.h"

namespace sigpak {

// Capacity for so many scalars, the contents kept; after a failure the record is what it was.
template <record V> status make_room(V* v, index capacity) noexcept {
  if (v->alloc >= capacity && v->data != nullptr) return ok;
  if (capacity > std::numeric_limits<std::int32_t>::max()) return failed;
  temporary<V> larger;
  larger.points = static_cast<std::uint32_t>(std::max<index>(capacity, 1));
  if (allocate<V>(&larger) != ok) return failed;
  std::copy_n(v->data, scalars(v), larger.data);
  std::swap(v->data, larger.data);
  std::swap(v->alloc, larger.alloc);
  return ok;
}

// The first place from here on that begins a line of the caches, at most `line_scalars` - 1 further.
template <class T> inline constexpr index line_scalars = machine::line_bytes / sizeof(T);
template <class T> T* next_line(T* at) noexcept { return at + machine::bytes_to_line(at) / index{sizeof(T)}; }

}  // namespace sigpak
