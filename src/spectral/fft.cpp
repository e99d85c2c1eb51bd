// SPDX-License-Identifier: MIT
// The complex transform of a record whose length is a power of two.
#include "core/guard.h"
#include "core/power_of_two.h"
#include "core/storage.h"
#include "fft/transform.h"
#include "spectral/spectral.h"

namespace sigpak {

template <record V> status transform_real_record(V* v, bool inverse) noexcept {
  const index points = length(v);
  if (reshape(v, points, true) != ok) return failed;
  if (transform_reals(v->data, points, inverse) == ok) return ok;
  v->complex = 0;
  return failed;
}

namespace {

template <record V> [[gnu::noinline]] status fft_longer(V* v, bool inverse) noexcept {
  const index points = length(v);
  if (!is_power_of_two(points) || transform_record(v, inverse) != ok) return failed;
  v->delta = reciprocal_spacing(v->delta, static_cast<scalar<V>>(points));
  return ok;
}

}  // namespace

template <record V> status fft(V* v, int direction) noexcept {
  const bool inverse = direction != 0;
  if (!is_power_of_two(v->points) || !transform_small(v, inverse)) return fft_longer(v, inverse);
  v->delta = reciprocal_spacing(v->delta, static_cast<scalar<V>>(index{v->points}));
  return ok;
}

template status transform_real_record(dsp_vec*, bool) noexcept;
template status transform_real_record(dspf_vec*, bool) noexcept;
template status fft(dsp_vec*, int) noexcept;
template status fft(dspf_vec*, int) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_fft(dsp_vec* v, int32_t direction) { return fft(v, direction); }
int32_t dspfi_fft(dspf_vec* v, int32_t direction) { return fft(v, direction); }
