// SPDX-License-Identifier: MIT
// Short transforms of complex vectors in registers: forward, natural order in and out.
//
// A vector of complex points is either split, `cplx<P>`, or interleaved, a plain pack; the transforms are the
// same for both.
#pragma once

#include "fft/plans/sines.h"
#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <class P> struct cplx { P re, im; };

template <class P> SIGPAK_INLINE cplx<P> operator+(cplx<P> a, cplx<P> b) {
  return {a.re + b.re, a.im + b.im};
}
template <class P> SIGPAK_INLINE cplx<P> operator-(cplx<P> a, cplx<P> b) {
  return {a.re - b.re, a.im - b.im};
}
template <class P> SIGPAK_INLINE cplx<P> operator*(cplx<P> a, P s) { return {a.re * s, a.im * s}; }

// s * a + b and b - s * a, s real.
template <class P> SIGPAK_INLINE cplx<P> fma(P s, cplx<P> a, cplx<P> b) {
  return {fma(s, a.re, b.re), fma(s, a.im, b.im)};
}
template <class P> SIGPAK_INLINE cplx<P> fnma(P s, cplx<P> a, cplx<P> b) {
  return {fnma(s, a.re, b.re), fnma(s, a.im, b.im)};
}

template <class P> SIGPAK_INLINE P splat_constant(long double x) {
  return splat<P>(static_cast<typename P::scalar>(x));
}

// a + i b and a - i b.
template <class P> SIGPAK_INLINE cplx<P> plus_i(cplx<P> a, cplx<P> b) { return {a.re - b.im, a.im + b.re}; }
template <class P> SIGPAK_INLINE cplx<P> minus_i(cplx<P> a, cplx<P> b) { return {a.re + b.im, a.im - b.re}; }
template <class T, int W> SIGPAK_INLINE pack<T, W> plus_i(pack<T, W> a, pack<T, W> b) {
  return fma_odd(a, splat_constant<pack<T, W>>(1), exchanged(b));
}
template <class T, int W> SIGPAK_INLINE pack<T, W> minus_i(pack<T, W> a, pack<T, W> b) {
  return fma_even(a, splat_constant<pack<T, W>>(1), exchanged(b));
}

// The scalars in odd places with the other sign.
template <class T, int W> SIGPAK_INLINE pack<T, W> alternating(pack<T, W> a) {
  typename pack<T, W>::vector signs{};
  for (int i = 0; i < W; ++i) signs[i] = i % 2 == 0 ? T(1) : T(-1);
  return {a.v * signs};
}

// b + i s a and b - i s a, s real.
template <class P> SIGPAK_INLINE cplx<P> fma_i(P s, cplx<P> a, cplx<P> b) {
  return {fnma(s, a.im, b.re), fma(s, a.re, b.im)};
}
template <class P> SIGPAK_INLINE cplx<P> fnma_i(P s, cplx<P> a, cplx<P> b) {
  return {fma(s, a.im, b.re), fnma(s, a.re, b.im)};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> fma_i(pack<T, W> s, pack<T, W> a, pack<T, W> b) {
  return fnma(exchanged(a), alternating(s), b);
}
template <class T, int W> SIGPAK_INLINE pack<T, W> fnma_i(pack<T, W> s, pack<T, W> a, pack<T, W> b) {
  return fma(exchanged(a), alternating(s), b);
}

// a times c - i s: a twiddle is stored as the cosine and sine of its positive angle.
template <class P> SIGPAK_INLINE cplx<P> turned(cplx<P> a, P c, P s) {
  return {fma(a.re, c, a.im * s), fms(a.im, c, a.re * s)};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> turned(pack<T, W> a, pack<T, W> c, pack<T, W> s) {
  return fma_even(a, c, exchanged(a) * s);
}

inline constexpr long double half_root = kernels::cosine_of(1, 8);
inline constexpr long double cos_pi_8 = kernels::cosine_of(1, 16);
inline constexpr long double tan_pi_8 = kernels::sine_of(1, 16) / cos_pi_8;

template <class P> struct split_of { using real = P; };
template <class P> struct split_of<cplx<P>> { using real = P; };
template <class E> using real_of = typename split_of<E>::real;

// The factor of all results of a transform, or none. It enters in the last sums, where it costs a product or
// two: all sums before them are formed at full size, which keeps the digits of tiny data.
struct unit {};
template <class E> SIGPAK_INLINE E scaled(unit, E a) { return a; }
template <class E, class P> SIGPAK_INLINE E scaled(P s, E a) { return a * s; }

// The factor of the results; an inverse transform has none.
template <class P, bool inverse> SIGPAK_INLINE auto factor_of(typename P::scalar scale) {
  if constexpr (inverse) {
    return unit{};
  } else {
    return splat<P>(scale);
  }
}

// s a + b, s a - b, s a + i b, s a - i b.
template <class E> SIGPAK_INLINE E plus(unit, E a, E b) { return a + b; }
template <class E> SIGPAK_INLINE E minus(unit, E a, E b) { return a - b; }
template <class E> SIGPAK_INLINE E plus_i(unit, E a, E b) { return plus_i(a, b); }
template <class E> SIGPAK_INLINE E minus_i(unit, E a, E b) { return minus_i(a, b); }
template <class T, int W> SIGPAK_INLINE pack<T, W> plus(pack<T, W> s, pack<T, W> a, pack<T, W> b) {
  return fma(s, a, b);
}
template <class T, int W> SIGPAK_INLINE pack<T, W> minus(pack<T, W> s, pack<T, W> a, pack<T, W> b) {
  return fms(s, a, b);
}
template <class T, int W> SIGPAK_INLINE pack<T, W> plus_i(pack<T, W> s, pack<T, W> a, pack<T, W> b) {
  return fma_odd(a, s, exchanged(b));
}
template <class T, int W> SIGPAK_INLINE pack<T, W> minus_i(pack<T, W> s, pack<T, W> a, pack<T, W> b) {
  return fma_even(a, s, exchanged(b));
}
template <class P> SIGPAK_INLINE cplx<P> plus(P s, cplx<P> a, cplx<P> b) {
  return {fma(s, a.re, b.re), fma(s, a.im, b.im)};
}
template <class P> SIGPAK_INLINE cplx<P> minus(P s, cplx<P> a, cplx<P> b) {
  return {fms(s, a.re, b.re), fms(s, a.im, b.im)};
}
template <class P> SIGPAK_INLINE cplx<P> plus_i(P s, cplx<P> a, cplx<P> b) {
  return {fms(s, a.re, b.im), fma(s, a.im, b.re)};
}
template <class P> SIGPAK_INLINE cplx<P> minus_i(P s, cplx<P> a, cplx<P> b) {
  return {fma(s, a.re, b.im), fms(s, a.im, b.re)};
}

template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[1], S s = {}) {
  x[0] = scaled(s, x[0]);
}

template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[2], S s = {}) {
  const E a = x[0];
  const E b = scaled(s, x[1]);
  x[0] = plus(s, a, b);
  x[1] = minus(s, a, b);
}

// What follows the sums and differences of x0, x2 and of x1, x3; the latter two with the factor.
template <class E, class S> SIGPAK_INLINE void finish4(S s, E a, E b, E c, E d, E& x0, E& x1, E& x2, E& x3) {
  x0 = plus(s, a, c);
  x1 = minus_i(s, b, d);
  x2 = minus(s, a, c);
  x3 = plus_i(s, b, d);
}
template <class E, class S = unit> SIGPAK_INLINE void transform4(E& x0, E& x1, E& x2, E& x3, S s = {}) {
  const E last = scaled(s, x3);
  finish4(s, x0 + x2, x0 - x2, plus(s, x1, last), minus(s, x1, last), x0, x1, x2, x3);
}

template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[4], S s = {}) {
  transform4(x[0], x[1], x[2], x[3], s);
}

// The same where the points with odd numbers have the factor already.
template <class E, class S> SIGPAK_INLINE void transform_turned(E (&x)[2], S s) {
  const E a = x[0];
  x[0] = plus(s, a, x[1]);
  x[1] = minus(s, a, x[1]);
}
template <class E, class S> SIGPAK_INLINE void transform_turned(E (&x)[4], S s) {
  finish4(s, x[0] + x[2], x[0] - x[2], x[1] + x[3], x[1] - x[3], x[0], x[1], x[2], x[3]);
}

// Of the sums and differences of points half of 8 apart: the transform of the even points; that of the odd
// ones, whose results 1 and 3 still lack the root of one half; and both together. Odd points times w_8^k join
// the even ones by fused products, which balances the adders.
template <class E, class S>
SIGPAK_INLINE void evens_of_8(S s, E sum0, E difference0, E sum2, E difference2, E (&e)[4]) {
  const E turned = scaled(s, difference2);
  e[0] = sum0 + sum2;
  e[2] = sum0 - sum2;
  e[1] = minus_i(s, difference0, turned);
  e[3] = plus_i(s, difference0, turned);
}
template <class E, class S>
SIGPAK_INLINE void odds_of_8(S s, E sum1, E difference1, E sum3, E difference3, E (&o)[4]) {
  const E last = scaled(s, sum3);
  o[0] = plus(s, sum1, last);
  o[2] = minus(s, sum1, last);
  const E t1 = difference1 - difference3, t3 = difference1 + difference3;
  o[1] = minus_i(t1, t3);
  o[3] = plus_i(t1, t3);
}
template <class E, class S, class H>
SIGPAK_INLINE void join_8(S s, H h, const E (&e)[4], const E (&o)[4], E (&x)[8]) {
  x[0] = plus(s, e[0], o[0]);
  x[4] = minus(s, e[0], o[0]);
  x[1] = fma(h, o[1], e[1]);
  x[5] = fnma(h, o[1], e[1]);
  x[2] = minus_i(s, e[2], o[2]);
  x[6] = plus_i(s, e[2], o[2]);
  x[3] = fnma(h, o[3], e[3]);
  x[7] = fma(h, o[3], e[3]);
}
template <class E, class S> SIGPAK_INLINE void join_8(S s, const E (&e)[4], const E (&o)[4], E (&x)[8]) {
  join_8(s, scaled(s, splat_constant<real_of<E>>(half_root)), e, o, x);
}
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[8], S s = {}) {
  E e[4], o[4];
  evens_of_8(s, x[0] + x[4], x[0] - x[4], x[2] + x[6], x[2] - x[6], e);
  odds_of_8(s, x[1] + x[5], x[1] - x[5], x[3] + x[7], x[3] - x[7], o);
  join_8(s, e, o, x);
}
// As those of two and of four.
template <class E, class S> SIGPAK_INLINE void transform_turned(E (&x)[8], S s) {
  E e[4], o[4];
  evens_of_8(s, x[0] + x[4], x[0] - x[4], x[2] + x[6], x[2] - x[6], e);
  odds_of_8(unit{}, x[1] + x[5], x[1] - x[5], x[3] + x[7], x[3] - x[7], o);
  join_8(s, splat_constant<real_of<E>>(half_root), e, o, x);
}

// Of 16 points the second half: row k has the results k of the four transforms of x[j], x[j + 4], x[j + 8],
// x[j + 12], in the order of j, which the twiddles w_16^(j k) turn. Those of a row have a factor in common,
//   w_16 = c (1 - i t), w_16^3 = c (t - i), c = cos(pi / 8), t = tan(pi / 8),
// which waits for the last sums, as do the roots of one half of w_8 and w_8^3.
template <class P, class S> class rows_of_16 {
 public:
  SIGPAK_INLINE explicit rows_of_16(S factor)
      : factor_(factor),
        h_(splat_constant<P>(half_root)),
        t_(splat_constant<P>(tan_pi_8)),
        half_(scaled(factor, h_)),
        c_(scaled(factor, splat_constant<P>(cos_pi_8))) {}

  // Of row k the results k + 4 k'.
  template <int k, class E> SIGPAK_INLINE void run(constant<k>, E (&x)[4]) const {
    if constexpr (k == 0) {
      transform(x, factor_);
    } else if constexpr (k == 1) {
      const E a = fnma_i(t_, x[1], x[1]), b = minus_i(x[2], x[2]), c = minus_i(t_, x[3], x[3]);
      finish(c_, fma(h_, b, x[0]), fnma(h_, b, x[0]), a + c, a - c, x);
    } else if constexpr (k == 2) {
      const E a = minus_i(x[1], x[1]), c = plus_i(x[3], x[3]);
      finish(half_, minus_i(x[0], x[2]), plus_i(x[0], x[2]), a - c, a + c, x);
    } else {
      const E a = minus_i(t_, x[1], x[1]), b = plus_i(x[2], x[2]), c = fnma_i(t_, x[3], x[3]);
      finish(c_, fnma(h_, b, x[0]), fma(h_, b, x[0]), a - c, a + c, x);
    }
  }

 private:
  // What follows the sums and differences of x0, x2 and of x1, x3, the latter times r.
  template <class E> SIGPAK_INLINE void finish(P r, E a, E b, E c, E d, E (&x)[4]) const {
    const E sum = scaled(factor_, a);
    const E difference = scaled(factor_, b);
    x[0] = fma(r, c, sum);
    x[1] = fnma_i(r, d, difference);
    x[2] = fnma(r, c, sum);
    x[3] = fma_i(r, d, difference);
  }

  S factor_;
  P h_, t_, half_, c_;
};

// The transform of the R points source(j), whose results k go to sink(k, y) once all points have been read.
template <int R, class Source, class Sink, class S = unit>
SIGPAK_INLINE void transform_through(const Source& source, const Sink& sink, S factor = {}) {
  using E = decltype(source(constant<0>{}));
  if constexpr (R == 16) {
    // By columns and by rows of a square, so that few of the points are in registers at a time.
    const rows_of_16<real_of<E>, S> rows(factor);
    E square[4][4];
    unroll<4>([&](auto j) SIGPAK_LAMBDA {
      E a[4] = {source(constant<j>{}), source(constant<j + 4>{}), source(constant<j + 8>{}),
                source(constant<j + 12>{})};
      transform(a);
      unroll<4>([&](auto k) SIGPAK_LAMBDA { square[k][j] = a[k]; });
    });
    unroll<4>([&](auto k) SIGPAK_LAMBDA {
      rows.run(k, square[k]);
      unroll<4>([&](auto j) SIGPAK_LAMBDA { sink(constant<k + 4 * j>{}, square[k][j]); });
    });
  } else {
    E a[R];
    unroll<R>([&](auto j) SIGPAK_LAMBDA { a[j] = source(j); });
    transform(a, factor);
    unroll<R>([&](auto k) SIGPAK_LAMBDA { sink(k, a[k]); });
  }
}

template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[16], S factor = {}) {
  transform_through<16>([&x](auto j) SIGPAK_LAMBDA { return x[j]; },
                        [&x](auto k, E y) SIGPAK_LAMBDA { x[k] = y; }, factor);
}

// The place of result k among those of a forward transform of R points. An inverse one has the same results
// in the opposite order; where it has real and imaginary parts exchanged on the way in, that exchanges them
// back too.
template <int R, bool inverse> constexpr int result_at(int k) { return inverse ? (R - k) % R : k; }

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
