// SPDX-License-Identifier: MIT
// Direct sums of taps and samples.
#include "filters/direct.h"

#include <algorithm>

#include "kernels/fir.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

// The sums by the real and those by the imaginary parts of the taps, joined to `n` scalars of complex
// outputs.
template <class T> void join(const T* by_re, const T* by_im, index x_width, T* out, index n) noexcept {
  if (x_width == 1) {
    for (index i = 0; i < n; ++i) {
      out[2 * i] = by_re[i];
      out[2 * i + 1] = by_im[i];
    }
  } else {
    for (index i = 0; i < n; i += 2) {
      out[i] = by_re[i] - by_im[i + 1];
      out[i + 1] = by_re[i + 1] + by_im[i];
    }
  }
}

template <class T>
void sum_complex_taps(const T* taps, index count, const T* x, index x_width, T* out, index n) noexcept {
  constexpr index tile = 1024;
  const kernels::fir_sum<T> sum = at_level(&kernels::fir_table<T>::sum);
  T by_re[tile];
  T by_im[tile];
  for (index j = 0; j < n; j += tile) {
    const index width = std::min(tile, n - j);
    sum(taps, count, 2, x + j, x_width, by_re, width);
    sum(taps + 1, count, 2, x + j, x_width, by_im, width);
    join(by_re, by_im, x_width, out + j * (x_width == 1 ? 2 : 1), width);
  }
}

}  // namespace

template <record V>
void sum_directly(const V* taps, const scalar<V>* x, index x_width, scalar<V>* out, index points) noexcept {
  if (is_complex(taps)) {
    sum_complex_taps(taps->data, length(taps), x, x_width, out, points * x_width);
  } else {
    run_at_level(&kernels::fir_table<scalar<V>>::sum, taps->data, length(taps), 1, x, x_width, out,
                 points * x_width);
  }
}

template void sum_directly(const dsp_vec*, const double*, index, double*, index) noexcept;
template void sum_directly(const dspf_vec*, const float*, index, float*, index) noexcept;

}  // namespace sigpak
