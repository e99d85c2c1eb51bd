// SPDX-License-Identifier: MIT
// The bit-reversal permutation of a record.
#include "core/power_of_two.h"
#include "fft/baseline/bit_reversal.h"

namespace sigpak {
namespace {

template <record V> status permute(V* v, bool scaled) noexcept {
  const index points = length(v);
  if (!is_power_of_two(points)) return failed;
  bit_reversal<scalar<V>> order;
  if (order.prepare(points, scaled) != ok) return failed;
  if (is_complex(v)) {
    order.run_pairs(v->data);
  } else {
    order.run(v->data);
  }
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_bitrev(dsp_vec* v) { return permute(v, false); }
int32_t dspfi_bitrev(dspf_vec* v) { return permute(v, false); }

int32_t dspi_bitrev_scale(dsp_vec* v) { return permute(v, true); }
int32_t dspfi_bitrev_scale(dspf_vec* v) { return permute(v, true); }
