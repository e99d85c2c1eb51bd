// The result record of an operation on two records.
#pragma once

#include "core/storage.h"

namespace sigpak {

// Refuses operands of different lengths. Otherwise out gets the mean spacing, the points, and the form given,
// and is sized: afresh, or keeping its contents when it shares storage with an operand.
template <record V> status prepare(const V* a, const V* b, V* out, bool complex) noexcept {
  if (a->points != b->points) return failed;
  const bool shared = out->data == a->data || out->data == b->data;
  const std::int32_t old_complex = out->complex;
  const std::uint32_t points = a->points;
  out->delta = (a->delta + b->delta) * scalar<V>(0.5);
  out->complex = complex ? 1 : 0;
  out->points = points;
  return shared ? reallocate(out, points, old_complex) : allocate(out);
}

}  // namespace sigpak
