// Direct sums of taps and samples, over tiles of outputs that stay close to the processor.
#include "filters/direct.h"

#include <algorithm>

#include "core/isa.h"

namespace sigpak {
namespace {

constexpr index tile = 32;

// out[j] = sum of taps[k * tap_stride] * x[j + (count - 1 - k) * x_stride]. Counted in scalars: with x_stride
// 2 the real and the imaginary signal of complex samples run side by side.
template <class T>
inline void sum_tile(const T* taps, index count, index tap_stride, const T* x, index x_stride, T* out,
                     index n) {
  T sums[tile] = {};
  for (index k = count - 1; k >= 0; --k, x += x_stride) {
    const T tap = taps[k * tap_stride];
    for (index j = 0; j < n; ++j) sums[j] += tap * x[j];
  }
  std::copy_n(sums, n, out);
}

template <class T> struct run_of_samples {
  const T* taps;
  index count;
  const T* x;
  index x_width;
  T* out;
  index n;  // scalars of x that outputs are centred on
};

template <class T> void sum_real_taps(const run_of_samples<T>& run) noexcept {
  isa::run([=] {
    index j = 0;
    for (; j + tile <= run.n; j += tile) {
      sum_tile(run.taps, run.count, 1, run.x + j, run.x_width, run.out + j, tile);
    }
    if (j < run.n) sum_tile(run.taps, run.count, 1, run.x + j, run.x_width, run.out + j, run.n - j);
  });
}

// Sums by the real and by the imaginary parts of the taps are kept apart and joined at the end.
template <class T> void sum_complex_taps(const run_of_samples<T>& run) noexcept {
  isa::run([=] {
    T by_re[tile];
    T by_im[tile];
    for (index j = 0; j < run.n; j += tile) {
      const index n = std::min(tile, run.n - j);
      sum_tile(run.taps, run.count, 2, run.x + j, run.x_width, by_re, n);
      sum_tile(run.taps + 1, run.count, 2, run.x + j, run.x_width, by_im, n);
      if (run.x_width == 1) {
        for (index i = 0; i < n; ++i) {
          run.out[2 * (j + i)] = by_re[i];
          run.out[2 * (j + i) + 1] = by_im[i];
        }
      } else {
        for (index i = 0; i < n; i += 2) {
          run.out[j + i] = by_re[i] - by_im[i + 1];
          run.out[j + i + 1] = by_re[i + 1] + by_im[i];
        }
      }
    }
  });
}

}  // namespace

template <record V>
void sum_directly(const V* taps, const scalar<V>* x, index x_width, scalar<V>* out, index points) noexcept {
  const run_of_samples<scalar<V>> run = {taps->data, length(taps), x, x_width, out, points * x_width};
  if (is_complex(taps)) {
    sum_complex_taps(run);
  } else {
    sum_real_taps(run);
  }
}

template void sum_directly(const dsp_vec*, const double*, index, double*, index) noexcept;
template void sum_directly(const dspf_vec*, const float*, index, float*, index) noexcept;

}  // namespace sigpak
