// SPDX-License-Identifier: MIT
// The chirp transform in two rounds, each with half of the scratch memory. Between them the data hold their
// products with the chirp, and then what the first round gives to the result.
#pragma once

#include "fft/wide/chirp.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// From two vectors of points to their pairs, and back: of every two by two scalars the other diagonal.
template <class P> SIGPAK_INLINE cplx<P> interlaced(P a, P b) {
  if constexpr (is_single<typename P::scalar>) {
    return {middle_exchanged(evens(a, b)), middle_exchanged(odds(a, b))};
  } else {
    return {low_parts(a, b), high_parts(a, b)};
  }
}

// V points times the chirp.
template <class P> SIGPAK_INLINE P chirped(P z, const typename P::scalar* g) {
  const P c = load<P>(g);
  return turned(z, evens_twice(c), odds_twice(c));
}

// Inverse transforms have real and imaginary parts exchanged.
template <class P, bool inverse> SIGPAK_INLINE P as_forward(P z) {
  if constexpr (inverse) return exchanged(z);
  return z;
}

// One round's part in a transform of two: r is `round` in the even lanes and `round` + 2 in the odd ones.
template <class P, int round> class half_circle {
 public:
  using T = typename P::scalar;
  SIGPAK_INLINE explicit half_circle(const chirp_plan<T>& plan)
      : entries_(plan.entries[round]), slants_(plan.slants[round]), stride_(plan.stride) {}

  // Points z[n] and z[n + K] on the way in, z[n] + (-i)^r z[n+K] times w^(r n).
  template <int j> SIGPAK_INLINE cplx<P> entering(constant<j>, P low, P high) const {
    return slanted<j>(round == 0 ? interlaced(low + high, low - high)
                                 : interlaced(minus_i(low, high), plus_i(low, high)));
  }

  // The transpose: the parts of X[n] and X[n+K]; the latter is still to be taken times -i in the second
  // round.
  template <int j> SIGPAK_INLINE cplx<P> leaving(constant<j>, cplx<P> a) const {
    const cplx<P> t = slanted<j>(a);
    const cplx<P> parts = interlaced(t.re, t.im);
    return {parts.re + parts.im, parts.re - parts.im};
  }

  // The R results of butterfly i, to and from the scratch memory.
  template <int R> SIGPAK_INLINE void put(T* s, index i, const cplx<P> (&a)[R]) const {
    unroll<R>([&](auto k) SIGPAK_LAMBDA { store_pair(s, i + k * stride_, entered<R>(a[k], i, k)); });
  }
  template <int R> SIGPAK_INLINE void take(const T* s, index i, cplx<P> (&a)[R]) const {
    unroll<R>([&](auto k) SIGPAK_LAMBDA { a[k] = entered<R>(load_pair<P>(s, i + k * stride_), i, k); });
  }

 private:
  template <int j> SIGPAK_INLINE cplx<P> slanted(cplx<P> a) const {
    const cplx<P> t = load_pair<P>(slants_, j);
    return turned(a, t.re, t.im);
  }
  template <int R> SIGPAK_INLINE cplx<P> entered(cplx<P> a, index i, int k) const {
    const T* const w = entries_ + 4 * (R * i + k);
    return turned(a, alternately(w, P{}), alternately(w + 2, P{}));
  }

  const T* entries_;
  const T* slants_;
  index stride_;
};

// The vectors of data behind butterfly i, whose second ones may lie behind the end.
template <class P, int R, class Body>
SIGPAK_INLINE void with_points(const data_of<P>& data, index i, index count, const Body& body) {
  unroll<R>([&](auto j) SIGPAK_LAMBDA {
    const index low = i + j * count;
    const index high = low + R * count;
    body(j, low, high, data.holds(high));
  });
}

template <class P, int R, bool inverse>
void first_round_in(const chirp_plan<typename P::scalar>& plan, data_of<P>& data, typename P::scalar* s) {
  const half_circle<P, 0> round(plan);
  const index count = plan.vectors / R;
  const auto enter = [&](index vector) SIGPAK_LAMBDA {
    const P z = chirped(as_forward<P, inverse>(load<P>(data.source(vector))), plan.chirp + P::width * vector);
    store(data.target(vector), z);
    return z;
  };
  for (index i = 0; i < count; ++i) {
    cplx<P> a[R];
    with_points<P, R>(data, i, count, [&](auto j, index low, index high, bool is_there) SIGPAK_LAMBDA {
      const P z = enter(low);
      a[j] = round.entering(j, z, is_there ? enter(high) : P{});
    });
    transform(a);
    round.put(s, i, a);
  }
}

// Out of the first round and into the second, in the same places.
template <class P, int R>
void change_rounds(const chirp_plan<typename P::scalar>& plan, data_of<P>& data, typename P::scalar* s) {
  const half_circle<P, 0> first(plan);
  const half_circle<P, 1> second(plan);
  const index count = plan.vectors / R;
  const auto exchange = [&](index vector, P result) SIGPAK_LAMBDA {
    const P z = load<P>(data.source(vector));
    store(data.target(vector), result);
    return z;
  };
  for (index i = 0; i < count; ++i) {
    cplx<P> a[R];
    first.take(s, i, a);
    transform(a);
    with_points<P, R>(data, i, count, [&](auto j, index low, index high, bool is_there) SIGPAK_LAMBDA {
      const cplx<P> results = first.leaving(j, a[j]);
      const P z = exchange(low, results.re);
      a[j] = second.entering(j, z, is_there ? exchange(high, results.im) : P{});
    });
    transform(a);
    second.put(s, i, a);
  }
}

template <class P, int R, bool inverse>
void second_round_out(const chirp_plan<typename P::scalar>& plan, const typename P::scalar* s,
                      data_of<P>& data) {
  const half_circle<P, 1> round(plan);
  const index count = plan.vectors / R;
  const P scale = splat<P>(plan.scale[inverse]);
  const auto finish = [&](index vector, P sum) SIGPAK_LAMBDA {
    store(data.target(vector), as_forward<P, inverse>(chirped(sum, plan.chirp + P::width * vector) * scale));
  };
  for (index i = 0; i < count; ++i) {
    cplx<P> a[R];
    round.take(s, i, a);
    transform(a);
    with_points<P, R>(data, i, count, [&](auto j, index low, index high, bool is_there) SIGPAK_LAMBDA {
      const cplx<P> results = round.leaving(j, a[j]);
      finish(low, load<P>(data.source(low)) + results.re);
      if (is_there) finish(high, minus_i(load<P>(data.source(high)), results.im));
    });
  }
}

template <class P, bool inverse>
void run_rounds(const chirp_plan<typename P::scalar>& plan, typename P::scalar* x, typename P::scalar* s) {
  data_of<P> data(x, plan.points);
  with_outer_radix(plan.radix[0], [&](auto radix) { first_round_in<P, radix, inverse>(plan, data, s); });
  all_inner_passes<P, true>(plan, 0, s, nullptr);
  with_outer_radix(plan.radix[0], [&](auto radix) { change_rounds<P, radix>(plan, data, s); });
  all_inner_passes<P, true>(plan, 1, s, nullptr);
  with_outer_radix(plan.radix[0], [&](auto radix) { second_round_out<P, radix, inverse>(plan, s, data); });
  data.finish();
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
