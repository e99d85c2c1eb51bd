// SPDX-License-Identifier: MIT
// Fourier transforms in long double, the measure of all the others.
#pragma once

#include <bit>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <vector>

namespace sigpak::test {

using exact = std::complex<long double>;
using exact_signal = std::vector<exact>;

// exp(sign 2 pi i k / n).
inline exact exact_root(std::size_t k, std::size_t n, int sign) {
  const long double angle =
      2 * std::numbers::pi_v<long double> * static_cast<long double>(k % n) / static_cast<long double>(n);
  return {std::cos(angle), static_cast<long double>(sign) * std::sin(angle)};
}

inline exact times(exact a, exact b) {
  return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

// The defining sum, unscaled.
inline exact_signal direct_transform(const exact_signal& x, int sign) {
  const std::size_t n = x.size();
  exact_signal out(n);
  for (std::size_t k = 0; k < n; ++k) {
    for (std::size_t i = 0; i < n; ++i) out[k] += times(x[i], exact_root(i * k, n, sign));
  }
  return out;
}

namespace detail {

inline void radix_two(const exact* x, exact* out, std::size_t n, std::size_t stride,
                      const exact_signal& roots) {
  if (n == 1) {
    out[0] = x[0];
    return;
  }
  radix_two(x, out, n / 2, 2 * stride, roots);
  radix_two(x + stride, out + n / 2, n / 2, 2 * stride, roots);
  for (std::size_t k = 0; k < n / 2; ++k) {
    const exact odd = times(out[k + n / 2], roots[k * stride]);
    out[k + n / 2] = out[k] - odd;
    out[k] += odd;
  }
}

inline exact_signal power_of_two_transform(const exact_signal& x, int sign) {
  const std::size_t n = x.size();
  exact_signal roots(n / 2 + 1);
  for (std::size_t k = 0; k < n / 2; ++k) roots[k] = exact_root(k, n, sign);
  exact_signal out(n);
  radix_two(x.data(), out.data(), n, 1, roots);
  return out;
}

// A convolution with the chirp exp(sign i pi k^2 / n), long enough that nothing wraps around.
inline exact_signal chirp_transform(const exact_signal& x, int sign) {
  const std::size_t n = x.size();
  const std::size_t m = std::bit_ceil(2 * n);
  exact_signal filter(m);
  exact_signal data(m);
  for (std::size_t k = 0; k < n; ++k) {
    const exact chirp = exact_root(k * k % (2 * n), 2 * n, sign);
    data[k] = times(x[k], chirp);
    filter[k] = std::conj(chirp);
    if (k > 0) filter[m - k] = filter[k];
  }
  data = power_of_two_transform(data, -1);
  filter = power_of_two_transform(filter, -1);
  for (std::size_t k = 0; k < m; ++k) data[k] = times(data[k], filter[k]);
  data = power_of_two_transform(data, 1);
  exact_signal out(n);
  for (std::size_t k = 0; k < n; ++k) {
    out[k] = times(data[k], exact_root(k * k % (2 * n), 2 * n, sign)) / static_cast<long double>(m);
  }
  return out;
}

}  // namespace detail

// The transform as the library defines it: forward with exponent - and 1/n, inverse with + and unscaled.
inline exact_signal exact_transform(const exact_signal& x, bool inverse) {
  const std::size_t n = x.size();
  const int sign = inverse ? 1 : -1;
  exact_signal out =
      std::has_single_bit(n) ? detail::power_of_two_transform(x, sign) : detail::chirp_transform(x, sign);
  if (!inverse) {
    for (auto& z : out) z /= static_cast<long double>(n);
  }
  return out;
}

}  // namespace sigpak::test
