// SPDX-License-Identifier: MIT
// The median: the middle of the sorted points, found without sorting where the points are real.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "core/guard.h"
#include "shape/shape.h"
#include "stats/result.h"
#include "stats/stats.h"

namespace sigpak {
namespace {

// The middle point and the one before it, of an odd number of points twice the middle.
template <class T> double mean_of_middle(T before, T middle, index points) noexcept {
  return points % 2 != 0 ? wide(middle) : (wide(before) + wide(middle)) * 0.5;
}

// Numbers of which `below` smaller ones have been left out.
template <class T> struct selection {
  T* x;
  index count;
  index below;
};

// The value of this rank, which is zero, with its sign: the order puts -0 before 0.
template <class T> T zero_of_rank(const selection<T>& s, index rank) noexcept {
  const auto before_zero =
      std::count_if(s.x, s.x + s.count, [](T a) { return a < 0 || (a == 0 && std::signbit(a)); });
  return rank < before_zero ? -T(0) : T(0);
}

// The middle of `points` by the ranks of what was selected; both middle points are among it, and no NaN.
template <class T> double middle_of(const selection<T>& s, index points) noexcept {
  const index rank = points / 2 - s.below;
  std::nth_element(s.x, s.x + rank, s.x + s.count);
  T middle = s.x[rank];
  T before = points % 2 != 0 ? middle : *std::max_element(s.x, s.x + rank);
  if (before == 0) before = zero_of_rank(s, rank - 1);
  if (middle == 0) middle = zero_of_rank(s, rank);
  return mean_of_middle(before, middle, points);
}

// Where NaN reach the middle, it is one of them: they come last.
template <class T> double select_middle(T* x, index points) noexcept {
  const index numbers = put_numbers_first(x, points);
  if (numbers <= points / 2) return std::numeric_limits<double>::quiet_NaN();
  return middle_of(selection<T>{x, numbers, 0}, points);
}

// R. W. Floyd, R. L. Rivest, Expected time bounds for selection, Communications of the ACM 18 (1975): a
// sample of the size n^(2/3) brackets the middle, so that few of the points are left to select from.
constexpr index worth_sampling = 512;
constexpr index block = 256;

// Room for the sample, then for the points within the bracket, of which there is a block more than wanted.
constexpr index room_for(index points) noexcept { return points / 4 + 2 * block; }

template <class T> struct range {
  T low;
  T high;
};

// Points drawn by the multiplicative generator of D. H. Lehmer, modulo 2^31 - 1. The bracket is 3.1 standard
// deviations of the rank to either side: the middle lies outside once in 500 times.
template <class T> range<T> bracket_middle(const T* x, index points, T* sample) noexcept {
  const double root = std::cbrt(static_cast<double>(points));
  const auto taken = static_cast<index>(root * root);
  const auto bracket = static_cast<index>(1.55 * root);
  std::uint64_t drawn = 1;
  index numbers = 0;
  for (index i = 0; i < taken; ++i) {
    drawn = drawn * 48271 % 2147483647;
    sample[i] = x[static_cast<index>(drawn) % points];
    numbers += sample[i] == sample[i] ? 1 : 0;
  }
  if (numbers < taken) return {T(1), T(0)};
  T* const low = sample + taken / 2 - bracket;
  T* const high = sample + taken / 2 + bracket;
  std::nth_element(sample, low, sample + taken);
  std::nth_element(low + 1, high, sample + taken);
  return {*low, *high};
}

// The points within the bracket; nothing where NaN are met or the room ends.
template <class T>
std::optional<selection<T>> select_within(const T* x, index points, range<T> r, T* found) noexcept {
  index count = 0;
  index below = 0;
  index numbers = 0;
  for (index begin = 0; begin < points; begin += block) {
    if (count + block > room_for(points)) return std::nullopt;
    for (index i = begin; i < std::min(begin + block, points); ++i) {
      found[count] = x[i];
      count += ((x[i] >= r.low) & (x[i] <= r.high)) ? 1 : 0;
      below += x[i] < r.low ? 1 : 0;
      numbers += x[i] == x[i] ? 1 : 0;
    }
  }
  if (numbers < points) return std::nullopt;
  return selection<T>{found, count, below};
}

// Nothing where the bracket missed one of the middle points.
template <class T> std::optional<double> middle_by_sample(const T* x, index points, T* room) noexcept {
  const auto s = select_within(x, points, bracket_middle(x, points, room), room);
  const index first = points / 2 - (points % 2 == 0 ? 1 : 0);
  if (!s || first < s->below || points / 2 >= s->below + s->count) return std::nullopt;
  return middle_of(*s, points);
}

template <record V> status median_of_real(const V* v, V* result) noexcept {
  const index points = length(v);
  if (points >= worth_sampling) {
    temporary<V> candidates;
    candidates.points = static_cast<std::uint32_t>(room_for(points));
    if (allocate<V>(&candidates) != ok) return failed;
    if (const auto found = middle_by_sample(v->data, points, candidates.data)) return store(result, *found);
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
