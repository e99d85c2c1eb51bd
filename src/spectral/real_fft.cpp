// SPDX-License-Identifier: MIT
// The transform of a real record to half a spectrum and back.
#include <algorithm>

#include "core/power_of_two.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "fft/small_transform.h"
#include "fft/transform.h"
#include "spectral/spacing.h"
#include "spectral/spectral.h"

namespace sigpak {
namespace {

template <record V> void set_shape(V* v, index points, bool complex) noexcept {
  v->points = static_cast<std::uint32_t>(points);
  v->complex = complex ? 1 : 0;
}

// Capacity for a transform of so many points, whose shape is set afterwards.
template <record V> status make_room(V* v, index points) noexcept {
  const index room = half_spectrum_room(points);
  return room <= v->alloc ? ok : reshape(v, room / 2, true);
}

// The way of a length that needs no plan, there or back; null for others, and for records without the room.
template <record V> auto small_way(const V* v, index points, bool inverse) noexcept -> void (*)(scalar<V>*) {
  const auto* const level = at_chosen_level<kernels::small_kernels<scalar<V>>>();
  return points + 2 <= v->alloc ? small_real_transform(level, points, inverse) : nullptr;
}

template <record V> [[gnu::noinline]] status to_half_spectrum_longer(V* v) noexcept {
  const index points = length(v);
  if (points < 2) return ok;
  if (make_room(v, points) != ok) return failed;
  const bool done = forward_real(v->data, points) == ok;
  done ? set_shape(v, points / 2 + 1, true) : set_shape(v, points, false);
  return done ? ok : failed;
}

template <record V> status to_half_spectrum(V* v) noexcept {
  const index points = v->points;
  const auto run = small_way(v, points, false);
  if (run == nullptr) return to_half_spectrum_longer(v);
  run(v->data);
  set_shape(v, points / 2 + 1, true);
  return ok;
}

// A lent record moves to storage of its own.
template <record V> [[gnu::noinline]] status from_half_spectrum_longer(V* v, index points) noexcept {
  if (points < 2) return keep_real(v);
  const index bins = length(v);
  if (!is_complex(v) && to_complex(v) != ok) return failed;
  if (make_room(v, points) != ok) return failed;
  const bool done = inverse_real(v->data, points) == ok;
  done ? set_shape(v, points, false) : set_shape(v, bins, true);
  return done ? ok : failed;
}

template <record V> status from_half_spectrum(V* v, index points) noexcept {
  const auto run = is_complex(v) ? small_way(v, points, true) : nullptr;
  if (run == nullptr) return from_half_spectrum_longer(v, points);
  run(v->data);
  set_shape(v, points, false);
  return ok;
}

// 2 (P - 1) or 2 P - 1 points from P, but one from one.
constexpr index whole(index bins, bool odd) noexcept {
  return bins < 2 ? bins : odd ? 2 * bins - 1 : 2 * bins - 2;
}

}  // namespace

template <record V> status real_dft(V* v) noexcept {
  const index points = length(v);
  if (is_complex(v)) return failed;
  if (to_half_spectrum(v) != ok) return failed;
  v->delta = transformed_spacing(v->delta, std::max<index>(points, 1));
  return ok;
}

template <record V> status real_fft(V* v) noexcept {
  return is_power_of_two(length(v)) ? real_dft(v) : failed;
}

template <record V> status inverse_real_dft(V* v, bool odd) noexcept {
  const index points = whole(length(v), odd);
  if (from_half_spectrum(v, points) != ok) return failed;
  v->delta = dft_spacing(v->delta, points);
  return ok;
}

template <record V> status inverse_real_fft(V* v) noexcept {
  const index points = whole(length(v), false);
  if (!is_power_of_two(points)) return reconstruct(v, false), failed;
  if (from_half_spectrum(v, points) != ok) return failed;
  v->delta = reciprocal_spacing(v->delta, static_cast<scalar<V>>(points));
  return ok;
}

template status real_dft(dsp_vec*) noexcept;
template status real_dft(dspf_vec*) noexcept;
template status real_fft(dsp_vec*) noexcept;
template status real_fft(dspf_vec*) noexcept;
template status inverse_real_dft(dsp_vec*, bool) noexcept;
template status inverse_real_dft(dspf_vec*, bool) noexcept;
template status inverse_real_fft(dsp_vec*) noexcept;
template status inverse_real_fft(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_rfft(dsp_vec* v) { return real_fft(v); }
int32_t dspfi_rfft(dspf_vec* v) { return real_fft(v); }

int32_t dspi_irfft(dsp_vec* v) { return inverse_real_fft(v); }
int32_t dspfi_irfft(dspf_vec* v) { return inverse_real_fft(v); }

int32_t dspi_rdft(dsp_vec* v) { return real_dft(v); }
int32_t dspfi_rdft(dspf_vec* v) { return real_dft(v); }

int32_t dspi_irdft(dsp_vec* v, int32_t odd) { return inverse_real_dft(v, odd != 0); }
int32_t dspfi_irdft(dspf_vec* v, int32_t odd) { return inverse_real_dft(v, odd != 0); }
