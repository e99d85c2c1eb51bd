// The result record of an operation on two records.
#pragma once

#include <optional>

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

// Sizes out, its delta set by the caller: afresh, or keeping the contents when it shares storage with an
// operand. Storage that out owns may move as it grows, so such an operand is found there again; a lent buffer
// stays as it was, and the operand is still read from it, whole, whatever the new shape keeps. Inlined, so
// that a short operation does not wait for the operands to come back through memory.
template <record V>
[[gnu::always_inline]] inline std::optional<operands<V>> resize_result(const V* a, const V* b, V* out,
                                                                       index points, bool complex) noexcept {
  operands<V> in = operands_of(a, b);
  const bool is_a = out->data == a->data;
  const bool is_b = out->data == b->data;
  const bool owned = out->alloc > 0;
  const std::int32_t old_complex = is_a && a->complex != 0 ? a->complex : is_b ? b->complex : 0;
  out->complex = complex ? 1 : 0;
  out->points = static_cast<std::uint32_t>(points);
  const status sized =
      is_a || is_b ? reallocate(out, static_cast<std::uint32_t>(in.points), old_complex) : allocate(out);
  if (sized != ok) return std::nullopt;
  if (owned && is_a) in.a = out->data;
  if (owned && is_b) in.b = out->data;
  return in;
}

// The common preparation: refuses operands of different lengths; otherwise out gets the mean spacing, the
// points, and the form given.
template <record V>
[[gnu::always_inline]] inline std::optional<operands<V>> prepare(const V* a, const V* b, V* out,
                                                                 bool complex) noexcept {
  if (a->points != b->points) return std::nullopt;
  out->delta = mean_spacing(a, b);
  return resize_result(a, b, out, length(a), complex);
}

}  // namespace sigpak
