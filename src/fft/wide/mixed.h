// SPDX-License-Identifier: MIT
// Transforms of lengths without large prime factors: N = A B, n = B n1 + n2, k = k1 + A k2,
//   X[k] = sum over n2 of w_B^(n2 k2) w_N^(n2 k1) (sum over n1 of w_A^(n1 k1) x[n]).
// The columns n2 lie side by side in the lanes for the transforms over n1; transposed, the rows k1 do for
// those over n2. Where A or B is no multiple of the lanes the last group overlaps the one before and repeats
// its results.
#pragma once

#include "fft/plans/mixed_plan.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::mixed_plan;

SIGPAK_INLINE index least(index a, index b) { return a < b ? a : b; }

// The twiddles of one group of columns.
template <class P, bool stepped>
SIGPAK_INLINE cplx<P> column_twiddle(const mixed_plan<typename P::scalar>& plan, index group, index k) {
  const index at = group * plan.columns.vectors + k;
  if constexpr (!stepped) return load_pair<P>(plan.twiddles, at);
  const auto* const step = plan.steps + 2 * at;
  return joined(cplx<P>{splat<P>(step[0]), splat<P>(step[1])}, load_pair<P>(plan.twiddles, k));
}

// One group of columns: their transforms, twiddles, transposition.
template <class P, bool inverse, bool stepped>
void columns_pass(const mixed_plan<typename P::scalar>& plan, index group, const typename P::scalar* x,
                  typename P::scalar* rows, typename P::scalar* s) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  const index a_points = plan.columns.vectors;
  const index b_points = plan.rows.vectors;
  const index n2 = least(group * W, b_points - W);
  first_pass<P>(
      plan.columns,
      [=](index i) SIGPAK_LAMBDA { return load_points<P, inverse>(x + 2 * (i * b_points + n2)); }, s);
  all_middle_passes<P>(plan.columns, s);
  const std::uint32_t* const place = plan.place;
  for (index block = 0; block * W < a_points; ++block) {
    const index k1 = least(block * W, a_points - W);
    cplx<P> y[W];
    unroll<W>([&](auto p) SIGPAK_LAMBDA {
      const index k = k1 + point_at<T>(p, W);
      const cplx<P> t = column_twiddle<P, stepped>(plan, group, k);
      y[p] = turned(load_pair<P>(s, place[k]), t.re, t.im);
    });
    transpose(y);
    unroll<W>([&](auto p)
                  SIGPAK_LAMBDA { store_pair(rows, block * b_points + n2 + point_at<T>(p, W), y[p]); });
  }
}

// One group of rows: their transforms, straight to their places in the data.
template <class P, bool inverse>
void rows_pass(const mixed_plan<typename P::scalar>& plan, index group, const typename P::scalar* rows,
               typename P::scalar* x, typename P::scalar* s) {
  using T = typename P::scalar;
  const pass_plan<T>& over = plan.rows;
  const index a_points = plan.columns.vectors;
  const index b_points = over.vectors;
  T* const out = x + 2 * least(group * P::width, a_points - P::width);
  const T* const in = rows + 2 * P::width * b_points * group;
  const auto factor = factor_of<P, inverse>(plan.scale);
  first_pass<P>(
      over, [in](index i) SIGPAK_LAMBDA { return load_pair<P>(in, i); }, s);
  if (over.passes == 1) {
    for (index k = 0; k < b_points; ++k) {
      store_points<P, inverse>(out + 2 * a_points * k, scaled(factor, load_pair<P>(s, k)));
    }
    return;
  }
  all_middle_passes<P>(over, s, [&](T* at, index length) SIGPAK_LAMBDA {
    with_radix(over.radix[over.passes - 1], [&](auto radix) SIGPAK_LAMBDA {
      constexpr int R = radix;
      const index step = 2 * a_points * (b_points / R);
      const std::uint32_t* result = plan.result + (at - s) / (2 * P::width) / R;
      for (index i = 0; i < length; i += R, ++result) {
        cplx<P> a[R];
        unroll<R>([&](auto j) SIGPAK_LAMBDA { a[j] = load_pair<P>(at, i + j); });
        transform(a, factor);
        T* const first = out + 2 * a_points * static_cast<index>(*result);
        unroll<R>([&](auto k) SIGPAK_LAMBDA { store_points<P, inverse>(first + k * step, a[k]); });
      }
    });
  });
}

template <class P, bool inverse>
void run_mixed(const mixed_plan<typename P::scalar>& plan, typename P::scalar* x,
               typename P::scalar* scratch) {
  constexpr int W = P::width;
  const index a_points = plan.columns.vectors;
  const index b_points = plan.rows.vectors;
  const index row_groups = (a_points + W - 1) / W;
  auto* const s = scratch + 2 * W * b_points * row_groups;
  const auto pass = plan.is_stepped ? columns_pass<P, inverse, true> : columns_pass<P, inverse, false>;
  for (index group = 0; group * W < b_points; ++group) pass(plan, group, x, scratch, s);
  for (index group = 0; group < row_groups; ++group) rows_pass<P, inverse>(plan, group, scratch, x, s);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
