// SPDX-License-Identifier: MIT
// Direct sums of taps and samples.
#pragma once

#include "core/record.h"

namespace sigpak {

// out[n] = sum of taps[k] * x[n + taps - 1 - k] over n < points, each from the oldest sample to the newest; x
// holds points + taps - 1 points of the form of `in`, and out is complex when x or the taps are. Every output
// is formed by the same operations in the same order, so any split of a signal gives the same bits.
template <record V>
void sum_directly(const V* taps, const scalar<V>* x, index x_width, scalar<V>* out, index points) noexcept;

}  // namespace sigpak
