// SPDX-License-Identifier: MIT
// Radix sort of numbers, or of what has a key of their width.
#pragma once

#include <bit>
#include <cstdint>
#include <numeric>
#include <type_traits>
#include <utility>

#include "core/record.h"

namespace sigpak {

// Keys of the width of T, in digits.
template <class T> struct digits {
  using word = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;
  static constexpr int bits = 11;
  static constexpr int count = (8 * sizeof(T) + bits - 1) / bits;
  static constexpr std::size_t values = std::size_t{1} << bits;

  static std::size_t at(word key, int digit) noexcept { return (key >> (digit * bits)) & (values - 1); }
};

// A key that orders numbers as unsigned integers do: negative ones complemented, the sign of the others set,
// so that -0 comes before 0.
template <class T> auto key_of(T x) noexcept {
  using word = typename digits<T>::word;
  constexpr int sign = 8 * sizeof(T) - 1;
  const auto word_of = std::bit_cast<word>(x);
  return word_of ^ ((word(0) - (word_of >> sign)) | (word(1) << sign));
}

// One stable pass: `places` counts the values of the digit, and becomes where the next of each goes.
template <class T, class Item>
void distribute(const Item* from, Item* to, index n, int digit, std::uint32_t* places) noexcept {
  using d = digits<T>;
  std::exclusive_scan(places, places + d::values, places, std::uint32_t{0});
  for (index i = 0; i < n; ++i) to[places[d::at(key_of(from[i]), digit)]++] = from[i];
}

// Radix sort of items with keys of the width of T from the lowest digit up, in x and a scratch of the same
// size; where they end up. A digit that all share is passed over.
template <class T, class Item> Item* sort_by_digits(Item* x, Item* scratch, index n) noexcept {
  using d = digits<T>;
  std::uint32_t places[d::count][d::values] = {};
  for (index i = 0; i < n; ++i) {
    const auto key = key_of(x[i]);
    for (int digit = 0; digit < d::count; ++digit) ++places[digit][d::at(key, digit)];
  }
  Item* from = x;
  Item* to = scratch;
  for (int digit = 0; digit < d::count; ++digit) {
    if (places[digit][d::at(key_of(x[0]), digit)] == static_cast<std::uint32_t>(n)) continue;
    distribute<T>(from, to, n, digit, places[digit]);
    std::swap(from, to);
  }
  return from;
}

}  // namespace sigpak
