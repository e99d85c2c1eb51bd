// SPDX-License-Identifier: MIT
// The passes of a wide transform: from the data to vectors in scratch memory, there in place, and back.
// An inverse transform is a forward one with real and imaginary parts exchanged on the way in and out.
#pragma once

#include "fft/plans/lane_plan.h"
#include "fft/wide/butterflies.h"
#include "fft/wide/butterflies_odd.h"
#include "fft/wide/over_lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::lane_plan;
using kernels::pass_plan;
using kernels::point_at;

// One complex vector of scratch memory: the real parts, then the imaginary parts.
template <class P> SIGPAK_INLINE cplx<P> load_pair(const typename P::scalar* s, index vector) {
  const auto* const at = s + 2 * P::width * vector;
  return {load_once<P>(at), load_once<P>(at + P::width)};
}
template <class P> SIGPAK_INLINE void store_pair(typename P::scalar* s, index vector, cplx<P> a) {
  auto* const at = s + 2 * P::width * vector;
  store(at, a.re);
  store(at + P::width, a.im);
}

// W interleaved points, in the order of point_at.
template <class P, bool inverse> SIGPAK_INLINE cplx<P> separated(P a, P b) {
  const P re = evens(a, b);
  const P im = odds(a, b);
  if constexpr (inverse) return {im, re};
  return {re, im};
}
template <class P, bool inverse> SIGPAK_INLINE cplx<P> load_points(const typename P::scalar* x) {
  return separated<P, inverse>(load<P>(x), load<P>(x + P::width));
}
template <class P, bool inverse> SIGPAK_INLINE void store_points(typename P::scalar* x, cplx<P> a) {
  const P re = inverse ? a.im : a.re;
  const P im = inverse ? a.re : a.im;
  store(x, low_parts(re, im));
  store(x + P::width, high_parts(re, im));
}

template <class P> SIGPAK_INLINE cplx<P> turned(cplx<P> a, const typename P::scalar* twiddle) {
  return turned(a, splat<P>(twiddle[0]), splat<P>(twiddle[1]));
}

// Output k of a butterfly, whose twiddles are at w; the first has none.
template <int k, class P>
SIGPAK_INLINE cplx<P> turned_output(constant<k>, cplx<P> y, const typename P::scalar* w) {
  if constexpr (k == 0) return y;
  return turned(y, w + 2 * (k - 1));
}

// All M vectors, which `source` gives by their place, in butterflies of R that are M / R apart.
template <class P, int R, class Source>
void first_pass(const pass_plan<typename P::scalar>& plan, const Source& source, typename P::scalar* s) {
  const index count = plan.vectors / R;
  const index stride = plan.stride;
  const auto* w = plan.twiddles[0];
  for (index i = 0; i < count; ++i, w += 2 * (R - 1)) {
    transform_through<R>([&](auto j) SIGPAK_LAMBDA { return source(i + j * count); },
                         [&](auto k, cplx<P> y)
                             SIGPAK_LAMBDA { store_pair(s, i + k * stride, turned_output(k, y, w)); });
  }
}

// One block, in place or to another.
template <class P, int R>
SIGPAK_INLINE void block_pass(const typename P::scalar* from, typename P::scalar* to, index block,
                              const typename P::scalar* w) {
  const index count = block / R;
  for (index i = 0; i < count; ++i, w += 2 * (R - 1)) {
    transform_through<R>([&](auto j) SIGPAK_LAMBDA { return load_pair<P>(from, i + j * count); },
                         [&](auto k, cplx<P> y)
                             SIGPAK_LAMBDA { store_pair(to, i + k * count, turned_output(k, y, w)); });
  }
}

// Blocks of `block` vectors, each in place.
template <class P, int R>
void middle_pass(typename P::scalar* s, index length, index block, const typename P::scalar* twiddles) {
  for (const auto* const end = s + 2 * P::width * length; s != end; s += 2 * P::width * block) {
    block_pass<P, R>(s, s, block, twiddles);
  }
}

// The last pass within the lanes: neighbouring vectors, no twiddles.
template <class P, int R> void leaf_pass(typename P::scalar* s, index length) {
  for (index i = 0; i < length; i += R) {
    transform_through<R>([&](auto j) SIGPAK_LAMBDA { return load_pair<P>(s, i + j); },
                         [&](auto k, cplx<P> y) SIGPAK_LAMBDA { store_pair(s, i + k, y); });
  }
}

// The product of two twiddles.
template <class P> SIGPAK_INLINE cplx<P> joined(cplx<P> a, cplx<P> b) {
  return {fms(a.re, b.re, a.im * b.im), fma(a.re, b.im, a.im * b.re)};
}

// The same for complex data: with the twiddles of the transform over the lanes, and interleaved. Where the
// twiddles of all outputs would be a stream as wide as the data they are joined from those of the first
// output of the butterfly and the steps from it, at the price of a rounding. One butterfly, whose outputs go
// to every `step`-th vector.
template <class P, int R, bool inverse, bool stepped>
SIGPAK_INLINE void turn_leaf(const typename P::scalar* s, const typename P::scalar* w,
                             const typename P::scalar* steps, typename P::scalar* to, index step) {
  transform_through<R>([=](auto j) SIGPAK_LAMBDA { return load_pair<P>(s, j); },
                       [=](auto k, cplx<P> y) SIGPAK_LAMBDA {
                         cplx<P> t = load_pair<P>(w, stepped ? 0 : k);
                         if constexpr (stepped && k > 0) t = joined(t, load_pair<P>(steps, k - 1));
                         store_points<P, inverse>(to + 2 * P::width * step * k, turned(y, t.re, t.im));
                       });
}

template <class P, int R, bool inverse, bool stepped>
void turning_leaf_pass(typename P::scalar* s, index length, const typename P::scalar* w,
                       const typename P::scalar* steps) {
  for (index i = 0; i < length; i += R, s += 2 * P::width * R, w += 2 * P::width * (stepped ? 1 : R)) {
    turn_leaf<P, R, inverse, stepped>(s, w, steps, s, 1);
  }
}

// First and last pass within the lanes at once: R vectors of data.
template <class P, int R, bool inverse>
void only_pass(const lane_plan<typename P::scalar>& plan, const typename P::scalar* x,
               typename P::scalar* s) {
  const auto* const w = plan.last;
  transform_through<R>([&](auto j) SIGPAK_LAMBDA { return load_points<P, inverse>(x + 2 * P::width * j); },
                       [&](auto k, cplx<P> y) SIGPAK_LAMBDA {
                         const cplx<P> t = load_pair<P>(w, k);
                         store_points<P, inverse>(s + 2 * P::width * k, turned(y, t.re, t.im));
                       });
}

// Lanes and vectors change places.
template <class P> SIGPAK_INLINE void transpose(cplx<P> (&y)[P::width]) {
  constexpr int W = P::width;
  P re[W], im[W];
  unroll<W>([&](auto p) SIGPAK_LAMBDA { re[p] = y[p].re; });
  transpose(re);
  unroll<W>([&](auto p) SIGPAK_LAMBDA { im[p] = y[p].im; });
  transpose(im);
  unroll<W>([&](auto p) SIGPAK_LAMBDA { y[p] = {re[p], im[p]}; });
}

// One group of kb, the vector of the first at `first`.
template <class P, bool inverse>
SIGPAK_INLINE void transform_group(const lanes_transform<P, inverse>& last,
                                   const lane_plan<typename P::scalar>& plan, const typename P::scalar* first,
                                   typename P::scalar* x, index vectors) {
  constexpr int W = P::width;
  last.run([=, offset = plan.offset](auto p, auto half)
               SIGPAK_LAMBDA { return load<P>(first + 2 * W * offset[p] + W * half); },
           x, vectors);
}

// The last transform; natural order out.
template <class P, bool inverse>
void last_pass(const lane_plan<typename P::scalar>& plan, const typename P::scalar* s,
               typename P::scalar* x) {
  constexpr int W = P::width;
  const lanes_transform<P, inverse> last(plan.scale);
  const index vectors = plan.vectors;
  const std::uint32_t* start = plan.start;
  for (index kb = 0; kb < vectors; kb += W / 2, ++start) {
    transform_group(last, plan, s + 2 * W * static_cast<index>(*start), x + 2 * kb, vectors);
  }
}

// Calls body with the radix, which is one of those listed, as a constant.
template <int... radices, class Body> SIGPAK_INLINE void with_one_of(int radix, const Body& body) {
  (void)((radix == radices && (body(constant<radices>{}), true)) || ...);
}
template <class Body> SIGPAK_INLINE void with_radix(int radix, const Body& body) {
  with_one_of<2, 3, 4, 5, 7, 8, 11, 13, 16>(radix, body);
}

template <class P, class Source>
void first_pass(const pass_plan<typename P::scalar>& plan, const Source& source, typename P::scalar* s) {
  with_radix(plan.radix[0], [&](auto radix) { first_pass<P, radix>(plan, source, s); });
}

template <class P>
void middle_pass(int radix, typename P::scalar* s, index length, index block, const typename P::scalar* w) {
  with_radix(radix, [=](auto r) { middle_pass<P, r>(s, length, block, w); });
}

template <class P> void leaf_pass(int radix, typename P::scalar* s, index length) {
  with_radix(radix, [=](auto r) { leaf_pass<P, r>(s, length); });
}

// Blocks that the first cache holds are finished level by level, larger ones block by block.
template <class P, class Leaf>
void middle_passes(const pass_plan<typename P::scalar>& plan, int pass, typename P::scalar* s, index length,
                   const Leaf& leaf) {
  const index block = plan.block[pass];
  if (pass == plan.passes - 1) return leaf(s, length);
  if (block <= plan.resident) {
    middle_pass<P>(plan.radix[pass], s, length, block, plan.twiddles[pass]);
    return middle_passes<P>(plan, pass + 1, s, length, leaf);
  }
  for (index i = 0; i < length; i += block) {
    auto* const at = s + 2 * P::width * i;
    middle_pass<P>(plan.radix[pass], at, block, block, plan.twiddles[pass]);
    middle_passes<P>(plan, pass + 1, at, block, leaf);
  }
}

// All passes but the first, and within the lanes, on what the first left in the blocks of the scratch memory.
template <class P, class Leaf>
void all_middle_passes(const pass_plan<typename P::scalar>& plan, typename P::scalar* s, const Leaf& leaf) {
  if (plan.passes == 1) return;
  if (plan.vectors <= plan.resident && plan.stride == plan.block[1]) {
    return middle_passes<P>(plan, 1, s, plan.vectors, leaf);
  }
  for (int block = 0; block < plan.radix[0]; ++block) {
    middle_passes<P>(plan, 1, s + 2 * P::width * plan.stride * block, plan.block[1], leaf);
  }
}
template <class P> void all_middle_passes(const pass_plan<typename P::scalar>& plan, typename P::scalar* s) {
  const int radix = plan.radix[plan.passes - 1];
  all_middle_passes<P>(plan, s,
                       [radix](typename P::scalar* at, index length) { leaf_pass<P>(radix, at, length); });
}

// The radices of a pass over the lanes of complex data.
template <class Body> SIGPAK_INLINE void with_even_radix(int radix, const Body& body) {
  with_one_of<4, 8, 16>(radix, body);
}

// Everything before the last transform.
template <class P, bool inverse>
void transform_lanes(const lane_plan<typename P::scalar>& plan, const typename P::scalar* x,
                     typename P::scalar* s) {
  using T = typename P::scalar;
  constexpr index pair = 2 * P::width;
  if (plan.passes == 1) {
    return with_even_radix(plan.radix[0], [&](auto radix) { only_pass<P, radix, inverse>(plan, x, s); });
  }
  first_pass<P>(
      plan, [x](index i) SIGPAK_LAMBDA { return load_points<P, inverse>(x + 2 * P::width * i); }, s);
  const index padding = plan.stride - plan.block[1];
  all_middle_passes<P>(plan, s, [&plan, s, padding](T* at, index length) {
    const index place = (at - s) / pair;
    const int last_radix = plan.radix[plan.passes - 1];
    const index unpadded = place - place / plan.stride * padding;
    const T* const w = plan.last + pair * (plan.is_stepped ? unpadded / last_radix : unpadded);
    with_even_radix(last_radix, [=, stepped = plan.is_stepped, steps = plan.steps](auto radix) {
      stepped ? turning_leaf_pass<P, radix, inverse, true>(at, length, w, steps)
              : turning_leaf_pass<P, radix, inverse, false>(at, length, w, nullptr);
    });
  });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
