// SPDX-License-Identifier: MIT
// Square roots into a second record.
#include "elementwise/square_root.h"

#include "elementwise/elementwise.h"
#include "elementwise/packing.h"
#include "elementwise/prepare.h"

namespace sigpak {
namespace {

template <record V> status take_square_roots(const V* in, V* out) noexcept {
  return prepare(in, in, out, is_complex(in), [out](const operands<V>& from) {
    if (from.a_complex) {
      square_root_points(from.a, out->data, from.points);
    } else {
      map_reals(from.a, out->data, from.points, [](auto x) { return square_root(x); });
    }
    return ok;
  });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspu_sqrt(const dsp_vec* in, dsp_vec* out) { return take_square_roots(in, out); }
int32_t dspfu_sqrt(const dspf_vec* in, dspf_vec* out) { return take_square_roots(in, out); }
