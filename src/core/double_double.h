// SPDX-License-Identifier: MIT
// Numbers of 106 bits as sums of two doubles.
// Sources: T. J. Dekker, A floating-point technique for extending the available precision, Numerische
// Mathematik 18 (1971); D. E. Knuth, The Art of Computer Programming 2, 4.2.2.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace sigpak {

// hi is the nearest double of the number, lo the rest.
struct double_double {
  double hi = 0;
  double lo = 0;
};

// The rounding error of the operations below, with some to spare, relative to the size of their operands.
inline constexpr double double_double_rounding = 0x1p-100;

constexpr double rounded(double_double x) noexcept { return x.hi + x.lo; }

// a + b exactly, when a is 0 or not the smaller in magnitude.
constexpr double_double fast_sum(double a, double b) noexcept {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

// a + b exactly.
constexpr double_double exact_sum(double a, double b) noexcept {
  const double sum = a + b;
  const double of_b = sum - a;
  return {sum, (a - (sum - of_b)) + (b - of_b)};
}

// The upper 26 bits of a, and the rest.
constexpr double_double halves(double a) noexcept {
  const double c = (0x1p27 + 1) * a;
  const double hi = c - (c - a);
  return {hi, a - hi};
}

// a * b exactly, for magnitudes below 2^996 whose product does not underflow.
constexpr double_double exact_product(double a, double b) noexcept {
  const double product = a * b;
  const double_double x = halves(a);
  const double_double y = halves(b);
  return {product, ((x.hi * y.hi - product) + x.hi * y.lo + x.lo * y.hi) + x.lo * y.lo};
}

// The same up to the largest numbers, at the price of a fused operation that not every processor has.
inline double_double fused_product(double a, double b) noexcept {
  const double product = a * b;
  return {product, std::fma(a, b, -product)};
}

constexpr double_double operator-(double_double a) noexcept { return {-a.hi, -a.lo}; }

constexpr double_double operator+(double_double a, double_double b) noexcept {
  const double_double high = exact_sum(a.hi, b.hi);
  const double_double low = exact_sum(a.lo, b.lo);
  const double_double sum = fast_sum(high.hi, high.lo + low.hi);
  return fast_sum(sum.hi, sum.lo + low.lo);
}

inline double_double operator*(double a, double_double b) noexcept {
  const double_double product = fused_product(a, b.hi);
  return fast_sum(product.hi, product.lo + a * b.lo);
}

inline double_double operator*(double_double a, double_double b) noexcept {
  const double_double product = fused_product(a.hi, b.hi);
  return fast_sum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

// a * b without fused operations, within the limits of exact_product.
constexpr double_double product(double_double a, double_double b) noexcept {
  const double_double top = exact_product(a.hi, b.hi);
  return fast_sum(top.hi, top.lo + (a.hi * b.lo + a.lo * b.hi));
}

// a without its lower 27 bits: the product of two such numbers is exact.
constexpr double upper_half(double a) noexcept {
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(a) & ~std::uint64_t(0x7ffffff));
}

// a^2 within 2^-79, a third of the price of the product.
constexpr double_double square(double a) noexcept {
  const double product = a * a;
  const double short_a = upper_half(a);
  return {product, (short_a * short_a - product) + (a - short_a) * (a + short_a)};
}

// a / b with an error near 2^-79, when 1 / b neither overflows nor is subnormal.
constexpr double_double quotient(double_double a, double b) noexcept {
  const double inverse = 1 / b;
  const double q = a.hi * inverse;
  const double short_q = upper_half(q);
  const double short_b = upper_half(b);
  const double left = ((a.hi - short_q * short_b) - short_q * (b - short_b)) - (q - short_q) * b;
  return {q, (left + a.lo) * inverse};
}

constexpr double_double quotient(double_double a, double_double b) noexcept {
  const double_double y = quotient(a, b.hi);
  return {y.hi, y.lo - y.hi * b.lo / b.hi};
}

}  // namespace sigpak
