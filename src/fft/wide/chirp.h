// SPDX-License-Identifier: MIT
// The chirp transform by vectors: the chirp's product on the way in, passes inwards, the filter's product,
// the same passes outwards, the chirp's product on the way out.
#pragma once

#include "fft/plans/chirp_plan.h"
#include "fft/wide/butterflies_composite.h"
#include "fft/wide/passes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using kernels::chirp_plan;

// Real and imaginary parts of V points, each twice.
template <class P, bool inverse> SIGPAK_INLINE cplx<P> twice(P z) {
  const P re = evens_twice(z);
  const P im = odds_twice(z);
  if constexpr (inverse) return {im, re};
  return {re, im};
}

// The V points that are the sums of the pairs.
template <class P, bool inverse> SIGPAK_INLINE P sums(cplx<P> a) {
  const P re = inverse ? a.im : a.re;
  const P im = inverse ? a.re : a.im;
  if constexpr (sizeof(typename P::scalar) == 8) {
    return low_parts(re, im) + high_parts(re, im);
  } else {
    return middle_exchanged(evens(re, im) + odds(re, im));
  }
}

// In the square of V rows of V pairs, pair j of row i goes to pair i of row j.
template <class T, int W> SIGPAK_INLINE void transpose_pairs(pack<T, W> (&r)[W / 2]) {
  if constexpr (sizeof(T) == 4) {
    using D = pack<double, W / 2>;
    D d[W / 2];
    unroll<W / 2>([&](auto i) SIGPAK_LAMBDA { d[i].v = reinterpret_cast<typename D::vector>(r[i].v); });
    transpose(d);
    unroll<W / 2>([&](auto i)
                      SIGPAK_LAMBDA { r[i].v = reinterpret_cast<typename pack<T, W>::vector>(d[i].v); });
  } else if constexpr (W == 8) {
    transpose_blocks(r[0], r[1], r[2], r[3]);
  } else {
    transpose_blocks(r[0], r[1]);
  }
}
template <class P> SIGPAK_INLINE void transpose_pairs(cplx<P> (&y)[P::width / 2]) {
  constexpr int V = P::width / 2;
  P re[V], im[V];
  unroll<V>([&](auto p) SIGPAK_LAMBDA {
    re[p] = y[p].re;
    im[p] = y[p].im;
  });
  transpose_pairs(re);
  transpose_pairs(im);
  unroll<V>([&](auto p) SIGPAK_LAMBDA { y[p] = {re[p], im[p]}; });
}

// The data by vectors of V points; the last of them may be short.
template <class T, int V> class edge {
 public:
  edge(T* x, index points) : x_(x), whole_(points / V), rest_(points % V) {
    for (index i = 0; i < 2 * rest_; ++i) last_[i] = x[2 * V * whole_ + i];
  }
  const T* source(index vector) const { return vector < whole_ ? x_ + 2 * V * vector : last_; }
  T* target(index vector) { return vector < whole_ ? x_ + 2 * V * vector : last_; }
  bool holds(index vector) const { return vector < whole_ || (vector == whole_ && rest_ > 0); }
  void finish() const {
    for (index i = 0; i < 2 * rest_; ++i) x_[2 * V * whole_ + i] = last_[i];
  }

 private:
  T* x_;
  index whole_;
  index rest_;
  alignas(64) T last_[2 * V] = {};
};

template <class P> using data_of = edge<typename P::scalar, P::width / 2>;

template <class P, int R, bool inverse>
void chirp_in(const chirp_plan<typename P::scalar>& plan, const data_of<P>& data, typename P::scalar* s) {
  const index stride = plan.stride;
  const index count = plan.vectors / R;
  const auto* w = plan.twiddles[0];
  for (index i = 0; i < count; ++i, w += 2 * (R - 1)) {
    cplx<P> a[R];
    unroll<R>([&](auto j) SIGPAK_LAMBDA {
      const index vector = i + j * count;
      if (j < R / 2 || data.holds(vector)) {
        const cplx<P> g = load_pair<P>(plan.chirp, vector);
        a[j] = turned(twice<P, inverse>(load<P>(data.source(vector))), g.re, g.im);
      } else {
        a[j] = cplx<P>{};
      }
    });
    transform(a);
    store_pair(s, i, a[0]);
    unroll<R - 1>([&](auto k)
                      SIGPAK_LAMBDA { store_pair(s, i + (k + 1) * stride, turned(a[k + 1], w + 2 * k)); });
  }
}

template <class P, int R, bool inverse>
void chirp_out(const chirp_plan<typename P::scalar>& plan, const typename P::scalar* s, data_of<P>& data) {
  const index stride = plan.stride;
  const index count = plan.vectors / R;
  const auto* w = plan.twiddles[0];
  const P scale = splat<P>(plan.scale[inverse]);
  for (index i = 0; i < count; ++i, w += 2 * (R - 1)) {
    cplx<P> a[R];
    a[0] = load_pair<P>(s, i);
    unroll<R - 1>([&](auto k)
                      SIGPAK_LAMBDA { a[k + 1] = turned(load_pair<P>(s, i + (k + 1) * stride), w + 2 * k); });
    transform(a);
    unroll<R>([&](auto j) SIGPAK_LAMBDA {
      const index vector = i + j * count;
      if (j < R / 2 || data.holds(vector)) {
        const cplx<P> g = load_pair<P>(plan.chirp, vector);
        store(data.target(vector), sums<P, inverse>(turned(a[j], g.re, g.im)) * scale);
      }
    });
  }
}

// One block in place, in butterflies of R vectors that are `stride` apart, `count` of them.
template <class P, int R>
void pass_inwards(typename P::scalar* s, index count, index stride, const typename P::scalar* w) {
  for (index i = 0; i < count; ++i, w += 2 * (R - 1)) {
    cplx<P> a[R];
    unroll<R>([&](auto j) SIGPAK_LAMBDA { a[j] = load_pair<P>(s, i + j * stride); });
    transform(a);
    store_pair(s, i, a[0]);
    unroll<R - 1>([&](auto k)
                      SIGPAK_LAMBDA { store_pair(s, i + (k + 1) * stride, turned(a[k + 1], w + 2 * k)); });
  }
}
template <class P, int R>
void pass_outwards(typename P::scalar* s, index count, const typename P::scalar* w) {
  for (index i = 0; i < count; ++i, w += 2 * (R - 1)) {
    cplx<P> a[R];
    a[0] = load_pair<P>(s, i);
    unroll<R - 1>([&](auto k)
                      SIGPAK_LAMBDA { a[k + 1] = turned(load_pair<P>(s, i + (k + 1) * count), w + 2 * k); });
    transform(a);
    unroll<R>([&](auto j) SIGPAK_LAMBDA { store_pair(s, i + j * count, a[j]); });
  }
}

// How far the tables of the core have been used.
template <class T> struct core_tables {
  const T* turns;
  const T* filter;
  T* spectrum;  // where the transforms go, instead of the filter's products back into place
};

// Vectors of the filter from one that is used to one that is asked for: it comes from afar, and only once.
constexpr index prefetched = 32;

// The last L-point pass and the V-point transforms, the filter, and back again.
template <class P, int R, bool filtering>
void core(typename P::scalar* s, index length, core_tables<typename P::scalar>& tables) {
  constexpr int W = P::width;
  constexpr int V = W / 2;
  const auto* w = tables.turns;
  for (index i = 0; i < length; i += R) {
    cplx<P> a[R];
    unroll<R>([&](auto j) SIGPAK_LAMBDA { a[j] = load_pair<P>(s, i + j); });
    transform(a);
    unroll<R / V>([&](auto group) SIGPAK_LAMBDA {
      cplx<P> y[V], t[V];
      unroll<V>([&](auto p) SIGPAK_LAMBDA { y[p] = a[V * group + p]; });
      transpose_pairs(y);
      unroll<V - 1>([&](auto l) SIGPAK_LAMBDA {
        t[l + 1] = twice<P, false>(load<P>(w + W * ((V - 1) * group + l)));
        y[l + 1] = turned(y[l + 1], t[l + 1].re, t[l + 1].im);
      });
      transform(y);
      unroll<V>([&](auto k) SIGPAK_LAMBDA {
        if constexpr (filtering) {
          __builtin_prefetch(tables.filter + 2 * W * (i + V * group + k + prefetched), 0, 2);
          const cplx<P> g = load_pair<P>(tables.filter, i + V * group + k);
          y[k] = turned(y[k], g.re, g.im);
        } else {
          store_pair(tables.spectrum, i + V * group + k, y[k]);
        }
      });
      if constexpr (!filtering) return;
      transform(y);
      unroll<V - 1>([&](auto l) SIGPAK_LAMBDA { y[l + 1] = turned(y[l + 1], t[l + 1].re, t[l + 1].im); });
      transpose_pairs(y);
      unroll<V>([&](auto p) SIGPAK_LAMBDA { a[V * group + p] = y[p]; });
    });
    w += W * (V - 1) * (R / V);
    if constexpr (!filtering) continue;
    transform(a);
    unroll<R>([&](auto j) SIGPAK_LAMBDA { store_pair(s, i + j, a[j]); });
  }
  tables.turns = w;
  tables.filter += 2 * W * length;
  if constexpr (!filtering) tables.spectrum += 2 * W * length;
}

// The last pass takes whole groups of V vectors.
template <class P, class Body> SIGPAK_INLINE void with_core_radix(int radix, const Body& body) {
  if constexpr (P::width / 2 <= 4) {
    with_one_of<4, 8>(radix, body);
  } else {
    with_one_of<8, 16>(radix, body);
  }
}
template <class Body> SIGPAK_INLINE void with_inner_radix(int radix, const Body& body) {
  with_one_of<3, 4, 5, 6, 7, 8, 10, 12>(radix, body);
}
template <class Body> SIGPAK_INLINE void with_outer_radix(int radix, const Body& body) {
  with_one_of<1, 3, 4, 5, 8>(radix, body);
}

// Whole blocks one after the other, each finished before the next is begun.
template <class P, bool filtering>
void inner_passes(const chirp_plan<typename P::scalar>& plan, int pass, typename P::scalar* s, index length,
                  core_tables<typename P::scalar>& tables) {
  if (pass == plan.passes - 1) {
    return with_core_radix<P>(plan.radix[pass],
                              [&](auto radix) { core<P, radix, filtering>(s, length, tables); });
  }
  const index block = plan.block[pass];
  const index count = block / plan.radix[pass];
  for (index i = 0; i < length; i += block, s += 2 * P::width * block) {
    with_inner_radix(plan.radix[pass],
                     [&](auto radix) { pass_inwards<P, radix>(s, count, count, plan.twiddles[pass]); });
    inner_passes<P, filtering>(plan, pass + 1, s, block, tables);
    if constexpr (!filtering) continue;
    with_inner_radix(plan.radix[pass],
                     [&](auto radix) { pass_outwards<P, radix>(s, count, plan.twiddles[pass]); });
  }
}

template <class P, bool filtering>
void all_inner_passes(const chirp_plan<typename P::scalar>& plan, int round, typename P::scalar* s,
                      typename P::scalar* spectrum) {
  core_tables<typename P::scalar> tables = {plan.turns, plan.filter[round], spectrum};
  for (int block = 0; block < plan.radix[0]; ++block) {
    inner_passes<P, filtering>(plan, 1, s + 2 * P::width * plan.stride * block, plan.block[1], tables);
  }
}

template <class P, bool inverse>
void run_chirp(const chirp_plan<typename P::scalar>& plan, typename P::scalar* x, typename P::scalar* s) {
  data_of<P> data(x, plan.points);
  with_outer_radix(plan.radix[0], [&](auto radix) { chirp_in<P, radix, inverse>(plan, data, s); });
  all_inner_passes<P, true>(plan, 0, s, nullptr);
  with_outer_radix(plan.radix[0], [&](auto radix) { chirp_out<P, radix, inverse>(plan, s, data); });
  data.finish();
}

template <class P>
void chirp_spectrum(const chirp_plan<typename P::scalar>& plan, typename P::scalar* s,
                    typename P::scalar* out) {
  with_outer_radix(plan.radix[0], [&](auto radix) {
    pass_inwards<P, radix>(s, plan.vectors / radix, plan.stride, plan.twiddles[0]);
  });
  all_inner_passes<P, false>(plan, 0, s, out);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
