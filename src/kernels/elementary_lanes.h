// What the elementary functions need of the vectors of a level beyond arithmetic: comparison and choice,
// bits, small tables, conversion of floats, and the walk over an array. Everything here gives the same bits
// at every level.
#pragma once

#include "kernels/lanes.h"

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
  return from_bits(bits(absolute(a)) | (bits(sign) & sign_bit));
}

SIGPAK_INLINE real operator/(real a, real b) { return {a.v / b.v}; }

// at_least and at_most keep NaN.
#if SIGPAK_VECTOR_BYTES == 64

using mask = __mmask8;
SIGPAK_INLINE mask operator<(real a, real b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_LT_OQ); }
SIGPAK_INLINE mask operator<=(real a, real b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_LE_OQ); }
SIGPAK_INLINE mask operator>(real a, real b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_GT_OQ); }
SIGPAK_INLINE mask operator==(real a, real b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_EQ_OQ); }
SIGPAK_INLINE mask both(mask a, mask b) { return _kand_mask8(a, b); }
SIGPAK_INLINE mask either(mask a, mask b) { return _kor_mask8(a, b); }
SIGPAK_INLINE mask opposite(mask a) { return _knot_mask8(a); }
SIGPAK_INLINE int lanes_of(mask a) { return a; }
SIGPAK_INLINE mask has_bit(words a, unsigned long long bit) {
  return _mm512_test_epi64_mask(__m512i(a), __m512i(all_bits(bit)));
}
SIGPAK_INLINE real choose(mask m, real yes, real no) { return {_mm512_mask_blend_pd(m, no.v, yes.v)}; }
SIGPAK_INLINE real sqrt(real a) { return {_mm512_sqrt_pd(a.v)}; }
SIGPAK_INLINE real at_least(real x, double limit) { return {_mm512_max_pd(all(limit).v, x.v)}; }
SIGPAK_INLINE real at_most(real x, double limit) { return {_mm512_min_pd(all(limit).v, x.v)}; }

// table[position & 7] for eight entries.
SIGPAK_INLINE real look_up(const double* table, words position) {
  return {_mm512_permutexvar_pd(__m512i(position), _mm512_loadu_pd(table))};
}

// a * 2^floor(n / 8) for -10400 < n < 8000, rounded once; shifted is n + to_integer.
SIGPAK_INLINE real scale_eighths(real a, real shifted) {
  return {_mm512_scalef_pd(a.v, ((shifted - all(to_integer)) * all(0.125)).v)};
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

// a * 2^floor(n / 8) for -10400 < n < 8000, rounded once; shifted is n + to_integer. Small powers take two
// steps: the first product is normal, and the second rounds.
SIGPAK_INLINE real scale_eighths(real a, real shifted) {
  constexpr double lift = 1024;
  const mask small = shifted < all(to_integer - 8 * 1000);
  const real lifted = choose(small, shifted + all(8 * lift), shifted);
  const words power = ((bits(lifted) & ~7ULL) << 49) + all_bits(1023ULL << 52);
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

// 2^floor(n / 8), -8000 < n < 8000; shifted is n + to_integer.
SIGPAK_INLINE real power_of_two_eighths(real shifted) {
  return from_bits(((bits(shifted) & ~7ULL) << 49) + all_bits(1023ULL << 52));
}

// Highest coefficient first.
template <int terms> SIGPAK_INLINE real polynomial(const double (&coefficients)[terms], real x) {
  real sum = all(coefficients[0]);
  unroll<terms - 1>([&](auto k)
                        __attribute__((always_inline)) { sum = fma(sum, x, all(coefficients[k + 1])); });
  return sum;
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

// n / d with one division; the error beyond the final rounding is near 2^-100.
SIGPAK_INLINE real quotient(parts n, parts d) {
  const real inverse = all(1) / d.hi;
  const real q = n.hi * inverse;
  return fma(fnma(q, d.hi, n.hi) + fnma(q, d.lo, n.lo), inverse, q);
}

// The lanes of y in which m holds become f(x): for the arguments that are too rare or too wild for vectors.
template <class F> [[gnu::noinline]] void replace_lanes(real& y, real x, int lanes, F f) {
  double from[lane_count];
  double to[lane_count];
  store(from, x);
  store(to, y);
  for (int i = 0; i < lane_count; ++i) {
    if ((lanes >> i & 1) != 0) to[i] = f(from[i]);
  }
  y = load<real>(to);
}
template <class F> SIGPAK_INLINE real except(real y, mask m, real x, F f) {
  const int lanes = lanes_of(m);
  if (__builtin_expect(lanes != 0, 0)) replace_lanes(y, x, lanes, f);
  return y;
}

SIGPAK_INLINE void copy_some(double* to, const double* from, index n) {
  for (index i = 0; i < n; ++i) to[i] = from[i];
}
SIGPAK_INLINE void copy_some(float* to, const float* from, index n) {
  for (index i = 0; i < n; ++i) to[i] = from[i];
}

SIGPAK_INLINE real read(const double* from) { return load<real>(from); }
SIGPAK_INLINE real read(const float* from) { return widen(from); }
SIGPAK_INLINE void write(double* to, real a) { store(to, a); }
SIGPAK_INLINE void write(float* to, real a) { narrow(to, a); }

// The first n of a vector, the rest zero: without a detour over memory, which would stall the load.
#if SIGPAK_VECTOR_BYTES == 64
SIGPAK_INLINE real read_some(const double* from, index n) {
  return {_mm512_maskz_loadu_pd(static_cast<__mmask8>((1U << n) - 1), from)};
}
SIGPAK_INLINE real read_some(const float* from, index n) {
  return {_mm512_cvtps_pd(_mm256_maskz_loadu_ps(static_cast<__mmask8>((1U << n) - 1), from))};
}
#else
SIGPAK_INLINE real read_some(const double* from, index n) {
  return {
      _mm256_maskload_pd(from, _mm256_cmpgt_epi64(_mm256_set1_epi64x(n), _mm256_setr_epi64x(0, 1, 2, 3)))};
}
SIGPAK_INLINE real read_some(const float* from, index n) {
  const __m128i wanted = _mm_cmpgt_epi32(_mm_set1_epi32(static_cast<int>(n)), _mm_setr_epi32(0, 1, 2, 3));
  return {_mm256_cvtps_pd(_mm_maskload_ps(from, wanted))};
}
#endif

// x[i] = f(x[i])
template <class T, class F> SIGPAK_INLINE void walk(T* x, index n, F f) {
  index i = 0;
  for (; i + lane_count <= n; i += lane_count) write(x + i, f(read(x + i)));
  if (i == n) return;
  T rest[lane_count];
  write(rest, f(read_some(x + i, n - i)));
  copy_some(x + i, rest, n - i);
}

// f(a, b) replaces the parts of the points of z by those of out, which may be z.
template <class T, class F> SIGPAK_INLINE void walk_points(const T* z, T* out, index points, F f) {
  const auto step = [f](const T* from, T* to) __attribute__((always_inline)) {
    real a;
    real b;
    split_pairs(read(from), read(from + lane_count), a, b);
    f(a, b);
    real low;
    real high;
    join_pairs(a, b, low, high);
    write(to, low);
    write(to + lane_count, high);
  };
  index i = 0;
  for (; i + lane_count <= points; i += lane_count) step(z + 2 * i, out + 2 * i);
  if (i == points) return;
  T rest[2 * lane_count] = {};
  copy_some(rest, z + 2 * i, 2 * (points - i));
  step(rest, rest);
  copy_some(out + 2 * i, rest, 2 * (points - i));
}

// out[i] = f(a, b) of the points of z; out may be z.
template <class T, class F> SIGPAK_INLINE void walk_packing(const T* z, T* out, index points, F f) {
  const auto step = [f](const T* from, T* to) __attribute__((always_inline)) {
    real a;
    real b;
    split_pairs(read(from), read(from + lane_count), a, b);
    write(to, f(a, b));
  };
  index i = 0;
  for (; i + lane_count <= points; i += lane_count) step(z + 2 * i, out + i);
  if (i == points) return;
  T rest[2 * lane_count] = {};
  copy_some(rest, z + 2 * i, 2 * (points - i));
  step(rest, rest);
  copy_some(out + i, rest, points - i);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
