// SPDX-License-Identifier: MIT
// Correlations of real signals by complex transforms of half their length.
//
// With w = exp(i pi / (2 M)), the transform of z[j] = w^j (x[j] + i x[j + M]), j < M, is the polynomial of x
// at the points t = w exp(-2 pi i k / M), all with t^M = i. A product A conj B of two such transforms belongs
// to the correlation, the sum of c[l] t^l, and leads back to w^j (c[j] - i c[j - M]): the lags on either side
// part by themselves. R. Crandall, B. Fagin, "Discrete weighted transforms and large-integer arithmetic",
// Math. Comp. 62 (1994).
#pragma once

#include "core/record.h"

namespace sigpak::right_angle {

// z from n <= 2 points samples, zeros behind them.
template <class T> void fold(const T* x, index n, index points, T* z) noexcept;

// What sums are multiplied by: whole, or where they fade whole / (samples - |l|).
struct lag_scale {
  double whole;
  double samples;
  bool fades;
};

// c[l] at centre[l] for |l| <= known < points.
template <class T> void unfold(const T* z, index points, index known, lag_scale scale, T* centre) noexcept;

}  // namespace sigpak::right_angle
