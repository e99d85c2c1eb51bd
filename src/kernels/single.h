// SPDX-License-Identifier: MIT
// A single scalar that goes through the same operations as a vector, for what is shorter than one.
#pragma once

#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <class T> struct single {
  using scalar = T;
  using vector = T;
  using loose = T;
  static constexpr int width = 1;
  T v;
};
SIGPAK_INLINE single<double> fma(single<double> a, single<double> b, single<double> c) {
  return {fused(a.v, b.v, c.v)};
}
SIGPAK_INLINE single<float> fma(single<float> a, single<float> b, single<float> c) {
  return {fused(a.v, b.v, c.v)};
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
