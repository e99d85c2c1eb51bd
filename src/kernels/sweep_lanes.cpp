// SPDX-License-Identifier: MIT
// Blocks of a sinusoid side by side: each lane turns its own block, and squares of steps by lanes are
// transposed on their way to memory. No product is fused: every lane rounds like the plain recurrence.
#include "kernels/sweep.h"

#include "core/machine.h"
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

template <int lanes> struct phasors {
  static constexpr int groups = lanes / lane_count;
  real re[groups];
  real im[groups];

  SIGPAK_INLINE void turn(int g, real c, real s) {
    const real next = re[g] * c - im[g] * s;
    im[g] = re[g] * s + im[g] * c;
    re[g] = next;
  }
};

// The next points of every lane, a vector of scalars each, given to put(lane, vector).
template <class Way, int lanes, class Put>
SIGPAK_INLINE void turn_vectors(phasors<lanes>& z, real c, real s, real amplitude, Put put) {
  unroll<phasors<lanes>::groups>([&](auto g) SIGPAK_LAMBDA {
    real r[lane_count];
    unroll<lane_count / Way::scalars>([&](auto p) SIGPAK_LAMBDA {
      Way::give(r + p * Way::scalars, z.re[g], z.im[g], amplitude);
      z.turn(g, c, s);
    });
    transpose(r);
    unroll<lane_count>([&](auto l) SIGPAK_LAMBDA { put(g * lane_count + l, r[l]); });
  });
}

// Points before the first vector that is not in two lines, which of many streams would have left the cache
// before their other half is written. Blocks are a whole number of lines, so all lanes have as many.
template <class Way, class T> SIGPAK_INLINE index points_before_whole_vectors(const T* x) {
  const index scalars = machine::bytes_to_line(x) / index{sizeof(T)} % lane_count;
  return Way::adds || scalars % Way::scalars != 0 ? 0 : scalars / Way::scalars;
}

template <class Way, int lanes, class T> void turn_lanes(const kernels::sweep_start& start, T* const* x) {
  constexpr int steps = lane_count / Way::scalars;
  const real c = all(start.c);
  const real s = all(start.s);
  const real amplitude = all(start.amplitude);
  phasors<lanes> z;
  unroll<z.groups>([&](auto g) SIGPAK_LAMBDA {
    z.re[g] = load<real>(start.re + g * lane_count);
    z.im[g] = load<real>(start.im + g * lane_count);
  });
  index i = points_before_whole_vectors<Way>(x[0]);
  if (i > 0) {
    phasors<lanes> first = z;
    turn_vectors<Way>(first, c, s, amplitude, [=](int lane, real a) SIGPAK_LAMBDA { write(x[lane], a); });
    for (index p = 0; p < i; ++p) unroll<z.groups>([&](auto g) SIGPAK_LAMBDA { z.turn(g, c, s); });
  }
  const index between =
      start.meanwhile != nullptr ? kernels::sweep_points / kernels::meanwhiles : kernels::sweep_points;
  for (index end = between; end <= kernels::sweep_points; end += between) {
    for (; i + steps <= end; i += steps) {
      if (start.ahead != 0) {
        unroll<lanes>([&](auto l)
                          SIGPAK_LAMBDA { __builtin_prefetch(x[l] + i * Way::scalars + start.ahead); });
      }
      turn_vectors<Way>(z, c, s, amplitude, [=](int lane, real a) SIGPAK_LAMBDA {
        T* const to = x[lane] + i * Way::scalars;
        write(to, Way::adds ? read(to) + a : a);
      });
    }
    if (start.meanwhile != nullptr) {
      unroll<lanes>([&](auto l) SIGPAK_LAMBDA { __builtin_prefetch(x[l] + end * Way::scalars, 1); });
      start.meanwhile(start.work);
    }
  }
  if (const index left = kernels::sweep_points - i; left > 0) {
    turn_vectors<Way>(z, c, s, amplitude, [=](int lane, real a) SIGPAK_LAMBDA {
      write_some(x[lane] + i * Way::scalars, a, left * Way::scalars);
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
