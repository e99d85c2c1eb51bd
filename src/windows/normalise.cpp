// SPDX-License-Identifier: MIT
// Normalisation of a window by what its points come to.
#include "windows/normalise.h"

#include "core/isa.h"
#include "core/storage.h"
#include "stats/stats.h"
#include "windows/catalogue.h"

namespace sigpak {
namespace {

template <class T> void divide(T* w, index n, double divisor) noexcept {
  isa::run([=] {
    for (index i = 0; i < n; ++i) w[i] = static_cast<T>(static_cast<double>(w[i]) / divisor);
  });
}

}  // namespace

template <record V> status normalise(V* v, int mode, double peak) noexcept {
  double divisor = peak;
  if (mode != DSP_WINDOW_FLAG_PEAK) {
    temporary<V> level;
    const status measured =
        mode == DSP_WINDOW_FLAG_MEAN ? mean<V>(v, &level) : root_mean_square<V>(v, &level);
    if (measured != ok) return failed;
    divisor = static_cast<double>(level.data[0]);
  }
  if (divisor != 0 && divisor != 1) divide(v->data, length(v), divisor);
  return ok;
}

template status normalise(dsp_vec*, int, double) noexcept;
template status normalise(dspf_vec*, int, double) noexcept;

}  // namespace sigpak
