// SPDX-License-Identifier: MIT
// Powers of e and of ten in single precision at the first try: 2^(j / entries) from a table, and a polynomial
// as short as the entries allow.
#pragma once

#include "core/guard.h"
#include "kernels/elementary/power.h"
#include "kernels/elementary/quick.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

struct power_base {
  double log2;
  double log;
  float least;  // of the arguments whose powers are normal floats
  float most;   // of those whose powers are below H
};
constexpr power_base natural_base = {0x1.71547652b82fep+0, 1, -87, guard<float>::log_huge};
constexpr power_base decimal_base = {0x1.a934f0979a371p+1, ln10_hi, -37.5F, guard<float>::log10_huge};

struct power_table {
  double entries[table_entries];
};

constexpr double series_power_of_two(double x) {
  constexpr double ln2 = 0x1.62e42fefa39efp-1;
  double sum = 1;
  for (int k = 20; k > 0; --k) sum = 1 + x * ln2 / k * sum;
  return sum;
}

#if defined(SIGPAK_HAS_BINADES)

constexpr power_table make_powers() {
  power_table table{};
  for (int j = 0; j < table_entries; ++j) table.entries[j] = series_power_of_two(j / 16.0);
  return table;
}
constexpr power_table powers = make_powers();

// base^x = 2^z with z = x log2 base.
template <const power_base& base> SIGPAK_INLINE real quick_power_of(real x) {
  const real z = x * all(base.log2);
  const sixteenths y = split_sixteenths(z);
  const real root = pick(powers.entries, y.shifted);
  return scale_binades(root * chain(power_quick_terms, y.fraction), z);
}

#else

// 2^(j / entries) less j at the end of the exponent: n, shifted there and added, makes it 2^(n / entries) for
// every n that ends in j.
constexpr power_table make_powers() {
  power_table table{};
  for (int j = 0; j < table_entries; ++j) {
    const double power = series_power_of_two(static_cast<double>(j) / table_entries);
    const auto place = static_cast<unsigned long long>(j) << (52 - entry_bits);
    table.entries[j] = __builtin_bit_cast(double, __builtin_bit_cast(unsigned long long, power) - place);
  }
  return table;
}
constexpr power_table powers = make_powers();

// base^r = 1 + r P(r)
struct power_terms {
  double at[sizeof exponential_quick_terms<table_entries> / sizeof(double)];
};
constexpr power_terms make_power_terms(double log) {
  power_terms terms{};
  double power = log;
  for (int k = sizeof terms / sizeof(double) - 1; k >= 0; --k, power *= log) {
    terms.at[k] = power * exponential_quick_terms<table_entries>[k];
  }
  return terms;
}

template <const power_base& base> SIGPAK_INLINE real quick_power_of(real x) {
  constexpr double entries_in_unit = table_entries * base.log2;
  constexpr power_terms terms = make_power_terms(base.log);
  const real shifted = fma(x, all(entries_in_unit), all(to_integer));
  const real r = fnma(shifted - all(to_integer), all(1 / entries_in_unit), x);
  const words exponent = bits(shifted) << (52 - entry_bits);
  const real series = chain(terms.at, r);
  if constexpr (table_entries == 1) {
    return from_bits(bits(fma(r, series, all(1))) + exponent);
  } else {
    const real power = from_bits(bits(pick(powers.entries, bits(shifted))) + exponent);
    return fma(power * r, series, power);
  }
}

#endif

template <const power_base& base, class F> struct quick_power : F {
  static constexpr int good_bits = 38;
  SIGPAK_INLINE float_mask fits(widest<float> a) const { return is_between(a, base.least, base.most); }
  SIGPAK_INLINE halves quick(const float* x) const { return each_half(x, quick_power_of<base>); }
};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
