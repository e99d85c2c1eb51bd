// Where the largest of many scores stands.
#pragma once

#include <algorithm>
#include <limits>

#include "core/blocks.h"
#include "core/guard.h"
#include "core/isa.h"
#include "stats/wide.h"

namespace sigpak {

inline constexpr index nowhere = -1;

// Squared magnitude of a complex point, or H when a component is beyond H, so that it never overflows. Float
// records are scored in double, where their squares neither underflow nor tie by rounding.
template <class T> constexpr double squared_magnitude_or_huge(const T* point) noexcept {
  const double re = wide(point[0]);
  const double im = wide(point[1]);
  constexpr double most = wide_huge<T>;
  const bool beyond = re > most || re < -most || im > most || im < -most;
  return beyond ? most : re * re + im * im;
}

// The largest of `lanes` running maxima, each over every lanes-th score; a score replaces when it is strictly
// greater, so NaN never does.
template <class Score, class T> T largest(index begin, index count, Score score, T floor) noexcept {
  constexpr index lanes = 32;
  T best[lanes];
  for (T& b : best) b = floor;
  index i = begin;
  for (; i + lanes <= begin + count; i += lanes) {
    for (index lane = 0; lane < lanes; ++lane) {
      const T s = score(i + lane);
      best[lane] = best[lane] < s ? s : best[lane];
    }
  }
  for (; i < begin + count; ++i) best[0] = std::max(best[0], score(i));
  return *std::max_element(best, best + lanes);
}

// The first point whose score is the largest, among those strictly above `floor`; nowhere when there is none.
// A block is searched for the place of its maximum only when that beats all before it.
template <class Score, class T> index find_largest(index points, Score score, T floor) noexcept {
  return isa::run([=] {
    index place = nowhere;
    T best = floor;
    for (index begin = 0; begin < points; begin += sum_block) {
      const T found = largest(begin, std::min(sum_block, points - begin), score, best);
      if (!(found > best)) continue;
      best = found;
      for (place = begin; score(place) != best;) ++place;
    }
    return place;
  });
}

enum class extreme : bool { smallest, largest };

// The first extreme point: of a real record by value, of a complex one by squared magnitude. The search
// starts from the finite stand-in for infinity, and a point beyond it is not found.
template <class T> index find_extreme(const T* x, index points, bool complex, extreme wanted) noexcept {
  const T sign = wanted == extreme::largest ? T(1) : T(-1);
  if (!complex) {
    return find_largest(
        points, [x, sign](index i) { return sign * x[i]; }, -guard<T>::huge);
  }
  return find_largest(
      points, [x, sign](index i) { return wide(sign) * squared_magnitude_or_huge(x + 2 * i); },
      -wide_huge<T>);
}

}  // namespace sigpak
