// SPDX-License-Identifier: MIT
// What correlations of whole signals and of streams report: the sums at the lags around 0, scaled.
#pragma once

#include <cmath>
#include <limits>

#include "core/storage.h"
#include "spectral/spectral.h"

namespace sigpak::correlation {

inline constexpr std::int32_t scale_bits = DSP_CORR_COEFFICIENT;

struct scaling {
  std::int32_t flags;
  double samples;
  double energy_a;
  double energy_b;

  double at(index lag) const noexcept {
    const double left = samples - static_cast<double>(lag < 0 ? -lag : lag);
    switch (flags & scale_bits) {
      case DSP_CORR_BIASED:
        return samples > 0 ? 1 / samples : 0;
      case DSP_CORR_UNBIASED:
        return left > 0 ? 1 / left : 0;
      case DSP_CORR_COEFFICIENT:
        return energy_a == 0 || energy_b == 0 ? 0 : 1 / (std::sqrt(energy_a) * std::sqrt(energy_b));
      default:
        return 1;
    }
  }
};

template <record V> struct shape {
  scalar<V> delta;
  bool complex;
};
template <record V> shape<V> shape_of(const V* a, const V* b) noexcept {
  return {static_cast<scalar<V>>(a->delta / 2 + b->delta / 2), is_complex(a) || is_complex(b)};
}

// For the lags -lags .. lags, of which those up to `known` follow; none where it is below 0.
template <record V> status size(V* out, const shape<V>& of, index lags, index known) noexcept {
  out->delta = of.delta;
  out->complex = of.complex ? 1 : 0;
  out->points = static_cast<std::uint32_t>(std::max<index>(2 * lags + 1, 0));
  if (2 * lags + 1 > std::numeric_limits<std::int32_t>::max()) return failed;
  if (allocate(out) != ok) return failed;
  const index zeros = known < 0 ? scalars(out) : (lags - known) * width(out);
  std::fill_n(out->data, zeros, scalar<V>(0));
  std::fill_n(out->data + scalars(out) - zeros, zeros, scalar<V>(0));
  return ok;
}

// Sums at the lags -known .. known, scaled, into the middle of out; at(lag) tells where one lies.
template <record V, class Place>
status report(V* out, const shape<V>& of, index lags, index known, double whole, const scaling& scale,
              Place at) noexcept {
  using T = scalar<V>;
  if (size(out, of, lags, known) != ok) return failed;
  const index w = width(out);
  for (index lag = -known; lag <= known; ++lag) {
    const double factor = whole * scale.at(lag);
    const T* const from = at(lag);
    T* const to = out->data + (lags + lag) * w;
    for (index part = 0; part < w; ++part)
      to[part] = static_cast<T>(static_cast<double>(from[part]) * factor);
  }
  return ok;
}

// Of whole signals.
template <record V>
status correlate(const V* a, const V* b, V* out, std::int32_t lags, std::int32_t flags) noexcept;

}  // namespace sigpak::correlation
