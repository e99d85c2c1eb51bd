// SPDX-License-Identifier: MIT
// The transform of a record of any length.
#include "spectral/spacing.h"
#include "spectral/spectral.h"

namespace sigpak {

namespace {

template <record V> [[gnu::noinline]] status dft_longer(V* v, bool inverse) noexcept {
  const index points = length(v);
  if (transform_record(v, inverse) != ok) return failed;
  v->delta = dft_spacing(v->delta, points);
  return ok;
}

}  // namespace

template <record V> status dft(V* v, int direction) noexcept {
  const bool inverse = direction != 0;
  if (!transform_small(v, inverse)) return dft_longer(v, inverse);
  v->delta = dft_spacing(v->delta, index{v->points});
  return ok;
}

template status dft(dsp_vec*, int) noexcept;
template status dft(dspf_vec*, int) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_dft(dsp_vec* v, int32_t direction) { return dft(v, direction); }
int32_t dspfi_dft(dspf_vec* v, int32_t direction) { return dft(v, direction); }
