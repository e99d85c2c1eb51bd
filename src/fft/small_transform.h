// SPDX-License-Identifier: MIT
// Finds the transforms that need no plan, inline: a record of a few points is transformed in less time than
// calls between would take.
#pragma once

#include "core/power_of_two.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak {

// Of a level, or of none where that is null; null where the length needs a plan.
template <class T>
auto small_transform(const kernels::small_kernels<T>* level, index points, bool inverse) noexcept
    -> void (*)(T*) {
  return level != nullptr && points <= kernels::most_small ? level->complex[points].run[inverse] : nullptr;
}

// The same for real data.
template <class T>
auto small_real_transform(const kernels::small_kernels<T>* level, index points, bool inverse) noexcept
    -> void (*)(T*) {
  const bool listed = points >> kernels::small_real_sizes == 0 && is_power_of_two(points);
  return level != nullptr && listed ? level->real[address_bits(points)].run[inverse] : nullptr;
}

}  // namespace sigpak
