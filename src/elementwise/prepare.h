// SPDX-License-Identifier: MIT
// The result record of an operation on two records.
#pragma once

#include "core/storage.h"

namespace sigpak {

// The samples of two operands, which stay readable while the result is sized.
template <record V> struct operands {
  const scalar<V>* a;
  const scalar<V>* b;
  bool a_complex;
  bool b_complex;
  index points;
};

template <record V> operands<V> operands_of(const V* a, const V* b) noexcept {
  return {a->data, b->data, is_complex(a), is_complex(b), length(a)};
}

template <record V> constexpr scalar<V> mean_spacing(const V* a, const V* b) noexcept {
  return (a->delta + b->delta) * scalar<V>(0.5);
}

// Sizes out in its new shape, keeping the contents of the old form when it shares storage with an operand.
// Storage that out owns may move as it grows, so such an operand is found there again; a lent buffer stays as
// it was, and the operand is still read from it, whole, whatever the new shape keeps.
template <record V, class Fill>
[[gnu::noinline, gnu::cold]] status grow_and_fill(operands<V> in, V* out, std::int32_t old_complex,
                                                  Fill fill) noexcept {
  const bool is_a = out->data == in.a;
  const bool is_b = out->data == in.b;
  const bool owned = out->alloc > 0;
  const status sized =
      is_a || is_b ? reallocate(out, static_cast<std::uint32_t>(in.points), old_complex) : allocate(out);
  if (sized != ok) return failed;
  if (owned && is_a) in.a = out->data;
  if (owned && is_b) in.b = out->data;
  return fill(in);
}

// Shapes out, its delta set by the caller, sizes it, and fills it by fill(operands), which returns a status.
// All but the growth is inlined and ends in the call of a walk: a short operation neither waits for anything
// that comes back through memory nor saves a register.
template <record V, class Fill>
[[gnu::always_inline]] inline status fill_result(const V* a, const V* b, V* out, index points, bool complex,
                                                 Fill fill) noexcept {
  const operands<V> in = operands_of(a, b);
  const std::int32_t a_complex = a->complex;
  const std::int32_t b_complex = b->complex;
  out->complex = complex ? 1 : 0;
  out->points = static_cast<std::uint32_t>(points);
  if (fits(out)) [[likely]]
    return fill(in);
  const bool is_complex_a = out->data == in.a && in.a_complex;
  const bool is_b = out->data == in.b;
  const operands<V> whole{in.a, in.b, in.a_complex, in.b_complex, in.points};  // `in` stays in registers
  return grow_and_fill(whole, out, is_complex_a ? a_complex : is_b ? b_complex : 0, fill);
}

// The common preparation: refuses operands of different lengths; otherwise out gets the mean spacing, the
// points, and the form given.
template <record V, class Fill>
[[gnu::always_inline]] inline status prepare(const V* a, const V* b, V* out, bool complex,
                                             Fill fill) noexcept {
  if (a->points != b->points) return failed;
  out->delta = mean_spacing(a, b);
  return fill_result(a, b, out, length(a), complex, fill);
}

}  // namespace sigpak
