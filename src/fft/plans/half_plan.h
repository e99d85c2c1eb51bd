// SPDX-License-Identifier: MIT
// What the transform of real data knows in advance, that goes by a complex one of half the length.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

// The roots w_N^k, 0 < k <= N / 8, lie there as interleaved points; of data that leave the second cache they
// are products, so as not to be fetched too: of the root in front of a run, and of those of the first run.
template <class T> struct half_plan {
  std::int64_t points;  // N
  int lanes;
  bool suits_forward;  // by the prices of the passes; where not, real data go by the lanes
  bool suits_inverse;
  T scale;            // of the forward transform
  std::int64_t run;   // roots in a run
  std::int64_t runs;  // 1 where they all lie there, 0 where neither way suits
  T* coarse;          // w_N^k, k in front of a run, where there are several
  T* fine;            // w_N^k of the first run
};

// The plan that is there already; a new one of N points, half of them at least lanes^2, kept until the
// release. Null where there is none yet, and on failure.
template <class T> const half_plan<T>* find_half_plan(std::int64_t points, int lanes) noexcept;
template <class T> const half_plan<T>* make_half_plan(std::int64_t points, int lanes) noexcept;
template <class T> void release_half_plans() noexcept;

}  // namespace sigpak::kernels
