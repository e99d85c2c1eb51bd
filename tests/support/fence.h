// SPDX-License-Identifier: MIT
// Data between fences, at any place in memory.
#pragma once

#include "support/signal.h"

namespace sigpak::test {

// What run(data) makes of `in`, which starts `offset` scalars behind the start of a block and has room for
// `room` scalars: nothing is written outside of them.
template <record V, class Run>
samples<V> run_fenced(const samples<V>& in, index room, index offset, Run run) {
  samples<V> padded(static_cast<std::size_t>(offset + room + 1), scalar<V>(42));
  const auto first = padded.begin() + offset;
  std::copy(in.begin(), in.end(), first);
  EXPECT_EQ(run(padded.data() + offset), ok);
  for (auto at = padded.begin(); at != first; ++at) EXPECT_EQ(*at, 42);
  EXPECT_EQ(padded.back(), 42);
  return {first, padded.end() - 1};
}

}  // namespace sigpak::test
