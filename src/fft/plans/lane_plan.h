// SPDX-License-Identifier: MIT
// What the wide transform of a power of two knows in advance.
//
// With W lanes and M = N / W, n = W i + l and k = kb + M k':
//   X[k] = sum over l of w_W^(l k') w_N^(l kb) Y_l[kb],  Y_l = the M-point transform over i of lane l,
// w_R = exp(-2 pi i / R).
#pragma once

#include "fft/plans/pass_plan.h"

namespace sigpak::kernels {

template <class T> struct lane_plan : pass_plan<T> {
  std::int64_t points;  // N
  T scale;   // of the forward transform, applied to its results: the sums of tiny data keep every
             // digit that the results have room for
  T* last;   // vectors of twiddles w_N^(l kb) of the transform over the lanes, in the order of the places
  T* steps;  // where this is not null, `last` has the first output of each butterfly of the last pass alone,
             // and these are the twiddles from that output to the others
  bool collected;  // the last transform collects its output
  bool streamed;   // and writes it past the caches
  // Of groups of W / 2 vectors, kb the first of a group: from the vector of kb to that of kb + p, and the
  // place of kb.
  std::int64_t offset[most_lanes];
  std::uint32_t* start;
};

// From which lengths on the output of the last transform is collected in the first cache: `crowded` points
// where the lanes are more than the ways of that cache, `collected` bytes elsewhere. From `streamed` bytes on
// it is written past the caches: the third does not hold data, scratch memory and tables together any more.
// Variables, so that a test reaches all of this with short data; to be set before the first plan of a length,
// of 2^11 points at least.
struct long_lengths {
  std::int64_t crowded, collected, streamed;
};
extern constinit long_lengths long_from;

// The plan of N = points, both powers of two, N at least lanes^2; kept until the release.
// The one that is there already; a new one. Null where there is none yet, and on failure.
template <class T> const lane_plan<T>* find_lane_plan(std::int64_t points, int lanes) noexcept;
template <class T> const lane_plan<T>* make_lane_plan(std::int64_t points, int lanes) noexcept;
template <class T> void release_lane_plans() noexcept;

}  // namespace sigpak::kernels
