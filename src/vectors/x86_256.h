// SPDX-License-Identifier: MIT
// The level of 256 bits.
#pragma once

#include "vectors/word_masks.h"
#include "vectors/x86.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

SIGPAK_INLINE int lanes_of(mask a) { return _mm256_movemask_pd(__m256d(a.v)); }
SIGPAK_INLINE bool any_sign(words a) { return _mm256_movemask_pd(__m256d(a)) != 0; }
SIGPAK_INLINE bool all_of(float_mask m) { return _mm256_movemask_ps(__m256(m.v)) == 0xff; }
SIGPAK_INLINE bool is_any(mask m) { return lanes_of(m) != 0; }
SIGPAK_INLINE mask has_bit(words a, unsigned long long bit) {
  const __m256i wanted = __m256i(all_bits(bit));
  return {words(_mm256_cmpeq_epi64(_mm256_and_si256(__m256i(a), wanted), wanted))};
}
SIGPAK_INLINE real choose(mask m, real yes, real no) { return {_mm256_blendv_pd(no.v, yes.v, __m256d(m.v))}; }
// A magnitude outside [low, high], which are positive; NaN and zero are outside.
SIGPAK_INLINE mask is_outside(real a, double low, double high) {
  const auto from = __builtin_bit_cast(unsigned long long, low) + sign_bit;
  const auto range = __builtin_bit_cast(unsigned long long, high) - from;
  return {words(_mm256_cmpgt_epi64(__m256i(bits(a) - all_bits(from)), __m256i(all_bits(range))))};
}
SIGPAK_INLINE real widened(f4 a) { return {_mm256_cvtps_pd(a.v)}; }  // by halves, where it is left to g++
SIGPAK_INLINE void widen(f8 a, d4& low, d4& high) {
  low = widened(f4{_mm256_castps256_ps128(a.v)});
  high = widened(f4{_mm256_extractf128_ps(a.v, 1)});
}
SIGPAK_INLINE real sqrt(real a) { return {_mm256_sqrt_pd(a.v)}; }
SIGPAK_INLINE singles sqrt(singles a) { return {_mm256_sqrt_ps(a.v)}; }
// 1 / sqrt(a) for normal a > 0, within a relative error.
SIGPAK_INLINE singles rough_inverse_root(singles a) { return {_mm256_rsqrt_ps(a.v)}; }
constexpr float rough_root_error = 0x1.8p-12F;
// `below` where the sign of a is set.
SIGPAK_INLINE singles choose_by_sign(singles a, singles below, singles above) {
  return {_mm256_blendv_ps(above.v, below.v, a.v)};
}
SIGPAK_INLINE real at_least(real x, double limit) { return {_mm256_max_pd(all(limit).v, x.v)}; }
SIGPAK_INLINE real at_most(real x, double limit) { return {_mm256_min_pd(all(limit).v, x.v)}; }

// Tables of floats, as many as are cheapest here: table[position mod entries].
#define SIGPAK_HAS_FLOAT_TABLES
constexpr int float_entries = 8;
SIGPAK_INLINE singles pick(const float (&table)[float_entries], float_words position) {
  return {_mm256_permutevar8x32_ps(_mm256_loadu_ps(table), __m256i(position))};
}

// a * 2^floor(n / entries); shifted is n / entries + start, both of a float's last place.
SIGPAK_INLINE singles scale_entries(singles a, singles shifted, singles) {
  constexpr unsigned power = 0xff800000;
  return from_bits(bits(a) + (bits(shifted) << (23 - __builtin_ctz(float_entries)) & power));
}

// Each half of the table is found as pairs of 32-bit words; bit 2 of the position says whether to make the
// first into the second.
SIGPAK_INLINE real look_up(const double* table, words position) {
  const __m256i twice = _mm256_slli_epi64(__m256i(position), 1);
  const __m256i picks = _mm256_add_epi32(_mm256_shuffle_epi32(twice, 0xa0), _mm256_set1_epi64x(0x100000000));
  const d4 low_half = load<d4>(table);
  const words change = bits(low_half) ^ bits(load<d4>(table + 4));
  const words low = words(_mm256_permutevar8x32_epi32(__m256i(bits(low_half)), picks));
  const words changes = words(_mm256_permutevar8x32_epi32(__m256i(change), picks));
  const words upper =
      words(_mm256_cmpgt_epi64(_mm256_setzero_si256(), _mm256_slli_epi64(__m256i(position), 61)));
  return from_bits(low ^ (changes & upper));
}

SIGPAK_INLINE void split_pairs(real a, real b, real& even, real& odd) {
  const __m256d low = _mm256_permute2f128_pd(a.v, b.v, 0x20);
  const __m256d high = _mm256_permute2f128_pd(a.v, b.v, 0x31);
  even = {_mm256_unpacklo_pd(low, high)};
  odd = {_mm256_unpackhi_pd(low, high)};
}
SIGPAK_INLINE void join_pairs(real even, real odd, real& a, real& b) {
  const __m256d low = _mm256_unpacklo_pd(even.v, odd.v);
  const __m256d high = _mm256_unpackhi_pd(even.v, odd.v);
  a = {_mm256_permute2f128_pd(low, high, 0x20)};
  b = {_mm256_permute2f128_pd(low, high, 0x31)};
}

SIGPAK_INLINE bool any_zero(d4 a) {
  return _mm256_movemask_pd(_mm256_cmp_pd(a.v, _mm256_setzero_pd(), _CMP_EQ_OQ)) != 0;
}
SIGPAK_INLINE bool any_zero(f8 a) {
  return _mm256_movemask_ps(_mm256_cmp_ps(a.v, _mm256_setzero_ps(), _CMP_EQ_OQ)) != 0;
}
SIGPAK_INLINE bool all_below(d4 a, d4 b) {
  return _mm256_movemask_pd(_mm256_cmp_pd(a.v, b.v, _CMP_NLT_UQ)) == 0;
}
SIGPAK_INLINE bool all_below(f8 a, f8 b) {
  return _mm256_movemask_ps(_mm256_cmp_ps(a.v, b.v, _CMP_NLT_UQ)) == 0;
}

template <class F> SIGPAK_INLINE real made_of(F at) { return {_mm256_setr_pd(at(0), at(1), at(2), at(3))}; }
SIGPAK_INLINE void write_some(double* to, real a, index count) {
  if (count == lane_count) return store(to, a);
  store_some(to, a, count);
}
SIGPAK_INLINE void write_some(float* to, real a, index count) {
  const f4 floats = {_mm256_cvtpd_ps(a.v)};
  if (count == lane_count) return store(to, floats);
  store_some(to, floats, count);
}

// The lanes from `first` to `end`.
SIGPAK_INLINE __m256i lanes_between(index first, index end, d4) {
  const __m256i lane = _mm256_setr_epi64x(0, 1, 2, 3);
  return _mm256_andnot_si256(_mm256_cmpgt_epi64(_mm256_set1_epi64x(first), lane),
                             _mm256_cmpgt_epi64(_mm256_set1_epi64x(end), lane));
}
SIGPAK_INLINE __m256i lanes_between(index first, index end, f8) {
  const __m256i lane = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  return _mm256_andnot_si256(_mm256_cmpgt_epi32(_mm256_set1_epi32(static_cast<int>(first)), lane),
                             _mm256_cmpgt_epi32(_mm256_set1_epi32(static_cast<int>(end)), lane));
}
SIGPAK_INLINE __m128i lanes_between(index first, index end, f4) {
  const __m128i lane = _mm_setr_epi32(0, 1, 2, 3);
  return _mm_andnot_si128(_mm_cmpgt_epi32(_mm_set1_epi32(static_cast<int>(first)), lane),
                          _mm_cmpgt_epi32(_mm_set1_epi32(static_cast<int>(end)), lane));
}

// The first n scalars, none where n is negative, and behind them those of `rest`; nothing beyond is read.
SIGPAK_INLINE d4 load_first(const double* from, index n, d4 rest) {
  const __m256i first = lanes_between(0, n, rest);
  return {_mm256_blendv_pd(rest.v, _mm256_maskload_pd(from, first), _mm256_castsi256_pd(first))};
}
SIGPAK_INLINE f8 load_first(const float* from, index n, f8 rest) {
  const __m256i first = lanes_between(0, n, rest);
  return {_mm256_blendv_ps(rest.v, _mm256_maskload_ps(from, first), _mm256_castsi256_ps(first))};
}
SIGPAK_INLINE f4 load_first(const float* from, index n, f4 rest) {
  const __m128i first = lanes_between(0, n, rest);
  return {_mm_blendv_ps(rest.v, _mm_maskload_ps(from, first), _mm_castsi128_ps(first))};
}

// The lanes from `first` to `end` of a vector that would go to `to`; nothing else is written.
SIGPAK_INLINE void store_lanes(double* to, d4 a, index first, index end) {
  _mm256_maskstore_pd(to, lanes_between(first, end, a), a.v);
}
SIGPAK_INLINE void store_lanes(float* to, f8 a, index first, index end) {
  _mm256_maskstore_ps(to, lanes_between(first, end, a), a.v);
}
SIGPAK_INLINE void store_first(double* to, d4 a, index n) { store_lanes(to, a, 0, n); }
SIGPAK_INLINE void store_first(float* to, f8 a, index n) { store_lanes(to, a, 0, n); }
SIGPAK_INLINE void store_first(float* to, f4 a, index n) {
  _mm_maskstore_ps(to, lanes_between(0, n, a), a.v);
}

// The lanes that a comparison holds for, as bits.
SIGPAK_INLINE unsigned lanes_below(d4 a, d4 b) {
  return static_cast<unsigned>(_mm256_movemask_pd(_mm256_cmp_pd(a.v, b.v, _CMP_LT_OQ)));
}
SIGPAK_INLINE unsigned lanes_below(f8 a, f8 b) {
  return static_cast<unsigned>(_mm256_movemask_ps(_mm256_cmp_ps(a.v, b.v, _CMP_LT_OQ)));
}
SIGPAK_INLINE unsigned lanes_at_most(d4 a, d4 b) {
  return static_cast<unsigned>(_mm256_movemask_pd(_mm256_cmp_pd(a.v, b.v, _CMP_LE_OQ)));
}
SIGPAK_INLINE unsigned lanes_at_most(f8 a, f8 b) {
  return static_cast<unsigned>(_mm256_movemask_ps(_mm256_cmp_ps(a.v, b.v, _CMP_LE_OQ)));
}
SIGPAK_INLINE unsigned lanes_at_most(f4 a, f4 b) {
  return static_cast<unsigned>(_mm_movemask_ps(_mm_cmp_ps(a.v, b.v, _CMP_LE_OQ)));
}
// The lanes of the same bits.
SIGPAK_INLINE unsigned lanes_alike(d4 a, d4 b) {
  const __m256i alike = _mm256_cmpeq_epi64(_mm256_castpd_si256(a.v), _mm256_castpd_si256(b.v));
  return static_cast<unsigned>(_mm256_movemask_pd(_mm256_castsi256_pd(alike)));
}
SIGPAK_INLINE unsigned lanes_alike(f8 a, f8 b) {
  const __m256i alike = _mm256_cmpeq_epi32(_mm256_castps_si256(a.v), _mm256_castps_si256(b.v));
  return static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(alike)));
}

// greater(a, b) (lesser) in the lanes of `m`, a constant, and those of `rest` in the others.
template <unsigned m> SIGPAK_INLINE d4 greater_in(d4 rest, d4 a, d4 b) {
  return {_mm256_blend_pd(rest.v, greater(a, b).v, m)};
}
template <unsigned m> SIGPAK_INLINE f4 greater_in(f4 rest, f4 a, f4 b) {
  return {_mm_blend_ps(rest.v, greater(a, b).v, m)};
}
template <unsigned m> SIGPAK_INLINE f8 greater_in(f8 rest, f8 a, f8 b) {
  return {_mm256_blend_ps(rest.v, greater(a, b).v, m)};
}
template <unsigned m, class P> SIGPAK_INLINE P lesser_in(P rest, P a, P b) {
  return greater_in<~m&((1U << P::width) - 1)>(lesser(a, b), rest, rest);
}

// The lanes of `m`, then the others, each in order; left_only leaves open what follows.
SIGPAK_INLINE d4 left_first(d4 a, unsigned m) {
  return {_mm256_castps_pd(
      _mm256_permutevar8x32_ps(_mm256_castpd_ps(a.v), _mm256_cvtepu8_epi32(order_of<4>(m))))};
}
SIGPAK_INLINE f8 left_first(f8 a, unsigned m) {
  return {_mm256_permutevar8x32_ps(a.v, _mm256_cvtepu8_epi32(order_of<8>(m)))};
}
template <class P> SIGPAK_INLINE P left_only(P a, unsigned m) { return left_first(a, m); }

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
