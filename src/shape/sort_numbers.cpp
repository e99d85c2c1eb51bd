// SPDX-License-Identifier: MIT
// Ascending order of numbers: by vectors at the wide levels, by digits or comparison at the baseline. All of
// these take the zeros as equal and no NaN; what the order says of those is done apart.
#include <algorithm>
#include <bit>
#include <cmath>

#include "core/isa.h"
#include "core/memory.h"
#include "kernels/order/order.h"
#include "shape/digits.h"
#include "shape/shape.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> using order_table = kernels::order_table<T>;

// False, and nothing done, without memory.
template <class T> bool sort_numbers_by_digits(T* x, index n) noexcept {
  T* const scratch = allocate_table<T>(n);
  if (scratch == nullptr) return false;
  const T* const sorted = sort_by_digits<T>(x, scratch, n);
  if (sorted != x) std::copy_n(sorted, n, x);
  free_table(scratch);
  return true;
}

template <class T> void sort_all(T* x, index n) noexcept {
  constexpr index worth_counting = 300;
  if (n < worth_counting || !sort_numbers_by_digits(x, n)) std::sort(x, x + n);
}

// Partitions in two like parts are as many levels as n has digits; twice as many are hardly ever met.
int most_levels(index n) noexcept {
  return 2 * static_cast<int>(std::bit_width(static_cast<std::uint64_t>(n)));
}

}  // namespace

template <class T> index count_negative(const T* x, index n) noexcept {
  using word = std::conditional_t<sizeof(T) == 8, std::int64_t, std::int32_t>;
  return isa::run(n, [=] {
    index negative = 0;
    for (index i = 0; i < n; ++i) negative += std::bit_cast<word>(x[i]) < 0 ? 1 : 0;
    return negative;
  });
}

namespace {

// Negative zeros before the others, in numbers that are in order but for that.
template <class T> void sort_zeros(T* x, index n) noexcept {
  T* const zeros = std::lower_bound(x, x + n, T(0));
  if (zeros == x + n || *zeros != 0) return;
  const index count = std::upper_bound(zeros, x + n, T(0)) - zeros;
  const index negative = count_negative(zeros, count);
  std::fill_n(zeros, negative, -T(0));
  if (negative != 0) std::fill_n(zeros + negative, count - negative, T(0));
}

// False, and nothing done, where the numbers are many, none or NaN.
template <class T> bool sort_short_numbers(const order_table<T>& wide, T* x, index n) noexcept {
  if (n > wide.most_short || n == 0) return false;
  const kernels::short_order found = wide.sort_short(x, n);
  if (found == kernels::short_order::with_negative_zeros) sort_zeros(x, n);
  return found != kernels::short_order::refused;
}

}  // namespace

template <class T> index put_numbers_first(T* x, index n) noexcept {
  if (const auto* const wide = at_level<order_table<T>>()) return wide->put_numbers_first(x, n);
  bool all = true;
  for (index i = 0; i < n; ++i) all &= x[i] == x[i];
  return all ? n : std::partition(x, x + n, [](T a) { return a == a; }) - x;
}

template <class T> void sort_ranks(T* x, index n, index first, index end) noexcept {
  if (const auto* const wide = at_level<order_table<T>>()) {
    return wide->sort(x, n, {first, end}, most_levels(n));
  }
  if (end - first == n) return sort_all(x, n);
  std::nth_element(x, x + first, x + n);
  std::partial_sort(x + first + 1, x + end, x + n);
}

template <class T> void sort_numbers(T* x, index n) noexcept {
  constexpr index worth_counting = 2048;
  const auto* const wide = at_level<order_table<T>>();
  if (wide != nullptr && sort_short_numbers(*wide, x, n)) return;
  index numbers = n;
  if (wide == nullptr || !wide->is_ascending(x, n)) {
    if (wide != nullptr && n >= worth_counting && wide->sort_few_values(x, n)) return;
    numbers = put_numbers_first(x, n);
    sort_ranks(x, numbers, 0, numbers);
  }
  sort_zeros(x, numbers);
}

template index count_negative(const double*, index) noexcept;
template index count_negative(const float*, index) noexcept;
template index put_numbers_first(double*, index) noexcept;
template index put_numbers_first(float*, index) noexcept;
template void sort_ranks(double*, index, index, index) noexcept;
template void sort_ranks(float*, index, index, index) noexcept;
template void sort_numbers(double*, index) noexcept;
template void sort_numbers(float*, index) noexcept;

}  // namespace sigpak
