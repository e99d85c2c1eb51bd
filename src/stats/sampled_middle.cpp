// SPDX-License-Identifier: MIT
// R. W. Floyd, R. L. Rivest, Expected time bounds for selection, Communications of the ACM 18 (1975): a
// sample of the size n^(2/3) brackets the middle, so that few of the points are left to select from, of which
// again a sample is taken.
#include "stats/sampled_middle.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/isa.h"
#include "kernels/order/order.h"
#include "shape/shape.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> using order_table = kernels::order_table<T>;

constexpr index block = 256;

// Even.
index sample_size(index points) noexcept {
  const double root = std::cbrt(static_cast<double>(points));
  return static_cast<index>(root * root) & ~index{1};
}

// Places drawn by a linear congruential generator modulo 2^64, with the factor that D. E. Knuth gives for
// MMIX, from the upper half of its state.
class places {
 public:
  explicit places(std::uint64_t seed) noexcept : state_(seed) {}
  index below(index count) noexcept {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<index>((state_ >> 32) * static_cast<std::uint64_t>(count) >> 32);
  }

 private:
  std::uint64_t state_;
};

// Two sequences, because each waits for its products.
struct two_places {
  places even{1};
  places odd{2};
};

// Numbers, and those of two neighbouring ranks among them, or of one, that are wanted.
template <class T> struct search {
  const T* x;
  index points;
  index first;
  index rank;
};

// Of a sample: numbers around the one that is closest to the wanted rank.
template <class T> struct bracket {
  kernels::bracket<T> ends;
  bool repeats;  // one of the ends is that number itself
};

// 3.1 standard deviations of the rank to either side: it is missed once in 500 times. Nothing where NaN are
// met.
template <class T>
std::optional<bracket<T>> bracket_ranks(const search<T>& s, two_places& drawn, T* sample,
                                        index taken) noexcept {
  for (index i = 0; i < taken; i += 2) {
    sample[i] = s.x[drawn.even.below(s.points)];
    sample[i + 1] = s.x[drawn.odd.below(s.points)];
  }
  if (put_numbers_first(sample, taken) < taken) return std::nullopt;
  const auto half = static_cast<index>(1.55 * std::sqrt(static_cast<double>(taken)));
  const index place = taken * s.rank / s.points;
  const index low = std::max(place - half, index{0});
  const index high = std::min(place + half, taken - 1);
  sort_ranks(sample, taken, low, high + 1);
  const T closest = sample[place];
  return bracket<T>{{sample[low], sample[high]}, closest == sample[low] || closest == sample[high]};
}

// The points between, and NaN; less than none where the room ends.
template <class T>
kernels::collected collect(const search<T>& s, kernels::bracket<T> range, T* found, index room) noexcept {
  if (const auto wide = at_level(&order_table<T>::collect)) return wide(s.x, s.points, range, found, room);
  kernels::collected all = {0, 0};
  for (index begin = 0; begin < s.points; begin += block) {
    if (all.count + block > room) return {-1, 0};
    for (index i = begin; i < std::min(begin + block, s.points); ++i) {
      found[all.count] = s.x[i];
      all.count += (!(s.x[i] <= range.low) & !(s.x[i] >= range.high)) ? 1 : 0;
      all.before += s.x[i] <= range.low ? 1 : 0;
    }
  }
  return all;
}

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

// All points: those of the bracket's lower end and less, those between, of which the wanted ranks are in
// their places, and the others.
template <class T> struct sifted {
  const search<T>& wanted;
  kernels::bracket<T> range;
  const T* between;
  kernels::collected counts;
};

// Nothing where the bracket missed it. The ends of the bracket may be points of many ranks.
template <class T> std::optional<T> value_of_rank(const sifted<T>& s, index rank) noexcept {
  const auto [x, points, first, last] = s.wanted;
  if (rank < s.counts.before) {
    if (rank < count_below(x, points, s.range.low)) return std::nullopt;
    return s.range.low;
  }
  if (rank < s.counts.before + s.counts.count) return s.between[rank - s.counts.before];
  if (rank >= points - count_above(x, points, s.range.high)) return std::nullopt;
  return s.range.high;
}

// Where not all that is wanted lies between the ends of the bracket.
template <class T>
std::optional<middle_pair<T>> find_at_ends(const search<T>& s, kernels::bracket<T> range, T* between,
                                           kernels::collected counts) noexcept {
  const index first = std::max(s.first - counts.before, index{0});
  const index end = std::min(s.rank + 1 - counts.before, counts.count);
  if (first < end) sort_ranks(between, counts.count, first, end);
  const sifted<T> all = {s, range, between, counts};
  const auto before = value_of_rank(all, s.first);
  const auto middle = value_of_rank(all, s.rank);
  if (!before || !middle) return std::nullopt;
  return middle_pair<T>{*before, *middle};
}

// With the signs of zeros. Nothing where NaN are met, or too many values to count each.
template <class T> std::optional<middle_pair<T>> find_among_few_values(const search<T>& s) noexcept {
  const auto find = at_level(&order_table<T>::find_among_few_values);
  T found[2];
  if (find == nullptr || !find(s.x, s.points, {s.first, s.rank + 1}, found)) return std::nullopt;
  return middle_pair<T>{found[0], found[s.rank - s.first]};
}

// Among what is left; nothing where NaN are.
template <class T> std::optional<middle_pair<T>> find_in_rest(const search<T>& s, T* rest) noexcept {
  if (put_numbers_first(rest, s.points) < s.points) return std::nullopt;
  sort_ranks(rest, s.points, s.first, s.rank + 1);
  return middle_pair<T>{rest[s.first], rest[s.rank]};
}

}  // namespace

// Partitions by vectors are so fast that it pays later.
template <class T> index worth_sampling() noexcept {
  return at_level<order_table<T>>() != nullptr ? 2560 : 512;
}

// A bracket as above holds 3.1 n^(2/3) points, and the next one 3.1 (3.1 n^(2/3))^(2/3).
index room_for_samples(index points) noexcept { return 6 * sample_size(points) + 2 * block; }

template <class T>
std::optional<middle_pair<T>> find_middle_by_samples(const T* x, index points, T* room) noexcept {
  constexpr int most_missed = 3;
  search<T> s = {x, points, (points - 1) / 2, points / 2};
  index size = room_for_samples(points);
  two_places drawn;
  T* rest = nullptr;
  int missed = 0;
  while (s.points >= worth_sampling<T>()) {
    const index taken = sample_size(s.points);
    if (size < taken) break;
    const auto range = bracket_ranks(s, drawn, room, taken);
    if (!range) return std::nullopt;
    if (range->repeats) {
      if (const auto found = find_among_few_values(s)) return found;
    }
    const kernels::collected counts = collect(s, range->ends, room, size);
    if (counts.count < 0) return std::nullopt;
    if (s.first >= counts.before && s.rank < counts.before + counts.count) {
      s = {room, counts.count, s.first - counts.before, s.rank - counts.before};
      rest = room;
      room += counts.count;
      size -= counts.count;
      continue;
    }
    if (put_numbers_first(room, counts.count) < counts.count) return std::nullopt;
    if (const auto found = find_at_ends(s, range->ends, room, counts)) return signed_pair(*found, x, points);
    if (++missed == most_missed) return std::nullopt;
  }
  const auto found = find_in_rest(s, rest);
  return found ? std::optional(signed_pair(*found, x, points)) : std::nullopt;
}

template index worth_sampling<double>() noexcept;
template index worth_sampling<float>() noexcept;
template std::optional<middle_pair<double>> find_middle_by_samples(const double*, index, double*) noexcept;
template std::optional<middle_pair<float>> find_middle_by_samples(const float*, index, float*) noexcept;

}  // namespace sigpak
