// SPDX-License-Identifier: MIT
// Runs of work in blocks of a fixed length.
#pragma once

#include <algorithm>

#include "core/record.h"

namespace sigpak {

inline constexpr index sum_block = 2048;      // points summed from zero before they join the total
inline constexpr index rotation_block = 256;  // points turned by recurrence between two exact angles
inline constexpr index window_block = 1024;   // the same for the angles and ramps of windows

// Calls body(begin, count) for consecutive blocks of at most `size` of n.
template <class Body> void for_blocks(index n, index size, Body body) {
  for (index begin = 0; begin < n; begin += size) body(begin, std::min(size, n - begin));
}

}  // namespace sigpak
