// What the elementary functions need of the vectors of a level beyond arithmetic: comparison and choice,
// bits, small tables, conversion of floats. Everything here gives the same bits at every level.
#pragma once

#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr int lane_count = SIGPAK_VECTOR_BYTES / 8;
using real = pack<double, lane_count>;
typedef unsigned long long words __attribute__((vector_size(SIGPAK_VECTOR_BYTES)));

SIGPAK_INLINE real all(double x) { return splat<real>(x); }
SIGPAK_INLINE words bits(real a) { return reinterpret_cast<words>(a.v); }
SIGPAK_INLINE real from_bits(words a) { return {reinterpret_cast<real::vector>(a)}; }
SIGPAK_INLINE words all_bits(unsigned long long x) { return x - words{}; }

// Added to x, leaves x rounded to an integer in the low bits, and itself as it was when subtracted again.
constexpr double to_integer = 0x1.8p52;

constexpr unsigned long long sign_bit = 1ULL << 63;
SIGPAK_INLINE real absolute(real a) { return from_bits(bits(a) & ~sign_bit); }
SIGPAK_INLINE real flip_sign(real a, words sign) { return from_bits(bits(a) ^ (sign & sign_bit)); }
SIGPAK_INLINE real take_sign(real a, real sign) {
#if SIGPAK_VECTOR_BYTES == 64
  constexpr int first_chooses = 0xca;  // by its bits; compilers would take two operations
  return from_bits(words(_mm512_ternarylogic_epi64(__m512i(all_bits(sign_bit)), __m512i(bits(sign)),
                                                   __m512i(bits(a)), first_chooses)));
#else
  return from_bits(bits(absolute(a)) | (bits(sign) & sign_bit));
#endif
}

SIGPAK_INLINE real operator/(real a, real b) { return {a.v / b.v}; }

// at_least and at_most keep NaN.
#if SIGPAK_VECTOR_BYTES == 64

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
SIGPAK_INLINE mask has_bit(words a, unsigned long long bit) {
  return _mm512_test_epi64_mask(__m512i(a), __m512i(all_bits(bit)));
}
SIGPAK_INLINE real choose(mask m, real yes, real no) { return {_mm512_mask_blend_pd(m, no.v, yes.v)}; }
SIGPAK_INLINE mask exclusive(mask a, mask b) { return _kxor_mask8(a, b); }
SIGPAK_INLINE mask above(words a, words b) { return _mm512_cmpgt_epi64_mask(__m512i(a), __m512i(b)); }
SIGPAK_INLINE real lesser(real a, real b) { return {_mm512_min_pd(a.v, b.v)}; }
SIGPAK_INLINE real greater(real a, real b) { return {_mm512_max_pd(a.v, b.v)}; }
SIGPAK_INLINE words only(mask m, unsigned long long x) {
  return words(_mm512_maskz_mov_epi64(m, __m512i(all_bits(x))));
}
SIGPAK_INLINE real sqrt(real a) { return {_mm512_sqrt_pd(a.v)}; }
SIGPAK_INLINE real at_least(real x, double limit) { return {_mm512_max_pd(all(limit).v, x.v)}; }
SIGPAK_INLINE real at_most(real x, double limit) { return {_mm512_min_pd(all(limit).v, x.v)}; }

// table[position & 7] for eight entries.
SIGPAK_INLINE real look_up(const double* table, words position) {
  return {_mm512_permutexvar_pd(__m512i(position), _mm512_loadu_pd(table))};
}

// a * 2^floor(n / 8 - lift) for -10400 < n - 8 lift < 8000, rounded once; shifted is n + to_integer.
template <int lift = 0> SIGPAK_INLINE real scale_eighths(real a, real shifted) {
  return {_mm512_scalef_pd(a.v, ((shifted - all(to_integer + 8 * lift)) * all(0.125)).v)};
}

SIGPAK_INLINE real widen(const float* from) { return {_mm512_cvtps_pd(_mm256_loadu_ps(from))}; }
SIGPAK_INLINE void narrow(float* to, real a) { _mm256_storeu_ps(to, _mm512_cvtpd_ps(a.v)); }

SIGPAK_INLINE void split_pairs(real a, real b, real& even, real& odd) {
  even = {_mm512_permutex2var_pd(a.v, _mm512_setr_epi64(0, 2, 4, 6, 8, 10, 12, 14), b.v)};
  odd = {_mm512_permutex2var_pd(a.v, _mm512_setr_epi64(1, 3, 5, 7, 9, 11, 13, 15), b.v)};
}
SIGPAK_INLINE void join_pairs(real even, real odd, real& a, real& b) {
  a = {_mm512_permutex2var_pd(even.v, _mm512_setr_epi64(0, 8, 1, 9, 2, 10, 3, 11), odd.v)};
  b = {_mm512_permutex2var_pd(even.v, _mm512_setr_epi64(4, 12, 5, 13, 6, 14, 7, 15), odd.v)};
}

#else

struct mask {
  __m256d v;
};
SIGPAK_INLINE mask operator<(real a, real b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_LT_OQ)}; }
SIGPAK_INLINE mask operator<=(real a, real b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_LE_OQ)}; }
SIGPAK_INLINE mask operator>(real a, real b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_GT_OQ)}; }
SIGPAK_INLINE mask operator==(real a, real b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_EQ_OQ)}; }
SIGPAK_INLINE mask not_at_most(real a, double b) { return {_mm256_cmp_pd(a.v, all(b).v, _CMP_NLE_UQ)}; }
SIGPAK_INLINE mask both(mask a, mask b) { return {_mm256_and_pd(a.v, b.v)}; }
SIGPAK_INLINE mask either(mask a, mask b) { return {_mm256_or_pd(a.v, b.v)}; }
SIGPAK_INLINE mask opposite(mask a) {
  return {_mm256_xor_pd(a.v, _mm256_castsi256_pd(_mm256_set1_epi64x(-1)))};
}
SIGPAK_INLINE int lanes_of(mask a) { return _mm256_movemask_pd(a.v); }
SIGPAK_INLINE mask has_bit(words a, unsigned long long bit) {
  const __m256i wanted = __m256i(all_bits(bit));
  return {_mm256_castsi256_pd(_mm256_cmpeq_epi64(_mm256_and_si256(__m256i(a), wanted), wanted))};
}
SIGPAK_INLINE real choose(mask m, real yes, real no) { return {_mm256_blendv_pd(no.v, yes.v, m.v)}; }
SIGPAK_INLINE mask exclusive(mask a, mask b) { return {_mm256_xor_pd(a.v, b.v)}; }
SIGPAK_INLINE mask above(words a, words b) {
  return {_mm256_castsi256_pd(_mm256_cmpgt_epi64(__m256i(a), __m256i(b)))};
}
SIGPAK_INLINE real lesser(real a, real b) { return {_mm256_min_pd(a.v, b.v)}; }
SIGPAK_INLINE real greater(real a, real b) { return {_mm256_max_pd(a.v, b.v)}; }
SIGPAK_INLINE words only(mask m, unsigned long long x) { return words(__m256i(m.v)) & all_bits(x); }
SIGPAK_INLINE real sqrt(real a) { return {_mm256_sqrt_pd(a.v)}; }
SIGPAK_INLINE real at_least(real x, double limit) { return {_mm256_max_pd(all(limit).v, x.v)}; }
SIGPAK_INLINE real at_most(real x, double limit) { return {_mm256_min_pd(all(limit).v, x.v)}; }

// Each half of the table is found as pairs of 32-bit words; bit 2 of the position chooses between them.
SIGPAK_INLINE real look_up(const double* table, words position) {
  const __m256i twice = _mm256_slli_epi64(__m256i(position), 1);
  const __m256i picks = _mm256_add_epi32(_mm256_shuffle_epi32(twice, 0xa0), _mm256_set1_epi64x(0x100000000));
  const __m256 low = _mm256_permutevar8x32_ps(_mm256_loadu_ps(reinterpret_cast<const float*>(table)), picks);
  const __m256 high =
      _mm256_permutevar8x32_ps(_mm256_loadu_ps(reinterpret_cast<const float*>(table + 4)), picks);
  const __m256d upper = _mm256_castsi256_pd(_mm256_slli_epi64(__m256i(position), 61));
  return {_mm256_blendv_pd(_mm256_castps_pd(low), _mm256_castps_pd(high), upper)};
}

// a * 2^floor(n / 8 - lift) for -10400 < n - 8 lift < 8000, rounded once; shifted is n + to_integer. Small
// powers take two steps: the first product is normal, and the second rounds.
template <int lift = 0> SIGPAK_INLINE real scale_eighths(real a, real shifted) {
  constexpr double step = 1024;
  const mask small = shifted < all(to_integer + 8 * (lift - 1000));
  const real chosen = choose(small, shifted + all(8 * (step - lift)), shifted - all(8 * lift));
  const words power = ((bits(chosen) & ~7ULL) << 49) + all_bits(1023ULL << 52);
  return a * from_bits(power) * choose(small, all(0x1p-1024), all(1));
}

SIGPAK_INLINE real widen(const float* from) { return {_mm256_cvtps_pd(_mm_loadu_ps(from))}; }
SIGPAK_INLINE void narrow(float* to, real a) { _mm_storeu_ps(to, _mm256_cvtpd_ps(a.v)); }

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

#endif

// A magnitude outside [low, high], which are positive; NaN and zero are outside.
SIGPAK_INLINE mask is_outside(real a, double low, double high) {
  const auto from = __builtin_bit_cast(unsigned long long, low);
  const auto to = __builtin_bit_cast(unsigned long long, high);
  return above(bits(a) - all_bits(from + sign_bit), all_bits(to - from + sign_bit));
}

// 2^floor(n / 8), -8000 < n < 8000; shifted is n + to_integer.
SIGPAK_INLINE real power_of_two_eighths(real shifted) {
  return from_bits(((bits(shifted) & ~7ULL) << 49) + all_bits(1023ULL << 52));
}

// Highest coefficient first. Long ones as an even and an odd half, side by side.
template <int terms> SIGPAK_INLINE real polynomial(const double (&coefficients)[terms], real x) {
  if constexpr (terms < 7) {
    real sum = all(coefficients[0]);
    unroll<terms - 1>([&](auto k)
                          __attribute__((always_inline)) { sum = fma(sum, x, all(coefficients[k + 1])); });
    return sum;
  } else {
    const real square = x * x;
    real even = all(coefficients[(terms - 1) % 2]);
    real odd = all(coefficients[terms % 2]);
    unroll<(terms - 1) / 2>([&](auto k) __attribute__((always_inline)) {
      even = fma(even, square, all(coefficients[2 * k + 2 + (terms - 1) % 2]));
    });
    unroll<terms / 2 - 1>([&](auto k) __attribute__((always_inline)) {
      odd = fma(odd, square, all(coefficients[2 * k + 2 + terms % 2]));
    });
    return fma(odd, x, even);
  }
}

// hi + lo of two vectors, unevaluated.
struct parts {
  real hi;
  real lo;
};

SIGPAK_INLINE parts choose(mask m, parts yes, parts no) {
  return {choose(m, yes.hi, no.hi), choose(m, yes.lo, no.lo)};
}

// a + b exactly, when a is 0 or not the smaller in magnitude.
SIGPAK_INLINE parts fast_sum(real a, real b) {
  const real sum = a + b;
  return {sum, b - (sum - a)};
}

SIGPAK_INLINE parts exact_sum(real a, real b) {
  const real sum = a + b;
  const real b_part = sum - a;
  return {sum, (a - (sum - b_part)) + (b - b_part)};
}

SIGPAK_INLINE parts exact_product(real a, real b) {
  const real product = a * b;
  return {product, fms(a, b, product)};
}

// 1 / x for positive normal x to some 6 bits, enough where it multiplies what a rounding has left over: the
// difference of the bits, and one step of Newton.
SIGPAK_INLINE real rough_inverse(real x) {
  const real y = from_bits(all_bits(0x7fde623822fc16e6) - bits(x));
  return y * fnma(x, y, all(2));
}

// n / d with one division; the error beyond the final rounding is near 2^-100.
SIGPAK_INLINE real quotient(parts n, parts d) {
  const real inverse = all(1) / d.hi;
  const real q = n.hi * inverse;
  return fma(fnma(q, d.hi, n.hi) + fnma(q, d.lo, n.lo), inverse, q);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
