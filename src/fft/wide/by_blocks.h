// SPDX-License-Identifier: MIT
// Transforms in place of data that the first cache holds, or nearly so: scratch memory as long as the data
// would drive them out of it.
//
// The first pass leaves W blocks, each a transform of its own. By way of scratch memory for one block their
// results come to stand in order, so that the W vectors of a column of the last transform are those that its
// results replace.
#pragma once

#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The last pass within the lanes, from scratch memory to the block at `to`: the outputs in their order.
template <class P, int R, bool inverse, bool stepped>
void sorting_leaf_pass(const lane_plan<typename P::scalar>& plan, const typename P::scalar* s,
                       const typename P::scalar* w, typename P::scalar* to) {
  const index length = plan.block[1];
  const std::uint32_t* order = plan.order;
  for (index i = 0; i < length; i += R, s += 2 * P::width * R, w += 2 * P::width * (stepped ? 1 : R)) {
    auto* const first = to + 2 * P::width * static_cast<index>(*order++);
    turn_leaf<P, R, inverse, stepped>(s, w, plan.steps, first, length / R);
  }
}

// The passes behind the first that read and write a block, for radices that are found out once for all
// blocks.
template <class P, bool inverse> class block_passes {
 public:
  using T = typename P::scalar;
  explicit block_passes(const lane_plan<T>& plan) : plan_(plan) {
    with_one_of<2, 4, 8, 16>(plan.radix[1], [this](auto radix) { into_scratch_ = block_pass<P, radix>; });
    with_even_radix(plan.radix[plan.passes - 1], [this](auto radix) {
      out_of_scratch_ = plan_.is_stepped ? sorting_leaf_pass<P, radix, inverse, true>
                                         : sorting_leaf_pass<P, radix, inverse, false>;
    });
  }

  // The first cache holds the block: the last pass is met once, with the whole of it. w are the twiddles of
  // its outputs.
  void run(T* block, const T* w, T* s) const {
    into_scratch_(block, s, plan_.block[1], plan_.twiddles[1]);
    middle_passes<P>(plan_, 2, s, plan_.block[1],
                     [this, block, w](const T* from, index) { out_of_scratch_(plan_, from, w, block); });
  }

 private:
  const lane_plan<T>& plan_;
  void (*into_scratch_)(const T* from, T* to, index block, const T* w) = nullptr;
  void (*out_of_scratch_)(const lane_plan<T>& plan, const T* s, const T* w, T* to) = nullptr;
};

template <class P, bool inverse>
void transform_blocks(const lane_plan<typename P::scalar>& plan, const typename P::scalar* from,
                      typename P::scalar* to, typename P::scalar* s) {
  constexpr int W = P::width;
  constexpr index pair = 2 * W;
  const index block = plan.block[1];
  const index turns = plan.is_stepped ? block / plan.radix[plan.passes - 1] : block;
  const block_passes<P, inverse> passes(plan);
  first_pass<P, W>(
      plan, [from](index i) SIGPAK_LAMBDA { return load_points<P, inverse>(from + pair * i); }, to);
  for (int b = 0; b < W; ++b) passes.run(to + pair * block * b, plan.last + pair * turns * b, s);
}

// The W vectors of a column, `step` scalars apart: the later half of them is read before the first results
// replace it.
template <class P, bool inverse>
SIGPAK_INLINE void transform_column_in_place(const lanes_transform<P, inverse>& last, typename P::scalar* x,
                                             index step) {
  constexpr int W = P::width;
  constexpr int rows = W / 2;
  P later[2][rows];
  unroll<rows>([&](auto p) SIGPAK_LAMBDA {
    unroll<2>([&](auto half) SIGPAK_LAMBDA { later[half][p] = load<P>(x + (rows + p) * step + W * half); });
  });
  last.run([=](auto p, auto half) SIGPAK_LAMBDA { return load<P>(x + p * step + W * half); }, x, step / 2);
  last.run([&](auto p, auto half) SIGPAK_LAMBDA { return later[half][p]; }, x + W, step / 2);
}

// The scratch memory holds one block. Two passes leave the blocks in order without any.
template <class P, bool inverse>
void run_by_blocks(const lane_plan<typename P::scalar>& by_scratch, const typename P::scalar* from,
                   typename P::scalar* to, typename P::scalar* s) {
  constexpr index pair = 2 * P::width;
  lane_plan<typename P::scalar> plan = by_scratch;
  plan.stride = plan.block[1];
  plan.passes == 2 ? transform_lanes<P, inverse>(plan, from, to)
                   : transform_blocks<P, inverse>(plan, from, to, s);
  const lanes_transform<P, inverse> last(plan.scale);
  const index block = plan.block[1];
  for (index column = 0; column < block; ++column) {
    transform_column_in_place(last, to + pair * column, pair * block);
  }
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
