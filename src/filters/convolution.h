// Fast convolution of long real filters through the real transform.
#pragma once

#include "core/record.h"

namespace sigpak {

// From this many taps on, blocks at least as long as the history are transformed: where the cost of an output is
// that of its direct sum. Wide registers speed up sums more than transforms.
index least_fast_taps() noexcept;

// The outputs of a block from its real input, with the samples before it in `history`, or zeros when that is
// null. The first taps - 1 outputs may be left to the caller: the return value tells how many are, -1 after a
// failure.
template <record V> index convolve_fast(const V* in, V* out, const V* taps, const V* history) noexcept;

}  // namespace sigpak
