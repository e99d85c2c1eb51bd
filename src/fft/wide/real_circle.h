// SPDX-License-Identifier: MIT
// Circular convolution of real data with a filter. The bins meet those of the filter in the registers in
// which the forward transform leaves them and the inverse one takes them: in the order of groups, as vectors
// of real and of imaginary parts.
#pragma once

#include "fft/wide/real.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The filter, zero-padded, to its bins, by groups; behind N scalars the W / 2 bins in the middle.
template <class P>
void run_filter(const real_plan<typename P::scalar>& plan, typename P::scalar* x, typename P::scalar* s) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  passes_within_lanes<P>(plan, x, s);
  const T* w = plan.last;
  for (index kb = 0; kb < plan.vectors; kb += W, w += 2 * W * (W - 1)) {
    cplx<P> y[W];
    transform_group(plan, kb, s, w, y);
    unroll<W>([&](auto k) SIGPAK_LAMBDA { store_pair(x, kb + k, y[k]); });
  }
  put_middle(plan, load_pair<P>(s, 0), x + plan.points, 2);
}

template <class T> SIGPAK_INLINE void multiply_bin(T* bin, const T* by) {
  const T re = bin[0] * by[0] - bin[1] * by[1];
  bin[1] = bin[0] * by[1] + bin[1] * by[0];
  bin[0] = re;
}

// conj(a b)
template <class P> SIGPAK_INLINE cplx<P> conjugate_product(cplx<P> a, cplx<P> b) {
  return {fms(a.re, b.re, a.im * b.im), -fma(a.re, b.im, a.im * b.re)};
}

// From the blocks to what the way back begins with.
template <class P>
void filter_pass(const real_plan<typename P::scalar>& plan, const typename P::scalar* filter,
                 const typename P::scalar* blocks, typename P::scalar* s) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  const T* w = plan.last;
  for (index kb = 0; kb < plan.vectors; kb += W, w += 2 * W * (W - 1)) {
    cplx<P> y[W];
    transform_group(plan, kb, blocks, w, y);
    unroll<W>([&](auto k) SIGPAK_LAMBDA { y[k] = conjugate_product(y[k], load_pair<P>(filter, kb + k)); });
    transform_back(y, kb, w, s);
  }
  T middle[W];
  put_middle(plan, load_pair<P>(blocks, 0), middle, 2);
  for (int k = 0; k < W; k += 2) multiply_bin(middle + k, filter + plan.points + k);
  store_pair(s, plan.vectors, middle_of<P>(middle, 2));
}

template <class P>
void run_circle(const real_plan<typename P::scalar>& plan, const typename P::scalar* filter,
                const typename P::scalar* from, typename P::scalar* to, typename P::scalar* s) {
  auto* const blocks = blocks_behind<P>(plan, s);
  passes_within_lanes<P>(plan, from, blocks);
  filter_pass<P>(plan, filter, blocks, s);
  passes_back<P>(plan, s, blocks, to);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
