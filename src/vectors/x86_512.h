// SPDX-License-Identifier: MIT
// The level of 512 bits: masks have registers of their own.
#pragma once

#include "vectors/x86.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

using d8 = pack<double, 8>;
using f16 = pack<float, 16>;

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
SIGPAK_INLINE d8 evens(d8 a, d8 b) { return low_parts(a, b); }
SIGPAK_INLINE f16 evens(f16 a, f16 b) { return {_mm512_shuffle_ps(a.v, b.v, 0x88)}; }
SIGPAK_INLINE d8 odds(d8 a, d8 b) { return high_parts(a, b); }
SIGPAK_INLINE f16 odds(f16 a, f16 b) { return {_mm512_shuffle_ps(a.v, b.v, 0xdd)}; }
SIGPAK_INLINE f16 low_pairs(f16 a, f16 b) { return {_mm512_shuffle_ps(a.v, b.v, 0x44)}; }
SIGPAK_INLINE f16 high_pairs(f16 a, f16 b) { return {_mm512_shuffle_ps(a.v, b.v, 0xee)}; }
SIGPAK_INLINE d8 evens_twice(d8 a) { return {_mm512_movedup_pd(a.v)}; }
SIGPAK_INLINE f16 evens_twice(f16 a) { return {_mm512_moveldup_ps(a.v)}; }
SIGPAK_INLINE d8 odds_twice(d8 a) { return {_mm512_permute_pd(a.v, 0xff)}; }
SIGPAK_INLINE f16 odds_twice(f16 a) { return {_mm512_movehdup_ps(a.v)}; }
SIGPAK_INLINE f16 middle_exchanged(f16 a) { return {_mm512_shuffle_ps(a.v, a.v, 0xd8)}; }

SIGPAK_INLINE d8 exchanged(d8 a) { return {_mm512_permute_pd(a.v, 0x55)}; }
SIGPAK_INLINE f16 exchanged(f16 a) { return {_mm512_permute_ps(a.v, 0xb1)}; }
SIGPAK_INLINE d8 fma_even(d8 a, d8 b, d8 c) { return {_mm512_fmsubadd_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f16 fma_even(f16 a, f16 b, f16 c) { return {_mm512_fmsubadd_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d8 fma_odd(d8 a, d8 b, d8 c) { return {_mm512_fmaddsub_pd(a.v, b.v, c.v)}; }
SIGPAK_INLINE f16 fma_odd(f16 a, f16 b, f16 c) { return {_mm512_fmaddsub_ps(a.v, b.v, c.v)}; }
SIGPAK_INLINE d8 as_doubles(f16 a) { return {_mm512_castps_pd(a.v)}; }
SIGPAK_INLINE f16 as_floats(d8 a) { return {_mm512_castpd_ps(a.v)}; }
SIGPAK_INLINE d8 alternately(const double* from, d8) { return {_mm512_broadcast_f64x2(_mm_loadu_pd(from))}; }
SIGPAK_INLINE f16 alternately(const float* from, f16) {
  double both;
  __builtin_memcpy(&both, from, sizeof both);
  return as_floats(splat<d8>(both));
}

SIGPAK_INLINE d8 backwards(d8 a) { return {_mm512_shuffle_f64x2(a.v, a.v, 0x1b)}; }
SIGPAK_INLINE f16 backwards(f16 a) {
  const __m512i order = _mm512_setr_epi64(7, 6, 5, 4, 3, 2, 1, 0);
  return {_mm512_castpd_ps(_mm512_permutexvar_pd(order, _mm512_castps_pd(a.v)))};
}

SIGPAK_INLINE d8 mirrored(d8 first, d8 rest) {
  return {_mm512_mask_shuffle_f64x2(first.v, 0xfc, rest.v, rest.v, 0x6c)};
}
SIGPAK_INLINE f16 mirrored(f16 first, f16 rest) {
  const __m512i order = _mm512_setr_epi64(0, 7, 6, 5, 4, 3, 2, 1);
  return as_floats(d8{_mm512_mask_permutexvar_pd(as_doubles(first).v, 0xfe, order, as_doubles(rest).v)});
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

// The lower (upper) halves of both; and with neighbours exchanged, in the same operation.
SIGPAK_INLINE f16 lower_halves(f16 a, f16 b) { return {_mm512_shuffle_f32x4(a.v, b.v, 0x44)}; }
SIGPAK_INLINE f16 upper_halves(f16 a, f16 b) { return {_mm512_shuffle_f32x4(a.v, b.v, 0xee)}; }
SIGPAK_INLINE f16 upper_halves_exchanged(f16 a, f16 b) {
  const __m512i places = _mm512_setr_epi32(9, 8, 11, 10, 13, 12, 15, 14, 25, 24, 27, 26, 29, 28, 31, 30);
  return {_mm512_permutex2var_ps(a.v, places, b.v)};
}

SIGPAK_INLINE d8 evens_first(d8 a) {
  return {_mm512_permutexvar_pd(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), a.v)};
}
SIGPAK_INLINE f16 evens_first(f16 a) { return as_floats(evens_first(as_doubles(a))); }
SIGPAK_INLINE d8 turned_sum(d8 a, d8 b) {
  return {_mm512_mask_sub_pd(_mm512_add_pd(a.v, b.v), 0x55, a.v, b.v)};
}
SIGPAK_INLINE f16 turned_sum(f16 a, f16 b) {
  return {_mm512_mask_sub_ps(_mm512_add_ps(a.v, b.v), 0x5555, a.v, b.v)};
}
SIGPAK_INLINE d8 joined(d4 low, d4 high) {
  return {_mm512_mask_broadcast_f64x4(_mm512_castpd256_pd512(low.v), 0xf0, high.v)};
}
// Of four blocks of 128 bits, those in even (odd) places of a, then of b.
SIGPAK_INLINE d8 even_blocks(d8 a, d8 b) { return {_mm512_shuffle_f64x2(a.v, b.v, 0x88)}; }
SIGPAK_INLINE d8 odd_blocks(d8 a, d8 b) { return {_mm512_shuffle_f64x2(a.v, b.v, 0xdd)}; }

using mask = __mmask8;
SIGPAK_INLINE mask operator<(real a, real b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_LT_OQ); }
SIGPAK_INLINE mask operator<=(real a, real b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_LE_OQ); }
SIGPAK_INLINE mask operator>(real a, real b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_GT_OQ); }
SIGPAK_INLINE mask operator==(real a, real b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_EQ_OQ); }
SIGPAK_INLINE mask not_at_most(real a, double b) { return _mm512_cmp_pd_mask(a.v, all(b).v, _CMP_NLE_UQ); }
SIGPAK_INLINE mask both(mask a, mask b) { return _kand_mask8(a, b); }
SIGPAK_INLINE mask either(mask a, mask b) { return _kor_mask8(a, b); }
SIGPAK_INLINE mask opposite(mask a) { return _knot_mask8(a); }
SIGPAK_INLINE int lanes_of(mask a) { return a; }
SIGPAK_INLINE bool any_sign(words a) { return _mm512_movepi64_mask(__m512i(a)) != 0; }
SIGPAK_INLINE bool is_any(mask m) { return lanes_of(m) != 0; }
SIGPAK_INLINE mask has_bit(words a, unsigned long long bit) {
  return _mm512_test_epi64_mask(__m512i(a), __m512i(all_bits(bit)));
}
SIGPAK_INLINE real choose(mask m, real yes, real no) { return {_mm512_mask_blend_pd(m, no.v, yes.v)}; }
SIGPAK_INLINE mask exclusive(mask a, mask b) { return _kxor_mask8(a, b); }
// A magnitude outside [low, high], which are positive; NaN and zero are outside.
SIGPAK_INLINE mask is_outside(real a, double low, double high) {
  const auto from = __builtin_bit_cast(unsigned long long, low) + sign_bit;
  const auto range = __builtin_bit_cast(unsigned long long, high) - from;
  return _mm512_cmpgt_epi64_mask(__m512i(bits(a) - all_bits(from)), __m512i(all_bits(range)));
}
// low <= a <= high; and of those, where a has bits of m.
using float_mask = __mmask16;
SIGPAK_INLINE float_mask is_between(widest<float> a, float low, float high) {
  const float_mask above = _mm512_cmp_ps_mask(a.v, _mm512_set1_ps(low), _CMP_GE_OQ);
  return _mm512_mask_cmp_ps_mask(above, a.v, _mm512_set1_ps(high), _CMP_LE_OQ);
}
SIGPAK_INLINE float_mask is_between(float_words a, unsigned low, unsigned high) {
  return _mm512_cmple_epu32_mask(__m512i(a - low), _mm512_set1_epi32(static_cast<int>(high - low)));
}
SIGPAK_INLINE float_mask both(float_mask a, float_mask b) { return _kand_mask16(a, b); }
SIGPAK_INLINE float_mask with_bits(float_mask in, float_words a, unsigned m) {
  return _mm512_mask_test_epi32_mask(in, __m512i(a), _mm512_set1_epi32(static_cast<int>(m)));
}
SIGPAK_INLINE float_mask equal(singles a, singles b) { return _mm512_cmp_ps_mask(a.v, b.v, _CMP_EQ_OQ); }
SIGPAK_INLINE float_mask equal_in(float_mask in, singles a, singles b) {
  return _mm512_mask_cmp_ps_mask(in, a.v, b.v, _CMP_EQ_OQ);
}
SIGPAK_INLINE bool all_of(float_mask m) { return m == 0xffff; }
SIGPAK_INLINE real lesser(real a, real b) { return {_mm512_min_pd(a.v, b.v)}; }
SIGPAK_INLINE real greater(real a, real b) { return {_mm512_max_pd(a.v, b.v)}; }
SIGPAK_INLINE f16 lesser(f16 a, f16 b) { return {_mm512_min_ps(a.v, b.v)}; }
SIGPAK_INLINE f16 greater(f16 a, f16 b) { return {_mm512_max_ps(a.v, b.v)}; }
SIGPAK_INLINE words only(mask m, unsigned long long x) {
  return words(_mm512_maskz_mov_epi64(m, __m512i(all_bits(x))));
}
SIGPAK_INLINE real widened(f8 a) { return {_mm512_cvtps_pd(a.v)}; }  // by halves, where it is left to g++
SIGPAK_INLINE real sqrt(real a) { return {_mm512_sqrt_pd(a.v)}; }
SIGPAK_INLINE singles sqrt(singles a) { return {_mm512_sqrt_ps(a.v)}; }
// 1 / sqrt(a) for normal a > 0, within a relative error.
SIGPAK_INLINE singles rough_inverse_root(singles a) { return {_mm512_rsqrt14_ps(a.v)}; }
constexpr float rough_root_error = 0x1p-14F;
// `below` where the sign of a is set.
SIGPAK_INLINE singles choose_by_sign(singles a, singles below, singles above) {
  return {_mm512_mask_blend_ps(_mm512_movepi32_mask(__m512i(bits(a))), above.v, below.v)};
}
SIGPAK_INLINE real at_least(real x, double limit) { return {_mm512_max_pd(all(limit).v, x.v)}; }
SIGPAK_INLINE real at_most(real x, double limit) { return {_mm512_min_pd(all(limit).v, x.v)}; }

// a / b within 2^-41: an estimate of 1 / b, good to 2^-14, and one step of the third order.
SIGPAK_INLINE real near_quotient(real a, real b) {
  const real estimate = {_mm512_rcp14_pd(b.v)};
  const real left = fnma(b, estimate, all(1));
  return a * fma(estimate, fma(left, left, left), estimate);
}

// x = 2^k m, 1 <= m < 2, for normal floats x > 0.
#define SIGPAK_HAS_BINADES
struct binade {
  real k;
  real m;
};
SIGPAK_INLINE binade split_binade(real x) {
  return {{_mm512_getexp_pd(x.v)}, {_mm512_getmant_pd(x.v, _MM_MANT_NORM_1_2, _MM_MANT_SIGN_zero)}};
}

// table[position mod entries] for a table of the size that is cheapest here.
constexpr int table_entries = 16;
SIGPAK_INLINE real pick(const double (&table)[table_entries], words position) {
  return {_mm512_permutex2var_pd(_mm512_loadu_pd(table), __m512i(position), _mm512_loadu_pd(table + 8))};
}

// Tables of floats, as many as are cheapest here: table[position mod entries].
#define SIGPAK_HAS_FLOAT_TABLES
constexpr int float_entries = 32;
SIGPAK_INLINE singles pick(const float (&table)[float_entries], float_words position) {
  return {_mm512_permutex2var_ps(_mm512_loadu_ps(table), __m512i(position), _mm512_loadu_ps(table + 16))};
}

// a * 2^floor(n / entries); shifted is n / entries + start, both of a float's last place.
SIGPAK_INLINE singles scale_entries(singles a, singles shifted, singles start) {
  return {_mm512_scalef_ps(a.v, (shifted - start).v)};
}

// table[position & 7] for eight entries.
SIGPAK_INLINE real look_up(const double* table, words position) {
  return {_mm512_permutexvar_pd(__m512i(position), _mm512_loadu_pd(table))};
}

// a * 2^floor(n / 8 - lift) for -10400 < n - 8 lift < 8000, rounded once; shifted is n + to_integer.
template <int lift = 0> SIGPAK_INLINE real scale_eighths(real a, real shifted) {
  return {_mm512_scalef_pd(a.v, ((shifted - all(to_integer + 8 * lift)) * all(0.125)).v)};
}

// The same for results that are normal by far.
SIGPAK_INLINE real scale_normal_eighths(real a, real shifted) { return scale_eighths(a, shifted); }

SIGPAK_INLINE void split_pairs(real a, real b, real& even, real& odd) {
  even = {_mm512_permutex2var_pd(a.v, _mm512_setr_epi64(0, 2, 4, 6, 8, 10, 12, 14), b.v)};
  odd = {_mm512_permutex2var_pd(a.v, _mm512_setr_epi64(1, 3, 5, 7, 9, 11, 13, 15), b.v)};
}
SIGPAK_INLINE void join_pairs(real even, real odd, real& a, real& b) {
  a = {_mm512_permutex2var_pd(even.v, _mm512_setr_epi64(0, 8, 1, 9, 2, 10, 3, 11), odd.v)};
  b = {_mm512_permutex2var_pd(even.v, _mm512_setr_epi64(4, 12, 5, 13, 6, 14, 7, 15), odd.v)};
}

SIGPAK_INLINE real take_sign(real a, real sign) {
  constexpr int first_chooses = 0xca;  // by its bits; compilers would take two operations
  return from_bits(words(_mm512_ternarylogic_epi64(__m512i(all_bits(sign_bit)), __m512i(bits(sign)),
                                                   __m512i(bits(a)), first_chooses)));
}

SIGPAK_INLINE bool any_zero(d8 a) { return _mm512_cmp_pd_mask(a.v, _mm512_setzero_pd(), _CMP_EQ_OQ) != 0; }
SIGPAK_INLINE bool any_zero(f16 a) { return _mm512_cmp_ps_mask(a.v, _mm512_setzero_ps(), _CMP_EQ_OQ) != 0; }
SIGPAK_INLINE bool all_below(d8 a, d8 b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_NLT_UQ) == 0; }
SIGPAK_INLINE bool all_below(f16 a, f16 b) { return _mm512_cmp_ps_mask(a.v, b.v, _CMP_NLT_UQ) == 0; }

template <class F> SIGPAK_INLINE real made_of(F at) {
  return {_mm512_setr_pd(at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7))};
}
SIGPAK_INLINE void write_some(double* to, real a, index count) {
  if (count == lane_count) return store(to, a);
  d4 half = {_mm512_castpd512_pd256(a.v)};
  if ((count & 4) != 0) {
    store(to, half);
    to += 4;
    half = {_mm512_extractf64x4_pd(a.v, 1)};
  }
  store_some(to, half, count);
}
SIGPAK_INLINE void write_some(float* to, real a, index count) {
  const f8 floats = {_mm512_cvtpd_ps(a.v)};
  if (count == lane_count) return store(to, floats);
  f4 rest = {_mm256_castps256_ps128(floats.v)};
  if ((count & 4) != 0) {
    store(to, rest);
    to += 4;
    rest = {_mm256_extractf128_ps(floats.v, 1)};
  }
  store_some(to, rest, count);
}

// The lanes below n, which may be negative or beyond them, as bits.
template <int lanes> SIGPAK_INLINE unsigned first_lanes(index n) {
  const auto end = static_cast<int>(n);
  if constexpr (lanes == 16) {
    const __m512i lane = _mm512_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
    return _mm512_cmplt_epi32_mask(lane, _mm512_set1_epi32(end));
  } else if constexpr (lanes == 8) {
    return _mm256_cmplt_epi32_mask(_mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7), _mm256_set1_epi32(end));
  } else {
    return _mm_cmplt_epi32_mask(_mm_setr_epi32(0, 1, 2, 3), _mm_set1_epi32(end));
  }
}

// The first n scalars, none where n is negative, and behind them those of `rest`; nothing beyond is read.
SIGPAK_INLINE d8 load_first(const double* from, index n, d8 rest) {
  return {_mm512_mask_loadu_pd(rest.v, static_cast<__mmask8>(first_lanes<8>(n)), from)};
}
SIGPAK_INLINE f16 load_first(const float* from, index n, f16 rest) {
  return {_mm512_mask_loadu_ps(rest.v, static_cast<__mmask16>(first_lanes<16>(n)), from)};
}
SIGPAK_INLINE d4 load_first(const double* from, index n, d4 rest) {
  return {_mm256_mask_loadu_pd(rest.v, static_cast<__mmask8>(first_lanes<4>(n)), from)};
}
SIGPAK_INLINE f8 load_first(const float* from, index n, f8 rest) {
  return {_mm256_mask_loadu_ps(rest.v, static_cast<__mmask8>(first_lanes<8>(n)), from)};
}
SIGPAK_INLINE f4 load_first(const float* from, index n, f4 rest) {
  return {_mm_mask_loadu_ps(rest.v, static_cast<__mmask8>(first_lanes<4>(n)), from)};
}

// The lanes from `first` to `end` of a vector that would go to `to`; nothing else is written.
SIGPAK_INLINE void store_lanes(double* to, d8 a, index first, index end) {
  _mm512_mask_storeu_pd(to, static_cast<__mmask8>(first_lanes<8>(end) & ~first_lanes<8>(first)), a.v);
}
SIGPAK_INLINE void store_lanes(float* to, f16 a, index first, index end) {
  _mm512_mask_storeu_ps(to, static_cast<__mmask16>(first_lanes<16>(end) & ~first_lanes<16>(first)), a.v);
}
SIGPAK_INLINE void store_first(double* to, d8 a, index n) { store_lanes(to, a, 0, n); }
SIGPAK_INLINE void store_first(float* to, f16 a, index n) { store_lanes(to, a, 0, n); }
SIGPAK_INLINE void store_first(double* to, d4 a, index n) {
  _mm256_mask_storeu_pd(to, static_cast<__mmask8>(first_lanes<4>(n)), a.v);
}
SIGPAK_INLINE void store_first(float* to, f8 a, index n) {
  _mm256_mask_storeu_ps(to, static_cast<__mmask8>(first_lanes<8>(n)), a.v);
}
SIGPAK_INLINE void store_first(float* to, f4 a, index n) {
  _mm_mask_storeu_ps(to, static_cast<__mmask8>(first_lanes<4>(n)), a.v);
}

// The lanes that a comparison holds for, as bits.
SIGPAK_INLINE unsigned lanes_below(d8 a, d8 b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_LT_OQ); }
SIGPAK_INLINE unsigned lanes_below(f16 a, f16 b) { return _mm512_cmp_ps_mask(a.v, b.v, _CMP_LT_OQ); }
SIGPAK_INLINE unsigned lanes_at_most(d8 a, d8 b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_LE_OQ); }
SIGPAK_INLINE unsigned lanes_at_most(f16 a, f16 b) { return _mm512_cmp_ps_mask(a.v, b.v, _CMP_LE_OQ); }
SIGPAK_INLINE unsigned lanes_at_most(d4 a, d4 b) { return _mm256_cmp_pd_mask(a.v, b.v, _CMP_LE_OQ); }
SIGPAK_INLINE unsigned lanes_at_most(f8 a, f8 b) { return _mm256_cmp_ps_mask(a.v, b.v, _CMP_LE_OQ); }
SIGPAK_INLINE unsigned lanes_at_most(f4 a, f4 b) { return _mm_cmp_ps_mask(a.v, b.v, _CMP_LE_OQ); }
// The lanes of the same bits.
SIGPAK_INLINE unsigned lanes_alike(d8 a, d8 b) {
  return _mm512_cmpeq_epi64_mask(_mm512_castpd_si512(a.v), _mm512_castpd_si512(b.v));
}
SIGPAK_INLINE unsigned lanes_alike(f16 a, f16 b) {
  return _mm512_cmpeq_epi32_mask(_mm512_castps_si512(a.v), _mm512_castps_si512(b.v));
}

SIGPAK_INLINE unsigned lanes_alike(d4 a, d4 b) {
  return _mm256_cmpeq_epi64_mask(_mm256_castpd_si256(a.v), _mm256_castpd_si256(b.v));
}
SIGPAK_INLINE unsigned lanes_alike(f8 a, f8 b) {
  return _mm256_cmpeq_epi32_mask(_mm256_castps_si256(a.v), _mm256_castps_si256(b.v));
}

// greater(a, b) (lesser) in the lanes of `m`, a constant, and those of `rest` in the others.
template <unsigned m> SIGPAK_INLINE d4 greater_in(d4 rest, d4 a, d4 b) {
  return {_mm256_mask_max_pd(rest.v, m, a.v, b.v)};
}
template <unsigned m> SIGPAK_INLINE d4 lesser_in(d4 rest, d4 a, d4 b) {
  return {_mm256_mask_min_pd(rest.v, m, a.v, b.v)};
}
template <unsigned m> SIGPAK_INLINE f4 greater_in(f4 rest, f4 a, f4 b) {
  return {_mm_mask_max_ps(rest.v, m, a.v, b.v)};
}
template <unsigned m> SIGPAK_INLINE f4 lesser_in(f4 rest, f4 a, f4 b) {
  return {_mm_mask_min_ps(rest.v, m, a.v, b.v)};
}
template <unsigned m> SIGPAK_INLINE f8 greater_in(f8 rest, f8 a, f8 b) {
  return {_mm256_mask_max_ps(rest.v, m, a.v, b.v)};
}
template <unsigned m> SIGPAK_INLINE f8 lesser_in(f8 rest, f8 a, f8 b) {
  return {_mm256_mask_min_ps(rest.v, m, a.v, b.v)};
}
template <unsigned m> SIGPAK_INLINE d8 greater_in(d8 rest, d8 a, d8 b) {
  return {_mm512_mask_max_pd(rest.v, m, a.v, b.v)};
}
template <unsigned m> SIGPAK_INLINE d8 lesser_in(d8 rest, d8 a, d8 b) {
  return {_mm512_mask_min_pd(rest.v, m, a.v, b.v)};
}
template <unsigned m> SIGPAK_INLINE f16 greater_in(f16 rest, f16 a, f16 b) {
  return {_mm512_mask_max_ps(rest.v, m, a.v, b.v)};
}
template <unsigned m> SIGPAK_INLINE f16 lesser_in(f16 rest, f16 a, f16 b) {
  return {_mm512_mask_min_ps(rest.v, m, a.v, b.v)};
}

// The lanes of `m`, then the others, each in order; left_only leaves open what follows. Of sixteen lanes the
// others are compressed and turned to the upper end, and the lanes of `m` put before them.
SIGPAK_INLINE d8 left_first(d8 a, unsigned m) {
  return {_mm512_permutexvar_pd(_mm512_cvtepu8_epi64(order_of<8>(m)), a.v)};
}
alignas(64) constexpr int turned_lanes[32] = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15,
                                              16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31};
SIGPAK_INLINE f16 left_first(f16 a, unsigned m) {
  const auto left = static_cast<__mmask16>(m);
  const __m512i turn = _mm512_loadu_si512(turned_lanes + 16 - __builtin_popcount(left));
  const __m512 others = _mm512_permutexvar_ps(turn, _mm512_maskz_compress_ps(_knot_mask16(left), a.v));
  return {_mm512_mask_compress_ps(others, left, a.v)};
}
SIGPAK_INLINE d8 left_only(d8 a, unsigned m) { return left_first(a, m); }
SIGPAK_INLINE f16 left_only(f16 a, unsigned m) {
  return {_mm512_maskz_compress_ps(static_cast<__mmask16>(m), a.v)};
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
