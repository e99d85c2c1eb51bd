// SPDX-License-Identifier: MIT
// Linear-phase filters given by their leading half.
#include <algorithm>

#include "core/copy.h"
#include "core/frame.h"
#include "core/lending.h"
#include "filters/filters.h"

namespace sigpak {
namespace {

// Real filters shorter than this are summed directly.
constexpr index direct_taps = 61;

template <record V> constinit lender<kept_record<V>> expanded_taps;

// The half followed by its mirror image, negated when antisymmetric; an odd filter has its centre once. Fused
// hardware gains nothing from adding the samples of a pair of taps first, so the taps are written out.
template <record V> const V* expand(const V* half, bool odd, bool antisymmetric, V* full) noexcept {
  register_cache<V>(cache::half_fir, []() noexcept { return expanded_taps<V>.release(); });
  const index n = length(half);
  const index w = width(half);
  full->points = 0;
  full->delta = half->delta;
  if (reshape(full, 2 * n - (odd ? 1 : 0), is_complex(half)) != ok) {
    full->points = 0;
    return nullptr;
  }
  std::copy_n(half->data, n * w, full->data);
  const scalar<V> sign = antisymmetric ? -1 : 1;
  scalar<V>* mirrored = full->data + n * w;
  for (index k = odd ? n - 2 : n - 1; k >= 0; --k) {
    for (index part = 0; part < w; ++part) *mirrored++ = sign * half->data[k * w + part];
  }
  return full;
}

template <record V>
status filter_symmetric(const V* in, V* out, const V* half, int odd, int antisymmetric, V* history) noexcept {
  if (length(half) == 0) return copy(out, in);
  const loan<kept_record<V>> kept(expanded_taps<V>);
  const V* const taps = expand(half, odd != 0, antisymmetric != 0, &kept->v);
  if (taps == nullptr) return failed;
  if (length(taps) < direct_taps) return filter_directly(in, out, taps, history);
  return filter(in, out, taps, history);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspd_sfir(const dsp_vec* in, dsp_vec* out, const dsp_vec* half, int32_t odd, int32_t antisymmetric,
                  dsp_vec* history) {
  return filter_symmetric(in, out, half, odd, antisymmetric, history);
}
int32_t dspfd_sfir(const dspf_vec* in, dspf_vec* out, const dspf_vec* half, int32_t odd,
                   int32_t antisymmetric, dspf_vec* history) {
  return filter_symmetric(in, out, half, odd, antisymmetric, history);
}
