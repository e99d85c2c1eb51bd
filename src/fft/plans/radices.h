// SPDX-License-Identifier: MIT
// Lengths as products of radices.
#pragma once

#include <initializer_list>

#include "core/record.h"

namespace sigpak::kernels {

// Primes above 13 whose transforms are the sums of their definition.
inline constexpr int long_primes[] = {17, 19, 23, 29, 31, 37,  41,  43,  47,  53,  59,  61, 67,
                                      71, 73, 79, 83, 89, 97, 101, 103, 107, 109, 113, 127};
inline constexpr int most_prime = 127;

constexpr bool is_long_prime(index n) noexcept {
  for (const int p : long_primes) {
    if (n == p) return true;
  }
  return false;
}

// The length with all of those divided out.
constexpr index without_long_primes(index n) noexcept {
  for (const int p : long_primes) {
    while (n % p == 0) n /= p;
  }
  return n;
}

// No prime factor is above `largest`, 13 at most.
constexpr bool is_smooth(index n, index largest) noexcept {
  for (const index p : {2, 3, 5, 7, 11, 13}) {
    while (p <= largest && n % p == 0) n /= p;
  }
  return n == 1;
}

}  // namespace sigpak::kernels
