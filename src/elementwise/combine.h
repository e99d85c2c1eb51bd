// SPDX-License-Identifier: MIT
// The walk of every operation that combines two records point by point.
#pragma once

#include <algorithm>

#include "core/each.h"
#include "core/isa.h"
#include "core/machine.h"
#include "core/product.h"
#include "elementwise/prepare.h"
#include "kernels/points/points.h"
#include "vectors/levels.h"
#include "vectors/streaming.h"

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

// The points from `begin` on.
template <class Points> Points points_from(Points all, index begin) noexcept {
  return {all.data + begin * Points::width};
}

template <class A, class B, class Out, class F>
status combine_past_cache(A a, B b, Out out, index points, F f) noexcept;

// Functions that divide say so by a member of this name.
template <class F> inline constexpr bound limit_of = requires { F::divides; }
? bound::divider : bound::memory;

// out[i] = f(a[i], b[i]). An operand is apart from out, or in step with it, or of narrower points at its
// start. Returns what its callers do and stays a call, so that a caller is a few instructions.
template <class A, class B, class Out, class F>
[[gnu::noinline]] status combine_points(A a, B b, Out out, index points, F f) noexcept {
  if (points > isa::short_run && a.data != out.data && b.data != out.data &&
      worth_streaming(out.data, points * Out::width)) [[unlikely]] {
    return combine_past_cache(a, b, out, points, f);
  }
  if constexpr (A::width + B::width + Out::width == 6 && requires { f.kernel(out.data); }) {
    const auto wide = points > isa::short_run ? at_level(f.kernel(out.data)) : nullptr;
    if (wide != nullptr) return wide(a.data, b.data, out.data, points), ok;
  }
  isa::run(points, [=] {
    const auto put = [=](index i) { out.put(i, f(a.get(i), b.get(i))); };
    if constexpr (Out::width > A::width || Out::width > B::width) {
      const bool apart = a.data != out.data && b.data != out.data;
      each_from_end<Out::width>(out.data, points, put, apart);
    } else {
      each<Out::width, limit_of<F>>(out.data, points, put);
    }
  });
  return ok;
}

// The same by way of a piece that stays in the cache.
template <class A, class B, class Out, class F>
[[gnu::noinline]] status combine_past_cache(A a, B b, Out out, index points, F f) noexcept {
  using T = std::remove_pointer_t<decltype(Out::data)>;
  constexpr index most = streamed_piece<T> / Out::width;
  alignas(machine::line_bytes) T piece[most * Out::width];
  for (index begin = 0; begin < points; begin += most) {
    const index count = std::min(most, points - begin);
    call_for_next(points_from(a, begin).data, most * A::width);
    call_for_next(points_from(b, begin).data, most * B::width);
    combine_points(points_from(a, begin), points_from(b, begin), Out{piece}, count, f);
    stream(points_from(out, begin).data, piece, count * Out::width);
  }
  finish_streaming();
  return ok;
}

// Prepares out and fills it with f(a, b), which takes scalars and complex values in every pairing.
template <record V, class F>
[[gnu::always_inline]] inline status combine(const V* a, const V* b, V* out, F f) noexcept {
  return prepare(a, b, out, is_complex(a) || is_complex(b), [out, f](const operands<V>& in) {
    const complex_points za{in.a};
    const complex_points zb{in.b};
    const real_points xa{in.a};
    const real_points xb{in.b};
    const complex_points to{out->data};
    if (!in.a_complex && !in.b_complex) {
      return combine_points(xa, xb, real_points{out->data}, in.points, f);
    }
    if (!in.a_complex) return combine_points(xa, zb, to, in.points, f);
    if (!in.b_complex) return combine_points(za, xb, to, in.points, f);
    return combine_points(za, zb, to, in.points, f);
  });
}

}  // namespace sigpak
