// SPDX-License-Identifier: MIT
// Short transforms of composite length. Of coprime factors, n = B n1 + A n2 and k = k1 mod A, k2 mod B take
// the twiddles away (I. J. Good, "The interaction algorithm and practical Fourier analysis", J. Roy. Statist.
// Soc. B 20 (1958)).
#pragma once

#include "fft/wide/butterflies_odd.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <int A, int B, class E, class S = unit>
SIGPAK_INLINE void coprime_transform(E (&x)[A * B], S factor = {}) {
  E y[B][A];
  unroll<B>([&](auto n2) SIGPAK_LAMBDA {
    unroll<A>([&](auto n1) SIGPAK_LAMBDA { y[n2][n1] = x[(B * n1 + A * n2) % (A * B)]; });
    transform(y[n2]);
  });
  unroll<A>([&](auto k1) SIGPAK_LAMBDA {
    E column[B];
    unroll<B>([&](auto n2) SIGPAK_LAMBDA { column[n2] = y[n2][k1]; });
    transform(column, factor);
    // The k below A B with these remainders.
    unroll<A * B>([&](auto k) SIGPAK_LAMBDA {
      if constexpr (k % A == k1) x[k] = column[k % B];
    });
  });
}

// Of any factors, n = B n1 + n2 and k = k1 + A k2.
template <int A, int B, class E, class S = unit>
SIGPAK_INLINE void turned_transform(E (&x)[A * B], S factor = {}) {
  using P = real_of<E>;
  using T = typename P::scalar;
  E y[B][A];
  unroll<B>([&](auto n2) SIGPAK_LAMBDA {
    unroll<A>([&](auto n1) SIGPAK_LAMBDA { y[n2][n1] = x[B * n1 + n2]; });
    transform(y[n2]);
    if constexpr (n2 > 0) {
      unroll<A - 1>([&](auto i) SIGPAK_LAMBDA {
        constexpr int k1 = i + 1;
        y[n2][k1] = turned(y[n2][k1], splat<P>(cosine_constant<T, n2 * k1, A * B>),
                           splat<P>(sine_constant<T, n2 * k1, A * B>));
      });
    }
  });
  unroll<A>([&](auto k1) SIGPAK_LAMBDA {
    E column[B];
    unroll<B>([&](auto n2) SIGPAK_LAMBDA { column[n2] = y[n2][k1]; });
    transform(column, factor);
    unroll<B>([&](auto k2) SIGPAK_LAMBDA { x[k1 + A * k2] = column[k2]; });
  });
}

template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[6], S factor = {}) {
  coprime_transform<2, 3>(x, factor);
}
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[10], S factor = {}) {
  coprime_transform<2, 5>(x, factor);
}
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[12], S factor = {}) {
  coprime_transform<4, 3>(x, factor);
}

template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[14], S factor = {}) {
  coprime_transform<2, 7>(x, factor);
}
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[20], S factor = {}) {
  coprime_transform<4, 5>(x, factor);
}

// 15, 21, 25 and 27 are odd too, which their sums and differences would take more products for.
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[15], S factor = {}) {
  coprime_transform<3, 5>(x, factor);
}
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[21], S factor = {}) {
  coprime_transform<3, 7>(x, factor);
}
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[25], S factor = {}) {
  turned_transform<5, 5>(x, factor);
}
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[27], S factor = {}) {
  turned_transform<9, 3>(x, factor);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
