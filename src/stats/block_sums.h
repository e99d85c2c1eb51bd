// Sums in blocks: each block is summed from zero in the order of its points, then joins the total.
#pragma once

#include <array>

#include "core/blocks.h"
#include "core/isa.h"
#include "stats/wide.h"

namespace sigpak {

template <std::size_t count> using sums = std::array<double, count>;

// Blocks are independent of each other: `lanes` of them, `count` points each, run side by side to hide the
// latency of the additions; every block sees the plain order.
template <index lanes, std::size_t count, class Term>
void add_blocks(index begin, index points, Term term, sums<count>& total) noexcept {
  double block[count][lanes] = {};
  for (index i = begin; i < begin + points; ++i) {
    for (index lane = 0; lane < lanes; ++lane) {
      const sums<count> terms = term(i + lane * sum_block);
      for (std::size_t k = 0; k < count; ++k) block[k][lane] += terms[k];
    }
  }
  for (index lane = 0; lane < lanes; ++lane) {
    for (std::size_t k = 0; k < count; ++k) total[k] += block[k][lane];
  }
}

// The sums over i = 0 .. points - 1 of the terms that term(i) gives.
template <class Term> auto blocked_sums(index points, Term term) noexcept {
  return isa::run([points, term] {
    decltype(term(index())) total{};
    index i = 0;
    for (; points - i >= 8 * sum_block; i += 8 * sum_block) add_blocks<8>(i, sum_block, term, total);
    for (; points - i >= 4 * sum_block; i += 4 * sum_block) add_blocks<4>(i, sum_block, term, total);
    for (; points - i >= 2 * sum_block; i += 2 * sum_block) add_blocks<2>(i, sum_block, term, total);
    for (; i < points; i += sum_block) add_blocks<1>(i, std::min(sum_block, points - i), term, total);
    return total;
  });
}

}  // namespace sigpak
