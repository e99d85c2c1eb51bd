// SPDX-License-Identifier: MIT
// The median: the middle of the sorted points, found without sorting where the points are real.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>
#include <type_traits>

#include "core/guard.h"
#include "core/isa.h"
#include "core/scratch.h"
#include "kernels/order/order.h"
#include "shape/shape.h"
#include "stats/result.h"
#include "stats/stats.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

// The middle point and the one before it, of an odd number of points twice the middle.
template <class T> double mean_of_middle(T before, T middle, index points) noexcept {
  return points % 2 != 0 ? wide(middle) : (wide(before) + wide(middle)) * 0.5;
}

constexpr index first_of_middle(index points) noexcept { return (points - 1) / 2; }

// The value of this rank among numbers, which is zero, with its sign: the order puts -0 before 0.
template <class T> T zero_of_rank(const T* x, index count, index rank) noexcept {
  const index negative = count_negative(x, count);
  return rank < negative ? -T(0) : T(0);
}

// Where NaN reach the middle, it is one of them: they come last.
template <class T> double select_middle(T* x, index points) noexcept {
  const index numbers = put_numbers_first(x, points);
  const index rank = points / 2;
  if (numbers <= rank) return std::numeric_limits<double>::quiet_NaN();
  const index first = first_of_middle(points);
  sort_ranks(x, numbers, first, rank + 1);
  const T before = x[first] != 0 ? x[first] : zero_of_rank(x, numbers, first);
  const T middle = x[rank] != 0 ? x[rank] : zero_of_rank(x, numbers, rank);
  return mean_of_middle(before, middle, points);
}

// R. W. Floyd, R. L. Rivest, Expected time bounds for selection, Communications of the ACM 18 (1975): a
// sample of the size n^(2/3) brackets the middle, so that few of the points are left to select from.
// Partitions by vectors are so fast that this pays later.
template <class T> index worth_sampling() noexcept {
  return at_level<kernels::order_table<T>>() != nullptr ? 8192 : 512;
}
constexpr index block = 256;

// Room for the sample, then for the points within the bracket, of which there is more than wanted.
index room_for(index points) noexcept {
  const double root = std::cbrt(static_cast<double>(points));
  return static_cast<index>(4 * root * root) + 2 * block;
}

index sample_size(index points) noexcept {
  const double root = std::cbrt(static_cast<double>(points));
  return static_cast<index>(root * root);
}

template <class T> using bracket = kernels::bracket<T>;

// Points drawn by the multiplicative generator of D. H. Lehmer, modulo 2^31 - 1. The bracket is 3.1 standard
// deviations of the rank to either side: the middle lies outside once in 500 times. Nothing where NaN are
// met.
template <class T> std::optional<bracket<T>> bracket_middle(const T* x, index points, T* sample) noexcept {
  const double root = std::cbrt(static_cast<double>(points));
  const index taken = sample_size(points);
  const auto half = static_cast<index>(1.55 * root);
  std::uint64_t drawn = 1;
  index numbers = 0;
  for (index i = 0; i < taken; ++i) {
    drawn = drawn * 48271 % 2147483647;
    sample[i] = x[drawn * static_cast<std::uint64_t>(points) >> 31];
    numbers += sample[i] == sample[i] ? 1 : 0;
  }
  if (numbers < taken) return std::nullopt;
  const index low = taken / 2 - half;
  const index high = taken / 2 + half;
  sort_ranks(sample, taken, low, low + 1);
  const T least = sample[low];
  sort_ranks(sample + low, taken - low, high - low, high - low + 1);
  return bracket<T>{least, sample[high]};
}

// The points between, and NaN; less than none where the room ends.
template <class T>
kernels::collected collect(const T* x, index points, bracket<T> range, T* found, index room) noexcept {
  if (const auto wide = at_level(&kernels::order_table<T>::collect))
    return wide(x, points, range, found, room);
  kernels::collected all = {0, 0};
  for (index begin = 0; begin < points; begin += block) {
    if (all.count + block > room) return {-1, 0};
    for (index i = begin; i < std::min(begin + block, points); ++i) {
      found[all.count] = x[i];
      all.count += (!(x[i] <= range.low) & !(x[i] >= range.high)) ? 1 : 0;
      all.before += x[i] <= range.low ? 1 : 0;
    }
  }
  return all;
}

// All points: those of the bracket's lower end and less, those between, of which the wanted ranks are in
// their places, and the others.
template <class T> struct sifted {
  const T* x;
  index points;
  bracket<T> range;
  const T* between;
  kernels::collected counts;
};

template <class T> index count_below(const T* x, index points, T value) noexcept {
  return isa::run([=] {
    index count = 0;
    for (index i = 0; i < points; ++i) count += x[i] < value ? 1 : 0;
    return count;
  });
}
template <class T> index count_above(const T* x, index points, T value) noexcept {
  return isa::run([=] {
    index count = 0;
    for (index i = 0; i < points; ++i) count += x[i] > value ? 1 : 0;
    return count;
  });
}

// Nothing where the bracket missed it. The ends of the bracket may be points of many ranks.
template <class T> std::optional<T> value_of_rank(const sifted<T>& s, index rank) noexcept {
  T value;
  if (rank < s.counts.before) {
    value = s.range.low;
    if (rank < count_below(s.x, s.points, value)) return std::nullopt;
  } else if (rank < s.counts.before + s.counts.count) {
    value = s.between[rank - s.counts.before];
  } else {
    value = s.range.high;
    if (rank >= s.points - count_above(s.x, s.points, value)) return std::nullopt;
  }
  return value != 0 ? value : zero_of_rank(s.x, s.points, rank);
}

// Nothing where NaN are met, or too many values to count each.
template <class T> std::optional<double> middle_of_few_values(const T* x, index points) noexcept {
  const auto find = at_level(&kernels::order_table<T>::find_among_few_values);
  const kernels::ranks wanted = {first_of_middle(points), points / 2 + 1};
  T found[2];
  if (find == nullptr || !find(x, points, wanted, found)) return std::nullopt;
  return mean_of_middle(found[0], found[wanted.end - wanted.first - 1], points);
}

// Nothing where NaN are met, the room ends or the bracket missed one of the middle points.
template <class T> std::optional<double> middle_by_sample(const T* x, index points, T* room) noexcept {
  const auto range = bracket_middle(x, points, room);
  if (!range) return std::nullopt;
  const T drawn = room[sample_size(points) / 2];
  if (drawn == range->low || drawn == range->high) {
    if (const auto found = middle_of_few_values(x, points)) return found;
  }
  const kernels::collected counts = collect(x, points, *range, room, room_for(points));
  if (counts.count < 0 || put_numbers_first(room, counts.count) < counts.count) return std::nullopt;
  const index first = first_of_middle(points);
  const index rank = points / 2;
  const index wanted = std::max(first - counts.before, index{0});
  const index end = std::min(rank + 1 - counts.before, counts.count);
  if (wanted < end) sort_ranks(room, counts.count, wanted, end);
  const sifted<T> s = {x, points, *range, room, counts};
  const auto before = value_of_rank(s, first);
  const auto middle = value_of_rank(s, rank);
  if (!before || !middle) return std::nullopt;
  return mean_of_middle(*before, *middle, points);
}

template <record V> status median_of_real(const V* v, V* result) noexcept {
  using T = scalar<V>;
  const index points = length(v);
  if (points >= worth_sampling<T>()) {
    temporary<V> candidates;
    candidates.points = static_cast<std::uint32_t>(room_for(points));
    if (allocate<V>(&candidates) != ok) return failed;
    if (const auto found = middle_by_sample(v->data, points, candidates.data)) return store(result, *found);
  }
  if (points <= short_scratch<T>) {
    return with_short_scratch<T>([=](T* x) {
      std::copy_n(v->data, points, x);
      return store(result, select_middle(x, points));
    });
  }
  temporary<V> copied;
  if (copy<V>(&copied, v) != ok) return failed;
  return store(result, select_middle(copied.data, points));
}

template <record V> status median_of_complex(const V* v, V* result) noexcept {
  temporary<V> sorted;
  if (copy<V>(&sorted, v) != ok || sort<V>(&sorted) != ok) return failed;
  const index points = length(v);
  const scalar<V>* const middle = sorted.data + points / 2 * 2;
  const scalar<V>* const before = points % 2 != 0 ? middle : middle - 2;
  return store(result, mean_of_middle(before[0], middle[0], points),
               mean_of_middle(before[1], middle[1], points));
}

template <record V> status median(const V* v, V* result) noexcept {
  const bool complex = is_complex(v);
  if (length(v) == 0) return complex ? store(result, 0.0, 0.0) : store(result, 0.0);
  return complex ? median_of_complex(v, result) : median_of_real(v, result);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_median(const dsp_vec* v, dsp_vec* result) { return median(v, result); }
int32_t dspfs_median(const dspf_vec* v, dspf_vec* result) { return median(v, result); }
