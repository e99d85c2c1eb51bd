// SPDX-License-Identifier: MIT
// What the transform of a product of short lengths knows in advance.
//
// N = A M, n = M n1 + n2, k = k1 + A k2:
//   X[k] = sum over n2 of w_M^(n2 k2) w_N^(n2 k1) (sum over n1 of w_A^(n1 k1) x[n]).
// The first pass has neighbouring n2 in the lanes and leaves, transposed, rows n2 of the A points k1. The
// passes over the rows, M-point transforms by decimation in frequency, have neighbouring k1 there. All points
// stay interleaved.
#pragma once

#include "fft/plans/pass_plan.h"

namespace sigpak {
class recent_list;
}

namespace sigpak::kernels {

inline constexpr int most_factors = 6;
inline constexpr int most_radix = 25;

template <class T> struct product_plan {
  std::int64_t points;  // N
  int lanes;            // scalars of a vector
  int passes;           // at least two
  int radix[most_factors];
  std::int64_t rows;                 // M
  std::int64_t block[most_factors];  // rows of one block of a pass after the first
  std::int64_t stride;               // points from one row of the scratch memory to the next
  T scale;                           // of the forward transform
  T scale_rest;  // 1/N less the scale, above 0 in single precision, where it is a tenth of all errors
  std::int64_t resident;  // rows that the first cache holds
  T* twiddles;      // vectors of w_N^(n2 k1), k1 from 1 on within groups of n2: cosine and sine alternate
  bool is_stepped;  // data, scratch memory and twiddles would leave the second cache:
  T* firsts;        // those of the first n2 of each group, and `twiddles` has the steps from there alone
  T* terms[most_factors];  // of passes over long primes: the cosines and sines of their transforms
  T* turns[most_factors];  // of the passes between first and last: w_L^(i j), i the butterfly, j its output
  std::uint32_t* order;    // by block of the last pass: its first k2
};

// Scalars of scratch memory.
template <class T> constexpr std::int64_t scratch_of(const product_plan<T>& plan) noexcept {
  return 2 * plan.stride * plan.rows;
}

// Whether the current level has a plan for the length, and the cycles that its transform takes. The second
// takes a search.
template <class T> bool has_product_plan(std::int64_t points) noexcept;
template <class T> double product_cost(std::int64_t points) noexcept;

// The plan of the current level that is in the list already; a new one, made into it. Null where there is
// none yet, and on failure.
template <class T> const product_plan<T>* find_product_plan(recent_list& plans, std::int64_t points) noexcept;
template <class T> const product_plan<T>* make_product_plan(recent_list& plans, std::int64_t points) noexcept;

// Those of short lengths are few and small: published, they stay until the release.
inline constexpr std::int64_t most_short_product = 512;
template <class T> const product_plan<T>* find_short_product_plan(std::int64_t points) noexcept;
template <class T> const product_plan<T>* make_short_product_plan(std::int64_t points) noexcept;
template <class T> void release_short_product_plans() noexcept;

}  // namespace sigpak::kernels
