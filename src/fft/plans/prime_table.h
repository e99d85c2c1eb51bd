// SPDX-License-Identifier: MIT
// The cosines and sines of transforms of prime length by the definition.
#pragma once

#include "fft/plans/radices.h"
#include "fft/plans/roots_of_unity.h"

namespace sigpak::kernels {

// Scalars of the table of p: the cosine and sine of 2 pi j k / p, j from 1 to (p-1)/2 within such k.
constexpr index prime_scalars(index p) noexcept { return p / 2 * (p / 2) * 2; }

template <class T> void fill_prime(T* out, index p) noexcept {
  const roots w(p);
  for (index k = 1; 2 * k < p; ++k) {
    for (index j = 1; 2 * j < p; ++j, out += 2) {
      const root r = w[j * k % p];
      out[0] = static_cast<T>(rounded(r.cosine));
      out[1] = static_cast<T>(rounded(r.sine));
    }
  }
}

}  // namespace sigpak::kernels
