// SPDX-License-Identifier: MIT
// How the shapes are laid over the points of a window.
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

#include "core/blocks.h"
#include "core/rounding.h"

namespace sigpak {

// body(i, start + i * step) for i = 0 ... count - 1, the ramp advanced by addition and exact at every block.
template <class Body> void for_ramp(index count, double start, double step, Body body) {
  for_blocks(count, window_block, [&](index begin, index size) {
    double x = start + static_cast<double>(begin) * step;
    for (index i = begin; i < begin + size; ++i) {
      body(i, x);
      x += step;
    }
  });
}

// The height of the triangular window of n >= 1 points.
double triangle_peak(index n, int mode) noexcept;

// A width within the rounding tolerance of a whole number is that number.
inline double settled(double width) noexcept {
  const double whole = std::round(width);
  return tolerantly_equal(width, whole) ? whole : width;
}

// Points beyond the pairs left and right of the centre are 0. A window of even width ends on the left only.
template <class T> void blank(T* w, index n, index pairs, double width) noexcept {
  const index centre = n / 2;
  const bool even = std::fmod(width, 2) == 0;
  std::fill(w, w + centre - pairs, T(0));
  std::fill(w + centre + pairs + (even ? 0 : 1), w + n, T(0));
}

// shape(2 pi turn, turn) with turn = m / width at the distance m from the middle point n / 2: periodic with
// the width, which may differ from the n >= 1 points. The angle advances by addition.
template <class T, class Shape> void fill_centred(T* w, index n, double width, Shape shape) noexcept {
  if (width <= 0) {
    std::fill(w, w + n, T(0));
    return;
  }
  width = std::max(settled(width), 1.0);  // a narrower window has its middle point only, all the same
  const index centre = n / 2;
  const index pairs = std::min(index{tolerant_floor(width)} / 2, (n - 1) / 2);
  const double step = 2 * std::numbers::pi / width;
  for_ramp(pairs + 1, 0, step, [&](index m, double angle) {
    w[centre - m] = w[centre + m] = static_cast<T>(shape(angle, static_cast<double>(m) / width));
  });
  const auto points = static_cast<double>(n);
  if (width < points) {
    blank(w, n, pairs, width);
  } else if (n % 2 == 0) {
    const double turn = static_cast<double>(centre) / width;
    w[0] = static_cast<T>(shape(2 * std::numbers::pi * turn, turn));
  }
}

// Samples of shape(x) at the distances x from the middle point n / 2, or, in the symmetric form of an even
// number of points, from the middle between the two innermost ones.
template <class T, class Shape> void fill_mirrored(T* w, index n, bool symmetric, Shape shape) noexcept {
  const index centre = n / 2;
  if (symmetric && n % 2 == 0) {
    for (index j = 0; j < centre; ++j) {
      w[centre + j] = w[centre - 1 - j] = static_cast<T>(shape(static_cast<double>(j) + 0.5));
    }
    return;
  }
  for (index k = 0; k <= (n - 1) / 2; ++k) {
    w[centre + k] = w[centre - k] = static_cast<T>(shape(static_cast<double>(k)));
  }
  if (n % 2 == 0) w[0] = static_cast<T>(shape(static_cast<double>(centre)));
}

// sum of a[k] cos(k x) over k < count by Clenshaw's recurrence in c = cos(x).
template <class T> double cosine_sum(const T* a, index count, double c) noexcept {
  double next = 0;
  double after = 0;
  for (index k = count - 1; k > 0; --k) {
    const double term = static_cast<double>(a[k]) + 2 * c * next - after;
    after = next;
    next = term;
  }
  return static_cast<double>(a[0]) + c * next - after;
}

}  // namespace sigpak
