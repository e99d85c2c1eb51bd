// SPDX-License-Identifier: MIT
// A signal filtered block by block.
#pragma once

#include "support/failing.h"
#include "support/forms.h"

namespace sigpak::test {

// What run(block, out) makes of the blocks of `in` one after the other, joined; their lengths repeat.
template <record V, class Run> samples<V> in_blocks(const V& in, const std::vector<index>& lengths, Run run) {
  samples<V> joined;
  signal<V> out;
  index begin = 0;
  for (std::size_t b = 0; begin < length(&in); b = (b + 1) % lengths.size()) {
    const index points = std::min(lengths[b], length(&in) - begin);
    V block = in;
    block.alloc = 0;
    block.data = in.data + begin * width(&in);
    block.points = static_cast<std::uint32_t>(points);
    EXPECT_EQ(run(&block, &out), 0);
    joined.insert(joined.end(), out.data, out.data + scalars<V>(&out));
    begin += points;
  }
  return joined;
}

}  // namespace sigpak::test
