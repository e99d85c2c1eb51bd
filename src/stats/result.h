// SPDX-License-Identifier: MIT
// The result record of a statistic: one point that keeps its spacing.
#pragma once

#include "core/copy.h"
#include "core/storage.h"

namespace sigpak {

// Sizes the result; the statistic is computed before, so that it may be the input.
template <record V> status prepare_result(V* result, index points, bool complex) noexcept {
  result->points = static_cast<std::uint32_t>(points);
  result->complex = complex ? 1 : 0;
  if (scalars(result) <= result->alloc) return ok;  // most often, and for less than a call
  return allocate(result);
}

template <record V> status store(V* result, double value) noexcept {
  if (prepare_result(result, 1, false) != ok) return failed;
  result->data[0] = static_cast<scalar<V>>(value);
  return ok;
}

template <record V> status store(V* result, double re, double im) noexcept {
  if (prepare_result(result, 1, true) != ok) return failed;
  result->data[0] = static_cast<scalar<V>>(re);
  result->data[1] = static_cast<scalar<V>>(im);
  return ok;
}

// Runs an operation whose result may be the input itself, which it then becomes only at the end: a fresh
// record with the spacing 1. What the operation wrote before it failed comes over too.
template <record V, class Operation> status run_apart(const V* v, V* result, Operation operation) noexcept {
  if (result != v) return operation(v, result);
  temporary<V> apart;
  const status outcome = operation(v, static_cast<V*>(&apart));
  if (outcome != ok && apart.data == nullptr) return failed;
  return copy<V>(result, &apart) == ok ? outcome : failed;
}

}  // namespace sigpak
