// SPDX-License-Identifier: MIT
// The median: the middle of the sorted points, found without sorting where the points are real.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

#include "core/guard.h"
#include "core/scratch.h"
#include "kernels/order/order.h"
#include "shape/shape.h"
#include "stats/result.h"
#include "stats/sampled_middle.h"
#include "stats/stats.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

// The middle point and the one before it, of an odd number of points twice the middle.
template <class T> double mean_of_middle(T before, T middle, index points) noexcept {
  return points % 2 != 0 ? wide(middle) : (wide(before) + wide(middle)) * 0.5;
}

constexpr index first_of_middle(index points) noexcept { return (points - 1) / 2; }

// Where NaN reach the middle, it is one of them: they come last.
template <class T> double select_middle(T* x, index points) noexcept {
  const index numbers = put_numbers_first(x, points);
  const index rank = points / 2;
  if (numbers <= rank) return std::numeric_limits<double>::quiet_NaN();
  const index first = first_of_middle(points);
  sort_ranks(x, numbers, first, rank + 1);
  const T before = signed_of_rank(x[first], x, numbers, first);
  return mean_of_middle(before, signed_of_rank(x[rank], x, numbers, rank), points);
}

// Nothing where NaN are met, or more points than registers hold.
template <class T> std::optional<double> middle_of_short(const T* x, index points) noexcept {
  const auto* const wide = at_level<kernels::order_table<T>>();
  T found[2];
  if (wide == nullptr || points > wide->most_short || !wide->find_rank(x, points, points / 2, found)) {
    return std::nullopt;
  }
  const auto [before, middle] = signed_pair(middle_pair<T>{found[0], found[1]}, x, points);
  return mean_of_middle(before, middle, points);
}

template <class T> std::optional<double> middle_by_samples(const T* x, index points, T* room) noexcept {
  const auto found = find_middle_by_samples(x, points, room);
  if (!found) return std::nullopt;
  return mean_of_middle(found->before, found->middle, points);
}

// In a copy of the points.
template <record V> status median_by_selection(const V* v, V* result) noexcept {
  using T = scalar<V>;
  const index points = length(v);
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

template <record V> status median_by_samples(const V* v, V* result) noexcept {
  using T = scalar<V>;
  const index points = length(v);
  std::optional<double> found;
  const index size = room_for_samples(points);
  if (size <= short_scratch<T>) {
    with_short_scratch<T>([&](T* room) {
      found = middle_by_samples(v->data, points, room);
      return ok;
    });
  } else {
    temporary<V> room;
    room.points = static_cast<std::uint32_t>(size);
    if (allocate<V>(&room) != ok) return failed;
    found = middle_by_samples(v->data, points, room.data);
  }
  return found ? store(result, *found) : median_by_selection(v, result);
}

template <record V> status median_of_real(const V* v, V* result) noexcept {
  const index points = length(v);
  if (const auto found = middle_of_short(v->data, points)) return store(result, *found);
  return points >= worth_sampling<scalar<V>>() ? median_by_samples(v, result)
                                               : median_by_selection(v, result);
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
