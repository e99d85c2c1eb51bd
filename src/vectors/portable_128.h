// SPDX-License-Identifier: MIT
// The level of 128 bits, which every processor has: the compiler's own vectors, and operations on their lanes
// that it brings together again.
#pragma once

#include "vectors/word_masks.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// Where the processor has no fused products, fma, fms and fnma round twice.
#if defined(__FP_FAST_FMA)
constexpr bool has_fused_products = true;
SIGPAK_INLINE double fused(double a, double b, double c) { return __builtin_fma(a, b, c); }
SIGPAK_INLINE float fused(float a, float b, float c) { return __builtin_fmaf(a, b, c); }
#else
constexpr bool has_fused_products = false;
SIGPAK_INLINE double fused(double a, double b, double c) { return a * b + c; }
SIGPAK_INLINE float fused(float a, float b, float c) { return a * b + c; }
#endif

template <class F> SIGPAK_INLINE real made_of(F at) { return {real::vector{at(0), at(1)}}; }

SIGPAK_INLINE d2 fma(d2 a, d2 b, d2 c) {
  return made_of([=](int i) SIGPAK_LAMBDA { return fused(a.v[i], b.v[i], c.v[i]); });
}
SIGPAK_INLINE f4 fma(f4 a, f4 b, f4 c) {
  const auto at = [=](int i) SIGPAK_LAMBDA { return fused(a.v[i], b.v[i], c.v[i]); };
  return {f4::vector{at(0), at(1), at(2), at(3)}};
}
SIGPAK_INLINE real fms(real a, real b, real c) { return fma(a, b, -c); }
SIGPAK_INLINE real fnma(real a, real b, real c) { return fma(-a, b, c); }
SIGPAK_INLINE real sqrt(real a) {
  return made_of([=](int i) SIGPAK_LAMBDA { return __builtin_sqrt(a.v[i]); });
}

SIGPAK_INLINE int lanes_of(mask a) { return static_cast<int>((a.v[0] & 1) | (a.v[1] & 2)); }
SIGPAK_INLINE mask has_bit(words a, unsigned long long bit) {
  return {words{} - (a >> __builtin_ctzll(bit) & 1)};  // few have comparisons of 64 bits
}
SIGPAK_INLINE mask is_outside(real a, double low, double high) {
  return opposite(both(all(low) <= a, a <= all(high)));
}
SIGPAK_INLINE real choose(mask m, real yes, real no) {
  return from_bits((bits(yes) & m.v) | (bits(no) & ~m.v));
}
SIGPAK_INLINE real lesser(real a, real b) { return {a.v < b.v ? a.v : b.v}; }
SIGPAK_INLINE real greater(real a, real b) { return {a.v > b.v ? a.v : b.v}; }
SIGPAK_INLINE real at_least(real x, double limit) { return greater(all(limit), x); }
SIGPAK_INLINE real at_most(real x, double limit) { return lesser(all(limit), x); }

// table[position mod entries]. By words of 32 bits, because compilers for x86 move one of 64 into a
// register whose upper half is left to wait for.
template <int entries = 8> SIGPAK_INLINE real look_up(const double* table, words position) {
  typedef int halves __attribute__((vector_size(16)));
  constexpr int low = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? 0 : 1;
  const auto place = reinterpret_cast<halves>(position & (entries - 1));
  return {real::vector{table[place[low]], table[place[2 + low]]}};
}

// table[position mod entries] for a table of the size that is cheapest here.
constexpr int table_entries = 128;
SIGPAK_INLINE real pick(const double (&table)[table_entries], words position) {
  return look_up<table_entries>(table, position);
}

// The low (high) parts of a and b, scalar by scalar.
SIGPAK_INLINE d2 low_parts(d2 a, d2 b) { return {__builtin_shufflevector(a.v, b.v, 0, 2)}; }
SIGPAK_INLINE f4 low_parts(f4 a, f4 b) { return {__builtin_shufflevector(a.v, b.v, 0, 4, 1, 5)}; }
SIGPAK_INLINE d2 high_parts(d2 a, d2 b) { return {__builtin_shufflevector(a.v, b.v, 1, 3)}; }
SIGPAK_INLINE f4 high_parts(f4 a, f4 b) { return {__builtin_shufflevector(a.v, b.v, 2, 6, 3, 7)}; }

// Real and imaginary parts of interleaved points exchanged.
SIGPAK_INLINE d2 exchanged(d2 a) { return {__builtin_shufflevector(a.v, a.v, 1, 0)}; }
SIGPAK_INLINE f4 exchanged(f4 a) { return {__builtin_shufflevector(a.v, a.v, 1, 0, 3, 2)}; }

// The scalars of a, then of b, in even (odd) places.
SIGPAK_INLINE d2 evens(d2 a, d2 b) { return low_parts(a, b); }
SIGPAK_INLINE f4 evens(f4 a, f4 b) { return {__builtin_shufflevector(a.v, b.v, 0, 2, 4, 6)}; }
SIGPAK_INLINE d2 odds(d2 a, d2 b) { return high_parts(a, b); }
SIGPAK_INLINE f4 odds(f4 a, f4 b) { return {__builtin_shufflevector(a.v, b.v, 1, 3, 5, 7)}; }
SIGPAK_INLINE d2 evens_first(d2 a) { return a; }
SIGPAK_INLINE f4 evens_first(f4 a) { return a; }

// Every scalar in an even (odd) place also in the odd (even) one beside it.
SIGPAK_INLINE d2 evens_twice(d2 a) { return {__builtin_shufflevector(a.v, a.v, 0, 0)}; }
SIGPAK_INLINE f4 evens_twice(f4 a) { return {__builtin_shufflevector(a.v, a.v, 0, 0, 2, 2)}; }
SIGPAK_INLINE d2 odds_twice(d2 a) { return {__builtin_shufflevector(a.v, a.v, 1, 1)}; }
SIGPAK_INLINE f4 odds_twice(f4 a) { return {__builtin_shufflevector(a.v, a.v, 1, 1, 3, 3)}; }

// a - b in the even places, a + b in the odd ones: a difference is the sum with the sign of b changed.
SIGPAK_INLINE d2 turned_sum(d2 a, d2 b) { return a + from_bits(bits(b) ^ words{sign_bit, 0}); }
SIGPAK_INLINE f4 turned_sum(f4 a, f4 b) {
  typedef unsigned word_of_float __attribute__((vector_size(16)));
  constexpr unsigned sign = 1U << 31;
  const word_of_float turned = reinterpret_cast<word_of_float>(b.v) ^ word_of_float { sign, 0, sign, 0 };
  return a + f4{reinterpret_cast<f4::vector>(turned)};
}

SIGPAK_INLINE bool any_bit(words a) { return ((a | __builtin_shufflevector(a, a, 1, 0))[0]) != 0; }
template <class P> SIGPAK_INLINE bool any_zero(P a) {
  return any_bit(reinterpret_cast<words>(a.v == typename P::vector{}));
}
template <class P> SIGPAK_INLINE bool all_below(P a, P b) {
  return !any_bit(~reinterpret_cast<words>(a.v < b.v));
}

SIGPAK_INLINE bool all_of(float_mask m) {
#if defined(__SSE2__)
  return __builtin_ia32_movmskps(reinterpret_cast<f4::vector>(m.v)) == 0xf;  // compilers find no such thing
#else
  return !any_bit(~reinterpret_cast<words>(m.v));
#endif
}

SIGPAK_INLINE bool any_sign(words a) {
  const words either = a | __builtin_shufflevector(a, a, 1, 0);
  return static_cast<long long>(either[0]) < 0;
}
SIGPAK_INLINE bool is_any(mask m) { return any_sign(m.v); }

// The doubles of the lower and of the upper half.
SIGPAK_INLINE void widen(f4 a, d2& low, d2& high) {
  typedef double four __attribute__((vector_size(32)));
  const four wide = __builtin_convertvector(a.v, four);
  low = {__builtin_shufflevector(wide, wide, 0, 1)};
  high = {__builtin_shufflevector(wide, wide, 2, 3)};
}

// As the lower half of four floats: compilers convert two alone one by one.
SIGPAK_INLINE real widened(pack<float, 2> a) {
  const real::vector both = {__builtin_bit_cast(double, a), 0};
  real low;
  real high;
  widen({reinterpret_cast<f4::vector>(both)}, low, high);
  return low;
}

SIGPAK_INLINE void split_pairs(real a, real b, real& even, real& odd) {
  even = low_parts(a, b);
  odd = high_parts(a, b);
}
SIGPAK_INLINE void join_pairs(real even, real odd, real& a, real& b) { split_pairs(even, odd, a, b); }

SIGPAK_INLINE void write_some(double* to, real a, index count) {
  if (count == lane_count) return store(to, a);
  *to = a.v[0];
}
SIGPAK_INLINE void write_some(float* to, real a, index count) {
  to[0] = static_cast<float>(a.v[0]);
  if (count == lane_count) to[1] = static_cast<float>(a.v[1]);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
