// The transforms of any length.
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "fft/wide_fft.h"
#include "spectral/chirp.h"
#include "spectral/spacing.h"
#include "spectral/spectral.h"
#include "fft/baseline/tables.h"

namespace sigpak {
namespace {

// Lengths with small prime factors have kernels of their own where vectors are wide.
template <record V> status transform_points(V* v, index points, bool inverse) noexcept {
  using T = scalar<V>;
  if (!kernels::has_wide_dft<T>(points)) return chirp_transform(v, inverse);
  if (to_complex(v) != ok) return failed;
  own_twiddle_cache<T>();
  return kernels::wide_dft(v->data, points, inverse);
}

}  // namespace

template <record V> status dft(V* v, int direction) noexcept {
  const index points = length(v);
  if (is_power_of_two(points) && points > 1) return fft(v, direction);
  const scalar<V> delta = v->delta;
  if (points > 1 && transform_points(v, points, direction != 0) != ok) return failed;
  v->delta = dft_spacing(delta, points);
  return ok;
}

template <record V> status real_dft(V* v) noexcept {
  if (is_complex(v)) return failed;
  const index points = length(v);
  if (is_power_of_two(points)) return real_fft(v);
  if (dft(v, 0) != ok) return failed;
  if (points > 0) v->points = static_cast<std::uint32_t>(points / 2 + 1);
  return ok;
}

template <record V> status inverse_real_dft(V* v, bool odd) noexcept {
  if (!odd && is_power_of_two(2 * length(v) - 2)) return inverse_real_fft(v);
  return reconstruct(v, odd) == ok && dft(v, 1) == ok ? keep_real(v) : failed;
}

template status dft(dsp_vec*, int) noexcept;
template status dft(dspf_vec*, int) noexcept;
template status real_dft(dsp_vec*) noexcept;
template status real_dft(dspf_vec*) noexcept;
template status inverse_real_dft(dsp_vec*, bool) noexcept;
template status inverse_real_dft(dspf_vec*, bool) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_dft(dsp_vec* v, int32_t direction) { return dft(v, direction); }
int32_t dspfi_dft(dspf_vec* v, int32_t direction) { return dft(v, direction); }

int32_t dspi_rdft(dsp_vec* v) { return real_dft(v); }
int32_t dspfi_rdft(dspf_vec* v) { return real_dft(v); }

int32_t dspi_irdft(dsp_vec* v, int32_t odd) { return inverse_real_dft(v, odd != 0); }
int32_t dspfi_irdft(dspf_vec* v, int32_t odd) { return inverse_real_dft(v, odd != 0); }
