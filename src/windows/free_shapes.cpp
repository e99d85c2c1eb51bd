// SPDX-License-Identifier: MIT
// Windows of the caller's own shape: powers of a sinc, and sums of cosines.
#include <cmath>
#include <limits>
#include <numbers>

#include "core/storage.h"
#include "windows/catalogue.h"
#include "windows/generated.h"
#include "windows/normalise.h"
#include "windows/shapes.h"

namespace sigpak {
namespace {

bool refused(int flags) noexcept {
  return has(flags, DSP_WINDOW_FLAG_WIDTH) || mode_of(flags) == refused_mode;
}

// w[i] = shape(u), u = 2 x / d, from 0 at the centre to 1 at the ends; a single point is its own centre.
template <record V, class Shape> status generate(V* w, int flags, Shape shape) noexcept {
  const index n = length(w);
  if (n == 0) return ok;
  const bool symmetric = has(flags, DSP_WINDOW_FLAG_SYMMETRIC);
  const auto d = static_cast<double>(n > 1 && symmetric ? n - 1 : n);
  fill_mirrored(w->data, n, symmetric, [=](double x) { return shape(2 * (x / d)); });
  return normalise(w, mode_of(flags), 1);
}

// The edge of a sinc, and whether the sinc is 0 there.
struct sinc_edge {
  double angle;
  bool zero;
};

// Two roundings of a multiple of pi in the precision of the caller, or the tolerance of widths, whichever is
// more: so far off, the multiple itself is meant.
template <class T> sinc_edge settled_edge(T edge) noexcept {
  constexpr double allowed = std::max(rounding_tolerance, 2 * double{std::numeric_limits<T>::epsilon()});
  const auto angle = static_cast<double>(edge);
  const double lobes = std::round(angle / std::numbers::pi);
  const double multiple = lobes * std::numbers::pi;
  const bool zero = lobes != 0 && std::abs(angle - multiple) <= allowed * std::abs(multiple);
  return {zero ? multiple : angle, zero};
}

double signed_power(double s, double power) noexcept {
  return power == 1 ? s : std::copysign(std::pow(std::abs(s), power), power == 0 ? 1.0 : s);
}

template <record V> status apply_sinc(V* v, scalar<V> edge, scalar<V> power, int flags) noexcept {
  if (refused(flags) || !std::isfinite(edge) || !(power >= 0)) return failed;
  const sinc_edge end = settled_edge(edge);
  return apply_generated(v, flags, [=](V* w) {
    return generate(w, flags, [=](double u) {
      const double t = end.angle * u;
      const double s = t == 0 ? 1 : u == 1 && end.zero ? 0 : std::sin(t) / t;
      return signed_power(s, static_cast<double>(power));
    });
  });
}

template <record V> status apply_cosines(V* v, const V* terms, int flags) noexcept {
  const index count = length(terms);
  if (refused(flags) || is_complex(terms) || count == 0) return failed;
  const scalar<V>* const a = terms->data;
  if (!std::all_of(a, a + count, [](auto term) { return std::isfinite(term); })) return failed;
  return apply_generated(v, flags, [=](V* w) {
    return generate(w, flags, [=](double u) { return cosine_sum(a, count, std::cos(std::numbers::pi * u)); });
  });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_window_sinc(dsp_vec* v, double edge, double power, int32_t flags) {
  return apply_sinc(v, edge, power, flags);
}
int32_t dspfi_window_sinc(dspf_vec* v, float edge, float power, int32_t flags) {
  return apply_sinc(v, edge, power, flags);
}

int32_t dspi_window_cos(dsp_vec* v, const dsp_vec* terms, int32_t flags) {
  return apply_cosines(v, terms, flags);
}
int32_t dspfi_window_cos(dspf_vec* v, const dspf_vec* terms, int32_t flags) {
  return apply_cosines(v, terms, flags);
}
