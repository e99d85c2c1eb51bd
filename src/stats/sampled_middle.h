// SPDX-License-Identifier: MIT
// The points in the middle of many, found by samples of them.
#pragma once

#include <optional>

#include "core/record.h"
#include "shape/shape.h"

namespace sigpak {

// The points of the ranks (n - 1) / 2 and n / 2; the same one where n is odd.
template <class T> struct middle_pair {
  T before;
  T middle;
};

// The number of this rank, zero with its sign: the order puts -0 before 0.
template <class T> T signed_of_rank(T value, const T* x, index points, index rank) noexcept {
  if (value != 0) return value;
  return rank < count_negative(x, points) ? -T(0) : T(0);
}
template <class T> middle_pair<T> signed_pair(middle_pair<T> found, const T* x, index points) noexcept {
  return {signed_of_rank(found.before, x, points, (points - 1) / 2),
          signed_of_rank(found.middle, x, points, points / 2)};
}

// So many points that it pays.
template <class T> index worth_sampling() noexcept;

// Scalars of scratch memory for so many points.
index room_for_samples(index points) noexcept;

// Nothing where NaN are met, or the points are so strange that their samples tell little.
template <class T>
std::optional<middle_pair<T>> find_middle_by_samples(const T* x, index points, T* room) noexcept;

}  // namespace sigpak
