// SPDX-License-Identifier: MIT
// The split-radix transform with its tables: fetched first, so that a failure comes before the data change.
#pragma once

#include "core/power_of_two.h"
#include "fft/baseline/bit_reversal.h"
#include "fft/baseline/twiddles.h"

namespace sigpak {

// Where a block of one length finds its twiddles: every stride-th group of a table.
template <class T> struct rung {
  const T* groups = nullptr;
  index stride = 0;
};

// One rung per block length of a transform. Blocks that fit the first cache share one table; larger ones have
// a table each, because a large table at a large stride would miss the cache at every group.
template <class T> class ladder {
 public:
  status climb(index points) noexcept {
    if (points < 4) return ok;
    const index shared = points < cached ? points : cached;
    const T* const common = twiddles<T>(shared);
    if (common == nullptr) return failed;
    for (index block = shared; block >= 4; block /= 2) rungs_[address_bits(block)] = {common, shared / block};
    for (index block = 2 * shared; block <= points; block *= 2) {
      const T* const own = twiddles<T>(block);
      if (own == nullptr) return failed;
      rungs_[address_bits(block)] = {own, 1};
    }
    return ok;
  }
  rung<T> at(index block) const noexcept { return rungs_[address_bits(block)]; }

 private:
  static constexpr index cached = 1024;
  rung<T> rungs_[32];
};

template <class T> class split_radix {
 public:
  // points a power of two, at least 2.
  status prepare(index points, bool inverse) noexcept;

  // In place, natural order in and out, interleaved complex data.
  void run(T* data) const noexcept;

 private:
  index points_ = 0;
  bool inverse_ = false;
  ladder<T> twiddle_;
  bit_reversal<T> order_;  // scales the forward transform
};

// The whole of it: points a power of two, at least 2.
template <class T> status split_radix_transform(T* data, index points, bool inverse) noexcept {
  split_radix<T> plan;
  if (plan.prepare(points, inverse) != ok) return failed;
  plan.run(data);
  return ok;
}

}  // namespace sigpak
