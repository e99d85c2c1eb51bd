// The vectors of one instruction-set level: loads, fused products, and the shuffles of a transposition.
// Only for sources compiled per level; everything here has internal linkage.
#pragma once

#include <immintrin.h>

#include <cstddef>

namespace sigpak::SIGPAK_LEVEL {
namespace {

using index = std::ptrdiff_t;

#define SIGPAK_INLINE [[gnu::always_inline]] inline

template <class T, int W> struct lanes {
  typedef T vector __attribute__((vector_size(W * sizeof(T))));
  typedef T loose __attribute__((vector_size(W * sizeof(T)), aligned(sizeof(T)), may_alias));
};

// W scalars side by side; `T` is the scalar, `width` is W.
template <class T, int W> struct pack {
  using scalar = T;
  static constexpr int width = W;
  using vector = typename lanes<T, W>::vector;
  using loose = typename lanes<T, W>::loose;
  vector v;
};

// As many as the level's vectors hold.
template <class T> using widest = pack<T, SIGPAK_VECTOR_BYTES / static_cast<int>(sizeof(T))>;

template <class P> SIGPAK_INLINE P load(const typename P::scalar* from) {
  return {*reinterpret_cast<const typename P::loose*>(from)};
}
template <class P> SIGPAK_INLINE void store(typename P::scalar* to, P a) {
  *reinterpret_cast<typename P::loose*>(to) = a.v;
}
// x - 0 is x for every x, signed zeros included, so this is a broadcast and nothing else.
template <class P> SIGPAK_INLINE P splat(typename P::scalar x) { return {x - typename P::vector{}}; }

template <class T, int W> SIGPAK_INLINE pack<T, W> operator+(pack<T, W> a, pack<T, W> b) {
  return {a.v + b.v};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> operator-(pack<T, W> a, pack<T, W> b) {
  return {a.v - b.v};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> operator*(pack<T, W> a, pack<T, W> b) {
  return {a.v * b.v};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> operator-(pack<T, W> a) { return {-a.v}; }

using d2 = pack<double, 2>;
using d4 = pack<double, 4>;
using f4 = pack<float, 4>;
using f8 = pack<float, 8>;

// Stores past the caches, in memory that is not read soon; `to` on a boundary of the vector.
SIGPAK_INLINE void stream(double* to, d4 a) { _mm256_stream_pd(to, a.v); }
SIGPAK_INLINE void stream(float* to, f8 a) { _mm256_stream_ps(to, a.v); }
SIGPAK_INLINE void finish_streams() { _mm_sfence(); }

// a * b + c, a * b - c and c - a * b, rounded once.
SIGPAK_INLINE d2 fma(d2 a, d2 b, d2 c) { return {_mm_fmadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE d4 fma(d4 a, d4 b, d4 c) { return {_mm256_fmadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f4 fma(f4 a, f4 b, f4 c) { return {_mm_fmadd_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE f8 fma(f8 a, f8 b, f8 c) { return {_mm256_fmadd_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d2 fms(d2 a, d2 b, d2 c) { return {_mm_fmsub_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE d4 fms(d4 a, d4 b, d4 c) { return {_mm256_fmsub_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f4 fms(f4 a, f4 b, f4 c) { return {_mm_fmsub_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE f8 fms(f8 a, f8 b, f8 c) { return {_mm256_fmsub_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d2 fnma(d2 a, d2 b, d2 c) { return {_mm_fnmadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE d4 fnma(d4 a, d4 b, d4 c) { return {_mm256_fnmadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f4 fnma(f4 a, f4 b, f4 c) { return {_mm_fnmadd_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE f8 fnma(f8 a, f8 b, f8 c) { return {_mm256_fnmadd_ps(a.v, b.v, c.v)}; }

// Within every 128 bits: the low (high) parts of a and b, scalar by scalar.
SIGPAK_INLINE d2 low_parts(d2 a, d2 b) { return {_mm_unpacklo_pd(a.v, b.v)}; }
SIGPAK_INLINE d4 low_parts(d4 a, d4 b) { return {_mm256_unpacklo_pd(a.v, b.v)}; }
SIGPAK_INLINE f4 low_parts(f4 a, f4 b) { return {_mm_unpacklo_ps(a.v, b.v)}; }
SIGPAK_INLINE f8 low_parts(f8 a, f8 b) { return {_mm256_unpacklo_ps(a.v, b.v)}; }
SIGPAK_INLINE d2 high_parts(d2 a, d2 b) { return {_mm_unpackhi_pd(a.v, b.v)}; }
SIGPAK_INLINE d4 high_parts(d4 a, d4 b) { return {_mm256_unpackhi_pd(a.v, b.v)}; }
SIGPAK_INLINE f4 high_parts(f4 a, f4 b) { return {_mm_unpackhi_ps(a.v, b.v)}; }
SIGPAK_INLINE f8 high_parts(f8 a, f8 b) { return {_mm256_unpackhi_ps(a.v, b.v)}; }

// Real and imaginary parts of interleaved points exchanged.
SIGPAK_INLINE d2 exchanged(d2 a) { return {_mm_permute_pd(a.v, 0x1)}; }
SIGPAK_INLINE d4 exchanged(d4 a) { return {_mm256_permute_pd(a.v, 0x5)}; }
SIGPAK_INLINE f4 exchanged(f4 a) { return {_mm_permute_ps(a.v, 0xb1)}; }
SIGPAK_INLINE f8 exchanged(f8 a) { return {_mm256_permute_ps(a.v, 0xb1)}; }

// a * b + c in the even (odd) places, a * b - c in the others.
SIGPAK_INLINE d2 fma_even(d2 a, d2 b, d2 c) { return {_mm_fmsubadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE d4 fma_even(d4 a, d4 b, d4 c) { return {_mm256_fmsubadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f4 fma_even(f4 a, f4 b, f4 c) { return {_mm_fmsubadd_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE f8 fma_even(f8 a, f8 b, f8 c) { return {_mm256_fmsubadd_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d2 fma_odd(d2 a, d2 b, d2 c) { return {_mm_fmaddsub_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE d4 fma_odd(d4 a, d4 b, d4 c) { return {_mm256_fmaddsub_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f4 fma_odd(f4 a, f4 b, f4 c) { return {_mm_fmaddsub_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE f8 fma_odd(f8 a, f8 b, f8 c) { return {_mm256_fmaddsub_ps(a.v, b.v, c.v)}; }

// Two scalars as one that is only moved.
SIGPAK_INLINE d2 as_doubles(f4 a) { return {_mm_castps_pd(a.v)}; }
SIGPAK_INLINE d4 as_doubles(f8 a) { return {_mm256_castps_pd(a.v)}; }
SIGPAK_INLINE f4 as_floats(d2 a) { return {_mm_castpd_ps(a.v)}; }
SIGPAK_INLINE f8 as_floats(d4 a) { return {_mm256_castpd_ps(a.v)}; }

// Within every 128 bits: two scalars of a, two of b, chosen by the selection of shufps.
template <int choice> SIGPAK_INLINE f4 choose(f4 a, f4 b) { return {_mm_shuffle_ps(a.v, b.v, choice)}; }
template <int choice> SIGPAK_INLINE f8 choose(f8 a, f8 b) { return {_mm256_shuffle_ps(a.v, b.v, choice)}; }

// Blocks of 128 bits as a square: block j of row i goes to block i of row j.
SIGPAK_INLINE void transpose_blocks(d2&) {}
SIGPAK_INLINE void transpose_blocks(f4&) {}
SIGPAK_INLINE void transpose_blocks(d4& a, d4& b) {
  const d4 low = {_mm256_permute2f128_pd(a.v, b.v, 0x20)};
  b = {_mm256_permute2f128_pd(a.v, b.v, 0x31)};
  a = low;
}
SIGPAK_INLINE void transpose_blocks(f8& a, f8& b) {
  const f8 low = {_mm256_permute2f128_ps(a.v, b.v, 0x20)};
  b = {_mm256_permute2f128_ps(a.v, b.v, 0x31)};
  a = low;
}

// Complex points, interleaved, in the opposite order.
SIGPAK_INLINE d2 backwards(d2 a) { return a; }
SIGPAK_INLINE f4 backwards(f4 a) { return {_mm_shuffle_ps(a.v, a.v, 0x4e)}; }
SIGPAK_INLINE d4 backwards(d4 a) { return {_mm256_permute2f128_pd(a.v, a.v, 0x01)}; }
SIGPAK_INLINE f8 backwards(f8 a) {
  return {_mm256_castpd_ps(_mm256_permute4x64_pd(_mm256_castps_pd(a.v), 0x1b))};
}

#if SIGPAK_VECTOR_BYTES == 64

using d8 = pack<double, 8>;
using f16 = pack<float, 16>;

SIGPAK_INLINE void stream(double* to, d8 a) { _mm512_stream_pd(to, a.v); }
SIGPAK_INLINE void stream(float* to, f16 a) { _mm512_stream_ps(to, a.v); }
SIGPAK_INLINE d8 fma(d8 a, d8 b, d8 c) { return {_mm512_fmadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f16 fma(f16 a, f16 b, f16 c) { return {_mm512_fmadd_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d8 fms(d8 a, d8 b, d8 c) { return {_mm512_fmsub_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f16 fms(f16 a, f16 b, f16 c) { return {_mm512_fmsub_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d8 fnma(d8 a, d8 b, d8 c) { return {_mm512_fnmadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f16 fnma(f16 a, f16 b, f16 c) { return {_mm512_fnmadd_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d8 low_parts(d8 a, d8 b) { return {_mm512_unpacklo_pd(a.v, b.v)}; }
SIGPAK_INLINE f16 low_parts(f16 a, f16 b) { return {_mm512_unpacklo_ps(a.v, b.v)}; }
SIGPAK_INLINE d8 high_parts(d8 a, d8 b) { return {_mm512_unpackhi_pd(a.v, b.v)}; }
SIGPAK_INLINE f16 high_parts(f16 a, f16 b) { return {_mm512_unpackhi_ps(a.v, b.v)}; }
template <int choice> SIGPAK_INLINE f16 choose(f16 a, f16 b) { return {_mm512_shuffle_ps(a.v, b.v, choice)}; }

SIGPAK_INLINE d8 exchanged(d8 a) { return {_mm512_permute_pd(a.v, 0x55)}; }
SIGPAK_INLINE f16 exchanged(f16 a) { return {_mm512_permute_ps(a.v, 0xb1)}; }
SIGPAK_INLINE d8 fma_even(d8 a, d8 b, d8 c) { return {_mm512_fmsubadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f16 fma_even(f16 a, f16 b, f16 c) { return {_mm512_fmsubadd_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d8 fma_odd(d8 a, d8 b, d8 c) { return {_mm512_fmaddsub_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f16 fma_odd(f16 a, f16 b, f16 c) { return {_mm512_fmaddsub_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d8 as_doubles(f16 a) { return {_mm512_castps_pd(a.v)}; }
SIGPAK_INLINE f16 as_floats(d8 a) { return {_mm512_castpd_ps(a.v)}; }

SIGPAK_INLINE d8 backwards(d8 a) { return {_mm512_shuffle_f64x2(a.v, a.v, 0x1b)}; }
SIGPAK_INLINE f16 backwards(f16 a) {
  const __m512i order = _mm512_setr_epi64(7, 6, 5, 4, 3, 2, 1, 0);
  return {_mm512_castpd_ps(_mm512_permutexvar_pd(order, _mm512_castps_pd(a.v)))};
}

SIGPAK_INLINE void transpose_blocks(d8& a, d8& b, d8& c, d8& d) {
  const __m512d ab_low = _mm512_shuffle_f64x2(a.v, b.v, 0x44);
  const __m512d ab_high = _mm512_shuffle_f64x2(a.v, b.v, 0xee);
  const __m512d cd_low = _mm512_shuffle_f64x2(c.v, d.v, 0x44);
  const __m512d cd_high = _mm512_shuffle_f64x2(c.v, d.v, 0xee);
  a = {_mm512_shuffle_f64x2(ab_low, cd_low, 0x88)};
  b = {_mm512_shuffle_f64x2(ab_low, cd_low, 0xdd)};
  c = {_mm512_shuffle_f64x2(ab_high, cd_high, 0x88)};
  d = {_mm512_shuffle_f64x2(ab_high, cd_high, 0xdd)};
}
SIGPAK_INLINE void transpose_blocks(f16& a, f16& b, f16& c, f16& d) {
  const __m512 ab_low = _mm512_shuffle_f32x4(a.v, b.v, 0x44);
  const __m512 ab_high = _mm512_shuffle_f32x4(a.v, b.v, 0xee);
  const __m512 cd_low = _mm512_shuffle_f32x4(c.v, d.v, 0x44);
  const __m512 cd_high = _mm512_shuffle_f32x4(c.v, d.v, 0xee);
  a = {_mm512_shuffle_f32x4(ab_low, cd_low, 0x88)};
  b = {_mm512_shuffle_f32x4(ab_low, cd_low, 0xdd)};
  c = {_mm512_shuffle_f32x4(ab_high, cd_high, 0x88)};
  d = {_mm512_shuffle_f32x4(ab_high, cd_high, 0xdd)};
}

#endif

// Calls body with 0, 1, ..., count - 1 as constants, so that arrays indexed by them stay in registers.
template <int value> struct constant {
  constexpr operator int() const { return value; }
};
template <int... values> struct sequence {};
template <int count, int... values> struct counting : counting<count - 1, count - 1, values...> {};
template <int... values> struct counting<0, values...> { using type = sequence<values...>; };
template <class Body, int... values> SIGPAK_INLINE void unrolled(Body& body, sequence<values...>) {
  (body(constant<values>{}), ...);
}
template <int count, class Body> SIGPAK_INLINE void unroll(Body body) {
  unrolled(body, typename counting<count>::type{});
}

// In the square of rows r, scalar j of row i goes to scalar i of row j.
template <class P> SIGPAK_INLINE void transpose(P (&r)[P::width]) {
  constexpr int per_block = 16 / sizeof(typename P::scalar);
  constexpr int blocks = P::width / per_block;
  unroll<blocks>([&](auto q) __attribute__((always_inline)) {
    constexpr int first = per_block * q;
    if constexpr (per_block == 2) {
      const P low = low_parts(r[first], r[first + 1]);
      r[first + 1] = high_parts(r[first], r[first + 1]);
      r[first] = low;
    } else {
      const P low01 = low_parts(r[first], r[first + 1]);
      const P high01 = high_parts(r[first], r[first + 1]);
      const P low23 = low_parts(r[first + 2], r[first + 3]);
      const P high23 = high_parts(r[first + 2], r[first + 3]);
      r[first] = choose<0x44>(low01, low23);
      r[first + 1] = choose<0xee>(low01, low23);
      r[first + 2] = choose<0x44>(high01, high23);
      r[first + 3] = choose<0xee>(high01, high23);
    }
  });
  unroll<per_block>([&](auto c) __attribute__((always_inline)) {
    if constexpr (blocks == 1) {
      transpose_blocks(r[c]);
    } else if constexpr (blocks == 2) {
      transpose_blocks(r[c], r[c + per_block]);
    } else {
      transpose_blocks(r[c], r[c + per_block], r[c + 2 * per_block], r[c + 3 * per_block]);
    }
  });
}

// The same for rows of interleaved points.
template <class P> SIGPAK_INLINE void transpose_points(P (&r)[P::width / 2]) {
  if constexpr (sizeof(typename P::scalar) == 4) {
    constexpr int points = P::width / 2;
    pack<double, points> moved[points];
    unroll<points>([&](auto i) __attribute__((always_inline)) { moved[i] = as_doubles(r[i]); });
    transpose(moved);
    unroll<points>([&](auto i) __attribute__((always_inline)) { r[i] = as_floats(moved[i]); });
  } else if constexpr (P::width == 4) {
    transpose_blocks(r[0], r[1]);
  } else if constexpr (P::width == 8) {
    transpose_blocks(r[0], r[1], r[2], r[3]);
  }
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
