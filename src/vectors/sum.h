// SPDX-License-Identifier: MIT
// The sum of the lanes of a vector, by halves.
#pragma once

#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <class P> SIGPAK_INLINE typename P::scalar sum_of_lanes(P a) {
  typename P::scalar lanes[P::width];
  store(lanes, a);
  for (int half = P::width / 2; half > 0; half /= 2) {
    for (int i = 0; i < half; ++i) lanes[i] += lanes[i + half];
  }
  return lanes[0];
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
