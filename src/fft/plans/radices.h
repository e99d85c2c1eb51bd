// SPDX-License-Identifier: MIT
// Lengths as products of radices.
#pragma once

#include <initializer_list>

#include "core/record.h"

namespace sigpak::kernels {

// No prime factor is above `largest`, 13 at most.
constexpr bool is_smooth(index n, index largest) noexcept {
  for (const index p : {2, 3, 5, 7, 11, 13}) {
    while (p <= largest && n % p == 0) n /= p;
  }
  return n == 1;
}

}  // namespace sigpak::kernels
