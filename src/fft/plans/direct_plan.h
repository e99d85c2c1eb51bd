// SPDX-License-Identifier: MIT
// What the transform by the definition knows in advance: of a prime, and of twice and three times a prime.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

inline constexpr int most_direct_prime = 101;
inline constexpr int most_direct_columns = 3;
inline constexpr int most_direct_points = most_direct_columns * most_direct_prime;

// N = A p. The A-point transforms of the points n = p n1 + A n2 leave as many columns of p points n2, of
// which k1 has the results k = k1 mod A (I. J. Good, as in wide/butterflies_composite.h).
template <class T> struct direct_plan {
  int length;    // p
  int columns;   // A
  T scale;       // of the forward transform
  T scale_rest;  // 1/N less the scale, above 0
  // By vectors of k from 1 on, and then by j, the cosines and sines of 2 pi j k / p. The k are in the lanes
  // in the order of point_at.
  T* table;
};

// Whether a length is one of those. The plan of the current level, which stays until the release: the one
// that is there already; a new one. Null where there is none yet, and on failure.
bool has_direct_plan(std::int64_t points) noexcept;
template <class T> const direct_plan<T>* find_direct_plan(std::int64_t points) noexcept;
template <class T> const direct_plan<T>* make_direct_plan(std::int64_t points) noexcept;
template <class T> void release_direct_plans() noexcept;

}  // namespace sigpak::kernels
