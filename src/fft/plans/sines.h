// SPDX-License-Identifier: MIT
// Sines and cosines at compile time, for tables that the compiler makes.
#pragma once

#include <cstdint>
#include <numbers>

namespace sigpak::kernels {

// sin of 2 pi k / n, k at least 0: by the series, of at most an eighth of a turn, which ends below 2^-70.
constexpr long double sine_of(std::int64_t k, std::int64_t n) {
  k %= n;
  if (2 * k > n) return -sine_of(n - k, n);
  std::int64_t halves = 2 * k;  // n-ths of half a turn
  if (2 * halves > n) halves = n - halves;
  const bool cosine = 4 * halves > n;
  constexpr long double pi = std::numbers::pi_v<long double>;
  const long double x = cosine
                            ? pi * static_cast<long double>(n - 2 * halves) / static_cast<long double>(2 * n)
                            : pi * static_cast<long double>(halves) / static_cast<long double>(n);
  long double term = cosine ? 1 : x;
  long double sum = term;
  for (int i = cosine ? 2 : 3; i < 24; i += 2) {
    term *= -x * x / static_cast<long double>(i * (i - 1));
    sum += term;
  }
  return sum;
}

constexpr long double cosine_of(std::int64_t k, std::int64_t n) { return sine_of(4 * k + n, 4 * n); }

}  // namespace sigpak::kernels
