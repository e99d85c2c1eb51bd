// What the elementary functions need of the vectors of a level beyond arithmetic. Everything here gives the
// same bits at every level. The vector header of the level gives
//   mask              of comparisons < <= > == not_at_most has_bit above, with both either exclusive opposite
//   lanes_of choose(m, a, b)   a where m holds, else b; only(m, bits) for bits and zero lesser greater    of
//   numbers; with NaN the second operand, so that at_least and at_most keep it take_sign sqrt look_up
//   scale_eighths split_pairs join_pairs
#pragma once

#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

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
    unroll<terms - 1>([&](auto k) SIGPAK_LAMBDA { sum = fma(sum, x, all(coefficients[k + 1])); });
    return sum;
  } else {
    const real square = x * x;
    real even = all(coefficients[(terms - 1) % 2]);
    real odd = all(coefficients[terms % 2]);
    unroll<(terms - 1) / 2>([&](auto k) SIGPAK_LAMBDA {
      even = fma(even, square, all(coefficients[2 * k + 2 + (terms - 1) % 2]));
    });
    unroll<terms / 2 - 1>(
        [&](auto k) SIGPAK_LAMBDA { odd = fma(odd, square, all(coefficients[2 * k + 2 + terms % 2])); });
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
