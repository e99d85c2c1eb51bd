// SPDX-License-Identifier: MIT
// The factor of the results of a plan in two parts.
#pragma once

#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// 1/N as it is rounded and what that leaves, above 0, so that sums beyond the range stay infinite; that of
// the inverse is rounded away.
template <class P> struct exact_scale {
  using T = typename P::scalar;
  P nearest, rest;

  template <class Plan>
  SIGPAK_INLINE exact_scale(const Plan& plan, bool inverse)
      : nearest(splat<P>(inverse ? T(1) : plan.scale)),
        rest(splat<P>(inverse ? T(0x1p-60) : plan.scale_rest)) {}

  SIGPAK_INLINE P operator()(P a) const { return fma(a, nearest, a * rest); }
};

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
