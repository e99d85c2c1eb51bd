// The transform of a real record whose length is a power of two, to half a spectrum and back.
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "fft/transform.h"
#include "spectral/spacing.h"
#include "spectral/spectral.h"
#include "fft/baseline/tables.h"

namespace sigpak {
namespace {

constexpr index least_kernel = 4;

template <record V> void set_shape(V* v, index points, bool complex) noexcept {
  v->points = static_cast<std::uint32_t>(points);
  v->complex = complex ? 1 : 0;
}

template <record V> status to_half_spectrum(V* v, index points) noexcept {
  if (points == 1) return ok;
  if (points < least_kernel) return fft(v, 0);
  if (reshape(v, points / 2 + 1, true) != ok) return failed;
  if (forward_real(v->data, points) == ok) return ok;
  set_shape(v, points, false);
  return failed;
}

// A lent record moves to storage of its own, as it does wherever the whole spectrum is rebuilt.
template <record V> status from_half_spectrum(V* v, index points) noexcept {
  if (to_complex(v) != ok || reallocate(v, v->points, v->complex) != ok) return failed;
  if (inverse_real(v->data, points) != ok) return failed;
  set_shape(v, points, false);
  v->delta = reciprocal_spacing(v->delta, static_cast<scalar<V>>(points));
  return ok;
}

}  // namespace

template <record V> status real_fft(V* v) noexcept {
  const index points = length(v);
  if (is_complex(v) || !is_power_of_two(points)) return failed;
  const scalar<V> delta = v->delta;
  if (to_half_spectrum(v, points) != ok) return failed;
  v->delta = transformed_spacing(delta, points);
  return ok;
}

template <record V> status inverse_real_fft(V* v) noexcept {
  const index points = 2 * (length(v) - 1);
  if (points >= least_kernel && is_power_of_two(points)) return from_half_spectrum(v, points);
  return reconstruct(v, false) == ok && fft(v, 1) == ok ? keep_real(v) : failed;
}

template status real_fft(dsp_vec*) noexcept;
template status real_fft(dspf_vec*) noexcept;
template status inverse_real_fft(dsp_vec*) noexcept;
template status inverse_real_fft(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_rfft(dsp_vec* v) { return real_fft(v); }
int32_t dspfi_rfft(dspf_vec* v) { return real_fft(v); }

int32_t dspi_irfft(dsp_vec* v) { return inverse_real_fft(v); }
int32_t dspfi_irfft(dspf_vec* v) { return inverse_real_fft(v); }
