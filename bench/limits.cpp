#include "limits.h"

#include <cmath>

#include "core/isa.h"

namespace bench {

using sigpak::isa::run;

namespace {
constexpr std::size_t line = 64;
}

template <class T> void copy_scale(T* x, std::ptrdiff_t n, T c) {
  run([=] {
    auto* const aligned = static_cast<T*>(__builtin_assume_aligned(x, line));
    for (std::ptrdiff_t i = 0; i < n; i += 64) {
      for (std::ptrdiff_t j = 0; j < 64; ++j) aligned[i + j] *= c;
    }
  });
}

template <class T> T read_all(const T* x, std::ptrdiff_t n) {
  return run([=] {
    const auto* const aligned = static_cast<const T*>(__builtin_assume_aligned(x, line));
    T sums[64] = {};
    for (std::ptrdiff_t i = 0; i < n; i += 64) {
      for (std::ptrdiff_t j = 0; j < 64; ++j) sums[j] += aligned[i + j];
    }
    T total = 0;
    for (const T s : sums) total += s;
    return total;
  });
}

template <class T> void divide_one(T* x, std::ptrdiff_t n) {
  run([=] {
    auto* const aligned = static_cast<T*>(__builtin_assume_aligned(x, line));
    for (std::ptrdiff_t i = 0; i < n; ++i) aligned[i] = 1 / aligned[i];
  });
}

template <class T> void root_one(T* x, std::ptrdiff_t n) {
  run([=] {
    auto* const aligned = static_cast<T*>(__builtin_assume_aligned(x, line));
    for (std::ptrdiff_t i = 0; i < n; ++i) aligned[i] = std::sqrt(aligned[i]);
  });
}

template void copy_scale(double*, std::ptrdiff_t, double);
template void copy_scale(float*, std::ptrdiff_t, float);
template double read_all(const double*, std::ptrdiff_t);
template float read_all(const float*, std::ptrdiff_t);
template void divide_one(double*, std::ptrdiff_t);
template void divide_one(float*, std::ptrdiff_t);
template void root_one(double*, std::ptrdiff_t);
template void root_one(float*, std::ptrdiff_t);

}  // namespace bench
