// SPDX-License-Identifier: MIT
// The last transform of data that stay in their place.
//
// Beyond the caches a pass costs what it fetches, and by way of scratch memory that is twice the data. In
// place the last transform lets pairs of columns change places. Neighbours are taken together, in squares of
// runs of A columns, so that whole pages are met rather than one line of each.
#pragma once

#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The W vectors of a column, `step` scalars apart.
template <class P> struct column_at {
  typename P::scalar* first;
  index step;
};

template <class P, bool inverse>
SIGPAK_INLINE void transform_column(const lanes_transform<P, inverse>& last, column_at<P> from,
                                    column_at<P> to) {
  constexpr int W = P::width;
  unroll<2>([&](auto group) SIGPAK_LAMBDA {
    const auto* const rows = from.first + W / 2 * group * from.step;
    last.run([=](auto p, auto half) SIGPAK_LAMBDA { return load<P>(rows + p * from.step + W * half); },
             to.first + W * group, to.step / 2);
  });
}

// The two columns to each other's places, by way of a copy of one.
template <class P, bool inverse>
SIGPAK_INLINE void exchange_columns(const lanes_transform<P, inverse>& last, column_at<P> a, column_at<P> b) {
  constexpr int W = P::width;
  alignas(machine::line_bytes) typename P::scalar block[2 * W * W];
  unroll<W>([&](auto l) SIGPAK_LAMBDA {
    store(block + 2 * W * l, load<P>(a.first + l * a.step));
    store(block + 2 * W * l + W, load<P>(a.first + l * a.step + W));
  });
  if (a.first != b.first) transform_column(last, b, a);
  transform_column(last, {block, 2 * W}, b);
}

template <class P> SIGPAK_INLINE void fetch_column(column_at<P> column) {
  constexpr index bytes = 2 * P::width * static_cast<index>(sizeof(typename P::scalar));
  unroll<P::width>([&](auto l) SIGPAK_LAMBDA {
    const auto* const at = reinterpret_cast<const char*>(column.first + l * column.step);
    for (index byte = 0; byte < bytes; byte += index{machine::line_bytes}) {
      __builtin_prefetch(at + byte, 1, 3);
    }
  });
}

// All columns of one square and of its mirror image, a run ahead of which the next is fetched.
template <class P, bool inverse>
void exchange_square(const lane_plan<typename P::scalar>& plan, typename P::scalar* x, index m) {
  constexpr index column = 2 * P::width;
  const lanes_transform<P, inverse> last(plan.scale);
  const index mirrored = plan.mirror[m];
  const index run = plan.square;
  const index far = run * plan.middle;
  const auto at = [=, step = column * run * far](index low, index middle, index high) SIGPAK_LAMBDA {
    return column_at<P>{x + column * (low + run * middle + far * high), step};
  };
  for (index b = 0; b < run; ++b) {
    const index end = m == mirrored ? b + 1 : run;
    for (index a = 0; a < end; ++a) {
      if (b + 1 < run) {
        fetch_column(at(a, m, b + 1));
        fetch_column(at(b + 1, mirrored, a));
      }
      exchange_columns(last, at(a, m, b), at(b, mirrored, a));
    }
  }
}

template <class P, bool inverse>
void exchange_all_columns(const lane_plan<typename P::scalar>& plan, typename P::scalar* x) {
  for (index m = 0; m < plan.middle; ++m) {
    if (m <= static_cast<index>(plan.mirror[m])) exchange_square<P, inverse>(plan, x, m);
  }
}

// The passes are those in scratch memory, whose blocks may be apart; here they are not.
template <class P, bool inverse>
void run_in_place(const lane_plan<typename P::scalar>& by_scratch, const typename P::scalar* from,
                  typename P::scalar* to) {
  lane_plan<typename P::scalar> plan = by_scratch;
  plan.stride = plan.block[1];
  transform_lanes<P, inverse>(plan, from, to);
  exchange_all_columns<P, inverse>(plan, to);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
