// The walk of every operation that combines two records point by point.
#pragma once

#include "core/each.h"
#include "core/isa.h"
#include "core/product.h"
#include "elementwise/prepare.h"

namespace sigpak {

// Samples read and written by point, as scalars or as complex values.
template <class T> struct real_points {
  static constexpr index width = 1;
  T* data;
  T get(index i) const noexcept { return data[i]; }
  void put(index i, std::remove_const_t<T> value) const noexcept { data[i] = value; }
};

template <class T> struct complex_points {
  static constexpr index width = 2;
  T* data;
  auto get(index i) const noexcept { return point_at<std::remove_const_t<T>>(data, i); }
  void put(index i, point<std::remove_const_t<T>> value) const noexcept { put_point(data, i, value); }
};

template <class T> real_points(T*) -> real_points<T>;
template <class T> complex_points(T*) -> complex_points<T>;

// out[i] = f(a[i], b[i]) from the first point to the last: out is apart from the operands, or in step with
// them.
template <class A, class B, class Out, class F>
void combine_forwards(A a, B b, Out out, index points, F f) noexcept {
  isa::run(points,
           [=] { each<Out::width>(out.data, points, [=](index i) { out.put(i, f(a.get(i), b.get(i))); }); });
}

// The same from the last point to the first: out may hold an operand of narrower points at its start.
template <class A, class B, class Out, class F>
void combine_backwards(A a, B b, Out out, index points, F f) noexcept {
  isa::run(points, [=] {
    for (index i = points - 1; i >= 0; --i) out.put(i, f(a.get(i), b.get(i)));
  });
}

// A real operand beside a complex one; `narrow` is its storage.
template <class A, class B, class T, class F>
void combine_mixed(A a, B b, const T* narrow, T* out, index points, F f) noexcept {
  if (narrow == out) {
    combine_backwards(a, b, complex_points{out}, points, f);
  } else {
    combine_forwards(a, b, complex_points{out}, points, f);
  }
}

// Prepares out and fills it with f(a, b), which takes scalars and complex values in every pairing.
template <record V, class F> status combine(const V* a, const V* b, V* out, F f) noexcept {
  const auto in = prepare(a, b, out, is_complex(a) || is_complex(b));
  if (!in) return failed;
  scalar<V>* const to = out->data;
  if (in->a_complex && in->b_complex) {
    combine_forwards(complex_points{in->a}, complex_points{in->b}, complex_points{to}, in->points, f);
  } else if (in->a_complex) {
    combine_mixed(complex_points{in->a}, real_points{in->b}, in->b, to, in->points, f);
  } else if (in->b_complex) {
    combine_mixed(real_points{in->a}, complex_points{in->b}, in->a, to, in->points, f);
  } else {
    combine_forwards(real_points{in->a}, real_points{in->b}, real_points{to}, in->points, f);
  }
  return ok;
}

}  // namespace sigpak
