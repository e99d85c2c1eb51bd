// SPDX-License-Identifier: MIT
// Sorting and selection of numbers at the wide levels. The zeros are equal, and no number is NaN where
// nothing else is said.
#pragma once

#include <cstdint>

namespace sigpak::kernels {

// From `first` to before `end`.
struct ranks {
  std::int64_t first;
  std::int64_t end;
};

// Two numbers that others are between.
template <class T> struct bracket {
  T low;
  T high;
};

struct collected {
  std::int64_t count;   // of the numbers between; -1 when there is no room for them
  std::int64_t before;  // them: `low` and what is less
};

// Of a short record: as it was where NaN are met; in order but for negative zeros; in order.
enum class short_order { refused, with_negative_zeros, done };

template <class T> struct order_table {
  // Sorts so many numbers or less, at least one.
  std::int64_t most_short;
  short_order (*sort_short)(T* x, std::int64_t n);

  // The number of this rank, and before it the one of the rank before, which is not there for the first.
  // False when a NaN is met. No more than half of most_short numbers are before the rank, nor from it on.
  bool (*find_rank)(const T* x, std::int64_t n, std::int64_t rank, T* found);

  // Puts the numbers of the wanted ranks in their places, those that are less before them and those that are
  // greater behind. After so many levels of partitions it goes on in a way that takes n log n at the worst.
  void (*sort)(T* x, std::int64_t n, ranks wanted, int levels);

  // The order of few values, -0 before 0; false, and nothing done, where NaN are met or more of them.
  bool (*sort_few_values)(T* x, std::int64_t n);

  // The numbers that have the wanted ranks in that order; false likewise.
  bool (*find_among_few_values)(const T* x, std::int64_t n, ranks wanted, T* found);

  // False when a NaN is met.
  bool (*is_ascending)(const T* x, std::int64_t n);

  // Moves NaN to the end; the count of the others.
  std::int64_t (*put_numbers_first)(T* x, std::int64_t n);

  // Copies the numbers between, and NaN, to where there is room for so many.
  collected (*collect)(const T* x, std::int64_t n, bracket<T> range, T* found, std::int64_t room);
};

}  // namespace sigpak::kernels
