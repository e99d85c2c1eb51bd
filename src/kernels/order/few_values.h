// SPDX-License-Identifier: MIT
// Numbers of few distinct values are in order once they are counted: each value is written as often as it
// was met.
#pragma once

#include "vectors/rows.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The values met so far, told apart by their bits, so that the zeros are two.
template <class T> class few_values {
 public:
  // False where there are more of them, or NaN.
  bool count_all(const T* x, index n) {
    constexpr int vectors = 8;
    constexpr index ahead = 24 * width;
    index i = to_whole_vectors(x, n);
    if (!count_some(x, i)) return false;
    for (; i + vectors * width <= n; i += vectors * width) {
      P row[vectors];
      unroll<vectors>([&](auto j) SIGPAK_LAMBDA {
        row[j] = load<P>(x + i + j * width);
        __builtin_prefetch(x + i + j * width + ahead);
      });
      if (!count(row, vectors * width)) return false;
    }
    for (; i < n; i += width) {
      if (!count_some(x + i, n - i < width ? n - i : width)) return false;
    }
    put_in_order();
    return true;
  }

  // In place of all numbers that were counted.
  void write(T* to) const {
    for (int k = 0; known_ > 1 && k < known_; ++k) to = fill(to, count_[order_[k]], value_[order_[k]]);
  }

  T of_rank(index rank) const {
    int k = 0;
    for (; rank >= count_[order_[k]]; ++k) rank -= count_[order_[k]];
    return value_[order_[k]];
  }

  T least() const {
    T found = value_[0];
    for (int k = 1; k < known_; ++k) found = value_[k] < found ? value_[k] : found;
    return found;
  }

 private:
  using P = widest<T>;
  static constexpr int width = P::width;
  static constexpr int most = 2 * lane_count;

  bool count_some(const T* x, index n) {
    const P row[1] = {load_first(x, n, splat<P>(static_cast<T>(__builtin_nan(""))))};
    return count(row, n);
  }

  // n numbers, of which those that are new are met first.
  template <int vectors> SIGPAK_INLINE bool count(const P (&row)[vectors], index n) {
    for (;;) {
      index here[most];
      index all = 0;
      for (int k = 0; k < known_; ++k) {
        const P value = splat<P>(value_[k]);
        here[k] = 0;
        unroll<vectors>([&](auto j)
                            SIGPAK_LAMBDA { here[k] += __builtin_popcount(lanes_alike(row[j], value)); });
        all += here[k];
      }
      if (all == n) {
        for (int k = 0; k < known_; ++k) count_[k] += here[k];
        return true;
      }
      for (int j = 0; j < vectors; ++j) {
        if (!meet(row[j], n - j * width)) return false;
      }
    }
  }

  bool meet(P a, index n) {
    unsigned others = n < width ? (1U << n) - 1 : (1U << width) - 1;
    for (int k = 0; k < known_; ++k) others &= ~lanes_alike(a, splat<P>(value_[k]));
    while (others != 0) {
      const T value = a.v[__builtin_ctz(others)];
      if (known_ == most || value != value) return false;
      value_[known_++] = value;
      others &= ~lanes_alike(a, splat<P>(value));
    }
    return true;
  }

  void put_in_order() {
    for (int k = 0; k < known_; ++k) {
      int at = k;
      for (; at > 0 && precedes(value_[k], value_[order_[at - 1]]); --at) order_[at] = order_[at - 1];
      order_[at] = k;
    }
  }

  // The negative zero before the other.
  static bool precedes(T a, T b) {
    return a < b || (a == b && __builtin_signbit(a) && !__builtin_signbit(b));
  }

  // No vector between the first and the last, which are written twice, is in two lines.
  static T* fill(T* to, index count, T value) {
    const P all = splat<P>(value);
    T* const end = to + count;
    if (count < width) {
      store_first(to, all, count);
      return end;
    }
    store(to, all);
    const bool far = come_from_memory(count * index{sizeof(T)});
    for (T* at = to + to_whole_vectors(to, count); end - at >= width; at += width) {
      if (far) fetch_ahead<width>(at);
      store(at, all);
    }
    store(end - width, all);
    return end;
  }

  int known_ = 0;
  T value_[most];
  int order_[most];
  index count_[most] = {};
};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
