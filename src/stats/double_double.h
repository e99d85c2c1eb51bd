// Numbers of 106 bits as sums of two doubles: T. J. Dekker, A floating-point technique for extending the
// available precision, Numerische Mathematik 18 (1971).
#pragma once

#include <cmath>

namespace sigpak {

// hi is the nearest double of the number, lo the rest.
struct double_double {
  double hi = 0;
  double lo = 0;
};

// The rounding error of these operations, with some to spare, relative to the size of their operands.
inline constexpr double double_double_rounding = 0x1p-100;

// a + b where |a| >= |b|.
constexpr double_double joined(double a, double b) noexcept {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

constexpr double_double exact_sum(double a, double b) noexcept {
  const double sum = a + b;
  const double of_b = sum - a;
  return {sum, (a - (sum - of_b)) + (b - of_b)};
}

inline double_double exact_product(double a, double b) noexcept {
  const double product = a * b;
  return {product, std::fma(a, b, -product)};
}

constexpr double_double operator-(double_double a) noexcept { return {-a.hi, -a.lo}; }

constexpr double_double operator+(double_double a, double_double b) noexcept {
  const double_double high = exact_sum(a.hi, b.hi);
  const double_double low = exact_sum(a.lo, b.lo);
  const double_double sum = joined(high.hi, high.lo + low.hi);
  return joined(sum.hi, sum.lo + low.lo);
}

inline double_double operator*(double a, double_double b) noexcept {
  const double_double product = exact_product(a, b.hi);
  return joined(product.hi, product.lo + a * b.lo);
}

inline double_double operator*(double_double a, double_double b) noexcept {
  const double_double product = exact_product(a.hi, b.hi);
  return joined(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

}  // namespace sigpak
