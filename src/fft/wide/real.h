// SPDX-License-Identifier: MIT
// Transforms of real data of N points to their half spectrum and back.
//
// The lanes hold real transforms of M = N / W points, two neighbouring vectors packed into the real and
// imaginary parts of one: with Z the transform of H = M / 2 such vectors,
//   2 Y[k] = (Z[k] + conj Z[H-k]) - i w_M^k (Z[k] - conj Z[H-k]).
// Of the bins kb + M k' those with k' >= W / 2 lie in the upper half of the spectrum and stand for their
// mirror images. Backwards everything runs in the opposite order on the conjugate of the spectrum.
#pragma once

#include "fft/plans/real_plan.h"
#include "fft/plans/sines.h"
#include "fft/wide/passes.h"
#include "vectors/sum.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::real_plan;

template <class P> SIGPAK_INLINE cplx<P> conjugate(cplx<P> a) { return {a.re, -a.im}; }

// W interleaved points at top, top - 1, ..., in the order of point_at.
template <class P> SIGPAK_INLINE cplx<P> load_backwards(const typename P::scalar* top) {
  const auto* const x = top - 2 * (P::width - 1);
  return separated<P, false>(backwards(load<P>(x + P::width)), backwards(load<P>(x)));
}
template <class P> SIGPAK_INLINE void store_backwards(typename P::scalar* top, cplx<P> a) {
  auto* const x = top - 2 * (P::width - 1);
  store(x, backwards(high_parts(a.re, a.im)));
  store(x + P::width, backwards(low_parts(a.re, a.im)));
}

// w_2W^(l (2 k' + 1)), by which the lanes give the bins H + M k'.
template <class P> struct middle_roots {
  static constexpr int W = P::width;
  alignas(64) typename P::scalar c[W / 2][W] = {};
  alignas(64) typename P::scalar s[W / 2][W] = {};
  constexpr middle_roots() {
    using T = typename P::scalar;
    for (int k = 0; k < W / 2; ++k) {
      for (int l = 0; l < W; ++l) {
        c[k][l] = static_cast<T>(kernels::cosine_of(l * (2 * k + 1), 2 * W));
        s[k][l] = static_cast<T>(kernels::sine_of(l * (2 * k + 1), 2 * W));
      }
    }
  }
};
template <class P> constinit const middle_roots<P> middle_roots_of{};

// The vectors k and H - k of one row; `mirror` holds the places of the second kind.
template <class P> class rows {
 public:
  using T = typename P::scalar;
  rows(const real_plan<T>& plan, index group) {
    const index groups = plan.vectors / P::width;
    start_ = plan.start[group];
    mirror_ = plan.start[groups - 1 - group];
    first_ = plan.start[group == 0 ? 0 : groups - group];
  }
  index place(const real_plan<T>& plan, int v) const { return start_ + plan.offset[v]; }
  index mirror(const real_plan<T>& plan, int v) const {
    return v == 0 ? first_ : mirror_ + plan.offset[P::width - v];
  }

 private:
  index start_, mirror_, first_;
};

// (a + conj b) - i w (a - conj b): of Z[k] and Z[H-k] the doubled Y[k].
template <class P> SIGPAK_INLINE cplx<P> unpacked(cplx<P> a, cplx<P> b, const typename P::scalar* w) {
  const P c = splat<P>(w[0]);
  const P s = splat<P>(w[1]);
  const P re = a.re - b.re;
  const P im = a.im + b.im;
  return {fma(im, c, fnma(re, s, a.re + b.re)), fnma(re, c, fnma(im, s, a.im - b.im))};
}

// (a + conj b) + i w (a - conj b): of Y[k] and Y[H-k] the packed Z[k].
template <class P> SIGPAK_INLINE cplx<P> packed(cplx<P> a, cplx<P> b, const typename P::scalar* w) {
  const P c = splat<P>(w[0]);
  const P s = splat<P>(w[1]);
  const P re = a.re - b.re;
  const P im = a.im + b.im;
  return {fnma(im, c, fma(re, s, a.re + b.re)), fma(re, c, fma(im, s, a.im - b.im))};
}

// The bins kb + k' M of a group of W neighbouring kb, in the order of point_at; w holds the group's twiddles.
template <class P>
SIGPAK_INLINE void transform_group(const real_plan<typename P::scalar>& plan, index kb,
                                   const typename P::scalar* s, const typename P::scalar* w,
                                   cplx<P> (&y)[P::width]) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  const rows<P> row(plan, kb / W);
  unroll<W>([&](auto p) SIGPAK_LAMBDA {
    constexpr int v = point_at<T>(p, W);
    y[p] = unpacked(load_pair<P>(s, row.place(plan, v)), load_pair<P>(s, row.mirror(plan, v)),
                    plan.unpack + 2 * (kb + v));
  });
  transpose(y);
  unroll<W - 1>([&](auto l) SIGPAK_LAMBDA {
    const cplx<P> t = load_pair<P>(w, l);
    y[l + 1] = turned(y[l + 1], t.re, t.im);
  });
  transform(y, splat<P>(plan.scale));
}

// The bins H + k' M, k' < W / 2, as pairs `step` scalars apart.
template <class P>
SIGPAK_INLINE void put_middle(const real_plan<typename P::scalar>& plan, cplx<P> z, typename P::scalar* out,
                              index step) {
  const P middle = (z.re - z.im) * splat<P>(2);
  const auto& roots = middle_roots_of<P>;
  for (int k = 0; k < P::width / 2; ++k, out += step) {
    out[0] = sum_of_lanes(middle * load<P>(roots.c[k])) * plan.scale;
    out[1] = -sum_of_lanes(middle * load<P>(roots.s[k])) * plan.scale;
  }
}

template <class P>
void real_last_pass(const real_plan<typename P::scalar>& plan, const typename P::scalar* s,
                    typename P::scalar* x) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  const index vectors = 2 * plan.vectors;
  const cplx<P> middle = load_pair<P>(s, 0);
  const T* w = plan.last;
  for (index kb = 0; kb < plan.vectors; kb += W, w += 2 * W * (W - 1)) {
    cplx<P> y[W];
    transform_group(plan, kb, s, w, y);
    unroll<W / 2>([&](auto k) SIGPAK_LAMBDA {
      store_points<P, false>(x + 2 * (kb + k * vectors), y[k]);
      store_backwards(x + 2 * ((k + 1) * vectors - kb), conjugate(y[W - 1 - k]));
    });
  }
  put_middle(plan, middle, x + 2 * plan.vectors, 2 * vectors);
}

// The opposite of transform_group, of conjugate bins; the lanes in the order of kb.
template <class P>
SIGPAK_INLINE void transform_back(cplx<P> (&y)[P::width], index kb, const typename P::scalar* w,
                                  typename P::scalar* s) {
  constexpr int W = P::width;
  transform(y);
  unroll<W - 1>([&](auto l) SIGPAK_LAMBDA {
    const cplx<P> t = load_pair<P>(w, l);
    y[l + 1] = turned(y[l + 1], t.re, t.im);
  });
  transpose(y);
  unroll<W>([&](auto p) SIGPAK_LAMBDA { store_pair(s, kb + point_at<typename P::scalar>(p, W), y[p]); });
}

// The vector of kb = H, from the bins that put_middle gives.
template <class P> SIGPAK_INLINE cplx<P> middle_of(const typename P::scalar* bin, index step) {
  const auto& roots = middle_roots_of<P>;
  P middle = splat<P>(0);
  for (int k = 0; k < P::width / 2; ++k, bin += step) {
    middle = fma(splat<P>(2 * bin[0]), load<P>(roots.c[k]), middle);
    middle = fnma(splat<P>(2 * bin[1]), load<P>(roots.s[k]), middle);
  }
  return {middle, splat<P>(0)};
}

// The opposite of the last pass: the lanes in the order of kb, and one more vector for kb = H.
template <class P>
void real_head_pass(const real_plan<typename P::scalar>& plan, const typename P::scalar* x,
                    typename P::scalar* s) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  const index vectors = 2 * plan.vectors;
  const T* w = plan.last;
  for (index kb = 0; kb < plan.vectors; kb += W, w += 2 * W * (W - 1)) {
    cplx<P> y[W];
    unroll<W / 2>([&](auto k) SIGPAK_LAMBDA {
      y[k] = conjugate(load_points<P, false>(x + 2 * (kb + k * vectors)));
      y[W - 1 - k] = load_backwards<P>(x + 2 * ((k + 1) * vectors - kb));
    });
    transform_back(y, kb, w, s);
  }
  store_pair(s, plan.vectors, middle_of<P>(x + 2 * plan.vectors, 2 * vectors));
}

// The last pass within the lanes, straight to the data: butterfly i of the pass has its outputs at result[i]
// and every `step` vectors behind it.
template <class P, int R>
void result_pass(typename P::scalar* s, index length, const std::uint32_t* result, index step,
                 typename P::scalar* x) {
  for (index i = 0; i < length; i += R, ++result) {
    transform_through<R>([=](auto j) SIGPAK_LAMBDA { return load_pair<P>(s, i + j); },
                         [=, first = *result](auto k, cplx<P> y)
                             SIGPAK_LAMBDA { store_pair(x, first + k * step, y); });
  }
}

template <class P>
SIGPAK_INLINE void passes_within_lanes(const real_plan<typename P::scalar>& plan,
                                       const typename P::scalar* from, typename P::scalar* s) {
  first_pass<P>(
      plan, [from](index i) SIGPAK_LAMBDA { return load_pair<P>(from, i); }, s);
  all_middle_passes<P>(plan, s);
}

// Back from what the head pass leaves at s; the passes work at `blocks`.
template <class P>
void passes_back(const real_plan<typename P::scalar>& plan, const typename P::scalar* s,
                 typename P::scalar* blocks, typename P::scalar* to) {
  using T = typename P::scalar;
  const index vectors = plan.vectors;
  const T* const w = plan.unpack;
  const auto source = [=](index k) SIGPAK_LAMBDA {
    return packed(load_pair<P>(s, k), load_pair<P>(s, vectors - k), w + 2 * k);
  };
  if (plan.passes == 1) {
    // One pass has no twiddles but 1, and its blocks are single vectors in their order.
    first_pass<P>(plan, source, to);
    return;
  }
  first_pass<P>(plan, source, blocks);
  const int radix = plan.radix[plan.passes - 1];
  const index step = vectors / radix;
  all_middle_passes<P>(plan, blocks, [&](T* at, index length) {
    const index vector = (at - blocks) / (2 * P::width);
    const index padding = vector / plan.stride * (plan.stride - plan.block[1]);
    const std::uint32_t* const result = plan.result + (vector - padding) / radix;
    with_even_radix(radix, [=](auto r) { result_pass<P, r>(at, length, result, step, to); });
  });
}

// Scratch memory of the way back: what the head pass leaves, then the blocks of the passes.
template <class P>
SIGPAK_INLINE typename P::scalar* blocks_behind(const real_plan<typename P::scalar>& plan,
                                                typename P::scalar* s) {
  return s + 2 * P::width * (plan.vectors + 1);
}

template <class P>
void run_real(const real_plan<typename P::scalar>& plan, const typename P::scalar* from,
              typename P::scalar* to, typename P::scalar* s) {
  passes_within_lanes<P>(plan, from, s);
  real_last_pass<P>(plan, s, to);
}

// The imaginary parts of the outer bins do not count.
template <class P>
void run_real_inverse(const real_plan<typename P::scalar>& plan, typename P::scalar* from,
                      typename P::scalar* to, typename P::scalar* s) {
  from[1] = 0;
  from[plan.points + 1] = 0;
  real_head_pass<P>(plan, from, s);
  passes_back<P>(plan, s, blocks_behind<P>(plan, s), to);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
