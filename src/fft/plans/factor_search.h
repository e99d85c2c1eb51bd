// SPDX-License-Identifier: MIT
// Which factors make the fastest product of short transforms.
#pragma once

#include <algorithm>
#include <iterator>

#include "fft/plans/butterfly_costs.h"
#include "fft/plans/pass_costs.h"

namespace sigpak::kernels {

// Beside the butterflies:
inline constexpr double loop_cost = 1.5;  // of the butterflies of one row
inline constexpr double pass_cost = 15;   // of waiting for the last results of the pass before
inline constexpr double crowd_cost = 2;   // of a vector of output among many in one set of the first cache

inline constexpr butterfly_table wide_costs(8, true);
constexpr bool is_radix(index n) noexcept { return n <= most_prime && wide_costs[n].row > 0; }

struct factors {
  int lanes = 0;
  int passes = 0;  // 0 where there are none
  int radix[most_factors] = {};
  double cost = 0;
};

// Of all products with first factor A and the others in rising order, the one of the least cost.
class factor_search {
 public:
  factor_search(index points, int lanes, index scalar_bytes) noexcept
      : points_(points),
        vector_points_(lanes / 2),
        costs_(lanes, scalar_bytes == index{sizeof(double)}),
        caches_(lanes * scalar_bytes, false) {
    begun_.lanes = lanes;
    for (int radix = 2; radix <= most_prime; ++radix) {
      if (!is_radix(radix) || points % radix != 0) continue;
      radices_[radix_count_++] = radix;
      least_result_ = std::min(least_result_, costs_[radix].result / radix);
    }
  }

  void run(factors& best) noexcept {
    for (int k = 0; k < radix_count_; ++k) {
      if (radices_[k] >= vector_points_) run(best, radices_[k]);
    }
  }

  // With this first factor.
  void run(factors& best, index a) noexcept {
    const index rows = points_ / a;
    if (!is_radix(a) || points_ % a != 0 || rows < vector_points_) return;
    const index vectors = points_ / vector_points_;
    const double passages = 2 * static_cast<double>(vectors) * caches_.passage(vectors);
    row_vectors_ = ceiling(a, vector_points_);
    const auto groups = static_cast<double>(ceiling(rows, vector_points_));
    begun_.radix[0] = static_cast<int>(a);
    begun_.passes = 1;
    extend(best, rows, rows, 0, groups * costs_[a].column + passages);
  }

 private:
  // `swept` rows were left by the pass before; the radices are those from this one on.
  void extend(factors& best, index swept, index rest, int from, double cost) noexcept {
    const index rows = points_ / begun_.radix[0];
    const double least = cost + static_cast<double>(rows * row_vectors_) * least_result_;
    if (begun_.passes == most_factors || (best.passes > 0 && best.cost <= least)) return;
    const double sweep = caches_.sweep(swept * row_vectors_);
    for (int k = from; k < radix_count_ && radices_[k] <= rest; ++k) {
      const int radix = radices_[k];
      if (rest % radix != 0) continue;
      const bool is_last = radix == rest;
      const double butterfly =
          radix * sweep + (is_last ? costs_[radix].result + crowding(radix) : costs_[radix].row);
      const double sum =
          cost + pass_cost +
          static_cast<double>(rows / radix) * (loop_cost + static_cast<double>(row_vectors_) * butterfly);
      begun_.radix[begun_.passes++] = radix;
      is_last ? consider(best, sum) : extend(best, rest, rest / radix, k, sum);
      --begun_.passes;
    }
  }
  double crowding(int radix) const noexcept {
    const bool crowded =
        caches_.is_crowded(radix, points_ / radix / vector_points_) && points_ / radix % vector_points_ == 0;
    return crowded ? radix * crowd_cost : 0;
  }
  void consider(factors& best, double cost) noexcept {
    if (best.passes > 0 && best.cost <= cost) return;
    best = begun_;
    best.cost = cost;
  }

  index points_;
  index vector_points_;
  butterfly_table costs_;
  pass_costs caches_;
  int radices_[std::size(butterfly_costs) + std::size(primes)] = {};  // that divide N, in rising order
  int radix_count_ = 0;
  double least_result_ = 1e9;  // of a vector, which bounds what is still to come
  index row_vectors_ = 0;
  factors begun_;
};

}  // namespace sigpak::kernels
