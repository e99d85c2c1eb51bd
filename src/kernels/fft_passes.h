// The passes of a wide transform: from the data to vectors in scratch memory, there in place, and back.
// An inverse transform is a forward one with real and imaginary parts exchanged on the way in and out.
#pragma once

#include "kernels/butterflies.h"
#include "kernels/butterflies_odd.h"
#include "kernels/fft_plan.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::fft_plan;
using kernels::point_at;

// One complex vector of scratch memory: the real parts, then the imaginary parts.
template <class P> SIGPAK_INLINE cplx<P> load_pair(const typename P::scalar* s, index vector) {
  const auto* const at = s + 2 * P::width * vector;
  return {load<P>(at), load<P>(at + P::width)};
}
template <class P> SIGPAK_INLINE void store_pair(typename P::scalar* s, index vector, cplx<P> a) {
  auto* const at = s + 2 * P::width * vector;
  store(at, a.re);
  store(at + P::width, a.im);
}

// W interleaved points, in the order of point_at.
template <class P, bool inverse> SIGPAK_INLINE cplx<P> separated(P a, P b) {
  P re, im;
  if constexpr (sizeof(typename P::scalar) == 8) {
    re = low_parts(a, b);
    im = high_parts(a, b);
  } else {
    re = choose<0x88>(a, b);
    im = choose<0xdd>(a, b);
  }
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

// All M vectors, which `source` gives by their place, in butterflies of R that are M / R apart.
template <class P, int R, bool scaled, class Source>
void first_pass(const fft_plan<typename P::scalar>& plan, const Source& source, typename P::scalar* s) {
  const index count = plan.vectors / R;
  const index stride = plan.stride;
  const auto* w = plan.first[!scaled];
  const P scale = splat<P>(w[0]);
  ++w;
  for (index i = 0; i < count; ++i, w += 2 * (R - 1)) {
    cplx<P> a[R];
    unroll<R>([&](auto j) __attribute__((always_inline)) { a[j] = source(i + j * count); });
    transform(a);
    if constexpr (scaled) a[0] = a[0] * scale;
    store_pair(s, i, a[0]);
    unroll<R - 1>([&](auto k) __attribute__((always_inline)) {
      store_pair(s, i + (k + 1) * stride, turned(a[k + 1], w + 2 * k));
    });
  }
}

// One block of `length` vectors in place.
template <class P, int R> void middle_pass(typename P::scalar* s, index length, const typename P::scalar* w) {
  const index count = length / R;
  for (index i = 0; i < count; ++i, w += 2 * (R - 1)) {
    cplx<P> a[R];
    unroll<R>([&](auto j) __attribute__((always_inline)) { a[j] = load_pair<P>(s, i + j * count); });
    transform(a);
    store_pair(s, i, a[0]);
    unroll<R - 1>([&](auto k) __attribute__((always_inline)) {
      store_pair(s, i + (k + 1) * count, turned(a[k + 1], w + 2 * k));
    });
  }
}

// The last pass within the lanes: neighbouring vectors, no twiddles.
template <class P, int R> void leaf_pass(typename P::scalar* s, index length) {
  for (index i = 0; i < length; i += R) {
    cplx<P> a[R];
    unroll<R>([&](auto j) __attribute__((always_inline)) { a[j] = load_pair<P>(s, i + j); });
    transform(a);
    unroll<R>([&](auto k) __attribute__((always_inline)) { store_pair(s, i + k, a[k]); });
  }
}

// Lanes and vectors change places.
template <class P> SIGPAK_INLINE void transpose(cplx<P> (&y)[P::width]) {
  constexpr int W = P::width;
  P re[W], im[W];
  unroll<W>([&](auto p) __attribute__((always_inline)) { re[p] = y[p].re; });
  transpose(re);
  unroll<W>([&](auto p) __attribute__((always_inline)) { im[p] = y[p].im; });
  transpose(im);
  unroll<W>([&](auto p) __attribute__((always_inline)) { y[p] = {re[p], im[p]}; });
}

// The same where the lanes are in the order of point_at: row l is then lane l, of a group of W consecutive
// kb.
template <class P> SIGPAK_INLINE void lanes_to_rows(cplx<P> (&y)[P::width]) {
  constexpr int W = P::width;
  transpose(y);
  cplx<P> t[W];
  unroll<W>([&](auto p) __attribute__((always_inline)) { t[point_at<typename P::scalar>(p, W)] = y[p]; });
  unroll<W>([&](auto l) __attribute__((always_inline)) { y[l] = t[l]; });
}

// Transposition, twiddles, and the transform over the lanes; natural order out.
template <class P, bool inverse>
void last_pass(const fft_plan<typename P::scalar>& plan, const typename P::scalar* s, typename P::scalar* x) {
  using T = typename P::scalar;
  constexpr int W = P::width;
  const index vectors = plan.vectors;
  const index* const offset = plan.offset;
  const T* w = plan.last;
  for (index kb = 0, group = 0; kb < vectors; kb += W, ++group, w += 2 * W * (W - 1)) {
    const index start = plan.start[group];
    cplx<P> y[W];
    unroll<W>([&](auto p) __attribute__((always_inline)) {
      y[p] = load_pair<P>(s, start + offset[point_at<T>(p, W)]);
    });
    lanes_to_rows(y);
    unroll<W - 1>([&](auto l) __attribute__((always_inline)) {
      const cplx<P> t = load_pair<P>(w, l);
      y[l + 1] = turned(y[l + 1], t.re, t.im);
    });
    transform(y);
    unroll<W>([&](auto k) __attribute__((always_inline)) {
      store_points<P, inverse>(x + 2 * (kb + k * vectors), y[k]);
    });
  }
}

// Calls body with the radix as a constant.
template <class Body> SIGPAK_INLINE void with_radix(int radix, const Body& body) {
  switch (radix) {
    case 2:
      return body(constant<2>{});
    case 3:
      return body(constant<3>{});
    case 4:
      return body(constant<4>{});
    case 5:
      return body(constant<5>{});
    case 7:
      return body(constant<7>{});
    case 8:
      return body(constant<8>{});
    case 11:
      return body(constant<11>{});
    case 13:
      return body(constant<13>{});
    default:
      return body(constant<16>{});
  }
}

template <class P, bool scaled, class Source>
void first_pass(const fft_plan<typename P::scalar>& plan, const Source& source, typename P::scalar* s) {
  with_radix(plan.radix[0], [&](auto radix) { first_pass<P, radix, scaled>(plan, source, s); });
}

template <class P>
void middle_pass(int radix, typename P::scalar* s, index length, const typename P::scalar* w) {
  with_radix(radix, [=](auto r) { middle_pass<P, r>(s, length, w); });
}

template <class P> void leaf_pass(int radix, typename P::scalar* s, index length) {
  with_radix(radix, [=](auto r) { leaf_pass<P, r>(s, length); });
}

// Blocks that fit the first cache are finished level by level, larger ones block by block.
inline constexpr index cached_bytes = 24 * 1024;

template <class P, class Leaf>
void middle_passes(const fft_plan<typename P::scalar>& plan, int pass, typename P::scalar* s, index length,
                   const Leaf& leaf) {
  constexpr index bytes = 2 * P::width * static_cast<index>(sizeof(typename P::scalar));
  const index block = plan.block[pass];
  if (pass == plan.passes - 1) return leaf(s, length);
  for (index i = 0; i < length; i += block) {
    middle_pass<P>(plan.radix[pass], s + 2 * P::width * i, block, plan.twiddles[pass]);
    if (block * bytes > cached_bytes) middle_passes<P>(plan, pass + 1, s + 2 * P::width * i, block, leaf);
  }
  if (block * bytes <= cached_bytes) middle_passes<P>(plan, pass + 1, s, length, leaf);
}

// All passes but the first, and within the lanes, on what the first left in the blocks of the scratch memory.
template <class P, class Leaf>
void all_middle_passes(const fft_plan<typename P::scalar>& plan, typename P::scalar* s, const Leaf& leaf) {
  if (plan.passes == 1) return;
  for (int block = 0; block < plan.radix[0]; ++block) {
    middle_passes<P>(plan, 1, s + 2 * P::width * plan.stride * block, plan.block[1], leaf);
  }
}
template <class P> void all_middle_passes(const fft_plan<typename P::scalar>& plan, typename P::scalar* s) {
  const int radix = plan.radix[plan.passes - 1];
  all_middle_passes<P>(plan, s,
                       [radix](typename P::scalar* at, index length) { leaf_pass<P>(radix, at, length); });
}

template <class P, bool inverse>
void run(const fft_plan<typename P::scalar>& plan, typename P::scalar* x, typename P::scalar* s) {
  first_pass<P, !inverse>(
      plan,
      [x](index i) __attribute__((always_inline)) { return load_points<P, inverse>(x + 2 * P::width * i); },
      s);
  all_middle_passes<P>(plan, s);
  last_pass<P, inverse>(plan, s, x);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
