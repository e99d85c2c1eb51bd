// SPDX-License-Identifier: MIT
// The functions in 106 bits. One argument in some millions comes here, so they are short rather than fast.
// Source of the rounding to odd: S. Boldo, G. Melquiond, IEEE Transactions on Computers 57 (2008).
#include "kernels/elementary/precise.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include "core/double_double.h"

namespace sigpak::kernels {
namespace {

constexpr double_double one = {1, 0};
constexpr double_double ln2 = {0x1.62e42fefa39efp-1, 0x1.abc9e3b39803fp-56};
constexpr double_double ln10 = {0x1.26bb1bbb55516p+1, -0x1.f48ad494ea3e9p-53};

constexpr double_double ratio(double_double a, double_double b) noexcept {
  const double q = a.hi / b.hi;
  const double_double left = a + -product({q, 0}, b);
  return fast_sum(q, left.hi / b.hi);
}

constexpr double_double times_power_of_two(double_double a, double power) noexcept {
  return {a.hi * power, a.lo * power};
}

// a is exact in its leading double where the rest is not above the error: a sum on a boundary stays there.
double to_odd(double_double a) noexcept {
  constexpr double error = 0x1p-90;
  const auto bits = std::bit_cast<std::uint64_t>(a.hi);
  if ((bits & 1) != 0 || !(std::abs(a.lo) > error * std::abs(a.hi))) return a.hi;
  return std::bit_cast<double>(std::signbit(a.lo) == std::signbit(a.hi) ? bits + 1 : bits - 1);
}

// e^x for |x| < 700: 2^n e^r, |r| <= ln 2 / 2, by the Taylor series, whose next term is below 2^-110.
double_double exponential(double_double x) noexcept {
  constexpr int terms = 24;
  const double n = std::rint(x.hi / ln2.hi);
  const double_double r = x + -product({n, 0}, ln2);
  double_double sum = one;
  for (int k = terms; k > 0; --k) sum = one + ratio(product(r, sum), {static_cast<double>(k), 0});
  return times_power_of_two(sum, std::ldexp(1.0, static_cast<int>(n)));
}

// One step of Newton from the logarithm of the C library.
double_double logarithm(double x) noexcept {
  const double y = std::log(x);
  const double_double excess = product({x, 0}, exponential({-y, 0})) + -one;  // ln x = y + ln(1 + excess)
  return double_double{y, 0} + (excess + double_double{-0.5 * excess.hi * excess.hi, 0});
}

// sum (-z)^k / ((from + 1) ... (from + 2 k)), z = y^2 and |y| <= pi: cos y from 0, sin(y) / y from 1.
double_double alternating_series(double_double z, int from) noexcept {
  constexpr int terms = 23;
  double_double sum = one;
  for (int k = from + 2 * terms; k > from; k -= 2)
    sum = one + -ratio(product(z, sum), {static_cast<double>(k * (k - 1)), 0});
  return sum;
}

// The angle of (x, y), nearly `angle`: the sine of what is missing is the cross product of the directions.
double_double refined_angle(double angle, double_double x, double_double y) noexcept {
  const double_double z = exact_product(angle, angle);
  const double_double cosine = alternating_series(z, 0);
  const double_double sine = product({angle, 0}, alternating_series(z, 1));
  const double_double cross = product(y, cosine) + -product(x, sine);
  const double_double along = product(x, cosine) + product(y, sine);
  return double_double{angle, 0} + ratio(cross, along);
}

// sqrt(1 - x^2)
double_double other_leg(double x) noexcept {
  const double_double square = one + -exact_product(x, x);
  const double root = std::sqrt(square.hi);
  const double_double left = square + -exact_product(root, root);
  return fast_sum(root, left.hi / (2 * root));
}

}  // namespace

double precise_exp(double x) noexcept { return to_odd(exponential({x, 0})); }
double precise_exp10(double x) noexcept { return to_odd(exponential(product({x, 0}, ln10))); }

double precise_log(double x) noexcept { return to_odd(logarithm(x)); }
double precise_scaled_log(double x, double scale, double scale_rest) noexcept {
  return to_odd(product(logarithm(x), {scale, scale_rest}));
}

double precise_atan(double x) noexcept { return to_odd(refined_angle(std::atan(x), one, {x, 0})); }
double precise_asin(double x) noexcept { return to_odd(refined_angle(std::asin(x), other_leg(x), {x, 0})); }
double precise_acos(double x) noexcept { return to_odd(refined_angle(std::acos(x), {x, 0}, other_leg(x))); }

double precise_sinh(double x) noexcept {
  const double_double e = exponential({x, 0});
  return to_odd(times_power_of_two(e + -ratio(one, e), 0.5));
}
double precise_cosh(double x) noexcept {
  const double_double e = exponential({x, 0});
  return to_odd(times_power_of_two(e + ratio(one, e), 0.5));
}
double precise_tanh(double x) noexcept {
  const double_double square = exponential({2 * x, 0});
  return to_odd(ratio(square + -one, square + one));
}

}  // namespace sigpak::kernels
