// SPDX-License-Identifier: MIT
// Logarithms in single precision at the first try: by a table where the vectors hold one of sixteen entries,
// else by a quotient.
#pragma once

#include "core/guard.h"
#include "kernels/elementary/logarithm.h"
#include "kernels/elementary/quick.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr double ln2 = 0x1.62e42fefa39efp-1;

#if defined(SIGPAK_HAS_BINADES)

// For every sixteenth of a binade its reciprocal and what that takes away from the logarithm. The first keeps
// 1, and the last takes 1/2 and so all of k ln 2 below 1: the logarithm is as good near 1 as elsewhere.
struct reciprocal_table {
  double reciprocals[table_entries];
  double logarithms[table_entries];
};

// 2 artanh((x - 1) / (x + 1)), 1 <= x < 2
constexpr double series_logarithm(double x) {
  const double s = (x - 1) / (x + 1);
  double sum = 0;
  for (int k = 41; k > 0; k -= 2) sum = 1.0 / k + s * s * sum;
  return 2 * s * sum;
}

constexpr reciprocal_table make_reciprocal_table() {
  constexpr int last = table_entries - 1;
  reciprocal_table table{};
  for (int j = 0; j < last; ++j) {
    const double middle = j == 0 ? 1 : 1 + (j + 0.5) / table_entries;
    table.reciprocals[j] = 1 / middle;
    table.logarithms[j] = series_logarithm(middle);
  }
  table.reciprocals[last] = 0.5;
  table.logarithms[last] = ln2;
  return table;
}
constexpr reciprocal_table reciprocals = make_reciprocal_table();

constexpr int logarithm_good_bits = 38;

// ln x for normal floats x > 0.
SIGPAK_INLINE real quick_logarithm_of(real x) {
  constexpr int entry_bits = __builtin_ctz(table_entries);
  const binade y = split_binade(x);
  const words position = bits(y.m) >> (52 - entry_bits);
  const real r = fms(y.m, pick(reciprocals.reciprocals, position), all(1));
  const real base = fma(y.k, all(ln2), pick(reciprocals.logarithms, position));
  return base + fma(r * r, chain(logarithm_short_terms, r), r);
}
SIGPAK_INLINE halves quick_logarithms(const float* x) { return each_half(x, quick_logarithm_of); }

#else

constexpr int logarithm_good_bits = 35;

// k ln 2 + ln(1 + f), |f| as for reduce_log.
SIGPAK_INLINE real quick_logarithm_of(real k, real f) {
  const real s = f / (all(2) + f);
  const real z = s * s;
  return fma(k, all(ln2), s * fma(z, chain(logarithm_quick_terms, z), all(2)));
}

// ln x for normal floats x > 0, reduced as floats, which is exact.
SIGPAK_INLINE halves quick_logarithms(const float* x) {
  constexpr unsigned root_half = 0x3f3504f3;
  constexpr unsigned fraction = 0x007fffff;
  const float_words above = bits(load<widest<float>>(x)) - root_half;
  const signed_float_words exponent = reinterpret_cast<signed_float_words>(above) >> 23;
  const widest<float> m = {reinterpret_cast<widest<float>::vector>((above & fraction) + root_half)};
  halves k;
  halves f;
  widen({__builtin_convertvector(exponent, widest<float>::vector)}, k.low, k.high);
  widen(m - splat<widest<float>>(1), f.low, f.high);
  return {quick_logarithm_of(k.low, f.low), quick_logarithm_of(k.high, f.high)};
}

#endif

template <class F> struct quick_logarithm : F {
  SIGPAK_INLINE attempt<halves> quick(const float* x) const { return judge(x, quick_logarithms(x)); }

  SIGPAK_INLINE static attempt<halves> judge(const float* x, halves y) {
    return judged<logarithm_good_bits>(is_between(load<singles>(x), guard<float>::tiny, 0x1.fffffep+127F), y);
  }
};

template <class F> struct quick_scaled_logarithm : quick_logarithm<F> {
  SIGPAK_INLINE attempt<halves> quick(const float* x) const {
    const halves y = quick_logarithms(x);
    return this->judge(x, {y.low * all(this->c.scale), y.high * all(this->c.scale)});
  }
};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
