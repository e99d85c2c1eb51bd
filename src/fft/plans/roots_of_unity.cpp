// SPDX-License-Identifier: MIT
// The coarse roots, from which all others start.
#include "fft/plans/roots_of_unity.h"

#include "fft/plans/sines.h"

namespace sigpak::kernels {
namespace {

constexpr coarse_sines split_sines() noexcept {
  coarse_sines out = {};
  for (int k = 0; k < coarse_roots + coarse_roots / 4; ++k) {
    const long double value = sine_of(k, coarse_roots);
    const long double magnitude = value < 0 ? -value : value;
    const auto high = static_cast<double>(static_cast<index>(magnitude * 0x1p22L + 0.5L)) * 0x1p-22;
    out.high[k] = value < 0 ? -high : high;
    out.low[k] = static_cast<double>(value - static_cast<long double>(out.high[k]));
  }
  return out;
}

}  // namespace

constinit const coarse_sines sine_table = split_sines();

}  // namespace sigpak::kernels
