// SPDX-License-Identifier: MIT
// What the transform of long real data knows in advance, that goes by a complex one of half the length.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

// Vectors of w_N^k, k < N / 4, are products: of the first of `fine_vectors`, and of each of those to it.
inline constexpr int fine_vectors = 16;

template <class T> struct half_plan {
  std::int64_t points;  // N
  int lanes;
  T scale;    // of the forward transform
  T* coarse;  // w_N^k, k the first of fine_vectors
  T* fine;    // vectors of w_N^p, p < W fine_vectors
};

// Whether N points, a power of two, are better transformed so: where what the passes between data and scratch
// memory fetch has left the second cache, and the transform of half the length does without.
template <class T> bool suits_half(std::int64_t points, int lanes) noexcept;

// The plan that is there already; a new one, kept until the release. Null where there is none yet, and on
// failure.
template <class T> const half_plan<T>* find_half_plan(std::int64_t points, int lanes) noexcept;
template <class T> const half_plan<T>* make_half_plan(std::int64_t points, int lanes) noexcept;
template <class T> void release_half_plans() noexcept;

}  // namespace sigpak::kernels
