// Walks over arrays for the elementary functions: whole vectors, short records, and the arguments that are
// too rare or too wild for vectors.
#pragma once

#include "vectors/compare.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

SIGPAK_INLINE real read(const double* from) { return load<real>(from); }
SIGPAK_INLINE real read(const float* from) { return widen(from); }
SIGPAK_INLINE void write(double* to, real a) { store(to, a); }
SIGPAK_INLINE void write(float* to, real a) { narrow(to, a); }

// At least one scalar and at most a vector of them, at a stride; the last one repeated in the lanes that are
// left. Loads of single scalars, because a wider one would wait for the stores of a caller who has just
// filled his record.
template <class T> SIGPAK_INLINE real read_some(const T* from, index count, index stride = 1) {
  const auto at = [=](index i) __attribute__((always_inline)) {
    return static_cast<double>(from[(i < count ? i : count - 1) * stride]);
  };
#if SIGPAK_VECTOR_BYTES == 64
  return {_mm512_setr_pd(at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7))};
#else
  return {_mm256_setr_pd(at(0), at(1), at(2), at(3))};
#endif
}

// The first `count` of a vector, in the largest pieces: a masked store could not be forwarded to the next
// reader.
SIGPAK_INLINE void write_some(double* to, real a, index count) {
#if SIGPAK_VECTOR_BYTES == 64
  if (count == lane_count) return store(to, a);
  __m256d half = _mm512_castpd512_pd256(a.v);
  if ((count & 4) != 0) {
    _mm256_storeu_pd(to, half);
    to += 4;
    half = _mm512_extractf64x4_pd(a.v, 1);
  }
#else
  if (count == lane_count) return store(to, a);
  const __m256d half = a.v;
#endif
  __m128d rest = _mm256_castpd256_pd128(half);
  if ((count & 2) != 0) {
    _mm_storeu_pd(to, rest);
    to += 2;
    rest = _mm256_extractf128_pd(half, 1);
  }
  if ((count & 1) != 0) _mm_store_sd(to, rest);
}
SIGPAK_INLINE void write_some(float* to, real a, index count) {
#if SIGPAK_VECTOR_BYTES == 64
  if (count == lane_count) return narrow(to, a);
  const __m256 all_floats = _mm512_cvtpd_ps(a.v);
  __m128 rest = _mm256_castps256_ps128(all_floats);
  if ((count & 4) != 0) {
    _mm_storeu_ps(to, rest);
    to += 4;
    rest = _mm256_extractf128_ps(all_floats, 1);
  }
#else
  if (count == lane_count) return narrow(to, a);
  __m128 rest = _mm256_cvtpd_ps(a.v);
#endif
  if ((count & 2) != 0) {
    _mm_storel_pi(reinterpret_cast<__m64*>(to), rest);
    to += 2;
    rest = _mm_movehl_ps(rest, rest);
  }
  if ((count & 1) != 0) _mm_store_ss(to, rest);
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
