// Minimum and maximum.
#include "stats/extremes.h"

#include "stats/result.h"

namespace sigpak {
namespace {

// What stands for the extreme when no point lies inside the range of the search.
template <record V> status store_missing(V* result, bool complex, extreme wanted) noexcept {
  constexpr double most = wide_huge<scalar<V>>;
  if (!complex) return store(result, wanted == extreme::largest ? -most : most);
  const double part = wanted == extreme::largest ? 0.0 : most;
  return store(result, part, part);
}

template <record V> status extract_extreme(const V* v, V* result, extreme wanted) noexcept {
  const index points = length(v);
  const bool complex = is_complex(v);
  if (points == 0) return complex ? store(result, 0.0, 0.0) : store(result, 0.0);
  const index place = find_extreme(v->data, points, complex, wanted);
  if (place == nowhere) return store_missing(result, complex, wanted);
  const scalar<V>* const point = v->data + place * width(v);
  return complex ? store(result, wide(point[0]), wide(point[1])) : store(result, wide(point[0]));
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_min(const dsp_vec* v, dsp_vec* result) { return extract_extreme(v, result, extreme::smallest); }
int32_t dspfs_min(const dspf_vec* v, dspf_vec* result) {
  return extract_extreme(v, result, extreme::smallest);
}

int32_t dsps_max(const dsp_vec* v, dsp_vec* result) { return extract_extreme(v, result, extreme::largest); }
int32_t dspfs_max(const dspf_vec* v, dspf_vec* result) {
  return extract_extreme(v, result, extreme::largest);
}
