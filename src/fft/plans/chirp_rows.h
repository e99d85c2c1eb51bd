// SPDX-License-Identifier: MIT
// The squares of a chirp as roots of unity, in rows that are computed by vectors.
#pragma once

#include <algorithm>

#include "fft/plans/roots_of_unity.h"

namespace sigpak::kernels {

constexpr index row_length = 64;

// One part each of neighbouring numbers.
struct parted_row {
  double high[row_length];
  double low[row_length];

  [[gnu::always_inline]] void put(index i, parted x) noexcept {
    high[i] = x.high;
    low[i] = x.low;
  }
  parted operator[](index i) const noexcept { return {high[i], low[i]}; }
};

struct root_row {
  parted_row cosine;
  parted_row sine;

  [[gnu::always_inline]] void put(index i, root r) noexcept {
    cosine.put(i, r.cosine);
    sine.put(i, r.sine);
  }
  root operator[](index i) const noexcept { return {cosine[i], sine[i]}; }
};

// conj g[m] w^(r m) on a circle of so many points, for the two r of a round, whose bins lie side by side in
// the lanes.
class squares {
 public:
  squares(index points, index circle, int round, int rounds) noexcept
      : period_(2 * points),
        of_data_(2 * points),
        of_circle_(circle),
        residue_{static_cast<double>(round), static_cast<double>(round + rounds)} {}

  // From m = first on; those behind m = 2 N - 2 are 0. All loops but those over the table of coarse roots run
  // in vectors.
  [[gnu::always_inline]] void fill(root_row (&out)[2], index first, index count) const noexcept {
    const index left = std::clamp(period_ - 1 - first, index{0}, count);
    std::int32_t coarse[2][row_length];
    double fine[2][row_length];
    find_angles(coarse, fine, first, left);
    for (const int part : {0, 1}) {
      root_row& row = out[part];
      for (index i = 0; i < left; ++i) row.put(i, coarse_root(coarse[part][i]));
      for (index i = 0; i < left; ++i) row.put(i, turned_by(row[i], fine[part][i]));
      for (index i = left; i < count; ++i) row.put(i, {});
    }
  }

 private:
  [[gnu::always_inline]] void find_angles(std::int32_t (&coarse)[2][row_length],
                                          double (&fine)[2][row_length], index first,
                                          index count) const noexcept {
    const auto square = static_cast<double>(first * first % period_);
    const auto slope = static_cast<double>(2 * first);
    const auto start = static_cast<double>(first);
    const roots of_data = of_data_;
    const roots of_circle = of_circle_;
    for (const int part : {0, 1}) {
      const double residue = residue_[part];
      for (index i = 0; i < count; ++i) {
        const double step = static_cast<std::int32_t>(i);
        const angle at =
            of_data.angle_of(square + step * (slope + step)) - of_circle.angle_of(residue * (start + step));
        coarse[part][i] = at.coarse;
        fine[part][i] = at.fine;
      }
    }
  }

  index period_;
  roots of_data_;
  roots of_circle_;
  double residue_[2];
};

inline void add_row(root_row& sum, const root_row& row, index count) noexcept {
  for (index i = 0; i < count; ++i) {
    sum.put(i, {sum.cosine[i] + row.cosine[i], sum.sine[i] + row.sine[i]});
  }
}

}  // namespace sigpak::kernels
