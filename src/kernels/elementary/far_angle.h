// SPDX-License-Identifier: MIT
// The angles that are too far from 0 for a reduction by a few doubles.
#pragma once

namespace sigpak::kernels {

// x = quarter * pi / 2 + hi + lo up to whole turns, |hi| <= pi / 4 (1 + 2^-52).
struct far_angle {
  int quarter;  // 0 .. 3
  double hi;
  double lo;
};

// Of every finite |x| >= 1, hi + lo within 2^-74 of it; the rest of an infinity or a NaN is NaN.
far_angle reduce_far(double x) noexcept;

}  // namespace sigpak::kernels
