// SPDX-License-Identifier: MIT
// The Hilbert transform and the analytic signal, by way of the spectrum.
#include "core/isa.h"
#include "core/storage.h"
#include "spectral/spacing.h"
#include "spectral/spectral.h"

namespace sigpak {
namespace {

// Spectra of real signals are computed as halves, which hold the same.
template <record V> status to_spectrum(V* v) noexcept { return is_complex(v) ? dft(v, 0) : real_dft(v); }

// What a transform there and one back leave of the spacing.
template <class T> T spacing_there_and_back(T delta, index points) noexcept {
  return dft_spacing(dft_spacing(delta, points), points);
}

// Bins from `begin` to before `end` times -i.
template <class T> void turn_back(T* z, index begin, index end) noexcept {
  for (index k = begin; k < end; ++k) {
    const T re = z[2 * k];
    z[2 * k] = z[2 * k + 1];
    z[2 * k + 1] = -re;
  }
}

// The same times i.
template <class T> void turn_ahead(T* z, index begin, index end) noexcept {
  for (index k = begin; k < end; ++k) {
    const T re = z[2 * k];
    z[2 * k] = -z[2 * k + 1];
    z[2 * k + 1] = re;
  }
}

template <class T> void clear_bin(T* z, index k) noexcept { z[2 * k] = z[2 * k + 1] = 0; }

// Positive frequencies times -i, negative ones, where they are stored, times i; none at 0 and at the middle.
template <class T> void shift_phases(T* z, index points, index stored) noexcept {
  isa::run([=] {
    clear_bin(z, 0);
    turn_back(z, 1, (points + 1) / 2);
    if (points % 2 == 0) clear_bin(z, points / 2);
    turn_ahead(z, points / 2 + 1, stored);
  });
}

template <record V> status hilbert(V* v) noexcept {
  const index points = length(v);
  if (points == 0) return ok;
  const bool complex = is_complex(v);
  const scalar<V> delta = v->delta;
  if (points == 1) {
    for (index i = 0; i < scalars(v); ++i) v->data[i] = 0;
  } else {
    if (to_spectrum(v) != ok) return failed;
    shift_phases(v->data, points, length(v));
    if ((complex ? dft(v, 1) : inverse_real_dft(v, points % 2 != 0)) != ok) return failed;
  }
  v->delta = spacing_there_and_back(delta, points);
  return ok;
}

// Twice the positive frequencies, none of the negative ones.
template <record V> status analytic(V* v) noexcept {
  const index points = length(v);
  if (points == 0) return ok;
  const scalar<V> delta = v->delta;
  if (to_spectrum(v) != ok || to_complex(v) != ok) return failed;
  isa::run([z = v->data, end = (points - 1) / 2] {
    for (index i = 2; i < 2 * end + 2; ++i) z[i] *= 2;
  });
  v->points = static_cast<std::uint32_t>(points / 2 + 1);
  if (pad(v, points) != ok || dft(v, 1) != ok) return failed;
  v->delta = spacing_there_and_back(delta, points);
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_hilbert(dsp_vec* v) { return hilbert(v); }
int32_t dspfi_hilbert(dspf_vec* v) { return hilbert(v); }

int32_t dspi_analytic(dsp_vec* v) { return analytic(v); }
int32_t dspfi_analytic(dspf_vec* v) { return analytic(v); }
