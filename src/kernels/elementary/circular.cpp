// SPDX-License-Identifier: MIT
#include "kernels/elementary/circular.h"

#include <bit>
#include <cmath>
#include <cstdint>

#include "kernels/elementary/sine_parts.h"

namespace sigpak::kernels {
namespace {

// hi + lo as a double of 53 bits of which the last is set whenever it is not exact: rounded once more to
// fewer bits, it gives what the sum itself would. Source: S. Boldo, G. Melquiond, Emulation of FMA and
// correctly rounded sums: proved algorithms using rounding to odd, IEEE Transactions on Computers 57 (2008).
double rounded_to_odd(double_double x) noexcept {
  const double_double y = fast_sum(x.hi, x.lo);
  const auto bits = std::bit_cast<std::uint64_t>(y.hi);
  if (!(y.lo < 0 || y.lo > 0) || (bits & 1) != 0) return y.hi;
  return std::bit_cast<double>((y.lo < 0) == (y.hi < 0) ? bits + 1 : bits - 1);
}

template <class T> double rounded_for(double_double x) noexcept {
  if constexpr (sizeof(T) < sizeof(double)) {
    return rounded_to_odd(x);
  } else {
    return rounded(x);
  }
}

}  // namespace

template <class T> double careful_sine(double x) noexcept { return rounded_for<T>(sine_parts(x)); }

template <class T> double careful_cosine(double x) noexcept {
  return rounded_for<T>(sine_and_cosine(x).cosine);
}

template <class T> double careful_tangent(double x) noexcept {
  const sine_cosine y = sine_and_cosine(x);
  return x == 0 ? x : rounded_for<T>(quotient(y.sine, y.cosine));
}

template <class T> double careful_sine_quotient(double x) noexcept {
  if (std::abs(x) < 0x1p-27) return 1;                       // to which it rounds
  const double drop = std::abs(x) > 0x1p900 ? 0x1p-100 : 1;  // lest the rest of the quotient be subnormal
  return rounded_for<T>(quotient(sine_parts(x), x * drop)) * drop;
}

both_sines careful_sine_and_cosine(double x) noexcept {
  const sine_cosine y = sine_and_cosine(x);
  return {y.sine.hi, y.sine.lo, y.cosine.hi, y.cosine.lo};
}

template double careful_sine<double>(double) noexcept;
template double careful_sine<float>(double) noexcept;
template double careful_cosine<double>(double) noexcept;
template double careful_cosine<float>(double) noexcept;
template double careful_tangent<double>(double) noexcept;
template double careful_tangent<float>(double) noexcept;
template double careful_sine_quotient<double>(double) noexcept;
template double careful_sine_quotient<float>(double) noexcept;

}  // namespace sigpak::kernels
