// Blocks of a sinusoid side by side: each lane turns its own block, and squares of steps by lanes are
// transposed on their way to memory. No product is fused: every lane rounds like the plain recurrence.
#include "kernels/sweep.h"

#include "vectors/lanes.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr int width = SIGPAK_VECTOR_BYTES / 8;
using row = pack<double, width>;

// What a step leaves in rows, so many scalars for a point, and how they go to memory.
struct cosine {
  static constexpr int scalars = 1;
  static constexpr bool adds = false;
  SIGPAK_INLINE static void give(row* r, row re, row, row) { r[0] = re; }
};

struct exponential {
  static constexpr int scalars = 2;
  static constexpr bool adds = false;
  SIGPAK_INLINE static void give(row* r, row re, row im, row) {
    r[0] = re;
    r[1] = im;
  }
};

struct add_cosine {
  static constexpr int scalars = 1;
  static constexpr bool adds = true;
  SIGPAK_INLINE static void give(row* r, row re, row, row amplitude) { r[0] = amplitude * re; }
};

// -0 added leaves any number as it is.
struct add_cosine_to_points {
  static constexpr int scalars = 2;
  static constexpr bool adds = true;
  SIGPAK_INLINE static void give(row* r, row re, row, row amplitude) {
    r[0] = amplitude * re;
    r[1] = -row{};
  }
};

struct add_exponential {
  static constexpr int scalars = 2;
  static constexpr bool adds = true;
  SIGPAK_INLINE static void give(row* r, row re, row im, row amplitude) {
    r[0] = amplitude * re;
    r[1] = amplitude * im;
  }
};

SIGPAK_INLINE row load_row(const double* x) { return load<row>(x); }
SIGPAK_INLINE row load_row(const float* x) {
  return {__builtin_convertvector(load<pack<float, width>>(x).v, row::vector)};
}
SIGPAK_INLINE void store_row(double* x, row a) { store(x, a); }
SIGPAK_INLINE void store_row(float* x, row a) {
  store(x, pack<float, width>{__builtin_convertvector(a.v, pack<float, width>::vector)});
}

template <class Way, int lanes, class T> void turn_lanes(const kernels::sweep_start& start, T* const* x) {
  constexpr int groups = lanes / width;
  constexpr int steps = width / Way::scalars;
  const row c = splat<row>(start.c);
  const row s = splat<row>(start.s);
  const row amplitude = splat<row>(start.amplitude);
  row re[groups];
  row im[groups];
  for (int g = 0; g < groups; ++g) {
    re[g] = load<row>(start.re + g * width);
    im[g] = load<row>(start.im + g * width);
  }
  for (index i = 0; i < kernels::sweep_points; i += steps) {
    unroll<groups>([&](auto g) __attribute__((always_inline)) {
      row r[width];
      unroll<steps>([&](auto p) __attribute__((always_inline)) {
        Way::give(r + p * Way::scalars, re[g], im[g], amplitude);
        const row next = re[g] * c - im[g] * s;
        im[g] = re[g] * s + im[g] * c;
        re[g] = next;
      });
      transpose(r);
      unroll<width>([&](auto l) __attribute__((always_inline)) {
        T* const to = x[g * width + l] + i * Way::scalars;
        store_row(to, Way::adds ? load_row(to) + r[l] : r[l]);
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
