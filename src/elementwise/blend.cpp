// SPDX-License-Identifier: MIT
// The weighted mean of two records.
#include "elementwise/combine.h"
#include "elementwise/elementwise.h"

namespace sigpak {
namespace {

// b + w * (a - b), which the two ends do not trust to rounding: weight 1 is a, weight 0 is b.
template <class T> struct weighted_mean {
  T weight;
  constexpr T operator()(T a, T b) const noexcept {
    return weight == 1 ? a : weight == 0 ? b : b + weight * (a - b);
  }
  constexpr point<T> operator()(point<T> a, point<T> b) const noexcept {
    return {(*this)(a.re, b.re), (*this)(a.im, b.im)};
  }
  constexpr point<T> operator()(point<T> a, T b) const noexcept { return {(*this)(a.re, b), weight * a.im}; }
  constexpr point<T> operator()(T a, point<T> b) const noexcept {
    return {(*this)(a, b.re), (1 - weight) * b.im};
  }
};

}  // namespace

template <record V> status add_weighted(const V* a, const V* b, V* out, scalar<V> weight) noexcept {
  return combine(a, b, out, weighted_mean<scalar<V>>{weight});
}

template status add_weighted(const dsp_vec*, const dsp_vec*, dsp_vec*, double) noexcept;
template status add_weighted(const dspf_vec*, const dspf_vec*, dspf_vec*, float) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspb_avg_add(const dsp_vec* a, const dsp_vec* b, dsp_vec* out, double weight) {
  return add_weighted(a, b, out, weight);
}
int32_t dspfb_avg_add(const dspf_vec* a, const dspf_vec* b, dspf_vec* out, float weight) {
  return add_weighted(a, b, out, weight);
}
