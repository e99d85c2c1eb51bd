// SPDX-License-Identifier: MIT
// The windows of the catalogue, point by point. They are computed in double and rounded once, at the store.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <numbers>

#include "core/kept_errno.h"
#include "windows/catalogue.h"
#include "windows/normalise.h"
#include "windows/shapes.h"
#include "windows/windows.h"

namespace sigpak {

double triangle_peak(index n, int mode) noexcept {
  const auto points = static_cast<double>(n);
  const double square = points * points;
  if (mode == DSP_WINDOW_FLAG_RMS) return std::sqrt(3 * square / (square + 2));
  if (mode == DSP_WINDOW_FLAG_PEAK) return 1;
  return n % 2 == 0 ? 2 : 2 * square / (1 + square);
}

namespace {

// Unlike the other shapes a narrow constant begins at the first point.
template <class T> void fill_constant(T* w, index n, double width, double level) noexcept {
  const index filled = std::clamp<index>(tolerant_ceiling(width), 0, n);
  std::fill(w, w + filled, static_cast<T>(level));
  std::fill(w + filled, w + n, T(0));
}

// From the peak at the middle point down by 2 peak / n per point.
template <class T> void fill_triangle(T* w, index n, double peak) noexcept {
  const index centre = n / 2;
  for_ramp((n - 1) / 2 + 1, peak, -(2 * peak / static_cast<double>(n)),
           [&](index m, double x) { w[centre - m] = w[centre + m] = static_cast<T>(x); });
  if (n % 2 == 0) w[0] = 0;
}

// One main lobe of sin(x) / x, 0 at its ends.
template <class T> void fill_sinc_lobe(T* w, index n, double width) noexcept {
  fill_centred(w, n, width, [](double, double turn) {
    if (turn >= 0.5) return 0.0;
    const double x = 2 * std::numbers::pi * turn;
    return x != 0 ? std::sin(x) / x : 1.0;
  });
}

template <class T> void fill_cosine_sum(T* w, index n, double width, std::span<const double> a) noexcept {
  fill_centred(w, n, width,
               [=](double angle, double) { return cosine_sum(a.data(), std::ssize(a), std::cos(angle)); });
}

template <record V>
status generate_periodic(V* v, const catalogued_window& window, int flags, double width) noexcept {
  const int mode = mode_of(flags);
  const bool narrowed = has(flags, DSP_WINDOW_FLAG_WIDTH);
  if (has(flags, DSP_WINDOW_FLAG_SYMMETRIC)) return failed;
  if (narrowed && (std::isnan(width) || window.kind == window_kind::triangle)) return failed;
  const index n = length(v);
  if (n == 0) return ok;
  const double span = narrowed ? width : static_cast<double>(n);
  switch (window.kind) {
    case window_kind::constant:
      return fill_constant(v->data, n, span, window.terms_of(mode)[0]), ok;
    case window_kind::triangle:
      return fill_triangle(v->data, n, triangle_peak(n, mode)), ok;
    case window_kind::sinc_lobe:
      return fill_sinc_lobe(v->data, n, span), normalise(v, mode, 1);
    default:
      return fill_cosine_sum(v->data, n, span, window.terms_of(mode)), ok;
  }
}

}  // namespace

template <record V> status generate_window(V* v, int window, int flags, double width) noexcept {
  const kept_errno kept;
  const catalogued_window* const row = find_window(window);
  if (row == nullptr || is_complex(v) || mode_of(flags) == refused_mode) return failed;
  switch (row->kind) {
    case window_kind::kaiser:
      return kaiser(v, row->parameter, flags);
    case window_kind::gaussian:
      return gaussian(v, row->parameter, flags);
    default:
      return generate_periodic(v, *row, flags, width);
  }
}

template status generate_window(dsp_vec*, int, int, double) noexcept;
template status generate_window(dspf_vec*, int, int, double) noexcept;

}  // namespace sigpak
