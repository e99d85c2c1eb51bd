// SPDX-License-Identifier: MIT
// What the butterflies of products of short lengths cost.
//
// Cycles of one butterfly of vectors, by its place: of columns, with twiddles and transposition; within the
// rows; from the rows to its place in the data. Fitted, on a server core, to the times of thousands of splits
// of lengths that the second cache holds. 11 and 13 follow from their neighbours.
#pragma once

#include "fft/plans/product_plan.h"

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
    {2, {{0, 2.9, 5.2}, {0, 3, 8.3}, {8.9, 2.3, 0.4}, {0, 2.6, 1.6}}},
    {3, {{0, 5.9, 7}, {0, 5.7, 13}, {17, 4, 0.5}, {0, 4.2, 1.6}}},
    {4, {{18, 7.1, 8.2}, {0, 6.1, 16}, {17, 5.5, 0}, {17, 6, 3}}},
    {5, {{34, 11, 12}, {0, 10, 23}, {26, 7.4, 0.8}, {31, 8.1, 4.5}}},
    {6, {{36, 11, 13}, {0, 10, 24}, {25, 8.6, 0.5}, {32, 9.3, 3.6}}},
    {7, {{44, 16, 19}, {0, 14, 31}, {39, 13, 3}, {39, 14, 8.7}}},
    {8, {{38, 16, 18}, {39, 14, 32}, {34, 13, 1}, {35, 14, 6.3}}},
    {9, {{60, 22, 26}, {62, 21, 42}, {52, 22, 7.2}, {54, 24, 14}}},
    {10, {{58, 21, 24}, {64, 18, 42}, {47, 20, 3.9}, {54, 20, 12}}},
    {11, {{70, 34, 30}, {89, 28, 51}, {68, 31, 4}, {68, 33, 14}}},
    {12, {{55, 26, 29}, {71, 22, 48}, {54, 24, 3.8}, {54, 25, 13}}},
    {13, {{98, 45, 38}, {100, 42, 66}, {86, 53, 14}, {96, 52, 27}}},
    {14, {{82, 36, 35}, {84, 34, 60}, {72, 42, 12}, {80, 42, 25}}},
    {15, {{96, 43, 42}, {97, 39, 66}, {83, 44, 13}, {86, 46, 29}}},
    {16, {{77, 44, 41}, {73, 37, 65}, {79, 47, 13}, {77, 51, 30}}},
    {20, {{101, 47, 52}, {109, 47, 81}, {106, 73, 26}, {98, 77, 47}}},
    {21, {{143, 76, 70}, {136, 75, 105}, {131, 75, 38}, {133, 84, 59}}},
    {25, {{200, 115, 107}, {184, 105, 158}, {169, 106, 57}, {169, 114, 93}}},
};

// By radix; all 0 where a number is none.
class butterfly_table {
 public:
  constexpr butterfly_table(int lanes, bool in_double) noexcept {
    const bool wide = lanes == (in_double ? 8 : 16);
    for (const radix_costs& costs : butterfly_costs) {
      by_radix_[costs.radix] = costs.of[(wide ? 0 : 2) + (in_double ? 0 : 1)];
    }
  }
  constexpr const butterfly_cost& operator[](index radix) const noexcept { return by_radix_[radix]; }

 private:
  butterfly_cost by_radix_[most_radix + 1] = {};
};

}  // namespace sigpak::kernels
