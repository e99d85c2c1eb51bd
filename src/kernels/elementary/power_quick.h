// SPDX-License-Identifier: MIT
// Powers of e and of ten in single precision at the first try: 2^(j / entries) from a table, and a polynomial
// as short as the entries allow. Where vectors of floats are tables they are computed in pairs of floats.
#pragma once

#include "core/guard.h"
#include "kernels/elementary/power.h"
#include "kernels/elementary/quick.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

struct power_base {
  double log2;
  double log;
  double of_two;  // the power of the base that two is
  float error;    // of its pairs of floats where r is small
  float least;    // of the arguments whose powers are normal floats
  float most;     // of those whose powers are below H
};
constexpr power_base natural_base = {0x1.71547652b82fep+0,  1, 0x1.62e42fefa39efp-1, 0x1p-44F, -87,
                                     guard<float>::log_huge};
constexpr power_base decimal_base = {0x1.a934f0979a371p+1,    ln10_hi, 0x1.34413509f79ffp-2, 0x1p-39F, -37.5F,
                                     guard<float>::log10_huge};

constexpr double series_power_of_two(double x) {
  constexpr double ln2 = 0x1.62e42fefa39efp-1;
  double sum = 1;
  for (int k = 20; k > 0; --k) sum = 1 + x * ln2 / k * sum;
  return sum;
}

#if defined(SIGPAK_HAS_FLOAT_TABLES)

// 2^(j / entries) = root e^(rest + error)
struct root_table {
  float roots[float_entries];
  float rests[float_entries];
};
constexpr root_table make_roots(float error) {
  root_table table{};
  for (int j = 0; j < float_entries; ++j) {
    const double power = series_power_of_two(static_cast<double>(j) / float_entries);
    table.roots[j] = static_cast<float>(power);
    const double root = static_cast<double>(table.roots[j]);
    table.rests[j] = static_cast<float>((power - root) / root) - error;
  }
  return table;
}
template <const power_base& base> constexpr root_table roots = make_roots(base.error);

// A constant as a float and what it leaves out.
struct split_constant {
  float hi;
  float lo;
  constexpr explicit split_constant(double x)
      : hi(static_cast<float>(x)), lo(static_cast<float>(x - static_cast<double>(hi))) {}
};

// t ln(base) + rest in two parts, the first of them for a power, the second small.
struct exponent {
  singles hi;
  singles lo;
};
template <const power_base& base> SIGPAK_INLINE exponent exponent_of(singles t, singles rest) {
  if constexpr (base.log == 1) return {t, rest};
  constexpr split_constant log(base.log);
  const singles hi = t * every(log.hi);
  return {hi, fms(t, every(log.hi), hi) + fma(t, every(log.lo), rest)};
}

// The bits of shifted for whole entries within the limits of x.
struct entry_range {
  unsigned least;
  unsigned most;
};
constexpr entry_range entries_of(const power_base& base, float start) {
  const auto entries_in_unit = static_cast<float>(float_entries * base.log2);
  const auto first = __builtin_bit_cast(unsigned, start);
  return {first + static_cast<unsigned>(static_cast<int>(base.least * entries_in_unit) + 1),
          first + static_cast<unsigned>(static_cast<int>(base.most * entries_in_unit) - 1)};
}

// base^x = 2^k root e^(r + rest), k a multiple of 1 / entries and |r| <= ln 2 / (2 entries). The first
// difference is exact: it has no more than 24 bits from the last of k times a float, or of x. The table and
// the coefficient of r^2 / 2 are low by what errors may be, so that the sum is a lower bound.
template <const power_base& base> SIGPAK_INLINE attempt<singles> quick_power_of(singles x) {
  constexpr split_constant of_two(base.of_two);
  constexpr float of_two_rest = static_cast<float>(base.log) * of_two.lo;
  constexpr float first = 0x1.8p23F / float_entries;
  constexpr entry_range entries = entries_of(base, first);
  const singles start = every(first);
  const singles shifted = fma(x, every(static_cast<float>(base.log2)), start);
  const singles k = shifted - start;
  const singles root = pick(roots<base>.roots, bits(shifted));
  const singles rest = fnma(k, every(of_two_rest), pick(roots<base>.rests, bits(shifted)));
  const auto [r, r_rest] = exponent_of<base>(fnma(k, every(of_two.hi), x), rest);
  const singles u = r + r_rest;
  const singles square = u * u;
  const singles above = fma(square, chain(power_pair_terms<float_entries>, u), r_rest);  // e^u - 1 - r
  const singles hi = fma(root, r, root);
  const singles lo = fma(root, above, fma(root, r, root - hi));
  const singles range = fma(square, every(power_pair_error), every(2 * base.error));
  const attempt<singles> y =
      rounded(is_between(bits(shifted), entries.least, entries.most), hi, lo, fma(root, range, lo));
  return {scale_entries(y.y, shifted, start), y.decided};
}

template <const power_base& base, class F> struct quick_power : F {
  SIGPAK_INLINE attempt<singles> quick(const float* x) const {
    return quick_power_of<base>(load<singles>(x));
  }
};

#else

constexpr int entry_bits = __builtin_ctz(table_entries);

struct power_table {
  double entries[table_entries];
};

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
  double at[sizeof exponential_quick_terms / sizeof(double)];
};
constexpr power_terms make_power_terms(double log) {
  power_terms terms{};
  double power = log;
  for (int k = sizeof terms / sizeof(double) - 1; k >= 0; --k, power *= log) {
    terms.at[k] = power * exponential_quick_terms[k];
  }
  return terms;
}

template <const power_base& base> SIGPAK_INLINE real quick_power_of(real x) {
  constexpr double entries_in_unit = table_entries * base.log2;
  constexpr power_terms terms = make_power_terms(base.log);
  const real shifted = fma(x, all(entries_in_unit), all(to_integer));
  const real r = fnma(shifted - all(to_integer), all(1 / entries_in_unit), x);
  const words exponent = bits(shifted) << (52 - entry_bits);
  const real power = from_bits(bits(pick(powers.entries, bits(shifted))) + exponent);
  return fma(power * r, chain(terms.at, r), power);
}

template <const power_base& base, class F> struct quick_power : F {
  SIGPAK_INLINE attempt<halves> quick(const float* x) const {
    const halves y = each_half(x, quick_power_of<base>);
    return judged<38>(is_between(load<singles>(x), base.least, base.most), y);
  }
};

template <class F> struct quick_hyperbolic_cosine : F {
  SIGPAK_INLINE attempt<halves> quick(const float* x) const {
    constexpr float end = guard<float>::log_huge;
    return judged<38>(is_between(load<singles>(x), -end, end), each_half(x, [](real a) SIGPAK_LAMBDA {
                        const real e = quick_power_of<natural_base>(absolute(a));
                        return all(0.5) * (e + all(1) / e);
                      }));
  }
};

#endif

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
