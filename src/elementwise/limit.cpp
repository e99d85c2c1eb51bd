// SPDX-License-Identifier: MIT
// Clipping between two bounds, in place.
#include <bit>

#include "core/each.h"
#include "core/isa.h"
#include "elementwise/in_place.h"

namespace sigpak {
namespace {

template <class T> using bits_of = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;

// True when a sample was replaced; NaN stays. A replacement is another number, so it has other bits.
template <class T> bool clip(T* x, index n, T low, T high) noexcept {
  using bits = bits_of<T>;
  return isa::run(n, [=] {
    bits changes = 0;
    each(x, n, [=, &changes](index i) {
      const T below = x[i] > high ? high : x[i];
      const T limited = below < low ? low : below;
      changes |= std::bit_cast<bits>(x[i]) ^ std::bit_cast<bits>(limited);
      x[i] = limited;
    });
    return changes != 0;
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
