// SPDX-License-Identifier: MIT
// Runs of points copied from one record to another.
#pragma once

#include "core/record.h"

namespace sigpak {

// out becomes the `count` points of `in` from point `start`, with its spacing and form. A negative count
// counts as 0, start is limited to the record, count to what follows it. When the two share storage the
// points move inside it, overlapping or not.
template <record V> status copy_run(const V* in, V* out, std::int32_t start, std::int32_t count) noexcept;

// dst becomes the first `count` points of src, in storage of its own: what it was lent by src, if anything,
// is left behind. A record copied onto itself is cut in place.
template <record V> status copy_front(V* dst, const V* src, std::int32_t count) noexcept;

// The same with all points; a record copied onto itself does not change.
template <record V> status copy(V* dst, const V* src) noexcept;

// dst grows by the points of src and turns complex when src is; its spacing stays.
template <record V> status append(V* dst, const V* src) noexcept;

}  // namespace sigpak
