// Short transforms of complex vectors in registers: forward, natural order in and out.
#pragma once

#include "kernels/lanes.h"

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

// a + i b and a - i b.
template <class P> SIGPAK_INLINE cplx<P> plus_i(cplx<P> a, cplx<P> b) { return {a.re - b.im, a.im + b.re}; }
template <class P> SIGPAK_INLINE cplx<P> minus_i(cplx<P> a, cplx<P> b) { return {a.re + b.im, a.im - b.re}; }

// a times c - i s: a twiddle is stored as the cosine and sine of its positive angle.
template <class P> SIGPAK_INLINE cplx<P> turned(cplx<P> a, P c, P s) {
  return {fma(a.re, c, a.im * s), fms(a.im, c, a.re * s)};
}

inline constexpr long double half_root = 0.707106781186547524400844362104849039L;  // cos(pi / 4)
inline constexpr long double cos_pi_8 = 0.923879532511286756128183189396788287L;
inline constexpr long double sin_pi_8 = 0.382683432365089771728459984030398866L;

template <class P> SIGPAK_INLINE P splat_constant(long double x) {
  return splat<P>(static_cast<typename P::scalar>(x));
}

template <class P> SIGPAK_INLINE void transform(cplx<P> (&x)[2]) {
  const cplx<P> t = x[0] - x[1];
  x[0] = x[0] + x[1];
  x[1] = t;
}

template <class P> SIGPAK_INLINE void transform4(cplx<P>& x0, cplx<P>& x1, cplx<P>& x2, cplx<P>& x3) {
  const cplx<P> a = x0 + x2;
  const cplx<P> b = x0 - x2;
  const cplx<P> c = x1 + x3;
  const cplx<P> d = x1 - x3;
  x0 = a + c;
  x1 = minus_i(b, d);
  x2 = a - c;
  x3 = plus_i(b, d);
}

template <class P> SIGPAK_INLINE void transform(cplx<P> (&x)[4]) { transform4(x[0], x[1], x[2], x[3]); }

// Odd points times w_8^k join the even ones by fused products, which balances the adders.
template <class P> SIGPAK_INLINE void transform(cplx<P> (&x)[8]) {
  transform4(x[0], x[2], x[4], x[6]);
  transform4(x[1], x[3], x[5], x[7]);
  const P h = splat_constant<P>(half_root);
  const cplx<P> e0 = x[0], e1 = x[2], e2 = x[4], e3 = x[6];
  const cplx<P> o0 = x[1], o1 = x[3], o2 = x[5], o3 = x[7];
  const P sum1 = o1.re + o1.im;
  const P difference1 = o1.im - o1.re;
  const P sum3 = o3.re + o3.im;
  const P difference3 = o3.im - o3.re;
  x[0] = e0 + o0;
  x[4] = e0 - o0;
  x[1] = {fma(h, sum1, e1.re), fma(h, difference1, e1.im)};
  x[5] = {fnma(h, sum1, e1.re), fnma(h, difference1, e1.im)};
  x[2] = minus_i(e2, o2);
  x[6] = plus_i(e2, o2);
  x[3] = {fma(h, difference3, e3.re), fnma(h, sum3, e3.im)};
  x[7] = {fnma(h, difference3, e3.re), fma(h, sum3, e3.im)};
}

// a times w_8 and w_8^3.
template <class P> SIGPAK_INLINE cplx<P> turned_eighth(cplx<P> a, P h) {
  return {h * (a.re + a.im), h * (a.im - a.re)};
}
template <class P> SIGPAK_INLINE cplx<P> turned_three_eighths(cplx<P> a, P h) {
  return {h * (a.im - a.re), -h * (a.re + a.im)};
}

template <class P> SIGPAK_INLINE void transform(cplx<P> (&x)[16]) {
  const P h = splat_constant<P>(half_root);
  const P c = splat_constant<P>(cos_pi_8);
  const P s = splat_constant<P>(sin_pi_8);
  unroll<4>([&](auto j) __attribute__((always_inline)) { transform4(x[j], x[j + 4], x[j + 8], x[j + 12]); });
  x[5] = turned(x[5], c, s);
  x[6] = turned_eighth(x[6], h);
  x[7] = turned(x[7], s, c);
  x[9] = turned_eighth(x[9], h);
  x[10] = {x[10].im, -x[10].re};
  x[11] = turned_three_eighths(x[11], h);
  x[13] = turned(x[13], s, c);
  x[14] = turned_three_eighths(x[14], h);
  x[15] = turned(x[15], -c, -s);
  unroll<4>([&](auto k) __attribute__((always_inline)) {
    transform4(x[4 * k], x[4 * k + 1], x[4 * k + 2], x[4 * k + 3]);
  });
  // Row k, column k' holds the point k + 4 k'.
  unroll<4>([&](auto k) __attribute__((always_inline)) {
    unroll<4>([&](auto j) __attribute__((always_inline)) {
      if constexpr (j > k) {
        const cplx<P> t = x[4 * k + j];
        x[4 * k + j] = x[4 * j + k];
        x[4 * j + k] = t;
      }
    });
  });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
