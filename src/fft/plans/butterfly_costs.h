// SPDX-License-Identifier: MIT
// What the butterflies of products of short lengths cost.
//
// Cycles of one butterfly of vectors, by its place: of columns, with twiddles and transposition; within the
// rows; from the rows to its place in the data. Fitted, on a server core, to the times of thousands of splits
// of lengths that the second cache holds. 11 and 13 follow from their neighbours.
#pragma once

#include "fft/plans/product_plan.h"
#include "fft/plans/radices.h"

namespace sigpak::kernels {

struct butterfly_cost {
  double column;
  double row;
  double result;
};

// By vectors: of 512 bits in double and in single precision, and of 256 bits.
struct radix_costs {
  int radix;
  butterfly_cost of[4];
};

inline constexpr radix_costs butterfly_costs[] = {
    {2, {{0, 3.2, 5.4}, {0, 2.5, 7.8}, {5.4, 1.9, 5.7}, {0, 1.6, 10}}},
    {3, {{0, 6.2, 6.9}, {0, 5.4, 12}, {9.7, 3.2, 8.7}, {0, 3.1, 13}}},
    {4, {{20, 7.8, 9.2}, {0, 6.2, 15}, {10, 4.2, 9.3}, {9.6, 3.9, 16}}},
    {5, {{37, 12, 12}, {0, 11, 20}, {15, 5.6, 14}, {11, 6, 22}}},
    {6, {{40, 12, 13}, {0, 10, 21}, {15, 6.2, 15}, {13, 6.1, 24}}},
    {7, {{49, 16, 19}, {0, 14, 30}, {23, 10, 21}, {19, 11, 33}}},
    {8, {{41, 17, 18}, {39, 16, 30}, {19, 10, 20}, {17, 10, 32}}},
    {9, {{66, 24, 25}, {68, 22, 40}, {32, 17, 29}, {25, 18, 45}}},
    {10, {{64, 22, 24}, {69, 18, 39}, {27, 15, 28}, {22, 15, 44}}},
    {11, {{76, 37, 30}, {93, 29, 48}, {38, 22, 34}, {32, 21, 53}}},
    {12, {{61, 28, 28}, {74, 23, 46}, {30, 17, 32}, {25, 16, 50}}},
    {13, {{108, 49, 39}, {107, 41, 62}, {53, 42, 49}, {49, 41, 77}}},
    {14, {{91, 39, 35}, {90, 33, 56}, {45, 34, 44}, {41, 33, 69}}},
    {15, {{105, 44, 42}, {102, 40, 63}, {51, 32, 49}, {48, 36, 77}}},
    {16, {{86, 51, 43}, {77, 41, 63}, {48, 40, 49}, {38, 35, 78}}},
    {20, {{106, 52, 51}, {119, 47, 77}, {65, 60, 69}, {51, 52, 104}}},
    {21, {{158, 79, 69}, {147, 79, 102}, {87, 61, 84}, {75, 67, 125}}},
    {25, {{218, 138, 107}, {201, 112, 153}, {113, 85, 113}, {99, 91, 163}}},
};

// Of long primes p: (p - 1)^2 / 2 fused products, which take half a cycle of 512 bits each, and their points.
constexpr butterfly_cost prime_cost(double p, bool wide) noexcept {
  const double sums = (wide ? 0.25 : 0.18) * (p - 1) * (p - 1);
  return {sums + 12 * p, sums + 4 * p, sums + 5 * p};
}

// By radix; all 0 where a number is none.
class butterfly_table {
 public:
  constexpr butterfly_table(int lanes, bool in_double) noexcept {
    const bool wide = lanes == (in_double ? 8 : 16);
    for (const radix_costs& costs : butterfly_costs) {
      by_radix_[costs.radix] = costs.of[(wide ? 0 : 2) + (in_double ? 0 : 1)];
    }
    for (const int p : primes) {
      if (p > most_short_prime) by_radix_[p] = prime_cost(p, wide);
    }
  }
  constexpr const butterfly_cost& operator[](index radix) const noexcept { return by_radix_[radix]; }

 private:
  butterfly_cost by_radix_[most_prime + 1] = {};
};

}  // namespace sigpak::kernels
