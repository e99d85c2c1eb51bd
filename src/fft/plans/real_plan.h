// SPDX-License-Identifier: MIT
// What the wide transform of real data knows in advance.
//
// The lanes hold M-point transforms of real data, M = N / W, packed into H = M / 2 vectors, which is what
// `vectors` counts here.
#pragma once

#include "fft/plans/pass_plan.h"

namespace sigpak::kernels {

template <class T> struct real_plan : pass_plan<T> {
  std::int64_t points;  // N
  T scale;              // of the forward transform
  T* last;              // vectors of twiddles w_N^(l kb) of the transform over the lanes, by groups of W
  T* unpack;            // broadcast w_M^k, k < H
  std::int64_t offset[most_lanes];  // of the vector of kb + p from that of kb, kb the first of a group
  std::uint32_t* start;             // place of the vector of kb, the first of a group
  std::uint32_t* result;  // by place of a butterfly of the last pass: the number of its first output
};

// The plan of N = points, both powers of two, N at least 2 lanes^2; kept until the release.
// The one that is there already; a new one. Null where there is none yet, and on failure.
template <class T> const real_plan<T>* find_real_plan(std::int64_t points, int lanes) noexcept;
template <class T> const real_plan<T>* make_real_plan(std::int64_t points, int lanes) noexcept;
template <class T> void release_real_plans() noexcept;

}  // namespace sigpak::kernels
