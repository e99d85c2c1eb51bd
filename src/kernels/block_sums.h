// Sums in blocks: each block is summed from zero in the order of its points, then joins the total.
#pragma once

#include <array>
#include <concepts>
#include <optional>

#include "core/blocks.h"
#include "core/isa.h"
#include "kernels/lane_sums.h"

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

// The points from `begin` on.
template <std::size_t count, class Term>
void add_blocks_plainly(index begin, index points, Term term, sums<count>& total) noexcept {
  index i = begin;
  for (; points - i >= 8 * sum_block; i += 8 * sum_block) add_blocks<8>(i, sum_block, term, total);
  for (; points - i >= 4 * sum_block; i += 4 * sum_block) add_blocks<4>(i, sum_block, term, total);
  for (; points - i >= 2 * sum_block; i += 2 * sum_block) add_blocks<2>(i, sum_block, term, total);
  for (; i < points; i += sum_block) add_blocks<1>(i, std::min(sum_block, points - i), term, total);
}

// The sums over i = 0 .. points - 1 of the terms that term(i) gives.
template <class Term> auto blocked_sums(index points, Term term) noexcept {
  return isa::run(points, [points, term] {
    decltype(term(index())) total{};
    add_blocks_plainly(0, points, term, total);
    return total;
  });
}

// The same sums by a kernel of the wide levels: which one, and what it reads.
template <class T> struct lane_terms {
  kernels::lane_sums<T> kernels::lane_sum_table<T>::*kernel;
  const T* x;
  index width = 1;  // scalars of a point
  kernels::term_constants constants = {};
  std::optional<T> nothing = std::nullopt;  // a sample that adds 0 to every sum, where there is one
  const T* y = nullptr;
};

// Null where the level has no wide vectors.
template <class T> const kernels::lane_sum_table<T>* current_lane_sums() noexcept {
#if SIGPAK_WIDE_LEVELS
  const isa::level level = isa::current();
  if constexpr (std::same_as<T, double>) {
    if (level == isa::level::avx512) return &avx512::lane_sums_double;
    if (level == isa::level::avx2) return &avx2::lane_sums_double;
  } else {
    if (level == isa::level::avx512) return &avx512::lane_sums_float;
    if (level == isa::level::avx2) return &avx2::lane_sums_float;
  }
#endif
  return nullptr;
}

// The blocks from `begin` on, at most eight, one lane each; lanes left over read the first block again.
template <std::size_t count, class T>
void add_lanes(kernels::lane_sums<T> kernel, const lane_terms<T>& terms, index begin, index blocks,
               const T* last, sums<count>& total) noexcept {
  const T* x[kernels::sum_lanes];
  const T* y[kernels::sum_lanes];
  for (index lane = 0; lane < kernels::sum_lanes; ++lane) {
    const index at = (begin + (lane < blocks ? lane : 0) * sum_block) * terms.width;
    x[lane] = last != nullptr && lane == blocks - 1 ? last : terms.x + at;
    y[lane] = terms.y != nullptr ? terms.y + at : nullptr;
  }
  double found[kernels::most_sums][kernels::sum_lanes];
  kernel(x, y, sum_block, terms.constants, found);
  for (index lane = 0; lane < blocks; ++lane) {
    for (std::size_t k = 0; k < count; ++k) total[k] += found[k][lane];
  }
}

// A block cut short by the end of the data is filled up with samples that add nothing: the sums are never -0,
// so adding 0 leaves them as they are.
template <class T> void fill_up(const lane_terms<T>& terms, index begin, index points, T* block) noexcept {
  const index given = (points - begin) * terms.width;
  std::copy_n(terms.x + begin * terms.width, given, block);
  std::fill(block + given, block + sum_block * terms.width, *terms.nothing);
}

inline constexpr index worth_a_pass = 3;  // a pass of the kernel takes the time of one or two blocks

// Out of line, for it holds a block on the stack.
template <class Term, class T>
[[gnu::noinline]] auto sum_in_lanes(index points, Term term, const lane_terms<T>& terms,
                                    kernels::lane_sums<T> kernel) noexcept {
  const T* const none = nullptr;
  decltype(term(index())) total{};
  index i = 0;
  for (; points - i >= kernels::sum_lanes * sum_block; i += kernels::sum_lanes * sum_block) {
    add_lanes(kernel, terms, i, kernels::sum_lanes, none, total);
  }
  T last[2 * sum_block];
  index blocks = (points - i) / sum_block;
  const bool cut_short = (points - i) % sum_block != 0;
  const bool filled = cut_short && terms.nothing.has_value() && blocks + 1 >= worth_a_pass;
  if (filled) fill_up(terms, i + blocks++ * sum_block, points, last);
  if (blocks >= worth_a_pass) {
    add_lanes(kernel, terms, i, blocks, filled ? last : none, total);
    i += blocks * sum_block;
  }
  if (i < points) add_blocks_plainly(i, points, term, total);
  return total;
}

template <class Term, class T>
[[gnu::always_inline]] inline auto blocked_sums(index points, Term term,
                                                const lane_terms<T>& terms) noexcept {
  const auto* const table = points >= worth_a_pass * sum_block ? current_lane_sums<T>() : nullptr;
  if (table == nullptr) return blocked_sums(points, term);
  return sum_in_lanes(points, term, terms, table->*terms.kernel);
}

}  // namespace sigpak
