// SPDX-License-Identifier: MIT
// Powers of two.
#pragma once

#include <bit>

#include "core/record.h"

namespace sigpak {

// Not by counting bits, which takes a call where the processor may lack the instruction.
constexpr bool is_power_of_two(index n) noexcept { return n > 0 && (n & (n - 1)) == 0; }

// The smallest that is not below n.
constexpr index next_power_of_two(index n) noexcept {
  return static_cast<index>(std::bit_ceil(static_cast<std::uint64_t>(n)));
}

// log2 of a power of two.
constexpr int address_bits(index points) noexcept {
  return __builtin_ctzll(static_cast<std::uint64_t>(points));
}

}  // namespace sigpak
