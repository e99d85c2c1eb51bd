// SPDX-License-Identifier: MIT
#include "native.h"

namespace bench {

double multiply_add(std::ptrdiff_t turns) {
  constexpr std::ptrdiff_t chains = 12;
  constexpr std::ptrdiff_t width = 8;
  using wide [[gnu::vector_size(width * sizeof(double))]] = double;
  wide sums[chains];
  for (std::ptrdiff_t i = 0; i < chains; ++i) sums[i] = wide{} + static_cast<double>(i);
  const volatile double unknown[2] = {0.5, 1};
  const double factor = unknown[0];
  const double term = unknown[1];
  for (std::ptrdiff_t i = 0; i < turns; ++i) {
#pragma GCC unroll 12
    for (wide& s : sums) s = s * factor + term;
  }
  double total = 0;
  for (const wide& s : sums) total += s[0];
  [[maybe_unused]] volatile double sink = total;
  return static_cast<double>(turns * chains * width);
}

void filter_loop(const double* taps, std::ptrdiff_t count, const double* x, double* y,
                 std::ptrdiff_t points) {
  for (std::ptrdiff_t n = 0; n < points; ++n) {
    const std::ptrdiff_t used = n < count ? n + 1 : count;
    double sum = 0;
    for (std::ptrdiff_t k = 0; k < used; ++k) sum += taps[k] * x[n - k];
    y[n] = sum;
  }
}

}  // namespace bench
