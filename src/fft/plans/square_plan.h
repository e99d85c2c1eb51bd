// SPDX-License-Identifier: MIT
// What the transform of a length with a square factor knows in advance, which needs scratch memory for a part
// of the data alone.
//
// N = A M A. A-point transforms of the columns, in place, leave A blocks k1 of M A points, which are
// transforms of their own: of M rows of A points l each, like those of products. Their passes over the rows
// leave, by way of scratch memory for one block, row kb in its place,
//   X[k1 + A (kb + M k2)] = sum over l of w_A^(l k2) w_(M A)^(l kb) y[k1][kb][l],
// so that the rows kb of all blocks are a square of A by A points, whose results take its place.
#pragma once

#include "fft/plans/product_plan.h"

namespace sigpak::kernels {

// Vectors of neighbouring columns that share the first one's twiddles.
inline constexpr int columns_of_step = 4;

template <class T> struct square_plan {
  std::int64_t points;  // N
  T scale;              // of the forward transform, and what it lacks, as of products
  T scale_rest;
  product_plan<T> block;  // of M A points, of which the passes over the rows are taken
  T* firsts;              // w_N^(n' k1), k1 from 1 on within the first columns n': cosine and sine alternate
  T* steps;               // pairs of vectors of the steps from there, k1 within numbers of vectors
  T* turns;               // w_(M A)^(l kb), l within kb
};

template <class T> constexpr std::int64_t scratch_of(const square_plan<T>& plan) noexcept {
  return scratch_of(plan.block);
}

// Whether the current level has a plan for the length, and the cycles that its transform takes, by a search.
template <class T> bool has_square_plan(std::int64_t points) noexcept;
template <class T> double square_cost(std::int64_t points) noexcept;

// The plan of the current level that is in the list already; a new one, made into it. Null where there is
// none yet, and on failure.
template <class T> const square_plan<T>* find_square_plan(recent_list& plans, std::int64_t points) noexcept;
template <class T> const square_plan<T>* make_square_plan(recent_list& plans, std::int64_t points) noexcept;

}  // namespace sigpak::kernels
