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

SIGPAK_INLINE real read(const double* from) { return load<real>(from); }
SIGPAK_INLINE real read(const float* from) { return widen(from); }
SIGPAK_INLINE void write(double* to, real a) { store(to, a); }
SIGPAK_INLINE void write(float* to, real a) { narrow(to, a); }

// At least one scalar and at most a vector of them, at a stride; the last one repeated in the lanes that are
// left. Loads of single scalars, because a wider one would wait for the stores of a caller who has just
// filled his record.
#if SIGPAK_VECTOR_BYTES == 64
template <class T> SIGPAK_INLINE real read_some(const T* from, index count, index stride = 1) {
  const auto at = [=](index i) __attribute__((always_inline)) {
    return static_cast<double>(from[(i < count ? i : count - 1) * stride]);
  };
  return {_mm512_setr_pd(at(0), at(1), at(2), at(3), at(4), at(5), at(6), at(7))};
}
#else
template <class T> SIGPAK_INLINE real read_some(const T* from, index count, index stride = 1) {
  const auto at = [=](index i) __attribute__((always_inline)) {
    return static_cast<double>(from[(i < count ? i : count - 1) * stride]);
  };
  return {_mm256_setr_pd(at(0), at(1), at(2), at(3))};
}
#endif

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
