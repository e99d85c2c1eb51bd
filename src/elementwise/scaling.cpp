// Arithmetic with a scalar, in place.
#include "core/isa.h"
#include "elementwise/elementwise.h"

namespace sigpak {

template <record V> status scale(V* v, scalar<V> factor) noexcept {
  isa::run([x = v->data, n = scalars(v), factor] {
    for (index i = 0; i < n; ++i) x[i] = factor * x[i];
  });
  return ok;
}

template status scale(dsp_vec*, double) noexcept;
template status scale(dspf_vec*, float) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_scale(dsp_vec* v, double factor) { return scale(v, factor); }
int32_t dspfi_scale(dspf_vec* v, float factor) { return scale(v, factor); }
