// SPDX-License-Identifier: MIT
// The guarded square root of a sample, one for every operation that takes it.
#pragma once

#include <cmath>

#include "core/guard.h"
#include "core/kept_errno.h"
#include "core/product.h"
#include "kernels/elementary/functions.h"
#include "vectors/levels.h"

namespace sigpak {

// Squares of T fit here without overflow, underflow or visible rounding.
template <class T> struct square_root_precision;
template <> struct square_root_precision<double> { using type = long double; };
template <> struct square_root_precision<float> { using type = double; };

template <class T> T square_root(T x) noexcept { return x < 0 ? T(0) : std::sqrt(x); }

// The principal root. With r = |z|, half angles give re = sqrt((r + a) / 2) and im = b / (2 re) in the right
// half plane, the two exchanged in the left one: no cancellation, and exact signs. A point with a part
// outside [-H, H] keeps its direction and counts as |z| = H.
template <class T> point<T> square_root(point<T> z) noexcept {
  using W = typename square_root_precision<T>::type;
  const W a = static_cast<W>(z.re);
  const W b = static_cast<W>(z.im);
  W major;
  W minor;
  if (std::abs(z.re) > guard<T>::huge || std::abs(z.im) > guard<T>::huge) {
    const W root = std::sqrt(static_cast<W>(guard<T>::huge));
    const W angle = std::atan2(std::abs(b), std::abs(a)) / 2;
    major = root * std::cos(angle);
    minor = root * std::sin(angle);
  } else {
    const W r = std::sqrt(a * a + b * b);
    if (r == 0) return {0, 0};
    major = std::sqrt((r + std::abs(a)) / 2);
    minor = std::abs(b) / (2 * major);
  }
  return {static_cast<T>(a < 0 ? minor : major), static_cast<T>(std::copysign(a < 0 ? major : minor, b))};
}

// The roots of the points of z; out may be z.
template <class T> void square_root_points(const T* z, T* out, index points) noexcept {
  const auto root = [](T* at) {
    const kept_errno kept;
    put_point(at, 0, square_root(point_at(at, 0)));
  };
  run_at_level(&kernels::root_functions<T>::root_points, z, out, points, root);
}

}  // namespace sigpak
