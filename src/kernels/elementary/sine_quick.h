// SPDX-License-Identifier: MIT
// Sines, cosines and sin(x)/x in single precision at the first try.
#pragma once

#include "core/guard.h"
#include "kernels/elementary/quick.h"
#include "kernels/elementary/sine.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// x - n pi, n a multiple of a half. Where products are not fused, those with the first piece are exact up to
// 2^20, and a second one of 53 bits leaves 2^-67, beside at least 2^-26 of a float that is not zero.
SIGPAK_INLINE real take_half_turns(real x, real n) {
  if constexpr (has_fused_products) return take_quarters_single(x, n, 2);
  constexpr double half_pi_rest = 0x1.0b4611a626331p-34;
  return (x - n * all(2 * half_pi_pieces[0])) - n * all(2 * half_pi_rest);
}

// sin(r + turns pi), |r| <= pi / 2, with the sign of a zero.
SIGPAK_INLINE real quick_turned_sine(real r, words turns) {
  const real z = r * r;
  return flip_sign(r * fma(z, polynomial(sine_quick_terms, z), all(1)), turns << 63);
}

SIGPAK_INLINE real quick_sine_of(real x) {
  const real shifted = fma(x, all(two_over_pi / 2), all(to_integer));
  return quick_turned_sine(take_half_turns(x, shifted - all(to_integer)), bits(shifted));
}

// As cosine_single.
SIGPAK_INLINE real quick_cosine_of(real x) {
  const real shifted = fma(x, all(two_over_pi / 2), all(-0.5)) + all(to_integer + 1);
  const real n = (shifted - all(to_integer + 1)) + all(0.5);
  return quick_turned_sine(take_half_turns(x, n), bits(shifted));
}

constexpr float quick_sine_end = static_cast<float>(reduction_end);

template <real f(real x), class F> struct quick_circular : F {
  SIGPAK_INLINE attempt<halves> quick(const float* x) const {
    const halves y = each_half(x, f);
    return judged<40>(is_between(load<singles>(x), -quick_sine_end, quick_sine_end), y);
  }
};

template <class F> struct quick_sine_quotient : F {
  SIGPAK_INLINE attempt<halves> quick(const float* x) const {
    const halves y = each_half(x, [](real a) SIGPAK_LAMBDA { return near_quotient(quick_sine_of(a), a); });
    return judged<39>(is_between(absolute(load<singles>(x)), guard<float>::tiny, quick_sine_end), y);
  }
};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
