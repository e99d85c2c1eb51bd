// SPDX-License-Identifier: MIT
// Blocks of a sinusoid side by side: each lane turns its own block, and squares of steps by lanes are
// transposed on their way to memory. No product is fused: every lane rounds like the plain recurrence.
#include "kernels/sweep.h"

#include "vectors/levels.h"
#include "vectors/rows.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// What a step leaves in rows, so many scalars for a point, and how they go to memory.
struct cosine {
  static constexpr int scalars = 1;
  static constexpr bool adds = false;
  SIGPAK_INLINE static void give(real* r, real re, real, real) { r[0] = re; }
};

struct exponential {
  static constexpr int scalars = 2;
  static constexpr bool adds = false;
  SIGPAK_INLINE static void give(real* r, real re, real im, real) {
    r[0] = re;
    r[1] = im;
  }
};

struct add_cosine {
  static constexpr int scalars = 1;
  static constexpr bool adds = true;
  SIGPAK_INLINE static void give(real* r, real re, real, real amplitude) { r[0] = amplitude * re; }
};

// -0 added leaves any number as it is.
struct add_cosine_to_points {
  static constexpr int scalars = 2;
  static constexpr bool adds = true;
  SIGPAK_INLINE static void give(real* r, real re, real, real amplitude) {
    r[0] = amplitude * re;
    r[1] = -real{};
  }
};

struct add_exponential {
  static constexpr int scalars = 2;
  static constexpr bool adds = true;
  SIGPAK_INLINE static void give(real* r, real re, real im, real amplitude) {
    r[0] = amplitude * re;
    r[1] = amplitude * im;
  }
};

template <class Way, int lanes, class T> void turn_lanes(const kernels::sweep_start& start, T* const* x) {
  constexpr int groups = lanes / lane_count;
  constexpr int steps = lane_count / Way::scalars;
  const real c = all(start.c);
  const real s = all(start.s);
  const real amplitude = all(start.amplitude);
  real re[groups];
  real im[groups];
  for (int g = 0; g < groups; ++g) {
    re[g] = load<real>(start.re + g * lane_count);
    im[g] = load<real>(start.im + g * lane_count);
  }
  for (index i = 0; i < kernels::sweep_points; i += steps) {
    unroll<groups>([&](auto g) SIGPAK_LAMBDA {
      real r[lane_count];
      unroll<steps>([&](auto p) SIGPAK_LAMBDA {
        Way::give(r + p * Way::scalars, re[g], im[g], amplitude);
        const real next = re[g] * c - im[g] * s;
        im[g] = re[g] * s + im[g] * c;
        re[g] = next;
      });
      transpose(r);
      unroll<lane_count>([&](auto l) SIGPAK_LAMBDA {
        T* const to = x[g * lane_count + l] + i * Way::scalars;
        write(to, Way::adds ? read(to) + r[l] : r[l]);
      });
    });
  }
}

template <class Way, class T> void turn(const kernels::sweep_start& start, T* const* x, int lanes) {
  if (lanes > kernels::most_sweep_lanes / 2) {
    turn_lanes<Way, kernels::most_sweep_lanes>(start, x);
  } else {
    turn_lanes<Way, kernels::most_sweep_lanes / 2>(start, x);
  }
}

template <class T>
constexpr kernels::sweep_table<T> table = {turn<cosine, T>, turn<exponential, T>, turn<add_cosine, T>,
                                           turn<add_cosine_to_points, T>, turn<add_exponential, T>};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::sweep_table<double>) = SIGPAK_LEVEL::table<double>;
SIGPAK_LEVEL_TABLE(kernels::sweep_table<float>) = SIGPAK_LEVEL::table<float>;

}  // namespace sigpak
