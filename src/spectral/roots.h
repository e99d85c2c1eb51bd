// Roots of unity, each computed directly.
#pragma once

#include <cmath>
#include <cstdlib>
#include <numbers>
#include <type_traits>

#include "core/record.h"

namespace sigpak {

// Tables are computed in a wider type and rounded once, so that nearly every value is the nearest.
template <class T> using wider = std::conditional_t<std::is_same_v<T, float>, double, long double>;

template <class W> struct unit_root {
  W cosine;
  W sine;
};

// Cosine and sine of 2 pi k / n for 0 <= k <= n. The angle is brought into the first eighth of the turn in
// integers, where it has hardly any rounding; at the eighth itself both values are the same.
template <class W> unit_root<W> root_of_unity(index k, index n) noexcept {
  const index quarters = (8 * k + n) / (2 * n);
  const index rest = 4 * k - quarters * n;  // over n, in quarter turns
  const W angle = std::numbers::pi_v<W> / 2 * static_cast<W>(rest) / static_cast<W>(n);
  const bool eighth = 2 * std::abs(rest) == n;
  const W c = eighth ? std::sqrt(W(0.5)) : std::cos(angle);
  const W s = eighth ? std::copysign(c, angle) : std::sin(angle);
  switch (quarters % 4) {
    case 0:
      return {c, s};
    case 1:
      return {-s, c};
    case 2:
      return {-c, -s};
    default:
      return {s, -c};
  }
}

}  // namespace sigpak
