// SPDX-License-Identifier: MIT
// The transform of a record of any length.
#include "spectral/spacing.h"
#include "spectral/spectral.h"

namespace sigpak {

template <record V> status dft(V* v, int direction) noexcept {
  const index points = length(v);
  if (transform_record(v, direction != 0) != ok) return failed;
  v->delta = dft_spacing(v->delta, points);
  return ok;
}

template status dft(dsp_vec*, int) noexcept;
template status dft(dspf_vec*, int) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_dft(dsp_vec* v, int32_t direction) { return dft(v, direction); }
int32_t dspfi_dft(dspf_vec* v, int32_t direction) { return dft(v, direction); }
