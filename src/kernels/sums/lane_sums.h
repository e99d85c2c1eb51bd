// SPDX-License-Identifier: MIT
// Sums of blocks side by side, one lane each: eight at the wide levels, four in vectors of 128 bits.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

inline constexpr int most_lanes = 8;
inline constexpr int most_sums = 5;
inline constexpr std::int64_t lane_points = 2048;  // from the block of a lane to that of the next

// Where the points of every lane stand, and which of them to add: `begin` .. `end` - 1 of its block, a
// multiple of 8. Lanes may read the same points.
template <class T> struct lane_points_of {
  const T* x[most_lanes];
  const T* y[most_lanes];  // for terms of two records
  std::int64_t begin;
  std::int64_t end;
  bool fetch = false;        // the points come from memory
  std::int64_t to_next = 0;  // from a point of a lane to that of its next block, where there is one
};

// What the terms are made with.
struct term_constants {
  double centre = 0;     // subtracted from a sample
  double centre_im = 0;  // the same of an imaginary part, of the time of a sample
  double huge = 0;       // the outcome is limited to -huge .. huge
  double step = 0;       // from the time of a sample to that of the next, which is `first` * step
  double first = 0;      // in lane 0
};

// sums[k][lane], as they were, go on in the order of the points: the k-th sum of each lane.
using lane_totals = double[most_sums][most_lanes];
template <class T>
using lane_sums = void (*)(const lane_points_of<T>&, const term_constants&, lane_totals& sums);

// Functions are null where one block after the other is faster.
template <class T> struct lane_sum_table {
  static constexpr bool at_baseline = true;
  int lanes;
  int least_blocks;                // from so many on, a pass takes less time than one block after the other
  lane_sums<T> samples;            // x
  lane_sums<T> points;             // re, im
  lane_sums<T> squares;            // x^2, x within the limits
  lane_sums<T> point_squares;      // re^2 + im^2, each within the limits
  lane_sums<T> deviations;         // d = x - centre within the limits, d^2
  lane_sums<T> point_deviations;   // d, d^2 of re, then of im
  lane_sums<T> cubed_deviations;   // d, d^2, d^3
  lane_sums<T> fourth_deviations;  // d^2, d^4
  lane_sums<T> line;               // d, e, d^2, e^2, d e, for d of the time and e of the sample
  lane_sums<T> point_line;         // the same for d of re and e of im
  lane_sums<T> reciprocals;        // 1 / x
  lane_sums<T> point_reciprocals;  // re, im of 1 / z, re^2 + im^2, re and im within the limits
  lane_sums<T> products;           // x y
  lane_sums<T> point_products;     // re, im of x y
  lane_sums<T> mixed_products;     // the same for y real
};

}  // namespace sigpak::kernels
