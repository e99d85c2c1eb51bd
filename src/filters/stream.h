// SPDX-License-Identifier: MIT
// What filters carry from block to block, and where they build results that their input still occupies.
#pragma once

#include <algorithm>

#include "core/copy.h"
#include "core/lending.h"
#include "elementwise/elementwise.h"

namespace sigpak {

// The records in which a result is built while its own record is still being read.
template <record V> lender<kept_record<V>>& substitutes() noexcept;

// The stream state that serves every caller who brings none: one stream for the process. A call that finds it
// taken by another starts at rest, and what it leaves is lost.
template <record V> using only_state = lender<kept_record<V>, 1>;
template <record V> only_state<V>& shared_state() noexcept;

// Brings a stream's state to the form of its input: spacing, real or complex, exactly `points`. The first
// points are kept, missing ones are zeros. After a failure the state is empty, that is, at rest.
template <record V> status fit_state(V* state, const V* in, index points) noexcept {
  if (state->data == nullptr) state->points = 0;
  state->delta = in->delta;
  const bool converted = is_complex(in) ? to_complex(state) == ok : keep_real(state) == ok;
  state->points = static_cast<std::uint32_t>(std::min(length(state), points));
  if (converted && pad(state, points) == ok) return ok;
  state->points = 0;
  return failed;
}

}  // namespace sigpak
