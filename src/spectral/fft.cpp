// The complex transform of a record whose length is a power of two.
#include "core/guard.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "fft/transform.h"
#include "spectral/spectral.h"
#include "fft/baseline/tables.h"

namespace sigpak {
namespace {

// Scaled before the sum, which then cannot overflow.
template <record V> status transform_pair(V* v, bool inverse) noexcept {
  if (!inverse && scale(v, scalar<V>(0.5)) != ok) return failed;
  if (to_complex(v) != ok) return failed;
  auto* const x = v->data;
  for (index part = 0; part < 2; ++part) {
    const auto difference = x[part] - x[2 + part];
    x[part] += x[2 + part];
    x[2 + part] = difference;
  }
  return ok;
}

template <record V> status transform_record(V* v, index points, bool inverse) noexcept {
  if (points == 1) return ok;
  if (points == 2) return transform_pair(v, inverse);
  if (to_complex(v) != ok) return failed;
  return transform(v->data, points, inverse);
}

}  // namespace

template <record V> status fft(V* v, int direction) noexcept {
  const index points = length(v);
  if (!is_power_of_two(points)) return failed;
  if (transform_record(v, points, direction != 0) != ok) return failed;
  v->delta = reciprocal_spacing(v->delta, static_cast<scalar<V>>(points));
  return ok;
}

template status fft(dsp_vec*, int) noexcept;
template status fft(dspf_vec*, int) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_fft(dsp_vec* v, int32_t direction) { return fft(v, direction); }
int32_t dspfi_fft(dspf_vec* v, int32_t direction) { return fft(v, direction); }
