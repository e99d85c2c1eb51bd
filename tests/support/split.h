// SPDX-License-Identifier: MIT
// Streams cut into blocks: whatever the cuts, the same bits come out.
#pragma once

#include "support/signal.h"

namespace sigpak::test {

// The points of v from `begin` on, lent.
template <record V> V part_of(const V& v, index begin, index points) {
  V part = v;
  part.alloc = 0;
  part.data = v.data != nullptr ? v.data + begin * width(&v) : nullptr;
  part.points = static_cast<std::uint32_t>(points);
  return part;
}

// Ways to cut n samples: blocks of each of `lengths` by itself, then random ones of every order of magnitude,
// among them many of 0 and 1.
inline std::vector<std::vector<index>> splits(index n, const std::vector<index>& lengths) {
  const int random = watched() ? 3 : 12;
  std::vector<std::vector<index>> all;
  std::mt19937_64 engine(static_cast<std::uint64_t>(n));
  const auto below = [&engine](index limit) {
    return static_cast<index>(engine() % static_cast<std::uint64_t>(limit));
  };
  for (int s = 0; s < static_cast<int>(lengths.size()) + random; ++s) {
    const auto fixed = static_cast<std::size_t>(s);
    std::vector<index> blocks;
    for (index left = n; left > 0; left -= blocks.back()) {
      const index wanted = fixed < lengths.size() ? lengths[fixed] : below(index{2} << below(12));
      blocks.push_back(std::min(wanted, left));
    }
    blocks.push_back(0);
    all.push_back(blocks);
  }
  return all;
}

// run(blocks) sends a stream of n samples through in blocks of these lengths and returns all that came out.
template <class Run> void expect_splits_alike(index n, const std::vector<index>& lengths, Run run) {
  const auto whole = run(std::vector<index>{n});
  for (const auto& blocks : splits(n, lengths)) {
    ASSERT_TRUE(same_bits(run(blocks), whole))
        << n << " samples in " << blocks.size() << " blocks, the first of " << blocks.front();
  }
}

}  // namespace sigpak::test
