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

template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[6], S factor = {}) {
  coprime_transform<2, 3>(x, factor);
}
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[10], S factor = {}) {
  coprime_transform<2, 5>(x, factor);
}
template <class E, class S = unit> SIGPAK_INLINE void transform(E (&x)[12], S factor = {}) {
  coprime_transform<4, 3>(x, factor);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
