// SPDX-License-Identifier: MIT
// Lengths as products of radices.
#pragma once

#include "core/record.h"

namespace sigpak::kernels {

constexpr index ceiling(index a, index b) noexcept { return (a + b - 1) / b; }

// Those above 13 are long: their transforms are the sums of the definition.
inline constexpr int primes[] = {2,  3,  5,  7,  11, 13, 17, 19, 23, 29,  31,  37,  41,  43,  47, 53,
                                 59, 61, 67, 71, 73, 79, 83, 89, 97, 101, 103, 107, 109, 113, 127};
inline constexpr int most_short_prime = 13;
inline constexpr int most_prime = 127;

// No prime factor is above `largest`, 127 at most.
constexpr bool is_smooth(index n, index largest) noexcept {
  for (const index p : primes) {
    if (p > largest || p * p > n) break;
    while (n % p == 0) n /= p;
  }
  return n <= largest;
}

// The least prime factor above 13, or what is left without those up to 127; 1 where there is none.
constexpr index long_factor(index n) noexcept {
  for (const index p : primes) {
    if (p * p > n) break;
    if (p > most_short_prime && n % p == 0) return p;
    while (n % p == 0) n /= p;
  }
  return n > most_short_prime ? n : 1;
}

}  // namespace sigpak::kernels
