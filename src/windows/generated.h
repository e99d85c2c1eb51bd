// SPDX-License-Identifier: MIT
// Windows that are generated for the call and applied to a record.
#pragma once

#include "core/kept_errno.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "shape/shape.h"
#include "windows/catalogue.h"

namespace sigpak {

// v * w, for the window w that generate(&w) fills, rotated unless the flags keep it from that.
template <record V, class Generate> status apply_generated(V* v, int flags, Generate generate) noexcept {
  const kept_errno kept;
  temporary<V> w;
  w.points = static_cast<std::uint32_t>(length(v));
  if (allocate<V>(&w) != ok || generate(&w) != ok) return failed;
  if (length(v) == 0) return ok;
  if (multiply_by_reals(v, w.data) != ok) return failed;
  return has(flags, DSP_WINDOW_FLAG_NO_ROTATE) ? ok : rotate_left_half(v);
}

}  // namespace sigpak
