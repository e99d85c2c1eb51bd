// What the wide transform of a power of two knows in advance.
//
// With W lanes and M = N / W, n = W i + l and k = kb + M k':
//   X[k] = sum over l of w_W^(l k') w_N^(l kb) Y_l[kb],  Y_l = the M-point transform over i of lane l,
// w_R = exp(-2 pi i / R).
#pragma once

#include "fft/plans/pass_plan.h"

namespace sigpak::kernels {

template <class T> struct lane_plan : pass_plan<T> {
  std::ptrdiff_t points;  // N
  T scale;   // of the forward transform, applied to its results: the sums of tiny data keep every
             // digit that the results have room for
  T* last;   // vectors of twiddles w_N^(l kb) of the transform over the lanes, in the order of the places
  T* steps;  // where this is not null, `last` has the first output of each butterfly of the last pass alone,
             // and these are the twiddles from that output to the others
  bool collected;  // the last transform collects its output
  bool streamed;   // and writes it past the caches
  std::ptrdiff_t
      offset[most_lanes];  // of the vector of kb + p from that of kb, kb the first of a group of W / 2
  std::uint32_t* start;    // place of the vector of kb, the first of a group
};

// From where on the output is collected, in points where the lanes are more than the ways of the first cache,
// else in bytes, and in bytes from where on it is streamed past the caches, of which the third then does not
// hold data, scratch memory and tables. Variables so that a test can reach both with short data, before the
// first plan of its length; 2^11 points is the least.
struct long_lengths {
  std::ptrdiff_t crowded, collected, streamed;
};
extern constinit long_lengths long_from;

// The plan of N = points, both powers of two, N at least lanes^2; kept until the release. Null on failure.
template <class T> const lane_plan<T>* find_lane_plan(std::ptrdiff_t points, int lanes) noexcept;
template <class T> void release_lane_plans() noexcept;

}  // namespace sigpak::kernels
