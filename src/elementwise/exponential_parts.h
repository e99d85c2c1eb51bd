// e^x and 10^x from a table of 2^(j/16), with what the leading double leaves out kept apart.
#pragma once

#include <bit>
#include <cstdint>

#include "core/double_double.h"

namespace sigpak {

// 2^(j/16) as hi + lo, from 60-digit arithmetic (scripts/elementary-tables exponential).
inline constexpr double_double sixteenth_powers[16] = {
    {0x1.0000000000000p+0, 0x0.0p+0},
    {0x1.0b5586cf9890fp+0, 0x1.8a62e4adc610bp-54},
    {0x1.172b83c7d517bp+0, -0x1.19041b9d78a76p-55},
    {0x1.2387a6e756238p+0, 0x1.9b07eb6c70573p-54},
    {0x1.306fe0a31b715p+0, 0x1.6f46ad23182e4p-55},
    {0x1.3dea64c123422p+0, 0x1.ada0911f09ebcp-55},
    {0x1.4bfdad5362a27p+0, 0x1.d4397afec42e2p-56},
    {0x1.5ab07dd485429p+0, 0x1.6324c054647adp-54},
    {0x1.6a09e667f3bcdp+0, -0x1.bdd3413b26456p-54},
    {0x1.7a11473eb0187p+0, -0x1.41577ee04992fp-55},
    {0x1.8ace5422aa0dbp+0, 0x1.6e9f156864b27p-54},
    {0x1.9c49182a3f090p+0, 0x1.c7c46b071f2bep-56},
    {0x1.ae89f995ad3adp+0, 0x1.7a1cd345dcc81p-54},
    {0x1.c199bdd85529cp+0, 0x1.11065895048ddp-55},
    {0x1.d5818dcfba487p+0, 0x1.2ed02d75b3707p-55},
    {0x1.ea4afa2a490dap+0, -0x1.e9c23179c2893p-54},
};

constexpr double power_of_two(std::int64_t k) noexcept {
  return std::bit_cast<double>(static_cast<std::uint64_t>(k + 1023) << 52);
}

// x = (16 k + j) * step + rest, |rest| <= step / 2, with step = 1/16 of a factor of two in the base at hand.
struct sixteenths {
  std::int64_t count;  // 16 k + j
  double rest;
};

// step_hi has trailing zeros enough for count * step_hi to be exact.
constexpr sixteenths reduce(double x, double per_step, double step_hi, double step_lo) noexcept {
  constexpr double to_integer = 0x1.8p52;
  const double count = (x * per_step + to_integer) - to_integer;
  return {static_cast<std::int64_t>(count), (x - count * step_hi) - count * step_lo};
}

// e^r = 1 + odd + even for |r| <= ln 2 / 32; the Taylor series, whose next term is below 2^-68.
struct symmetric_parts {
  double odd;
  double even;
};

constexpr symmetric_parts expm1_terms(double r) noexcept {
  const double s = r * r;
  return {r + r * (s * (1.0 / 6 + s * (1.0 / 120 + s * (1.0 / 5040)))),
          s * (1.0 / 2 + s * (1.0 / 24 + s * (1.0 / 720 + s * (1.0 / 40320))))};
}

// 2^(n/16) * (1 + p) * 2^extra
constexpr double_double scaled_power(std::int64_t n, double p, std::int64_t extra) noexcept {
  const double_double root = sixteenth_powers[n & 15];
  const double scale = power_of_two((n >> 4) + extra);
  return {root.hi * scale, (root.lo + root.hi * p) * scale};
}

// The sixteenths of ln 2 in x.
constexpr sixteenths reduce_natural(double x) noexcept {
  return reduce(x, 0x1.71547652b82fep+4, 0x1.62e42fefa4000p-5, -0x1.8432a1b0e2634p-47);
}

// e^x for |x| <= 700.
constexpr double_double exponential(double x) noexcept {
  const sixteenths n = reduce_natural(x);
  const symmetric_parts e = expm1_terms(n.rest);
  return scaled_power(n.count, e.even + e.odd, 0);
}

// e^x / 2 and e^-x / 2, for |x| <= 700.
struct exponential_pair {
  double_double up;
  double_double down;
};

constexpr exponential_pair half_exponentials(double x) noexcept {
  const sixteenths n = reduce_natural(x);
  const symmetric_parts e = expm1_terms(n.rest);
  return {scaled_power(n.count, e.even + e.odd, -1), scaled_power(-n.count, e.even - e.odd, -1)};
}

// Keeps a power normal while what becomes of it may be subnormal or 0.
inline constexpr std::int64_t power_lift = 300;

// e^x * 2^power_lift for x <= 230; NaN for NaN.
constexpr double_double lifted_exponential(double x) noexcept {
  if (x != x) return {x, 0};
  constexpr double vanishing = -750;
  const sixteenths n = reduce_natural(x < vanishing ? vanishing : x);
  const symmetric_parts e = expm1_terms(n.rest);
  return scaled_power(n.count, e.even + e.odd, power_lift);
}

// 10^x * 2^power_lift for x <= 100.
constexpr double_double lifted_power_of_ten(double x) noexcept {
  if (x != x) return {x, 0};
  constexpr double vanishing = -330;
  constexpr double ln10 = 2.302585092994046;
  const sixteenths n = reduce(x < vanishing ? vanishing : x, 0x1.a934f0979a371p+5, 0x1.34413509f8000p-6,
                              -0x1.80433b83b532ap-48);  // log10(2) / 16
  const symmetric_parts e = expm1_terms(n.rest * ln10);
  return scaled_power(n.count, e.even + e.odd, power_lift);
}

// Below 0.6 ulp where the result is normal.
constexpr double power_of_ten(double x) noexcept {
  return rounded(lifted_power_of_ten(x)) * power_of_two(-power_lift);
}

}  // namespace sigpak
