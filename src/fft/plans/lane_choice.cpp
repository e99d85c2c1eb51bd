// SPDX-License-Identifier: MIT
// Which passes a transform of a power of two makes, and where: of all products of radices the cheapest.
#include <algorithm>
#include <iterator>

#include "fft/plans/lane_plan.h"
#include "fft/plans/pass_costs.h"

namespace sigpak::kernels {
namespace {

// Costs per vector beside those of the passes, measured with them. Of the last transform in place:
constexpr double exchange_cost = 2;      // by way of the first cache
constexpr double crowding_cost = 9;      // where one of its sets does not hold the vectors of a column
constexpr double waiting_cost = 1;       // where it does, but half of so many wait there for the others
constexpr double small_square_cost = 5;  // where runs of neighbouring columns are short
constexpr int least_square = 8;
// From scratch memory:
constexpr double collecting_cost = 3;
constexpr index least_collected = 128;
// Of data whose vectors are split between lines:
constexpr double split_pass_cost = 3;
constexpr double split_block_cost = 5.5;  // by blocks, in three sweeps whatever the passes
constexpr double split_start_cost = 1;    // there, where the first pass both reads and writes them
constexpr double split_output_cost = 4;
constexpr double crowded_output_cost = 16;

struct course_cost {
  course way;
  double cost;
};

class lane_costs {
 public:
  lane_costs(const pass_costs& passes, index vectors, int lanes) noexcept
      : passes_(passes), vectors_(vectors), lanes_(lanes) {}

  // The cheapest course of these radices.
  course_cost best(const radix_list& list, bool at_line) const noexcept {
    const double inner = passes_.passes(list, vectors_);
    const double by_scratch = inner + 2 * passes_.passage(vectors_);
    const double splits = at_line ? 0 : split_pass_cost * passes_.width() * (list.passes + 1);
    course_cost best = {course::direct, by_scratch + (at_line ? 0 : split_output())};
    const auto consider = [&best](course way, double cost) {
      if (cost < best.cost) best = {way, cost};
    };
    if (vectors_ > passes_.resident() && vectors_ >= least_collected) {
      consider(course::collected, by_scratch + collecting_cost);
    }
    const double block_splits = at_line ? 0 : split_start_cost + split_block_cost * passes_.width();
    if (has_blocks(list)) consider(course::by_blocks, inner + ordering() + block_splits);
    if (pairs_columns(list, lanes_)) consider(course::in_place, inner + exchange(list) + splits);
    return best;
  }

 private:
  bool is_crowded() const noexcept { return lanes_ > passes_.caches().first_ways; }

  index block() const noexcept { return vectors_ / lanes_; }

  // Columns stand in order where the first pass has as many outputs as they have vectors. The first cache
  // holds a block and its scratch memory.
  bool has_blocks(const radix_list& list) const noexcept {
    return list.passes > 1 && list.radix[0] == lanes_ && 2 * block() <= passes_.resident();
  }

  // The first pass and the last transform in place, and blocks by way of scratch memory.
  double ordering() const noexcept {
    double cost = 2 * passes_.sweep(vectors_) + passes_.passage(block());
    if (is_crowded()) cost += passes_.in_one_set(block()) ? crowding_cost : waiting_cost;
    return cost;
  }

  double split_output() const noexcept {
    return passes_.width() * (is_crowded() ? crowded_output_cost : split_output_cost);
  }

  // The first pass and the last transform in place.
  double exchange(const radix_list& list) const noexcept {
    const auto& caches = passes_.caches();
    double cost = exchange_cost + 2 * passes_.sweep(vectors_);
    if (is_crowded()) cost += crowding_cost;
    if (list.radix[1] < least_square) {
      cost += small_square_cost *
              (passes_.missing(vectors_, caches.first) + passes_.missing(vectors_, caches.second));
    }
    return cost;
  }

  const pass_costs& passes_;
  index vectors_;
  int lanes_;
};

}  // namespace

bool pairs_columns(const radix_list& list, int lanes) noexcept {
  const int* const inner = list.radix + 1;
  const int* const end = list.radix + list.passes;
  return list.passes > 2 && list.radix[0] == lanes && std::equal(inner, end, std::make_reverse_iterator(end));
}

template <class T> lane_choice choice_of(const radix_list& list, index points, int lanes) noexcept {
  const pass_costs passes = costs_of<T>(lanes);
  const lane_costs costs(passes, points / lanes, lanes);
  const course_cost at_line = costs.best(list, true);
  return {list, at_line.way, costs.best(list, false).way, at_line.cost};
}

template <class T> lane_choice choose_lanes(index points, int lanes) noexcept {
  const pass_costs passes = costs_of<T>(lanes);
  const lane_costs costs(passes, points / lanes, lanes);
  const auto cost = [&costs](const radix_list& list) { return costs.best(list, true).cost; };
  return choice_of<T>(radix_search(passes, cost).run(points / lanes), points, lanes);
}

template lane_choice choice_of<double>(const radix_list&, index, int) noexcept;
template lane_choice choice_of<float>(const radix_list&, index, int) noexcept;
template lane_choice choose_lanes<double>(index, int) noexcept;
template lane_choice choose_lanes<float>(index, int) noexcept;

}  // namespace sigpak::kernels
