// Walks over arrays for the elementary functions: whole vectors, short records, and the arguments that are
// too rare or too wild for vectors.
#pragma once

#include "vectors/compare.h"
#include "vectors/rows.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The lanes of y in which m holds become f(x): for the arguments that are too rare or too wild for vectors.
template <class F> SIGPAK_INLINE real except(real y, mask m, real x, F f) {
  double from[lane_count];
  double to[lane_count];
  store(from, x);
  store(to, y);
  const int lanes = lanes_of(m);
  for (int i = 0; i < lane_count; ++i) {
    if ((lanes >> i & 1) != 0) to[i] = f(from[i]);
  }
  return load<real>(to);
}

// The components of one point.
struct point {
  double a;
  double b;
};

// The same for points: f(a, b) replaces their components.
template <class F> SIGPAK_INLINE void except(real& y, real& z, mask m, real a, real b, F f) {
  double from[2][lane_count];
  double to[2][lane_count];
  store(from[0], a);
  store(from[1], b);
  store(to[0], y);
  store(to[1], z);
  const int lanes = lanes_of(m);
  for (int i = 0; i < lane_count; ++i) {
    if ((lanes >> i & 1) == 0) continue;
    const point w = f(from[0][i], from[1][i]);
    to[0][i] = w.a;
    to[1][i] = w.b;
  }
  y = load<real>(to[0]);
  z = load<real>(to[1]);
}

// The functions below walk over an array with a function object f. Where some lanes of a vector are outside
// of what f is made for, f.is_wild tells, and f.careful serves all lanes: out of the loop, which keeps its
// registers.
template <class F, class... Reals>
concept has_wild = requires(const F& f, Reals... a) {
  f.is_wild(a...);
};

template <class F, class... Reals> SIGPAK_INLINE bool any_wild(const F& f, Reals... a) {
  if constexpr (has_wild<F, Reals...>) {
    return __builtin_expect(lanes_of(f.is_wild(a...)) != 0, 0);
  } else {
    return false;
  }
}

// A function of vectors as an object, for the walks.
template <real f(real x)> struct everywhere {
  SIGPAK_INLINE real operator()(real x) const { return f(x); }
};

// x[i] = f(x[i]) for at most one vector.
template <class T, class F> [[gnu::noinline]] void walk_some(T* x, index count, F f) {
  const real a = read_some(x, count);
  if constexpr (has_wild<F, real>) {
    if (any_wild(f, a)) return write_some(x, f.careful(a), count);
  }
  write_some(x, f(a), count);
}

// x[i] = f(x[i]) from i on, whole vectors up to a wild one; how far it came. A function of its own, because
// compilers give up constants in registers for a loop with a call around it.
template <class T, class F> [[gnu::noinline]] index walk_vectors(T* x, index i, index n, F f) {
  for (; i + lane_count <= n; i += lane_count) {
    const real a = read(x + i);
    if (any_wild(f, a)) break;
    write(x + i, f(a));
  }
  return i;
}

// x[i] = f(x[i])
template <class T, class F> SIGPAK_INLINE void walk(T* x, index n, F f) {
  for (index i = 0; i < n; i += lane_count) {
    if (n > lane_count) i = walk_vectors(x, i, n, f);
    if (i < n) walk_some(x + i, n - i < lane_count ? n - i : lane_count, f);
  }
}

// f(a, b) replaces the parts of at most one vector of points.
template <class T, class F> [[gnu::noinline]] void walk_some_points(const T* z, T* out, index count, F f) {
  real a = read_some(z, count, 2);
  real b = read_some(z + 1, count, 2);
  if constexpr (has_wild<F, real, real>) {
    any_wild(f, a, b) ? f.careful(a, b) : f(a, b);
  } else {
    f(a, b);
  }
  real low;
  real high;
  join_pairs(a, b, low, high);
  if (2 * count <= lane_count) return write_some(out, low, 2 * count);
  write(out, low);
  write_some(out + lane_count, high, 2 * count - lane_count);
}

template <class T, class F>
[[gnu::noinline]] index walk_vectors_of_points(const T* z, T* out, index i, index points, F f) {
  for (; i + lane_count <= points; i += lane_count) {
    real a;
    real b;
    split_pairs(read(z + 2 * i), read(z + 2 * i + lane_count), a, b);
    if (any_wild(f, a, b)) break;
    f(a, b);
    real low;
    real high;
    join_pairs(a, b, low, high);
    write(out + 2 * i, low);
    write(out + 2 * i + lane_count, high);
  }
  return i;
}

// f(a, b) replaces the parts of the points of z by those of out, which may be z.
template <class T, class F> SIGPAK_INLINE void walk_points(const T* z, T* out, index points, F f) {
  for (index i = 0; i < points; i += lane_count) {
    if (points > lane_count) i = walk_vectors_of_points(z, out, i, points, f);
    if (i < points) {
      walk_some_points(z + 2 * i, out + 2 * i, points - i < lane_count ? points - i : lane_count, f);
    }
  }
}

// out[i] = f(a, b) of at most one vector of points.
template <class T, class F> [[gnu::noinline]] void pack_some_points(const T* z, T* out, index count, F f) {
  const real a = read_some(z, count, 2);
  const real b = read_some(z + 1, count, 2);
  if constexpr (has_wild<F, real, real>) {
    if (any_wild(f, a, b)) return write_some(out, f.careful(a, b), count);
  }
  write_some(out, f(a, b), count);
}

template <class T, class F>
[[gnu::noinline]] index pack_vectors_of_points(const T* z, T* out, index i, index points, F f) {
  for (; i + lane_count <= points; i += lane_count) {
    real a;
    real b;
    split_pairs(read(z + 2 * i), read(z + 2 * i + lane_count), a, b);
    if (any_wild(f, a, b)) break;
    write(out + i, f(a, b));
  }
  return i;
}

// out[i] = f(a, b) of the points of z; out may be z.
template <class T, class F> SIGPAK_INLINE void walk_packing(const T* z, T* out, index points, F f) {
  for (index i = 0; i < points; i += lane_count) {
    if (points > lane_count) i = pack_vectors_of_points(z, out, i, points, f);
    if (i < points) {
      pack_some_points(z + 2 * i, out + i, points - i < lane_count ? points - i : lane_count, f);
    }
  }
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
