// SPDX-License-Identifier: MIT
// Records for the benchmarks of the transforms.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <random>
#include <type_traits>
#include <vector>

#include "core/storage.h"
#include "sigpak.h"

namespace bench {

// A record on storage of the library, or so many bytes behind its start, as data are that others lend, with
// the samples that every batch starts from.
inline std::size_t lent_offset = 0;

template <class T> class record {
 public:
  using V = std::conditional_t<sizeof(T) == sizeof(double), dsp_vec, dspf_vec>;

  explicit record(std::size_t n) : random_(2 * n), capacity_(std::has_single_bit(n) ? 2 * n + 4 : 8 * n) {
    std::mt19937_64 engine(n);
    std::uniform_real_distribution<T> uniform(-1, 1);
    for (T& x : random_) x = uniform(engine);
    storage_.points = static_cast<uint32_t>(capacity_ + lent_offset / sizeof(T));
    if (sigpak::allocate<V>(&storage_) != 0) std::abort();
    vector_.data = data();
    vector_.alloc = static_cast<int32_t>(capacity_);
    vector_.delta = 1;
  }
  record(const record&) = delete;
  record& operator=(const record&) = delete;
  ~record() { sigpak::destroy<V>(&storage_); }
  T* data() const { return storage_.data + lent_offset / sizeof(T); }
  V* shaped(std::size_t points, bool complex) {
    vector_.points = static_cast<uint32_t>(points);
    vector_.complex = complex ? 1 : 0;
    return &vector_;
  }
  void refill(T scale) const {
    for (std::size_t i = 0; i < random_.size(); ++i) data()[i] = random_[i] * scale;
  }

 private:
  std::vector<T> random_;
  std::size_t capacity_;  // enough that the library never needs storage of its own
  V storage_{};
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
