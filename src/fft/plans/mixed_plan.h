// SPDX-License-Identifier: MIT
// What the wide transform of a length without large prime factors knows in advance: N = A B points by A-point
// transforms of the columns and B-point transforms of the rows.
#pragma once

#include <algorithm>

#include "fft/plans/pass_plan.h"

namespace sigpak {
class recent_list;
}

namespace sigpak::kernels {

template <class T> struct mixed_plan {
  std::int64_t points;  // N
  int lanes;
  T scale;               // of the forward transform
  pass_plan<T> columns;  // A vectors
  pass_plan<T> rows;     // B vectors
  std::uint32_t* place;  // of every output of the transform of a column
  std::uint32_t*
      result;       // by place of a butterfly of the last pass over a row: the number of its first output
  T* twiddles;      // vectors of w_N^(n2 k1), k1 within groups of n2
  bool is_stepped;  // data, scratch memory and twiddles would leave the second cache:
  T* steps;         // `twiddles` has the first group alone, and these are the steps from it, k1 within groups
};

// Scalars of scratch memory.
template <class T> constexpr std::int64_t scratch_of(const mixed_plan<T>& plan) noexcept {
  const std::int64_t a = plan.columns.vectors;
  const std::int64_t b = plan.rows.vectors;
  const std::int64_t row_groups = (a + plan.lanes - 1) / plan.lanes;
  return 2 * plan.lanes * (row_groups * b + std::max(a, b));
}

// Whether there is a plan for the length, with so many lanes, and the cycles that its transform takes, as the
// costs of products count them. The second takes a search.
template <class T> bool has_mixed_plan(std::int64_t points, int lanes) noexcept;
template <class T> double mixed_cost(std::int64_t points, int lanes) noexcept;

// The one that is in the list already; a new one, made into it. Null where there is none yet, and on failure.
template <class T>
const mixed_plan<T>* find_mixed_plan(recent_list& plans, std::int64_t points, int lanes) noexcept;
template <class T>
const mixed_plan<T>* make_mixed_plan(recent_list& plans, std::int64_t points, int lanes) noexcept;

}  // namespace sigpak::kernels
