// SPDX-License-Identifier: MIT
// Vectors of 128 and 256 bits with fused products: what all wide levels of this family have.
#pragma once

#include <immintrin.h>

#include "vectors/pack.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// a * b + c, a * b - c and c - a * b, rounded once.
constexpr bool has_fused_products = true;
SIGPAK_INLINE double fused(double a, double b, double c) { return __builtin_fma(a, b, c); }
SIGPAK_INLINE float fused(float a, float b, float c) { return __builtin_fmaf(a, b, c); }
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

// Two scalars in turn.
SIGPAK_INLINE d4 alternately(const double* from, d4) {
  return {_mm256_set_m128d(_mm_loadu_pd(from), _mm_loadu_pd(from))};
}
SIGPAK_INLINE f8 alternately(const float* from, f8) {
  double both;
  __builtin_memcpy(&both, from, sizeof both);
  return as_floats(splat<d4>(both));
}

// Within every 128 bits: the scalars of a, then of b, in even (odd) places; their lower (upper) two.
SIGPAK_INLINE d2 evens(d2 a, d2 b) { return low_parts(a, b); }
SIGPAK_INLINE d4 evens(d4 a, d4 b) { return low_parts(a, b); }
SIGPAK_INLINE f4 evens(f4 a, f4 b) { return {_mm_shuffle_ps(a.v, b.v, 0x88)}; }
SIGPAK_INLINE f8 evens(f8 a, f8 b) { return {_mm256_shuffle_ps(a.v, b.v, 0x88)}; }
SIGPAK_INLINE d2 odds(d2 a, d2 b) { return high_parts(a, b); }
SIGPAK_INLINE d4 odds(d4 a, d4 b) { return high_parts(a, b); }
SIGPAK_INLINE f4 odds(f4 a, f4 b) { return {_mm_shuffle_ps(a.v, b.v, 0xdd)}; }
SIGPAK_INLINE f8 odds(f8 a, f8 b) { return {_mm256_shuffle_ps(a.v, b.v, 0xdd)}; }
SIGPAK_INLINE f4 low_pairs(f4 a, f4 b) { return {_mm_shuffle_ps(a.v, b.v, 0x44)}; }
SIGPAK_INLINE f8 low_pairs(f8 a, f8 b) { return {_mm256_shuffle_ps(a.v, b.v, 0x44)}; }
SIGPAK_INLINE f4 high_pairs(f4 a, f4 b) { return {_mm_shuffle_ps(a.v, b.v, 0xee)}; }
SIGPAK_INLINE f8 high_pairs(f8 a, f8 b) { return {_mm256_shuffle_ps(a.v, b.v, 0xee)}; }

// Every scalar in an even (odd) place also in the odd (even) one beside it.
SIGPAK_INLINE d2 evens_twice(d2 a) { return {_mm_movedup_pd(a.v)}; }
SIGPAK_INLINE d4 evens_twice(d4 a) { return {_mm256_movedup_pd(a.v)}; }
SIGPAK_INLINE f4 evens_twice(f4 a) { return {_mm_moveldup_ps(a.v)}; }
SIGPAK_INLINE f8 evens_twice(f8 a) { return {_mm256_moveldup_ps(a.v)}; }
SIGPAK_INLINE d2 odds_twice(d2 a) { return {_mm_permute_pd(a.v, 0x3)}; }
SIGPAK_INLINE d4 odds_twice(d4 a) { return {_mm256_permute_pd(a.v, 0xf)}; }
SIGPAK_INLINE f4 odds_twice(f4 a) { return {_mm_movehdup_ps(a.v)}; }
SIGPAK_INLINE f8 odds_twice(f8 a) { return {_mm256_movehdup_ps(a.v)}; }

// The middle two of every 128 bits in the opposite order.
SIGPAK_INLINE f4 middle_exchanged(f4 a) { return {_mm_shuffle_ps(a.v, a.v, 0xd8)}; }
SIGPAK_INLINE f8 middle_exchanged(f8 a) { return {_mm256_shuffle_ps(a.v, a.v, 0xd8)}; }

// The even places of the whole vector, then the odd ones; of floats by pairs.
SIGPAK_INLINE d4 evens_first(d4 a) { return {_mm256_permute4x64_pd(a.v, 0xd8)}; }
SIGPAK_INLINE f8 evens_first(f8 a) { return as_floats(evens_first(as_doubles(a))); }

// a - b in the even places, a + b in the odd ones.
SIGPAK_INLINE d4 turned_sum(d4 a, d4 b) { return {_mm256_addsub_pd(a.v, b.v)}; }
SIGPAK_INLINE f8 turned_sum(f8 a, f8 b) { return {_mm256_addsub_ps(a.v, b.v)}; }

// Of equal ones, which may be zeros of both signs, lesser(a, b) and greater(b, a) are one each.
SIGPAK_INLINE d4 lesser(d4 a, d4 b) { return {_mm256_min_pd(a.v, b.v)}; }
SIGPAK_INLINE f4 lesser(f4 a, f4 b) { return {_mm_min_ps(a.v, b.v)}; }
SIGPAK_INLINE f8 lesser(f8 a, f8 b) { return {_mm256_min_ps(a.v, b.v)}; }
SIGPAK_INLINE d4 greater(d4 a, d4 b) { return {_mm256_max_pd(a.v, b.v)}; }
SIGPAK_INLINE f4 greater(f4 a, f4 b) { return {_mm_max_ps(a.v, b.v)}; }
SIGPAK_INLINE f8 greater(f8 a, f8 b) { return {_mm256_max_ps(a.v, b.v)}; }

// One vector of two.
SIGPAK_INLINE d4 joined(d2 low, d2 high) {
  return {_mm256_insertf128_pd(_mm256_castpd128_pd256(low.v), high.v, 1)};
}
SIGPAK_INLINE f8 joined(f4 low, f4 high) {
  return {_mm256_insertf128_ps(_mm256_castps128_ps256(low.v), high.v, 1)};
}

// Blocks of 128 bits as a square: block j of row i goes to block i of row j.
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

// The first point of `first`, then those of `rest` from the last one down to the second.
SIGPAK_INLINE f4 mirrored(f4 first, f4 rest) { return {_mm_blend_ps(first.v, rest.v, 0xc)}; }
SIGPAK_INLINE d4 mirrored(d4 first, d4 rest) { return {_mm256_blend_pd(first.v, rest.v, 0xc)}; }
SIGPAK_INLINE f8 mirrored(f8 first, f8 rest) {
  const __m256d turned = _mm256_permute4x64_pd(as_doubles(rest).v, 0x6c);
  return as_floats(d4{_mm256_blend_pd(as_doubles(first).v, turned, 0xe)});
}

// One complex point; of single precision in the lower half of a vector whose upper half does not count.
template <class T> struct point_vector { using type = d2; };
template <> struct point_vector<float> { using type = f4; };
SIGPAK_INLINE d2 point_of(double re, double im) { return {_mm_set_pd(im, re)}; }
SIGPAK_INLINE f4 point_of(float re, float im) { return {_mm_setr_ps(re, im, 0, 0)}; }
SIGPAK_INLINE d2 conjugate(d2 a) { return {_mm_xor_pd(a.v, _mm_set_pd(-0.0, 0.0))}; }
SIGPAK_INLINE f4 conjugate(f4 a) { return {_mm_xor_ps(a.v, _mm_setr_ps(0, -0.0F, 0, -0.0F))}; }
SIGPAK_INLINE d2 load_point(const double* x) { return load<d2>(x); }
SIGPAK_INLINE f4 load_point(const float* x) {
  return {_mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(x)))};
}
SIGPAK_INLINE void store_point(double* x, d2 a) { store(x, a); }
SIGPAK_INLINE void store_point(float* x, f4 a) {
  _mm_storel_epi64(reinterpret_cast<__m128i_u*>(x), _mm_castps_si128(a.v));
}
// The second scalars of both.
SIGPAK_INLINE d2 second_parts(d2 a, d2 b) { return high_parts(a, b); }
SIGPAK_INLINE f4 second_parts(f4 a, f4 b) { return {_mm_insert_ps(b.v, a.v, 0x40)}; }

// For every mask of `lanes` lanes the lanes in it, then the others, each kept in order: eight places of the
// parts, 8 / lanes to a lane, that a permutation takes.
template <int lanes> struct orders_of_masks { unsigned char places[1 << lanes][8]; };
template <int lanes> constexpr orders_of_masks<lanes> make_orders_of_masks() {
  constexpr int parts = 8 / lanes;
  orders_of_masks<lanes> orders{};
  for (int m = 0; m < 1 << lanes; ++m) {
    int place = 0;
    for (int side = 1; side >= 0; --side) {
      for (int part = 0; part < 8; ++part) {
        if ((m >> part / parts & 1) == side) orders.places[m][place++] = static_cast<unsigned char>(part);
      }
    }
  }
  return orders;
}
template <int lanes> constexpr orders_of_masks<lanes> orders = make_orders_of_masks<lanes>();
template <int lanes> SIGPAK_INLINE __m128i order_of(unsigned m) {
  return _mm_loadl_epi64(reinterpret_cast<const __m128i_u*>(orders<lanes>.places[m]));
}

// The first `count` < 4 of a vector, in the largest pieces.
SIGPAK_INLINE void store_some(double* to, d4 a, index count) {
  d2 rest = {_mm256_castpd256_pd128(a.v)};
  if ((count & 2) != 0) {
    store(to, rest);
    to += 2;
    rest = {_mm256_extractf128_pd(a.v, 1)};
  }
  if ((count & 1) != 0) _mm_store_sd(to, rest.v);
}
SIGPAK_INLINE void store_some(float* to, f4 a, index count) {
  f4 rest = a;
  if ((count & 2) != 0) {
    _mm_storel_pi(reinterpret_cast<__m64*>(to), rest.v);
    to += 2;
    rest = {_mm_movehl_ps(rest.v, rest.v)};
  }
  if ((count & 1) != 0) _mm_store_ss(to, rest.v);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
