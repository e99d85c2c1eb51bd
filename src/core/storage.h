// SPDX-License-Identifier: MIT
// A record's storage: creating, sizing, growing, releasing.
#pragma once

#include "core/record.h"

namespace sigpak {

template <record V> void initialise(V* v) noexcept;
template <record V> status destroy(V* v) noexcept;

// The capacity suffices for points and complex as set, and nothing has to be sized.
template <record V> constexpr bool fits(const V* v) noexcept {
  const index need = static_cast<index>(v->points) * width(v);
  return need <= v->alloc || need == 0;
}

template <record V> status replace_storage(V* v) noexcept;
template <record V> status extend_storage(V* v, std::uint32_t old_points, std::int32_t old_complex) noexcept;

// Capacity for points and complex as set; the old contents are not kept.
template <record V> status allocate(V* v) noexcept {
  if (fits(v)) [[likely]]
    return ok;
  return replace_storage(v);
}

// Capacity for points and complex as set; keeps the contents of the shape given.
template <record V> status reallocate(V* v, std::uint32_t old_points, std::int32_t old_complex) noexcept {
  if (fits(v)) [[likely]]
    return ok;
  return extend_storage(v, old_points, old_complex);
}

// Sets the shape and grows the storage, keeping the contents of the shape that the record had.
template <record V> status reshape(V* v, index points, bool complex) noexcept;

// Lengthens to n points by appending zeros; never shortens.
template <record V> status pad(V* v, index n) noexcept;

// Reals to points in place, x to (x, 0), and back to the real parts.
template <class T> void widen(T* data, index points) noexcept;
template <class T> void narrow(T* data, index points) noexcept;

// Real to complex in place, x to (x, 0); sets the flag of an empty record too.
template <record V> status to_complex(V* v) noexcept;

// A record that lives as long as its scope.
template <record V> class temporary : public V {
 public:
  temporary() noexcept { initialise<V>(this); }
  ~temporary() { destroy<V>(this); }
  temporary(const temporary&) = delete;
  temporary& operator=(const temporary&) = delete;
};

}  // namespace sigpak
