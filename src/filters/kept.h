// SPDX-License-Identifier: MIT
// The record in which a caller keeps a stream: a head, then scalars that last, then scalars for the work of
// one call.
#pragma once

#include <cstdint>
#include <cstring>
#include <limits>

#include "core/room.h"

namespace sigpak {

template <class Head, class T>
inline constexpr index head_scalars = (sizeof(Head) + sizeof(T) - 1) / sizeof(T);

template <class Head, record V> Head read_head(const V* state) noexcept {
  Head head;
  std::memcpy(&head, state->data, sizeof(Head));
  return head;
}
template <class Head, record V> void write_head(const Head& head, V* state) noexcept {
  std::memcpy(state->data, &head, sizeof(Head));
}

// Whether the state holds a stream with such a head. What was never written here may look like anything.
template <class Head, record V> bool holds_head(const V* state) noexcept {
  if (state->data == nullptr || is_complex(state) || length(state) < head_scalars<Head, scalar<V>>)
    return false;
  return read_head<Head>(state).mark == Head::own_mark;
}

// Storage for `all` scalars, of which the first `kept` are the record's points; what it held stays. A failure
// leaves an empty state.
template <record V> status hold(V* state, index kept, index all) noexcept {
  const auto old_points = static_cast<std::uint32_t>(length(state));
  const bool countable = all <= std::numeric_limits<std::int32_t>::max();
  state->points = static_cast<std::uint32_t>(countable ? all : 0);
  state->complex = 0;
  const status held = countable ? reallocate(state, old_points, 0) : failed;
  state->points = static_cast<std::uint32_t>(held == ok ? kept : 0);
  return held;
}

// Scalars of a state that are left free so that those behind them begin a line, in either precision.
inline constexpr index most_padding = line_scalars<float>;

}  // namespace sigpak
