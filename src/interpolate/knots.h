// SPDX-License-Identifier: MIT
// Abscissae as the operations on splines take them.
#pragma once

#include <cmath>

#include "core/isa.h"
#include "core/record.h"

namespace sigpak {

template <class T> bool rises(const T* x, index n) noexcept {
  const index falls = isa::run(n, [=] {
    index count = 0;
    for (index i = 1; i < n; ++i) count += x[i - 1] < x[i] ? 0 : 1;
    return count;
  });
  return n == 0 || (falls == 0 && std::isfinite(x[0]) && std::isfinite(x[n - 1]));
}

// Real, finite, strictly rising abscissae of n points; without them 0, delta, 2 delta, ...
template <record V> bool are_knots(const V* x, index n, scalar<V> delta) noexcept {
  if (x == nullptr) return delta > 0 && std::isfinite(delta);
  return !is_complex(x) && length(x) == n && rises(x->data, n);
}

}  // namespace sigpak
