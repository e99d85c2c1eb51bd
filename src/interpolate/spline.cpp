// SPDX-License-Identifier: MIT
// Splines through values, as pairs of value and slope.
#include "core/copy.h"
#include "core/isa.h"
#include "core/storage.h"
#include "interpolate/knots.h"
#include "interpolate/slopes.h"

namespace sigpak {
namespace {

template <class T> void put_values(const T* y, index n, bool periodic, T* pairs) noexcept {
  isa::run(n, [=] {
    for (index i = 0; i < n; ++i) pairs[2 * i] = y[i];
  });
  if (periodic) pairs[2 * n - 2] = y[0];
}

template <record V> status make_spline(const V* x, const V* y, V* spline, end_rule rule) noexcept {
  const index n = length(y);
  spline->delta = y->delta;
  spline->complex = 1;
  spline->points = static_cast<std::uint32_t>(n);
  if (allocate(spline) != ok) return failed;
  if (n == 0) return ok;
  const slopes_at<scalar<V>> slopes = {spline->data + 1, 2};
  if (x == nullptr) {
    regular_slopes(y->data, n, static_cast<double>(y->delta), rule, slopes);
  } else if (irregular_slopes(x->data, y->data, n, rule, slopes) != ok) {
    return failed;
  }
  put_values(y->data, n, rule.kind == spline_ends::periodic, spline->data);
  return ok;
}

template <record V>
status interpolate_spline(const V* x, const V* y, V* spline, std::int32_t ends, double start,
                          double end) noexcept {
  if (is_complex(y) || ends < DSP_SPLINE_NOT_A_KNOT || ends > DSP_SPLINE_MONOTONE) return failed;
  if (!are_knots(x, length(y), y->delta)) return failed;
  const end_rule rule = {static_cast<spline_ends>(ends), start, end};
  const bool shared = spline->data == y->data || (x != nullptr && spline->data == x->data);
  if (!shared) return make_spline(x, y, spline, rule);
  temporary<V> made;
  return make_spline<V>(x, y, &made, rule) == ok ? copy<V>(spline, &made) : failed;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsp_cspline(const dsp_vec* x, const dsp_vec* y, dsp_vec* spline, int32_t ends, double start,
                    double end) {
  return interpolate_spline(x, y, spline, ends, start, end);
}
int32_t dspf_cspline(const dspf_vec* x, const dspf_vec* y, dspf_vec* spline, int32_t ends, float start,
                     float end) {
  return interpolate_spline(x, y, spline, ends, static_cast<double>(start), static_cast<double>(end));
}
