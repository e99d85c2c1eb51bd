// SPDX-License-Identifier: MIT
// Workers of rearrangement that other families call.
#pragma once

#include "core/record.h"

namespace sigpak {

// Every scalar becomes 0.
template <record V> status zero(V* v) noexcept;

template <record V> status reverse(V* v) noexcept;

// Ascending; complex points by squared magnitude, then real part, then imaginary part.
template <record V> status sort(V* v) noexcept;

// Real numbers in that order: -0 before 0, NaN last.
template <class T> void sort_numbers(T* x, index n) noexcept;

// Puts the numbers of the ranks from `first` to before `end` in their places, those that are less before them
// and those that are greater behind. None is NaN, and the zeros are equal.
template <class T> void sort_ranks(T* x, index n, index first, index end) noexcept;

// Those whose sign is set, negative zeros among them.
template <class T> index count_negative(const T* x, index n) noexcept;

// Moves NaN to the end, whatever their sign; the count of the numbers before them.
template <class T> index put_numbers_first(T* x, index n) noexcept;

// Rotation by half the length, rounded down.
template <record V> status rotate_right_half(V* v) noexcept;
template <record V> status rotate_left_half(V* v) noexcept;

}  // namespace sigpak
