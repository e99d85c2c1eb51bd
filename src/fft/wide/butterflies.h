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

// a times c - i s: a twiddle is stored as the cosine and sine of its positive angle.
template <class P> SIGPAK_INLINE cplx<P> turned(cplx<P> a, P c, P s) {
  return {fma(a.re, c, a.im * s), fms(a.im, c, a.re * s)};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> turned(pack<T, W> a, pack<T, W> c, pack<T, W> s) {
  return fma_even(a, c, exchanged(a) * s);
}

inline constexpr long double half_root = kernels::cosine_of(1, 8);
inline constexpr long double cos_pi_8 = kernels::cosine_of(1, 16);
inline constexpr long double sin_pi_8 = kernels::sine_of(1, 16);

template <class P> struct split_of { using real = P; };
template <class P> struct split_of<cplx<P>> { using real = P; };
template <class E> using real_of = typename split_of<E>::real;

// The factor of all results of a transform, or none. It enters in the last sums, where it costs a product or
// two: all sums before them are formed at full size, which keeps the digits of tiny data.
struct unit {};
template <class E> SIGPAK_INLINE E scaled(unit, E a) { return a; }
template <class E, class P> SIGPAK_INLINE E scaled(P s, E a) { return a * s; }

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
// The same where x1 and x3 have the factor already.
template <class E, class S> SIGPAK_INLINE void transform_turned4(E& x0, E& x1, E& x2, E& x3, S s) {
  finish4(s, x0 + x2, x0 - x2, x1 + x3, x1 - x3, x0, x1, x2, x3);
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
  transform_turned4(x[0], x[1], x[2], x[3], s);
}

// Odd points times w_8^k join the even ones by fused products, which balances the adders.
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[8], S s = {}) {
  const auto h = scaled(s, splat_constant<real_of<E>>(half_root));
  const E even_sum = x[2] + x[6], even_difference = scaled(s, x[2] - x[6]);
  const E odd_sum = scaled(s, x[3] + x[7]), odd_difference = x[3] - x[7];
  const E e0 = x[0] + x[4] + even_sum, e2 = x[0] + x[4] - even_sum;
  const E e1 = minus_i(s, x[0] - x[4], even_difference), e3 = plus_i(s, x[0] - x[4], even_difference);
  const E o0 = plus(s, x[1] + x[5], odd_sum), o2 = minus(s, x[1] + x[5], odd_sum);
  const E t1 = minus_i(x[1] - x[5], odd_difference), t3 = plus_i(x[1] - x[5], odd_difference);
  const E o1 = minus_i(t1, t1), o3 = plus_i(t3, t3);
  x[0] = plus(s, e0, o0);
  x[4] = minus(s, e0, o0);
  x[1] = fma(h, o1, e1);
  x[5] = fnma(h, o1, e1);
  x[2] = minus_i(s, e2, o2);
  x[6] = plus_i(s, e2, o2);
  x[3] = fnma(h, o3, e3);
  x[7] = fma(h, o3, e3);
}

// a times w_8 and w_8^3.
template <class E, class P> SIGPAK_INLINE E turned_eighth(E a, P h) { return minus_i(a, a) * h; }
template <class E, class P> SIGPAK_INLINE E turned_three_eighths(E a, P h) { return plus_i(a, a) * -h; }

// The factor comes with the twiddles of all points but one that meet others in the last sums.
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[16], S factor = {}) {
  using P = real_of<E>;
  const P h = splat_constant<P>(half_root);
  const P half = scaled(factor, h);
  const P c = scaled(factor, splat_constant<P>(cos_pi_8));
  const P s = scaled(factor, splat_constant<P>(sin_pi_8));
  unroll<4>([&](auto j) SIGPAK_LAMBDA { transform4(x[j], x[j + 4], x[j + 8], x[j + 12]); });
  x[5] = turned(x[5], c, s);
  x[6] = turned_eighth(x[6], h);
  x[7] = turned(x[7], s, c);
  x[9] = turned_eighth(x[9], half);
  x[11] = turned_three_eighths(x[11], half);
  x[13] = turned(x[13], s, c);
  x[14] = turned_three_eighths(x[14], h);
  x[15] = turned(x[15], -c, -s);
  transform4(x[0], x[1], x[2], x[3], factor);
  transform_turned4(x[4], x[5], x[6], x[7], factor);
  finish4(factor, minus_i(x[8], x[10]), plus_i(x[8], x[10]), x[9] + x[11], x[9] - x[11], x[8], x[9], x[10],
          x[11]);  // x[10] times w_4
  transform_turned4(x[12], x[13], x[14], x[15], factor);
  // Row k, column k' holds the point k + 4 k'.
  unroll<4>([&](auto k) SIGPAK_LAMBDA {
    unroll<4>([&](auto j) SIGPAK_LAMBDA {
      if constexpr (j > k) {
        const E t = x[4 * k + j];
        x[4 * k + j] = x[4 * j + k];
        x[4 * j + k] = t;
      }
    });
  });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
