// Clipping between two bounds, in place.
#include "core/isa.h"
#include "elementwise/in_place.h"

namespace sigpak {
namespace {

// True when a sample was replaced; NaN stays.
template <class T> bool clip(T* x, index n, T low, T high) noexcept {
  return isa::run([=] {
    index inside = 0;
    for (index i = 0; i < n; ++i) {
      const T limited = x[i] > high ? high : x[i] < low ? low : x[i];
      inside += !(x[i] > high || x[i] < low);
      x[i] = limited;
    }
    return inside != n;
  });
}

template <record V> status limit(V* v, scalar<V> a, scalar<V> b, std::int32_t* clipped) noexcept {
  const bool any = clip(v->data, scalars(v), b < a ? b : a, b < a ? a : b);
  if (clipped != nullptr) *clipped = any ? 1 : 0;
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_limit(dsp_vec* v, int32_t, double a, double b, int32_t* clipped) {
  return limit(v, a, b, clipped);
}
int32_t dspfi_limit(dspf_vec* v, int32_t, float a, float b, int32_t* clipped) {
  return limit(v, a, b, clipped);
}
