// SPDX-License-Identifier: MIT
// The terms of the sums of blocks side by side: what the next point of every lane adds to the sums.
// Only for sources compiled per level. No product is fused: every lane rounds like the plain loop.
#pragma once

#include "kernels/sums/lane_sums.h"
#include "vectors/compare.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

struct constants {
  real centre;
  real centre_im;
  real huge;
  real step;

  // The data stand second: the minimum and the maximum of the processor answer with the second operand where
  // one is NaN.
  SIGPAK_INLINE real limited(real x) const { return greater(-huge, lesser(huge, x)); }
};

// Terms of samples as they are. A term takes so many rows of every record for a point, and adds to `sums`
// sums.
struct sample {
  static constexpr int sums = 1, x_rows = 1, y_rows = 0;
  SIGPAK_INLINE static void add(real* s, const real* x, const real*, const constants&) { s[0] = s[0] + x[0]; }
};

struct point {
  static constexpr int sums = 2, x_rows = 2, y_rows = 0;
  SIGPAK_INLINE static void add(real* s, const real* z, const real*, const constants&) {
    s[0] = s[0] + z[0];
    s[1] = s[1] + z[1];
  }
};

struct reciprocal {
  static constexpr int sums = 1, x_rows = 1, y_rows = 0;
  SIGPAK_INLINE static void add(real* s, const real* x, const real*, const constants&) {
    s[0] = s[0] + all(1.0) / x[0];
  }
};

struct product {
  static constexpr int sums = 1, x_rows = 1, y_rows = 1;
  SIGPAK_INLINE static void add(real* s, const real* x, const real* y, const constants&) {
    s[0] = s[0] + x[0] * y[0];
  }
};

struct point_product {
  static constexpr int sums = 2, x_rows = 2, y_rows = 2;
  SIGPAK_INLINE static void add(real* s, const real* x, const real* y, const constants&) {
    s[0] = s[0] + (x[0] * y[0] + -x[1] * y[1]);
    s[1] = s[1] + (x[0] * y[1] + x[1] * y[0]);
  }
};

struct mixed_product {
  static constexpr int sums = 2, x_rows = 2, y_rows = 1;
  SIGPAK_INLINE static void add(real* s, const real* x, const real* y, const constants&) {
    s[0] = s[0] + x[0] * y[0];
    s[1] = s[1] + x[1] * y[0];
  }
};

// Terms of deviations, which are limited or, where all of them lie within the limits anyway, not looked at.
// The sums numbered in `of_squares` tell: below huge^2, no addend of theirs reached it, for they only grow.
template <bool limits> SIGPAK_INLINE real deviation_of(real d, const constants& c) {
  if constexpr (limits) return c.limited(d);
  return d;
}

template <bool limits> struct square {
  static constexpr int sums = 1, x_rows = 1, y_rows = 0;
  static constexpr int of_squares[] = {0};
  SIGPAK_INLINE static void add(real* s, const real* x, const real*, const constants& c) {
    const real y = deviation_of<limits>(x[0], c);
    s[0] = s[0] + y * y;
  }
};

template <bool limits> struct point_square {
  static constexpr int sums = 1, x_rows = 2, y_rows = 0;
  static constexpr int of_squares[] = {0};
  SIGPAK_INLINE static void add(real* s, const real* z, const real*, const constants& c) {
    const real re = deviation_of<limits>(z[0], c);
    const real im = deviation_of<limits>(z[1], c);
    s[0] = s[0] + (re * re + im * im);
  }
};

// The factor 1 / |z|^2 is kept finite; of 0 it is huge.
template <bool limits> struct point_reciprocal {
  static constexpr int sums = 3, x_rows = 2, y_rows = 0;
  static constexpr int of_squares[] = {2};
  SIGPAK_INLINE static void add(real* s, const real* z, const real*, const constants& c) {
    const real re = deviation_of<limits>(z[0], c);
    const real im = deviation_of<limits>(z[1], c);
    const real q = re * re + im * im;
    const real factor = choose(q <= all(0), c.huge, lesser(all(__DBL_MAX__), all(1) / q));
    s[0] = s[0] + re * factor;
    s[1] = s[1] - im * factor;
    s[2] = s[2] + q;
  }
};

template <bool limits> struct deviation {
  static constexpr int sums = 2, x_rows = 1, y_rows = 0;
  static constexpr int of_squares[] = {1};
  SIGPAK_INLINE static void add(real* s, const real* x, const real*, const constants& c) {
    const real d = deviation_of<limits>(x[0] - c.centre, c);
    s[0] = s[0] + d;
    s[1] = s[1] + d * d;
  }
};

template <bool limits> struct point_deviation {
  static constexpr int sums = 4, x_rows = 2, y_rows = 0;
  static constexpr int of_squares[] = {1, 3};
  SIGPAK_INLINE static void add(real* s, const real* z, const real*, const constants& c) {
    const real re = deviation_of<limits>(z[0] - c.centre, c);
    const real im = deviation_of<limits>(z[1] - c.centre_im, c);
    s[0] = s[0] + re;
    s[1] = s[1] + re * re;
    s[2] = s[2] + im;
    s[3] = s[3] + im * im;
  }
};

template <bool limits> struct cubed_deviation {
  static constexpr int sums = 3, x_rows = 1, y_rows = 0;
  static constexpr int of_squares[] = {1};
  SIGPAK_INLINE static void add(real* s, const real* x, const real*, const constants& c) {
    const real d = deviation_of<limits>(x[0] - c.centre, c);
    const real dd = d * d;
    s[0] = s[0] + d;
    s[1] = s[1] + dd;
    s[2] = s[2] + dd * d;
  }
};

template <bool limits> struct fourth_deviation {
  static constexpr int sums = 2, x_rows = 1, y_rows = 0;
  static constexpr int of_squares[] = {0};
  SIGPAK_INLINE static void add(real* s, const real* x, const real*, const constants& c) {
    const real d = deviation_of<limits>(x[0] - c.centre, c);
    const real dd = d * d;
    s[0] = s[0] + dd;
    s[1] = s[1] + dd * dd;
  }
};

SIGPAK_INLINE void add_pair(real* s, real d, real e) {
  s[0] = s[0] + d;
  s[1] = s[1] + e;
  s[2] = s[2] + d * d;
  s[3] = s[3] + e * e;
  s[4] = s[4] + d * e;
}

template <bool limits> struct point_line {
  static constexpr int sums = 5, x_rows = 2, y_rows = 0;
  static constexpr int of_squares[] = {2, 3};
  SIGPAK_INLINE static void add(real* s, const real* z, const real*, const constants& c) {
    add_pair(s, deviation_of<limits>(z[0] - c.centre, c), deviation_of<limits>(z[1] - c.centre_im, c));
  }
};

// One row more than there are sums counts the samples, in double without rounding.
template <bool limits> struct line {
  static constexpr int sums = 5, x_rows = 1, y_rows = 0;
  static constexpr int of_squares[] = {2, 3};
  static constexpr bool counts = true;
  SIGPAK_INLINE static void add(real* s, const real* x, const real*, const constants& c) {
    add_pair(s, deviation_of<limits>(s[5] * c.step - c.centre_im, c),
             deviation_of<limits>(x[0] - c.centre, c));
    s[5] = s[5] + all(1.0);
  }
};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
