// SPDX-License-Identifier: MIT
// Workers of the element-wise family that other families call.
#pragma once

#include "core/record.h"

namespace sigpak {

// In place.
template <record V> status scale(V* v, scalar<V> factor) noexcept;
template <record V> status reciprocate(V* v) noexcept;
template <record V> status take_logarithm(V* v) noexcept;
template <record V> status exponentiate(V* v) noexcept;
template <record V> status keep_real(V* v) noexcept;

// I0, the modified Bessel function of the first kind of order 0; finite for |x| <= 700 in double.
double bessel_i0(double x) noexcept;
float bessel_i0(float x) noexcept;

// Two records into a third, which may be one of them.
template <record V> status multiply(const V* a, const V* b, V* out) noexcept;
// v[i] *= factors[i], the spacing stays. A lent record moves to storage of its own.
template <record V> status multiply_by_reals(V* v, const scalar<V>* factors) noexcept;
// a[i] *= b[i] on plain memory, scalars per point given: reals by reals, pairs by reals or pairs.
template <class T>
void multiply_in_place(T* a, index a_width, const T* b, index b_width, index points) noexcept;
template <record V> status add_weighted(const V* a, const V* b, V* out, scalar<V> weight) noexcept;
template <record V> status take_minimum(const V* a, const V* b, V* out) noexcept;
template <record V> status take_maximum(const V* a, const V* b, V* out) noexcept;

// One record into another.
template <record V> status square_magnitude(const V* in, V* out) noexcept;

}  // namespace sigpak
