// SPDX-License-Identifier: MIT
// Records for the benchmarks of the transforms.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <memory>
#include <random>
#include <type_traits>
#include <vector>

#include "core/record.h"
#include "sigpak.h"

namespace bench {

// A record on storage that starts 16 bytes behind a cache line, as malloc gives large blocks, with the
// samples that every batch starts from.
template <class T> class record {
 public:
  using V = std::conditional_t<sizeof(T) == sizeof(double), dsp_vec, dspf_vec>;

  explicit record(std::size_t n)
      : random_(2 * n),
        capacity_(std::has_single_bit(n) ? 2 * n + 4 : 8 * n),
        block_(std::aligned_alloc(line, capacity_ * sizeof(T) / line * line + 2 * line), std::free) {
    std::mt19937_64 engine(n);
    std::uniform_real_distribution<T> uniform(-1, 1);
    for (T& x : random_) x = uniform(engine);
    vector_.data = data();
    vector_.alloc = static_cast<int32_t>(capacity_);
    vector_.delta = 1;
  }
  T* data() const { return reinterpret_cast<T*>(static_cast<char*>(block_.get()) + 16); }
  V* shaped(std::size_t points, bool complex) {
    vector_.points = static_cast<uint32_t>(points);
    vector_.complex = complex ? 1 : 0;
    return &vector_;
  }
  void refill(T scale) const {
    for (std::size_t i = 0; i < random_.size(); ++i) data()[i] = random_[i] * scale;
  }

 private:
  static constexpr std::size_t line = 64;
  std::vector<T> random_;
  std::size_t capacity_;  // enough that the library never needs storage of its own
  std::unique_ptr<void, decltype(&std::free)> block_;
  V vector_{};
};

template <class T> constexpr bool is_double = sizeof(T) == sizeof(double);
template <class T, class D, class F> constexpr auto twin(D of_double, F of_float) {
  if constexpr (is_double<T>) {
    return of_double;
  } else {
    return of_float;
  }
}

inline std::vector<std::size_t> powers_of_two(int first, int last) {
  std::vector<std::size_t> out;
  for (int bits = first; bits <= last; ++bits) out.push_back(std::size_t{1} << bits);
  return out;
}

inline const std::vector<std::size_t> other_lengths = {1000, 4095, 4099, 10000, 10007, 65537, 100000};

}  // namespace bench
