// SPDX-License-Identifier: MIT
// Minimum and maximum.
#include "stats/extremes.h"

#include "stats/result.h"

namespace sigpak {
namespace {

// Of complex points none of which lies inside the range of the search, the start stands for the extreme.
template <extreme wanted, record V> status extract_extreme(const V* v, V* result) noexcept {
  const index points = length(v);
  if (!is_complex(v)) return store(result, points == 0 ? 0.0 : wide(extreme_value<wanted>(v->data, points)));
  if (points == 0) return store(result, 0.0, 0.0);
  const index place = find_extreme<wanted>(v->data, points, true);
  constexpr double missing = wanted == extreme::largest ? 0.0 : wide_guard<scalar<V>>::huge;
  if (place == nowhere) return store(result, missing, missing);
  return store(result, wide(v->data[2 * place]), wide(v->data[2 * place + 1]));
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_min(const dsp_vec* v, dsp_vec* result) { return extract_extreme<extreme::smallest>(v, result); }
int32_t dspfs_min(const dspf_vec* v, dspf_vec* result) {
  return extract_extreme<extreme::smallest>(v, result);
}

int32_t dsps_max(const dsp_vec* v, dsp_vec* result) { return extract_extreme<extreme::largest>(v, result); }
int32_t dspfs_max(const dspf_vec* v, dspf_vec* result) {
  return extract_extreme<extreme::largest>(v, result);
}
