// SPDX-License-Identifier: MIT
// What the wide transform of a power of two knows in advance.
//
// With W lanes and M = N / W, n = W i + l and k = kb + M k':
//   X[k] = sum over l of w_W^(l k') w_N^(l kb) Y_l[kb],  Y_l = the M-point transform over i of lane l,
// w_R = exp(-2 pi i / R).
#pragma once

#include "core/machine.h"
#include "fft/plans/pass_plan.h"

namespace sigpak::kernels {

// Where the passes work, and how the transform over the lanes writes its output.
enum class course {
  direct,     // in scratch memory, from there as the output comes
  collected,  // in scratch memory, from there by runs that the first cache collects
  by_blocks,  // in the data, one block of the first pass at a time by way of scratch memory
  in_place    // in the data, where columns change places
};

struct lane_choice {
  radix_list radices;
  course at_line;    // for data whose vectors lie within lines of the caches
  course elsewhere;  // for all others
  double cost;       // at a line, per vector
};

template <class T> struct lane_plan : pass_plan<T> {
  std::int64_t points;  // N
  T scale;              // of the forward transform, applied to its results: the sums of tiny data keep every
                        // digit that the results have room for
  T* last;   // vectors of twiddles w_N^(l kb) of the transform over the lanes, in the order of the places
  T* steps;  // where the plan is stepped, `last` has the first output of each butterfly of the last pass
             // alone, and these are the twiddles from that output to the others
  bool is_stepped;
  course at_line;
  course elsewhere;
  // Of groups of W / 2 vectors, kb the first of a group: from the vector of kb to that of kb + p, and the
  // place of kb.
  std::int64_t offset[most_lanes];
  std::uint32_t* start;
  // Where columns form pairs, c = a + A (m + B b) goes to the place of b + A (mirror[m] + B a) and back.
  std::int64_t square;  // A
  std::int64_t middle;  // B; 0 where they do not
  std::uint32_t* mirror;
  // Within a block of the first pass, by number of a butterfly of the last one, its first output; null of a
  // single pass.
  std::uint32_t* order;
};

// Vectors that begin at a multiple of their size are not split, wherever the line of the first begins.
template <class T>
[[gnu::always_inline]] inline course course_of(const lane_plan<T>& plan, const T* x) noexcept {
  const auto vector = static_cast<std::uintptr_t>(plan.lanes) * sizeof(T);
  return (reinterpret_cast<std::uintptr_t>(x) & (vector - 1)) == 0 ? plan.at_line : plan.elsewhere;
}

// Vectors of scratch memory for a course.
template <class T> std::int64_t scratch_vectors(const lane_plan<T>& plan, course way) noexcept {
  if (way == course::in_place) return 0;
  return way == course::by_blocks ? plan.block[1] : plan.stride * plan.radix[0];
}

// What suits N = points, both powers of two, and the caches of the machine: with these radices, and with the
// best.
template <class T> lane_choice choice_of(const radix_list& list, std::int64_t points, int lanes) noexcept;
template <class T> lane_choice choose_lanes(std::int64_t points, int lanes) noexcept;

// A column is the W vectors that give the bins kb + M k' of W neighbouring kb. Where the first pass has W
// outputs and the radices behind it, two at least, read the same backwards, it lies where the column of other
// kb has to go, and the other way round.
bool pairs_columns(const radix_list& list, int lanes) noexcept;

// The plan of N = points, both powers of two, N at least lanes^2; kept until the release.
// The one that is there already; a new one. Null where there is none yet, and on failure.
template <class T> const lane_plan<T>* find_lane_plan(std::int64_t points, int lanes) noexcept;
template <class T>
const lane_plan<T>* make_lane_plan(std::int64_t points, int lanes, const lane_choice& choice) noexcept;
template <class T> void release_lane_plans() noexcept;

}  // namespace sigpak::kernels
