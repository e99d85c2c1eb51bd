// SPDX-License-Identifier: MIT
// Sums in blocks: each block is summed from zero in the order of its points, then joins the total.
#pragma once

#include <array>
#include <concepts>
#include <type_traits>
#include <utility>

#include "core/blocks.h"
#include "core/isa.h"
#include "core/machine.h"
#include "kernels/sums/lane_sums.h"
#include "vectors/levels.h"

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

// One block, or a part of it.
template <class Term>
[[gnu::always_inline]] inline auto sum_block_of(index begin, index end, Term term) noexcept {
  decltype(term(index())) block{};
  for (index i = begin; i < end; ++i) {
    const auto terms = term(i);
    for (std::size_t k = 0; k < terms.size(); ++k) block[k] += terms[k];
  }
  return block;
}

// The points from `begin` on, one block after the other.
template <std::size_t count, class Term>
void add_in_turn(index begin, index points, Term term, sums<count>& total) noexcept {
  for (index i = begin; i < points; i += sum_block) {
    const sums<count> block = sum_block_of(i, std::min(i + sum_block, points), term);
    for (std::size_t k = 0; k < count; ++k) total[k] += block[k];
  }
}

// All points without a kernel: what one record gives to one sum is worth lanes even so.
template <class Term, class T> auto sum_plainly(index points, Term term, const T* y) noexcept {
  decltype(term(index())) total{};
  index i = 0;
  if (total.size() == 1 && y == nullptr) {
    for (; points - i >= 8 * sum_block; i += 8 * sum_block) add_blocks<8>(i, sum_block, term, total);
    for (; points - i >= 2 * sum_block; i += 2 * sum_block) add_blocks<2>(i, sum_block, term, total);
  }
  add_in_turn(i, points, term, total);
  return total;
}

// The same sums by a kernel: which one, and what it reads.
template <class T> struct lane_terms {
  kernels::lane_sums<T> kernels::lane_sum_table<T>::*kernel;
  const T* x;
  index width = 1;  // scalars of a point
  kernels::term_constants constants = {};
  const T* y = nullptr;
  index y_width = 0;
  index blocks = 2;       // from so many on, a pass takes less time than one block after the other
  bool streaming = true;  // worth more than the plain loop where memory is the limit
};

// Blocks from `begin` on, no more than there are lanes, one lane each. The kernel takes the points in eights;
// what is left over at the ends of a block is added here, as is the end of a last block that is cut short.
template <class Term, class T> class lane_pass {
 public:
  lane_pass(Term term, const lane_terms<T>& terms, kernels::lane_sums<T> kernel, index begin,
            index blocks) noexcept
      : term_(term),
        kernel_(kernel),
        constants_(terms.constants),
        begin_(begin),
        blocks_(blocks),
        head_(points_to_line(terms.x + begin * terms.width, terms.width)),
        stagger_(terms.y != nullptr ? eight : 0) {
    for (index lane = 0; lane < kernels::most_lanes; ++lane) {
      const index at = begin + (lane < blocks ? lane : 0) * sum_block + lead(lane);
      from_.x[lane] = terms.x + at * terms.width;
      from_.y[lane] = terms.y + at * terms.y_width;
    }
    constants_.first = static_cast<double>(begin);
  }

  // The points come from memory: call for them, and for those so many points behind every lane's.
  void fetch(index to_next) noexcept {
    from_.fetch = true;
    from_.to_next = to_next;
  }

  // `last` points of the last block, all of the others.
  template <std::size_t count> void add(index last, sums<count>& total) noexcept {
    const index final_lane = blocks_ - 1;
    const index final_end = last - lead(final_lane);
    const index whole_end = sum_block - lead(0);
    const index common = head_ + std::max<index>(0, std::min(final_end, whole_end) - head_) / eight * eight;
    add_plainly<count>(0, blocks_, -lead(0), head_, last);
    add_in_lanes(head_, common);
    add_plainly<count>(final_lane, blocks_, common, final_end, last);
    const sums<count> final_block = sums_of<count>(final_lane);
    from_.x[final_lane] = from_.x[0];
    from_.y[final_lane] = from_.y[0];
    const index whole = common + (whole_end - common) / eight * eight;
    add_in_lanes(common, whole);
    add_plainly<count>(0, final_lane, whole, sum_block, sum_block);
    for (index lane = 0; lane < final_lane; ++lane) join(sums_of<count>(lane), total);
    join(final_block, total);
  }

 private:
  static constexpr index eight = 8;

  // Points from which on whole lines of the cache are read, each at once.
  static index points_to_line(const T* x, index width) noexcept {
    return machine::bytes_to_line(x) / (width * static_cast<index>(sizeof(T)));
  }

  // How many points the lane is ahead of the others: eight blocks lie in the same sets of the cache, and
  // those of two records together would drive each other out.
  index lead(index lane) const noexcept { return stagger_ * (3 - lane % 4); }

  void add_in_lanes(index begin, index end) noexcept {
    if (begin >= end) return;
    from_.begin = begin;
    from_.end = end;
    kernel_(from_, constants_, sums_);
  }

  // In steps begin .. end - 1 of the lanes, as far as they are points 0 .. last - 1 of the last of these
  // lanes.
  template <std::size_t count>
  void add_plainly(index first_lane, index end_lane, index begin, index end, index last) noexcept {
    for (index i = begin; i < end; ++i) {
      for (index lane = first_lane; lane < end_lane; ++lane) {
        const index at = i + lead(lane);
        if (at < 0 || at >= (lane == end_lane - 1 ? last : sum_block)) continue;
        const sums<count> terms = term_(begin_ + lane * sum_block + at);
        for (std::size_t k = 0; k < count; ++k) sums_[k][lane] += terms[k];
      }
    }
  }

  template <std::size_t count> sums<count> sums_of(index lane) const noexcept {
    sums<count> found;
    for (std::size_t k = 0; k < count; ++k) found[k] = sums_[k][lane];
    return found;
  }

  template <std::size_t count> static void join(const sums<count>& block, sums<count>& total) noexcept {
    for (std::size_t k = 0; k < count; ++k) total[k] += block[k];
  }

  Term term_;
  kernels::lane_sums<T> kernel_;
  kernels::term_constants constants_;
  index begin_;
  index blocks_;
  index head_;
  index stagger_;
  kernels::lane_points_of<T> from_;
  kernels::lane_totals sums_ = {};
};

template <class Term, class T>
auto sum_in_lanes(index points, Term term, const lane_terms<T>& terms,
                  const kernels::lane_sum_table<T>& table) noexcept {
  static_assert(kernels::lane_points == sum_block);
  const index most = table.lanes * sum_block;
  constexpr index widening = sizeof(T) < sizeof(double) ? 1 : 0;  // takes a pass a block more
  const index blocks_worth = std::max<index>(table.least_blocks, terms.blocks) + widening;
  const index worth_a_pass = std::min<index>(table.lanes, blocks_worth) * sum_block;
  const auto bytes = static_cast<index>(sizeof(T)) * points * (terms.width + terms.y_width);
  decltype(term(index())) total{};
  index i = 0;
  const bool beyond_the_cache = bytes > machine::caches().last;
  const bool waits_for_memory = beyond_the_cache && !terms.streaming;
  while (!waits_for_memory && points - i >= worth_a_pass) {
    const index here = std::min(most, points - i);
    const index blocks = (here + sum_block - 1) / sum_block;
    lane_pass<Term, T> pass(term, terms, table.*terms.kernel, i, blocks);
    if (beyond_the_cache) pass.fetch(points - i >= 2 * most ? most : 0);
    pass.add(here - (blocks - 1) * sum_block, total);
    i += here;
  }
  add_in_turn(i, points, term, total);
  return total;
}

// Out of line: a short record is done inline.
template <class Term, class T>
[[gnu::noinline]] auto sum_many_blocks(index points, Term term, const lane_terms<T>& terms) noexcept {
  const auto& table = *at_level<kernels::lane_sum_table<T>>();
  return table.*terms.kernel != nullptr ? sum_in_lanes(points, term, terms, table)
                                        : sum_plainly(points, term, terms.y);
}

// Sum by sum, and not by a loop, which is a copy of the whole to the compiler: sums copied as a whole would
// be in memory, those of a short record too, and reading two of them at once waits for each to be written.
template <std::size_t count>
[[gnu::always_inline]] inline void assign(sums<count>& to, const sums<count>& from) noexcept {
  [&]<std::size_t... k>(std::index_sequence<k...>) __attribute__((always_inline)) {
    ((to[k] = from[k]), ...);
  }
  (std::make_index_sequence<count>{});
}

// The sums over i = 0 .. points - 1 of the terms that term(i) gives, and that the lane_terms of `describe`
// describe: put together only for a kernel, as that takes the time of some points.
template <class Term, class Describe>
[[gnu::always_inline]] inline auto blocked_sums(index points, Term term, Describe describe) noexcept {
  decltype(term(index())) total;
  if (points <= sum_block) [[likely]] {
    assign(total, sum_block_of(0, points, term));
  } else {
    assign(total, sum_many_blocks(points, term, describe()));
  }
  return total;
}

inline constexpr std::false_type without_limits{};
inline constexpr std::true_type with_limits{};

template <class Term, class Describe>
[[gnu::noinline]] auto sum_with_limits(index points, Term term, Describe describe) noexcept {
  return blocked_sums(
      points, [term](index i) { return term(i, with_limits); }, describe);
}

// The same for term(i, limits) of samples limited to -huge .. huge, which adds their squares to the sums
// `of_squares`. These only grow: below huge^2, no sample was beyond the limits, and the sums made without
// looking at any are those of the definition.
template <std::size_t... of_squares, class Term, class Describe>
[[gnu::always_inline]] inline auto limited_sums(index points, double huge, Term term,
                                                Describe describe) noexcept {
  auto total = blocked_sums(
      points, [term](index i) { return term(i, without_limits); }, describe);
  const bool within = ((total[of_squares] < huge * huge) && ...);
  if (!within) [[unlikely]]
    assign(total, sum_with_limits(points, term, describe));
  return total;
}

}  // namespace sigpak
