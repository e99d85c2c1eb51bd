#include "limits.h"

#include <cmath>

#include "core/isa.h"

namespace bench {

using sigpak::isa::run;

namespace {
constexpr std::size_t line = 64;
}

void copy_scale(double* x, std::ptrdiff_t n, double c) {
  run([=] {
    auto* const aligned = static_cast<double*>(__builtin_assume_aligned(x, line));
    for (std::ptrdiff_t i = 0; i < n; i += 64) {
      for (std::ptrdiff_t j = 0; j < 64; ++j) aligned[i + j] *= c;
    }
  });
}

double read_all(const double* x, std::ptrdiff_t n) {
  return run([=] {
    const auto* const aligned = static_cast<const double*>(__builtin_assume_aligned(x, line));
    double sums[64] = {};
    for (std::ptrdiff_t i = 0; i < n; i += 64) {
      for (std::ptrdiff_t j = 0; j < 64; ++j) sums[j] += aligned[i + j];
    }
    double total = 0;
    for (const double s : sums) total += s;
    return total;
  });
}

void divide_one(double* x, std::ptrdiff_t n) {
  run([=] {
    auto* const aligned = static_cast<double*>(__builtin_assume_aligned(x, line));
    for (std::ptrdiff_t i = 0; i < n; ++i) aligned[i] = 1 / aligned[i];
  });
}

void root_one(double* x, std::ptrdiff_t n) {
  run([=] {
    auto* const aligned = static_cast<double*>(__builtin_assume_aligned(x, line));
    for (std::ptrdiff_t i = 0; i < n; ++i) aligned[i] = std::sqrt(aligned[i]);
  });
}

}  // namespace bench
