// SPDX-License-Identifier: MIT
#include "limits.h"

#include <cmath>

#include "core/isa.h"

namespace bench {

using sigpak::isa::run;

namespace {

constexpr std::size_t line = 64;
constexpr std::ptrdiff_t block = 16;  // scalars, one cache line or two

// What comes from memory is worth calling for, so far ahead.
constexpr std::ptrdiff_t far_bytes = std::ptrdiff_t{8} << 20;
constexpr std::size_t ahead_bytes = 4096;

template <class T> T* at_line(T* x) { return static_cast<T*>(__builtin_assume_aligned(x, line)); }

constexpr int chains = 10;  // more than the adders have under way

int vector_bytes() {
  switch (sigpak::isa::current()) {
    case sigpak::isa::level::avx512:
      return 64;
    case sigpak::isa::level::avx2:
      return 32;
    default:
      return 16;
  }
}

template <class T, int bytes> T add_in_registers_of(long times) {
  typedef T wide __attribute__((vector_size(bytes)));
  return run([=] {
    wide sums[chains];
    for (int i = 0; i < chains; ++i) sums[i] = wide{} + T(i);
    for (long i = 0; i < times; ++i) {
#pragma GCC unroll chains
      for (wide& sum : sums) sum += T(1);
    }
    T total = 0;
    for (const wide& sum : sums) total += sum[0];
    return total;
  });
}

}  // namespace

template <class T> double registers_added(long times) {
  return static_cast<double>(times) * chains * vector_bytes() / sizeof(T);
}

template <class T> T add_in_registers(long times) {
  switch (vector_bytes()) {
    case 64:
      return add_in_registers_of<T, 64>(times);
    case 32:
      return add_in_registers_of<T, 32>(times);
    default:
      return add_in_registers_of<T, 16>(times);
  }
}

template <class T> void copy_scale(T* x, std::ptrdiff_t n, T c) {
  run([=] {
    T* const aligned = at_line(x);
    for (std::ptrdiff_t i = 0; i < n; i += 64) {
      for (std::ptrdiff_t j = 0; j < 64; ++j) aligned[i + j] *= c;
    }
  });
}

template <class T> void add_to(T* x, const T* y, std::ptrdiff_t n) {
  run([=] {
    T* __restrict const to = at_line(x);
    const T* __restrict const from = at_line(y);
    for (std::ptrdiff_t i = 0; i < n; ++i) to[i] += from[i];
  });
}

// By halves from the end, which do not overlap.
template <class T> void widen(T* x, std::ptrdiff_t n) {
  run([=] {
    for (std::ptrdiff_t left = n; left >= 2 * block; left /= 2) {
      const T* __restrict const from = at_line(x + left / 2);
      T* __restrict const to = at_line(x + left);
      for (std::ptrdiff_t i = 0; i < left / 2; i += block) {
        for (std::ptrdiff_t j = 0; j < block; ++j) {
          to[2 * i + j] = from[i + j];
          to[2 * i + block + j] = from[i + j];
        }
      }
    }
  });
}

template <class T> void narrow(T* x, std::ptrdiff_t n) {
  run([=] {
    T* const aligned = at_line(x);
    for (std::ptrdiff_t i = 0; i < n; i += block) {
#pragma GCC ivdep
      for (std::ptrdiff_t j = 0; j < block; ++j)
        aligned[i + j] = aligned[2 * i + j] + aligned[2 * i + block + j];
    }
  });
}

template <class T> void join(const T* x, const T* y, T* z, std::ptrdiff_t n) {
  run([=] {
    const T* __restrict const first = at_line(x);
    const T* __restrict const second = at_line(y);
    T* __restrict const to = at_line(z);
    for (std::ptrdiff_t i = 0; i < n; i += block) {
      for (std::ptrdiff_t j = 0; j < block; ++j) {
        to[2 * i + j] = first[i + j];
        to[2 * i + block + j] = second[i + j];
      }
    }
  });
}

template <class T> T read_all(const T* x, std::ptrdiff_t n) {
  return run([=] {
    const T* const aligned = at_line(x);
    T sums[64] = {};
    const bool far = n * static_cast<std::ptrdiff_t>(sizeof(T)) >= far_bytes;
    for (std::ptrdiff_t i = 0; i < n; i += 64) {
      for (std::size_t j = 0; far && j < 64 * sizeof(T); j += line) {
        __builtin_prefetch(reinterpret_cast<const char*>(aligned + i) + ahead_bytes + j);
      }
      for (std::ptrdiff_t j = 0; j < 64; ++j) sums[j] += aligned[i + j];
    }
    T total = 0;
    for (const T s : sums) total += s;
    return total;
  });
}

template <class T> void write_all(T* x, std::ptrdiff_t n, T c) {
  run([=] {
    T* const aligned = at_line(x);
    const bool far = n * static_cast<std::ptrdiff_t>(sizeof(T)) >= far_bytes;
    for (std::ptrdiff_t i = 0; i < n; i += 64) {
      for (std::size_t j = 0; far && j < 64 * sizeof(T); j += line) {
        __builtin_prefetch(reinterpret_cast<const char*>(aligned + i) + ahead_bytes + j);
      }
      for (std::ptrdiff_t j = 0; j < 64; ++j) aligned[i + j] = c;
    }
  });
}

template <class T> T add_in_turn(long times) {
  T sum = 0;
  for (long i = 0; i < times; ++i) {
    sum += 1;
    asm volatile("" : "+x"(sum));
  }
  return sum;
}

template <class T> void divide_one(T* x, std::ptrdiff_t n) {
  run([=] {
    T* const aligned = at_line(x);
    for (std::ptrdiff_t i = 0; i < n; ++i) aligned[i] = 1 / aligned[i];
  });
}

template <class T> void root_one(const T* x, T* y, std::ptrdiff_t n) {
  run([=] {
    const T* __restrict const from = at_line(x);
    T* __restrict const to = at_line(y);
    for (std::ptrdiff_t i = 0; i < n; ++i) to[i] = std::sqrt(from[i]);
  });
}

template double registers_added<double>(long);
template double registers_added<float>(long);
template double add_in_registers<double>(long);
template float add_in_registers<float>(long);
template void copy_scale(double*, std::ptrdiff_t, double);
template void copy_scale(float*, std::ptrdiff_t, float);
template void add_to(double*, const double*, std::ptrdiff_t);
template void widen(double*, std::ptrdiff_t);
template void narrow(double*, std::ptrdiff_t);
template void join(const double*, const double*, double*, std::ptrdiff_t);
template void add_to(float*, const float*, std::ptrdiff_t);
template void widen(float*, std::ptrdiff_t);
template void narrow(float*, std::ptrdiff_t);
template void join(const float*, const float*, float*, std::ptrdiff_t);
template double read_all(const double*, std::ptrdiff_t);
template float read_all(const float*, std::ptrdiff_t);
template void write_all(double*, std::ptrdiff_t, double);
template void write_all(float*, std::ptrdiff_t, float);
template double add_in_turn(long);
template float add_in_turn(long);
template void divide_one(double*, std::ptrdiff_t);
template void divide_one(float*, std::ptrdiff_t);
template void root_one(const double*, double*, std::ptrdiff_t);
template void root_one(const float*, float*, std::ptrdiff_t);

}  // namespace bench
