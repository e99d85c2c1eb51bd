// SPDX-License-Identifier: MIT
// Points on the unit circle at evenly spaced angles, by rotation from an exact angle at the head of every
// block.
#pragma once

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstring>

#include "core/blocks.h"
#include "core/kept_errno.h"
#include "core/machine.h"
#include "kernels/sweep.h"
#include "vectors/levels.h"

namespace sigpak {

// The angle of point i is i * step + phase.
struct sweep {
  double step;
  double phase;
};

inline double angle_of(sweep angle, index i) noexcept {
  return static_cast<double>(i) * angle.step + angle.phase;
}

struct phasor {
  double re;
  double im;
};

// Out of line: side by side, and wanted both, sine and cosine share their work.
[[gnu::noinline]] inline phasor phasor_at(double angle) noexcept {
  return {std::cos(angle), std::sin(angle)};
}

// put(i, cos, sin) for the points of one block from `first` on: z' = z * exp(i step).
template <class Put> void sweep_block(sweep angle, phasor turn, index first, index count, Put put) noexcept {
  auto [re, im] = phasor_at(angle_of(angle, first));
  for (index i = first; i < first + count; ++i) {
    put(i, re, im);
    const double next = re * turn.re - im * turn.im;
    im = re * turn.im + im * turn.re;
    re = next;
  }
}

// One kernel of the wide levels, and where it writes points of `width` scalars.
template <class T> struct swept {
  kernels::sweep<T> kernels::sweep_table<T>::*kernel;
  T* x;
  index width = 1;
  double amplitude = 1;
};

// The points from `first` to `end`, a block of them to a lane. The last one may be cut short. Lanes left over
// turn nothing, into the void.
template <class T>
void sweep_lanes(sweep angle, phasor turn, index first, index end, const swept<T>& to,
                 kernels::sweep<T> kernel) noexcept {
  static_assert(kernels::sweep_points == rotation_block);
  T spare[2 * rotation_block];
  T last[2 * rotation_block];
  kernels::sweep_start start = {.c = turn.re, .s = turn.im, .amplitude = to.amplitude};
  T* x[kernels::most_sweep_lanes];
  int lanes = 0;
  for (index begin = first; begin < end; begin += rotation_block, ++lanes) {
    const phasor z = phasor_at(angle_of(angle, begin));
    start.re[lanes] = z.re;
    start.im[lanes] = z.im;
    x[lanes] = to.x + begin * to.width;
  }
  const int all =
      lanes > kernels::most_sweep_lanes / 2 ? kernels::most_sweep_lanes : kernels::most_sweep_lanes / 2;
  if (lanes < all) {
    std::memset(spare, 0, sizeof spare);
    std::fill(x + lanes, x + all, &spare[0]);
  }
  T* const final_block = x[lanes - 1];
  const index left = to.x + end * to.width - final_block;
  const bool cut_short = left < rotation_block * to.width;
  if (cut_short) {
    std::memset(last, 0, sizeof last);
    std::copy_n(final_block, left, last);
    x[lanes - 1] = last;
  }
  kernel(start, x, lanes);
  if (cut_short) std::copy_n(last, left, final_block);
}

// How many of so many points make the next pass: of more than nine blocks sixteen, but not where blocks are
// as long as the ways of the cache, which holds the same place of eight.
template <class T> index points_of_pass(index points, index width) noexcept {
  constexpr index half = kernels::most_sweep_lanes / 2 * rotation_block;
  const bool wide =
      points > half + rotation_block && rotation_block * width * index{sizeof(T)} < machine::way_bytes;
  return std::min(points, wide ? 2 * half : half);
}

// Of how many points in a row every lane of a long record writes all: the processor foresees streams of some
// pages and writes them faster than single blocks. An odd number of blocks, so that the lanes do not meet in
// one place of the cache. None of a record that is shorter.
template <class T> index points_of_lane(index points, index width) noexcept {
  constexpr index least_blocks = 16;
  const index blocks = points / points_of_pass<T>(points, width);
  return blocks < least_blocks ? 0 : ((blocks - 1) | 1) * rotation_block;
}

// The blocks at the same place of every part. Their first points are found lane by lane, also while the
// kernel is at the blocks before, which has its own in registers.
struct blocks_of_parts {
  sweep angle;
  index part;
  int lanes;
  kernels::sweep_start start;
  index first = 0;
  int found = 0;

  void find(int end) noexcept {
    for (; found < end; ++found) {
      const phasor z = phasor_at(angle_of(angle, first + found * part));
      start.re[found] = z.re;
      start.im[found] = z.im;
    }
  }
  static void find_some(void* next) noexcept {
    auto& blocks = *static_cast<blocks_of_parts*>(next);
    blocks.find(blocks.found + blocks.lanes / kernels::meanwhiles);
  }
};

// Long parts, one to a lane; how many points they have together. Beyond the second cache, where single
// precision still waits for its arithmetic alone, the next blocks begin while lines are waited for; beyond
// the last one what is foreseen comes too late, and the next block of every lane is called for.
template <class T>
index sweep_parts(sweep angle, phasor turn, index points, const swept<T>& to,
                  kernels::sweep<T> kernel) noexcept {
  const index part = points_of_lane<T>(points, to.width);
  const int lanes = static_cast<int>(points_of_pass<T>(points, to.width) / rotation_block);
  const index bytes = points * to.width * index{sizeof(T)};
  blocks_of_parts next = {angle, part, lanes, {.c = turn.re, .s = turn.im, .amplitude = to.amplitude}};
  next.start.work = &next;
  if (sizeof(T) == sizeof(double) && bytes > machine::caches().second) {
    next.start.meanwhile = blocks_of_parts::find_some;
  }
  if (bytes > machine::caches().last) next.start.ahead = rotation_block * to.width;
  T* x[kernels::most_sweep_lanes];
  for (index first = 0; first < part; first += rotation_block) {
    next.find(lanes);
    for (int l = 0; l < lanes; ++l) x[l] = to.x + (first + l * part) * to.width;
    next.first = first + rotation_block;
    next.found = 0;
    kernel(next.start, x, lanes);
  }
  return part * lanes;
}

// put(i, cos, sin) for every point, or what does the same at the wide levels.
template <class T, class Put> void sweep_points(sweep angle, index points, swept<T> to, Put put) noexcept {
  const kept_errno kept;  // an angle may be infinite
  const auto* const table = points > rotation_block ? at_level<kernels::sweep_table<T>>() : nullptr;
  const phasor turn = phasor_at(angle.step);
  index first = table != nullptr ? sweep_parts(angle, turn, points, to, table->*to.kernel) : 0;
  while (table != nullptr && points - first > rotation_block) {
    const index here = points_of_pass<T>(points - first, to.width);
    sweep_lanes(angle, turn, first, first + here, to, table->*to.kernel);
    first += here;
  }
  for (; first < points; first += rotation_block) {
    sweep_block(angle, turn, first, std::min(rotation_block, points - first), put);
  }
}

}  // namespace sigpak
