// SPDX-License-Identifier: MIT
// Complex samples as values, and the one complex product.
#pragma once

#include "core/record.h"

namespace sigpak {

template <class T> struct point {
  T re;
  T im;
};
template <class T> point(T, T) -> point<T>;

template <class T> constexpr point<T> as_point(T x) noexcept { return {x, 0}; }
template <class T> constexpr point<T> as_point(point<T> z) noexcept { return z; }

template <class T> constexpr point<T> point_at(const T* z, index i) noexcept {
  return {z[2 * i], z[2 * i + 1]};
}

template <class T> constexpr void put_point(T* z, index i, point<T> value) noexcept {
  z[2 * i] = value.re;
  z[2 * i + 1] = value.im;
}

template <class T> constexpr point<T> operator+(point<T> a, point<T> b) noexcept {
  return {a.re + b.re, a.im + b.im};
}

template <class T> constexpr point<T> conjugate(point<T> a) noexcept { return {a.re, -a.im}; }

// a * b. Written with the sign on an operand: the same bits as a difference and a sum side by side, which
// g++ 12 turns into fused multiply-add-subtract where the processor has it, contraction switched off or not.
template <class T> constexpr point<T> product(point<T> a, point<T> b) noexcept {
  return {a.re * b.re + (-a.im) * b.im, a.re * b.im + a.im * b.re};
}

template <class T> constexpr point<T> product(point<T> a, T b) noexcept { return {a.re * b, a.im * b}; }
template <class T> constexpr point<T> product(T a, point<T> b) noexcept { return product(b, a); }
template <class T> constexpr T product(T a, T b) noexcept { return a * b; }

}  // namespace sigpak
