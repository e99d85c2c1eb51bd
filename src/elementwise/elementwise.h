// Workers of the element-wise family that other families call.
#pragma once

#include "core/record.h"

namespace sigpak {

// In place.
template <record V> status scale(V* v, scalar<V> factor) noexcept;
template <record V> status negate(V* v) noexcept;
template <record V> status reciprocate(V* v) noexcept;
template <record V> status take_logarithm(V* v) noexcept;
template <record V> status exponentiate(V* v) noexcept;
template <record V> status keep_real(V* v) noexcept;
template <record V> status keep_imaginary(V* v) noexcept;
template <record V> status conjugate(V* v) noexcept;
template <record V> status multiply_by_i(V* v) noexcept;
template <record V> status take_phase(V* v) noexcept;
template <record V> status to_polar(V* v) noexcept;
template <record V> status to_rectangular(V* v) noexcept;
template <record V> status unwrap(V* v) noexcept;
template <record V> status take_magnitude(V* v) noexcept;
template <record V> status square_magnitude(V* v) noexcept;

// I0, the modified Bessel function of the first kind of order 0; finite for |x| <= 700 in double.
double bessel_i0(double x) noexcept;
float bessel_i0(float x) noexcept;

// Two records into a third, which may be one of them.
template <record V> status add(const V* a, const V* b, V* out) noexcept;
template <record V> status subtract(const V* a, const V* b, V* out) noexcept;
template <record V> status multiply(const V* a, const V* b, V* out) noexcept;
// v[i] *= factors[i], the spacing stays. A lent record moves to storage of its own.
template <record V> status multiply_by_reals(V* v, const scalar<V>* factors) noexcept;
// a[i] *= b[i] on plain memory, scalars per point given: reals by reals, pairs by reals or pairs.
template <class T>
void multiply_in_place(T* a, index a_width, const T* b, index b_width, index points) noexcept;
template <record V> status multiply_conjugate(const V* a, const V* b, V* out) noexcept;
template <record V> status divide(const V* a, const V* b, V* out) noexcept;
template <record V> status add_weighted(const V* a, const V* b, V* out, scalar<V> weight) noexcept;
template <record V> status take_minimum(const V* a, const V* b, V* out) noexcept;
template <record V> status take_maximum(const V* a, const V* b, V* out) noexcept;
template <record V> status join_parts(const V* re, const V* im, V* out) noexcept;
template <record V> status interleave(const V* a, const V* b, V* out) noexcept;
template <record V> status dot(const V* a, const V* b, V* out) noexcept;
template <record V> status multiply_polynomials(const V* a, const V* b, V* out) noexcept;

// One record into another.
template <record V> status take_magnitude(const V* in, V* out) noexcept;
template <record V> status square_magnitude(const V* in, V* out) noexcept;
template <record V> status take_square_roots(const V* in, V* out) noexcept;

}  // namespace sigpak
