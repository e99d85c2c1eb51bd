// SPDX-License-Identifier: MIT
// The extreme of many scores, and where it stands.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/blocks.h"
#include "core/guard.h"
#include "core/isa.h"
#include "core/machine.h"

namespace sigpak {

inline constexpr index nowhere = -1;

enum class extreme : bool { smallest, largest };

// A search starts from the finite stand-in for infinity, and what lies beyond it is not found; NaN never is.
template <extreme wanted, class T> constexpr T farthest(T huge) noexcept {
  return wanted == extreme::largest ? -huge : huge;
}
template <extreme wanted, class T> constexpr bool beats(T a, T b) noexcept {
  return wanted == extreme::largest ? a > b : a < b;
}

// Squared magnitude of a complex point, or H when a component is beyond H. The smallest is searched from H
// down: there, the square of such a component loses as H does. Float records are scored in double, where
// their squares neither underflow nor tie by rounding.
template <extreme wanted, class T> double magnitude_score(const T* point) noexcept {
  const double re = wide(point[0]);
  const double im = wide(point[1]);
  const double q = re * re + im * im;
  if constexpr (wanted == extreme::smallest) return q;
  constexpr double most = wide_guard<T>::huge;
  return std::abs(re) > most || std::abs(im) > most ? most : q;
}

inline constexpr index search_lanes = 32;
// For less, starting and joining the lanes takes longer than a loop; without wide vectors, finding the place
// of the extreme again does too.
inline constexpr index short_search = 96;
inline constexpr index short_baseline_search = 384;

// The extreme of `count` scores, and of `best`. Lanes hold running extremes, each over every so many scores;
// that the last ones are seen twice does no harm.
template <extreme wanted, class Score, class T>
T extreme_score(index begin, index count, Score score, T best) noexcept {
  constexpr index lanes = search_lanes;
  if (count < lanes) {
    for (index i = begin; i < begin + count; ++i) best = beats<wanted>(score(i), best) ? score(i) : best;
    return best;
  }
  T found[lanes];
  for (T& f : found) f = best;
  const auto look = [&](index at) {
    for (index lane = 0; lane < lanes; ++lane) {
      const T s = score(at + lane);
      found[lane] = beats<wanted>(s, found[lane]) ? s : found[lane];
    }
  };
  for (index i = begin; i + lanes <= begin + count; i += lanes) look(i);
  if (count % lanes != 0) look(begin + count - lanes);
  for (index half = lanes / 2; half > 0; half /= 2) {
    for (index lane = 0; lane < half; ++lane) {
      found[lane] = beats<wanted>(found[half + lane], found[lane]) ? found[half + lane] : found[lane];
    }
  }
  return found[0];
}

// The first place from `begin` on with this score, which is there.
template <class Score, class T> index place_of(T best, index begin, index end, Score score) noexcept {
  for (; begin + search_lanes <= end; begin += search_lanes) {
    index equal = 0;
    for (index lane = 0; lane < search_lanes; ++lane) equal += score(begin + lane) == best ? 1 : 0;
    if (equal != 0) break;
  }
  while (score(begin) != best) ++begin;
  return begin;
}

// The first point whose score is the extreme; nowhere when none beats the start. A block is searched for the
// place of its extreme only when that beats all before it.
template <extreme wanted, class Score, class T> index find_score(index points, Score score, T huge) noexcept {
  index place = nowhere;
  T best = farthest<wanted>(huge);
  if (points < short_search || (points < short_baseline_search && isa::current() == isa::level::baseline)) {
    for (index i = 0; i < points; ++i) {
      const T s = score(i);
      const bool better = beats<wanted>(s, best);
      place = better ? i : place;
      best = better ? s : best;
    }
    return place;
  }
  return isa::run([=]() mutable {
    for (index begin = 0; begin < points; begin += sum_block) {
      const index count = std::min(sum_block, points - begin);
      const T found = extreme_score<wanted>(begin, count, score, best);
      if (!beats<wanted>(found, best)) continue;
      best = found;
      place = place_of(best, begin, begin + count, score);
    }
    return place;
  });
}

// The first extreme point: of a real record by value, of a complex one by squared magnitude.
template <extreme wanted, class T> index find_extreme(const T* x, index points, bool complex) noexcept {
  if (!complex)
    return find_score<wanted>(
        points, [x](index i) { return x[i]; }, guard<T>::huge);
  return find_score<wanted>(
      points, [x](index i) { return magnitude_score<wanted>(x + 2 * i); }, wide_guard<T>::huge);
}

// The extreme value of real samples, or the start where none beats it. Of zeros it is the first: the sign of
// any other may differ.
template <extreme wanted, class T> T extreme_value(const T* x, index points) noexcept {
  const T start = farthest<wanted>(guard<T>::huge);
  const auto score = [x](index i) { return x[i]; };
  if (points < short_search) {
    T best = start;
    for (index i = 0; i < points; ++i) best = beats<wanted>(x[i], best) ? x[i] : best;
    return best;
  }
  const T found = isa::run([=] {
    const index to_line = machine::bytes_to_line(x) / index{sizeof(T)};
    const T first = extreme_score<wanted>(0, search_lanes, score, start);
    if (points - to_line < search_lanes) return extreme_score<wanted>(0, points, score, first);
    return extreme_score<wanted>(to_line, points - to_line, score, first);
  });
  return found == 0 ? *std::find(x, x + points, T(0)) : found;
}

}  // namespace sigpak
