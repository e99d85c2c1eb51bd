// SPDX-License-Identifier: MIT
// Masks of the levels that keep them in vectors: all ones where they hold, zeros elsewhere.
#pragma once

#include "vectors/pack.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

struct mask {
  words v;
};
SIGPAK_INLINE mask operator<(real a, real b) { return {words(a.v < b.v)}; }
SIGPAK_INLINE mask operator<=(real a, real b) { return {words(a.v <= b.v)}; }
SIGPAK_INLINE mask operator>(real a, real b) { return {words(a.v > b.v)}; }
SIGPAK_INLINE mask operator==(real a, real b) { return {words(a.v == b.v)}; }
SIGPAK_INLINE mask both(mask a, mask b) { return {a.v & b.v}; }
SIGPAK_INLINE mask either(mask a, mask b) { return {a.v | b.v}; }
SIGPAK_INLINE mask exclusive(mask a, mask b) { return {a.v ^ b.v}; }
SIGPAK_INLINE mask opposite(mask a) { return {~a.v}; }
SIGPAK_INLINE mask not_at_most(real a, double b) { return opposite(a <= all(b)); }
SIGPAK_INLINE words only(mask m, unsigned long long x) { return m.v & all_bits(x); }

SIGPAK_INLINE real choose(mask m, real yes, real no);  // of the level

// a / b; a level may be satisfied with 41 bits.
SIGPAK_INLINE real near_quotient(real a, real b) { return a / b; }

// low <= a <= high; and of those, where a has bits of m.
struct float_mask {
  float_words v;  // its signs count
};
SIGPAK_INLINE float_mask is_between(widest<float> a, float low, float high) {
  return {float_words(a.v >= splat<widest<float>>(low).v) & float_words(a.v <= splat<widest<float>>(high).v)};
}
// The same of unsigned numbers less than 2^31 apart, in sums alone, which wait for no multiplier.
SIGPAK_INLINE float_mask is_between(float_words a, unsigned low, unsigned high) {
  return {~((a - low) | (high - a))};
}
SIGPAK_INLINE float_mask both(float_mask a, float_mask b) { return {a.v & b.v}; }
SIGPAK_INLINE float_mask equal(singles a, singles b) { return {float_words(a.v == b.v)}; }
SIGPAK_INLINE float_mask equal_in(float_mask in, singles a, singles b) { return {in.v & equal(a, b).v}; }
SIGPAK_INLINE float_mask with_bits(float_mask in, float_words a, unsigned m) {
  return {in.v & ~float_words((a & (m - float_words{})) == 0)};
}

// a * 2^floor(n / 8 - lift) for -10400 < n - 8 lift < 8000, rounded once; shifted is n + to_integer. Small
// powers take two steps: the first product is normal, and the second rounds.
template <int lift = 0> SIGPAK_INLINE real scale_eighths(real a, real shifted) {
  constexpr double step = 1024;
  constexpr auto one = __builtin_bit_cast(unsigned long long, 1.0);
  constexpr auto last = __builtin_bit_cast(unsigned long long, 0x1p-1024);
  const mask small = shifted < all(to_integer + 8 * (lift - 1000));
  const real chosen =
      (shifted - all(8 * lift)) + from_bits(only(small, __builtin_bit_cast(unsigned long long, 8 * step)));
  const words power = ((bits(chosen) & ~7ULL) << 49) + all_bits(1023ULL << 52);
  return a * from_bits(power) * from_bits(all_bits(one) ^ only(small, one ^ last));
}

// The same for results that are normal by far.
SIGPAK_INLINE real scale_normal_eighths(real a, real shifted) {
  return a * from_bits(((bits(shifted) & ~7ULL) << 49) + all_bits(1023ULL << 52));
}

SIGPAK_INLINE real take_sign(real a, real sign) {
  return from_bits(bits(absolute(a)) | (bits(sign) & sign_bit));
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
