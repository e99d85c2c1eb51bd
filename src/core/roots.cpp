// SPDX-License-Identifier: MIT
// Roots of unity by the cosines and sines of the first eighth of the turn.
#include "core/roots.h"

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace sigpak {

// The angle is brought there in integers, so that it has hardly any rounding; at the eighth itself both
// values are the same.
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

template unit_root<double> root_of_unity(index, index) noexcept;
template unit_root<long double> root_of_unity(index, index) noexcept;

}  // namespace sigpak
