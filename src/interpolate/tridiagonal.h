// SPDX-License-Identifier: MIT
// The equations of the slopes on any knots, and their solution.
#pragma once

#include "interpolate/slopes.h"

namespace sigpak {

// before * s[i-1] + pivot * s[i] + after * s[i+1] = right.
struct slope_row {
  double before;
  double pivot;
  double after;
  double right;
};

// The second derivative is continuous between intervals of the lengths h0 and h1 with the chords d0 and d1.
constexpr slope_row inner_row(double h0, double h1, double d0, double d1) noexcept {
  return {h1, 2 * (h0 + h1), h0, 3 * (h1 * d0 + h0 * d1)};
}

// The end row whose neighbour is reached by `after`, from the end's interval and the one behind it: h0 and h1
// long, d0 and d1 their chords. The last row is its mirror image.
constexpr slope_row end_row(spline_ends kind, double slope, double h0, double h1, double d0,
                            double d1) noexcept {
  switch (kind) {
    case spline_ends::not_a_knot:  // the third derivative too is continuous at the neighbour
      return {0, h1, h0 + h1, ((3 * h0 + 2 * h1) * h1 * d0 + h0 * h0 * d1) / (h0 + h1)};
    case spline_ends::natural:
      return {0, 2, 1, 3 * d0};
    default:
      return {0, 1, 0, slope};
  }
}

// s[0 .. n-1] of the n >= 2 rows that row(i) tells, `factor` as long for the elimination. It runs from both
// ends at once and meets in the middle: two chains of divisions instead of one of twice the length. The rows
// are dominated by their pivots, so none are exchanged.
template <class Row> void solve_rows(index n, Row row, double* factor, double* s) noexcept {
  const index middle = n / 2;
  double c = 0;
  double z = 0;
  double c_end = 0;
  double z_end = 0;
  for (index i = 0, j = n - 1; j >= middle; ++i, --j) {
    if (i < middle) {
      const slope_row r = row(i);
      const double pivot = r.pivot - r.before * c;
      factor[i] = c = r.after / pivot;
      s[i] = z = (r.right - r.before * z) / pivot;
    }
    const slope_row r = row(j);
    const double pivot = r.pivot - r.after * c_end;
    factor[j] = c_end = r.before / pivot;
    s[j] = z_end = (r.right - r.after * z_end) / pivot;
  }
  s[middle] = (z_end - c_end * z) / (1 - c_end * c);
  s[middle - 1] = z - c * s[middle];
  for (index i = middle - 2, j = middle + 1; i >= 0 || j < n; --i, ++j) {
    if (i >= 0) s[i] -= factor[i] * s[i + 1];
    if (j < n) s[j] -= factor[j] * s[j - 1];
  }
}

}  // namespace sigpak
