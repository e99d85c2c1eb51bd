// Hyperbolic functions, in place.
#include <cmath>

#include "core/guard.h"
#include "elementwise/exponential_parts.h"
#include "elementwise/in_place.h"
#include "elementwise/precise.h"
#include "kernels/elementary/functions.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

// Up to here the Taylor series: the difference of two exponentials would lose digits.
constexpr double series_end = 0.3;

// Both for 0 <= x <= 700.
double_double sinh_parts(double x) noexcept {
  if (x < series_end) {
    const double s = x * x;
    double sum = 1.0 / 1307674368000;  // 1 / 15!, the last of the odd factorials
    sum = sum * s + 1.0 / 6227020800;
    sum = sum * s + 1.0 / 39916800;
    sum = sum * s + 1.0 / 362880;
    sum = sum * s + 1.0 / 5040;
    sum = sum * s + 1.0 / 120;
    sum = sum * s + 1.0 / 6;
    return {x, x * (s * sum)};
  }
  const exponential_pair e = half_exponentials(x);
  const double_double top = exact_sum(e.up.hi, -e.down.hi);
  return fast_sum(top.hi, top.lo + (e.up.lo - e.down.lo));
}

double_double cosh_parts(double x) noexcept {
  const exponential_pair e = half_exponentials(x);
  const double_double top = fast_sum(e.up.hi, e.down.hi);
  return fast_sum(top.hi, top.lo + (e.up.lo + e.down.lo));
}

// Fitted on [-0.55, 0.55], relative error 2^-62 (scripts/elementary-fits.sollya).
double tanh_polynomial(double x) noexcept {
  const double s = x * x;
  double sum = 0x1.a26629d65b57ap-18;
  sum = sum * s - 0x1.02e3c5157fc54p-15;
  sum = sum * s + 0x1.837c4c689c62fp-14;
  sum = sum * s - 0x1.f225fd26c6918p-13;
  sum = sum * s + 0x1.35259956edd89p-11;
  sum = sum * s - 0x1.7d9f579002c81p-10;
  sum = sum * s + 0x1.d6d3990e247d2p-9;
  sum = sum * s - 0x1.226e34631cd28p-7;
  sum = sum * s + 0x1.664f487d49cedp-6;
  sum = sum * s - 0x1.ba1ba1ba0a91ap-5;
  sum = sum * s + 0x1.111111111104bp-3;
  sum = sum * s - 0x1.5555555555555p-2;
  return x + x * (s * sum);
}

// For x >= 0 or NaN.
double tanh_above_zero(double x) noexcept {
  constexpr double saturated = 20;  // 1 - tanh 20 < 2^-56
  if (!(x > 0.55)) return tanh_polynomial(x);
  if (x > saturated) return 1;
  const double_double e = exponential(2 * x);  // tanh x = 1 - 2 / (e^2x + 1)
  const double_double top = fast_sum(e.hi, 1);
  const double_double sum = fast_sum(top.hi, top.lo + e.lo);
  const double rest = 2 / sum.hi;
  const double_double y = fast_sum(1, -rest);
  return y.hi + (y.lo + rest * (sum.lo / sum.hi));
}

template <class T> double guarded_sinh(double x) noexcept {
  if (x != x) return x;
  const double a = std::abs(x);
  const double y = a > wide_guard<T>::log_huge ? wide_guard<T>::huge : rounded(sinh_parts(a));
  return std::copysign(y, x);
}

template <class T> double guarded_cosh(double x) noexcept {
  if (x != x) return x;
  const double a = std::abs(x);
  return a > wide_guard<T>::log_huge ? wide_guard<T>::huge : rounded(cosh_parts(a));
}

template <class T> void hyperbolic_sine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::exponential_functions<T>>()) return wide->hyperbolic_sine(x, n);
  map_nearest(x, n, guarded_sinh<T>, precise_sinh);
}

template <class T> void hyperbolic_cosine(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::exponential_functions<T>>()) return wide->hyperbolic_cosine(x, n);
  map_nearest(x, n, guarded_cosh<T>, precise_cosh);
}

template <class T> void hyperbolic_tangent(T* x, index n) noexcept {
  if (const auto* wide = at_level<kernels::exponential_functions<T>>()) return wide->hyperbolic_tangent(x, n);
  map_nearest(
      x, n, [](double u) { return std::copysign(tanh_above_zero(std::abs(u)), u); }, precise_tanh);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_sinh(dsp_vec* v) { return apply(v, hyperbolic_sine<double>); }
int32_t dspfi_sinh(dspf_vec* v) { return apply(v, hyperbolic_sine<float>); }
int32_t dspi_cosh(dsp_vec* v) { return apply(v, hyperbolic_cosine<double>); }
int32_t dspfi_cosh(dspf_vec* v) { return apply(v, hyperbolic_cosine<float>); }
int32_t dspi_tanh(dsp_vec* v) { return apply(v, hyperbolic_tangent<double>); }
int32_t dspfi_tanh(dspf_vec* v) { return apply(v, hyperbolic_tangent<float>); }
