// SPDX-License-Identifier: MIT
// Lengths as products of radices.
#pragma once

#include <initializer_list>

#include "core/record.h"
#include "fft/plans/pass_plan.h"

namespace sigpak::kernels {

// No prime factor is above `largest`, 13 at most.
constexpr bool is_smooth(index n, index largest) noexcept {
  for (const index p : {2, 3, 5, 7, 11, 13}) {
    while (p <= largest && n % p == 0) n /= p;
  }
  return n == 1;
}

// Appends passes for 2^bits: eights, then fours and a two. Stops where there is no room for more; how many it
// took.
template <class T> int take_power_of_two(pass_plan<T>& plan, int bits) noexcept {
  const int before = plan.passes;
  while (bits > 0 && plan.passes < most_passes) {
    const int step = bits == 1 ? 1 : bits == 2 || bits == 4 ? 2 : 3;
    plan.radix[plan.passes++] = 1 << step;
    bits -= step;
  }
  return plan.passes - before;
}

// The passes of 2^bits vectors: 16 takes one.
template <class T> void choose_power_of_two(pass_plan<T>& plan, int bits) noexcept {
  plan.passes = 0;
  if (bits == 4) {
    plan.radix[plan.passes++] = 16;
  } else {
    take_power_of_two(plan, bits);
  }
}

}  // namespace sigpak::kernels
