// SPDX-License-Identifier: MIT
// Workers of the filters.
#pragma once

#include "core/record.h"

namespace sigpak {

// out[n] = sum over k of taps[k] * in[n - k]; samples before the block come from the history, or are 0.
template <record V> status filter(const V* in, V* out, const V* taps, V* history) noexcept;

// The same, summed directly whatever the lengths.
template <record V> status filter_directly(const V* in, V* out, const V* taps, V* history) noexcept;

// The greatest factor of a change of the sample rate.
inline constexpr std::int32_t most_rate_factor = 1 << 24;

}  // namespace sigpak
