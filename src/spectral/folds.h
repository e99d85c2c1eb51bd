// SPDX-License-Identifier: MIT
// From the transform of a segment to its powers, and their running mean.
#pragma once

#include "core/isa.h"
#include "core/product.h"

namespace sigpak {

// b + w (a - b), or a as it is.
template <class T> struct running_mean {
  bool first;
  T weight;
  constexpr T operator()(T a, T b) const noexcept { return b + weight * (a - b); }
};

// The bins of a spectrum; those of real signals but the outer ones stand for two frequencies.
struct spectrum_bins {
  index count;
  index doubled;  // the bins 1 .. doubled
};

template <class T, class Body>
[[gnu::always_inline]] inline void for_bins(spectrum_bins bins, T factor, Body body) noexcept {
  body(index{0}, std::min<index>(1, bins.count), factor);
  body(index{1}, 1 + bins.doubled, 2 * factor);
  body(1 + bins.doubled, bins.count, factor);
}

// out[k] = factor |z[k]|^2; out may be z.
template <class T> void take_powers(const T* z, spectrum_bins bins, T factor, T* out) noexcept {
  isa::run([=] {
    for_bins(bins, factor, [=](index begin, index end, T f) {
      for (index k = begin; k < end; ++k) out[k] = f * (z[2 * k] * z[2 * k] + z[2 * k + 1] * z[2 * k + 1]);
    });
  });
}

template <class T>
void average_powers(const T* z, spectrum_bins bins, T factor, running_mean<T> mean, T* avg) noexcept {
  if (mean.first) return take_powers(z, bins, factor, avg);
  isa::run([=] {
    for_bins(bins, factor, [=](index begin, index end, T f) {
#pragma GCC ivdep
      for (index k = begin; k < end; ++k) {
        avg[k] = mean(f * (z[2 * k] * z[2 * k] + z[2 * k + 1] * z[2 * k + 1]), avg[k]);
      }
    });
  });
}

// |A|^2, |B|^2 and conj(A) B, as complex points one run after the other.
template <class T>
void average_cross_powers(const T* a, const T* b, spectrum_bins bins, T factor, running_mean<T> mean,
                          T* avg) noexcept {
  const index n = bins.count;
  const auto each_bin = [=](auto fold) {
    for_bins(bins, factor, [=](index begin, index end, T f) {
#pragma GCC ivdep
      for (index k = 2 * begin; k < 2 * end; k += 2) {
        T* const saa = avg + k;
        T* const sbb = saa + 2 * n;
        T* const sab = sbb + 2 * n;
        saa[0] = fold(f * (a[k] * a[k] + a[k + 1] * a[k + 1]), saa[0]);
        sbb[0] = fold(f * (b[k] * b[k] + b[k + 1] * b[k + 1]), sbb[0]);
        sab[0] = fold(f * (a[k] * b[k] + a[k + 1] * b[k + 1]), sab[0]);
        sab[1] = fold(f * (a[k] * b[k + 1] + (-a[k + 1]) * b[k]), sab[1]);
      }
    });
  };
  if (mean.first) std::fill_n(avg, 6 * n, T(0));
  isa::run([=] {
    if (mean.first) {
      each_bin([](T power, T) { return power; });
    } else {
      each_bin(mean);
    }
  });
}

}  // namespace sigpak
