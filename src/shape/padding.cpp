// Zeros appended and zeros written over.
#include "core/storage.h"
#include "shape/shape.h"

namespace sigpak {

template <record V> status zero(V* v) noexcept {
  const index points = length(v);
  v->points = 0;
  return pad(v, points);
}

template status zero(dsp_vec*) noexcept;
template status zero(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_zpad(dsp_vec* v, int32_t points) { return pad(v, points); }
int32_t dspfi_zpad(dspf_vec* v, int32_t points) { return pad(v, points); }

int32_t dspi_zero(dsp_vec* v) { return zero(v); }
int32_t dspfi_zero(dspf_vec* v) { return zero(v); }
