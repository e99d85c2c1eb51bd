// SPDX-License-Identifier: MIT
// A signal filtered block by block.
#pragma once

#include <numbers>

#include "support/failing.h"
#include "support/forms.h"
#include "support/split.h"

namespace sigpak::test {

template <record V> signal<V> noisy(index points, bool pairs, unsigned seed) {
  return signal<V>(noise<V>(pairs ? 2 * points : points, seed), pairs);
}

// Of frequency f in units of that of Nyquist.
template <record V> signal<V> tone(index n, double f) {
  samples<V> x;
  for (index i = 0; i < n; ++i) {
    x.push_back(static_cast<scalar<V>>(std::sin(std::numbers::pi_v<long double> *
                                                static_cast<long double>(f) * static_cast<long double>(i))));
  }
  return signal<V>(x);
}

// What run(block, out) makes of the blocks of `in` one after the other, joined; their lengths repeat. A null
// block at the end asks for the rest, where a stream has one.
template <record V, class Run>
samples<V> in_blocks(const V& in, const std::vector<index>& lengths, Run run, bool has_rest = false) {
  samples<V> joined;
  signal<V> out;
  index begin = 0;
  const auto collect = [&](const V* block) {
    EXPECT_EQ(run(block, &out), 0);
    EXPECT_TRUE(out.complex == 0 || out.complex == 1) << out.complex;
    joined.insert(joined.end(), out.data, out.data + scalars<V>(&out));
  };
  for (std::size_t b = 0; begin < length(&in); b = (b + 1) % lengths.size()) {
    const index points = std::min(lengths[b], length(&in) - begin);
    const V block = part_of(in, begin, points);
    collect(&block);
    begin += points;
  }
  if (has_rest) collect(nullptr);
  return joined;
}

}  // namespace sigpak::test
