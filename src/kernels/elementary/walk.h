// SPDX-License-Identifier: MIT
// Walks over arrays for the elementary functions: whole vectors, short records, and the arguments that are
// too rare or too wild for vectors.
#pragma once

#include "kernels/elementary/functions.h"
#include "kernels/elementary/precise.h"
#include "vectors/compare.h"
#include "vectors/rows.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// f where it beats the C library.
template <class T, class Function = kernels::unary<T>> constexpr Function where_faster(Function f) {
  return is_single<T> || has_fused_products ? f : nullptr;
}

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
    return __builtin_expect(is_any(f.is_wild(a...)), 0);
  } else {
    return false;
  }
}

// A function of vectors as an object, for the walks; of single precision with f.precise, as below.
template <real f(real x)> struct everywhere {
  SIGPAK_INLINE real operator()(real x) const { return f(x); }
};
template <real f(real x), double precise_f(double x) noexcept> struct everywhere_single : everywhere<f> {
  static double precise(double x) { return precise_f(x); }
};

// Without fused products the kernels of single precision leave it open to which of two floats some results
// round: those that f.precise takes, which are rounded to odd. With them the coefficients were chosen so that
// no result is open.
template <class F>
concept may_be_open = !has_fused_products && requires(const F& f, double x) {
  f.precise(x);
};

// Lanes that may be open have the sign: the 29 bits of y that a float has not lie near the middle of their
// range, or y is neither a normal float nor so small that it rounds to zero. Sums and bits alone, as few
// processors compare words of 64 bits.
SIGPAK_INLINE words may_be_between_floats(real y) {
  constexpr unsigned long long doubt = 1 << 12;  // in the last place of y: 2^-41 or more of it
  constexpr unsigned long long middle = 1 << 28;
  constexpr unsigned long long fraction = (1 << 29) - 1;
  const words near_middle =
      ((bits(y) + all_bits(doubt / 2 - middle)) & all_bits(fraction & -doubt)) - all_bits(1);
  const words size = bits(absolute(y));
  const words above_zero = size - all_bits(__builtin_bit_cast(unsigned long long, 0x1p-151));
  return near_middle | ((size - all_bits(__builtin_bit_cast(unsigned long long, 0x1p-126))) & ~above_zero);
}

template <class F> SIGPAK_INLINE bool any_open(const F&, real y) {
  if constexpr (may_be_open<F>) {
    return __builtin_expect(any_sign(may_be_between_floats(y)), 0);
  } else {
    return false;
  }
}

// Whether numbers within the error of y round to two floats.
SIGPAK_INLINE bool is_between_floats(double y) {
  constexpr double error = 0x1p-42;
  return y == y && static_cast<float>(y * (1 - error)) != static_cast<float>(y * (1 + error));
}

// y = f(x) with the lanes that are open made precise.
template <class F> SIGPAK_INLINE real settled(real y, real x, const F& f) {
  for (int i = 0; i < lane_count; ++i) {
    if (is_between_floats(y.v[i])) y.v[i] = f.precise(x.v[i]);
  }
  return y;
}

// f(x) whatever x is.
template <class F> SIGPAK_INLINE real anywhere(const F& f, real x) {
  real y;
  if constexpr (has_wild<F, real>) {
    y = any_wild(f, x) ? f.careful(x) : f(x);
  } else {
    y = f(x);
  }
  if constexpr (may_be_open<F>) {
    if (any_open(f, y)) y = settled(y, x, f);
  }
  return y;
}

// x[i] = f(x[i]) for at most one vector.
template <class T, class F> [[gnu::noinline]] void walk_some(T* x, index count, F f) {
  write_some(x, anywhere(f, read_some(x, count)), count);
}

// x[i] = f(x[i]) from i on, whole vectors up to a wild or an open one; how far it came. A function of its
// own, because compilers give up constants in registers for a loop with a call around it.
template <class T, class F> [[gnu::noinline]] index walk_vectors(T* x, index i, index n, F f) {
  for (; i + lane_count <= n; i += lane_count) {
    const real a = read(x + i);
    if (any_wild(f, a)) break;
    const real y = f(a);
    if (any_open(f, y)) break;
    write(x + i, y);
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
