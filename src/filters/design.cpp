// SPDX-License-Identifier: MIT
// Design of linear-phase filters from the band-limited impulse response.
#include "filters/design.h"
#include "core/kept_errno.h"

#include <algorithm>

#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "filters/filters.h"
#include "stats/stats.h"
#include "windows/windows.h"

namespace sigpak {
namespace {

template <class T> inline constexpr T pi = design_constants<T>::pi;

// h(x), the same or negated on the left.
template <class T, class Value> void fill_even(T* h, index n, T step, Value value) noexcept {
  for_pairs(n, step, [=](index left, index right, T x) { h[left] = h[right] = value(x); });
}
template <class T, class Value> void fill_odd(T* h, index n, T step, Value value) noexcept {
  if (n % 2 != 0) h[n / 2] = 0;
  for_pairs(n, step, [=](index left, index right, T x) {
    const T tap = value(x);
    h[left] = -tap;
    h[right] = tap;
  });
}

// 2 fc sinc(2 pi fc t).
template <class T> void fill_low_pass(T* h, index n, T cutoff) noexcept {
  const T gain = 2 * cutoff;
  if (n % 2 != 0) h[n / 2] = gain;
  fill_even(h, n, 2 * pi<T> * cutoff, [=](T x) { return gain * sinc(x); });
}

// The low pass of half the bandwidth, moved to the centre frequency by 2 cos(2 pi centre t).
template <class T> void fill_band_pass(T* h, index n, T centre, T bandwidth) noexcept {
  fill_low_pass(h, n, bandwidth / 2);
  if (n % 2 != 0) h[n / 2] *= 2;
  for_pairs(n, 2 * pi<T> * centre, [=](index left, index right, T x) {
    const T carrier = 2 * std::cos(x);
    h[left] *= carrier;
    h[right] *= carrier;
  });
}

// What the filter leaves of its input: a unit pulse less the taps.
template <class T> void complement(T* h, index n) noexcept {
  for (index i = 0; i < n; ++i) h[i] = -h[i];
  h[n / 2] += 1;
}

// The derivative of the low pass: 2 fc 2 pi fc (cos x - sinc x) / x.
template <class T> void fill_differentiator(T* h, index n, T cutoff) noexcept {
  const T step = 2 * pi<T> * cutoff;
  const T gain = 2 * cutoff * step;
  fill_odd(h, n, step, [=](T x) { return x == 0 ? T(0) : gain * (std::cos(x) - sinc(x)) / x; });
}

// (cos x - 1) / x^2.
template <class T> T versed(T x) noexcept {
  const T square = x * x;
  return square >= design_constants<T>::small_square ? (std::cos(x) - 1) / square : T(-0.5);
}

template <class T> void fill_hilbert(T* h, index n, T cutoff) noexcept {
  const T gain = 2 * cutoff;
  fill_odd(h, n, 2 * pi<T> * cutoff, [=](T x) { return gain * (x * versed(x)); });
}

// The response 2 |f| up to the cut-off.
template <class T> void fill_ramp(T* h, index n, T cutoff) noexcept {
  const T w = 2 * cutoff;
  const T square = w * w;
  if (n % 2 != 0) h[n / 2] = square / 2;
  fill_even(h, n, pi<T> * w, [=](T x) { return square * (sinc(x) + versed(x)); });
}

template <class T> void fill_delayed(T* h, index n, T cutoff, T delay) noexcept {
  const T gain = 2 * cutoff;
  const T step = 2 * pi<T> * cutoff;
  T x = (1 - static_cast<T>(n) - 2 * delay) * cutoff * pi<T>;
  for (index i = 0; i < n; ++i) {
    h[i] = gain * sinc(x);
    x += step;
  }
}

// A Gaussian whose response falls to 1 / sqrt(2) at the cut-off has the deviation sqrt(ln 2) / (2 pi fc)
// samples.
template <record V> status gaussian_kernel(V* v, scalar<V> cutoff) noexcept {
  using T = scalar<V>;
  constexpr T root_ln2 = static_cast<T>(0.8325546111576977);
  constexpr int flags = DSP_WINDOW_FLAG_PEAK | DSP_WINDOW_FLAG_SYMMETRIC | DSP_WINDOW_FLAG_NO_ROTATE;
  const T deviation = root_ln2 / (2 * pi<T> * static_cast<T>(length(v)) * cutoff);
  if (gaussian(v, static_cast<double>(deviation), flags) != ok) return failed;
  return normalise_sum(v);
}

template <record V> status fill_taps(V* v, std::int32_t kind, scalar<V> p1, scalar<V> p2) noexcept {
  scalar<V>* const h = v->data;
  const index n = length(v);
  switch (kind) {
    case DSP_FIR_BAND_PASS:
      return fill_band_pass(h, n, p1, p2), ok;
    case DSP_FIR_BAND_STOP:
      return fill_band_pass(h, n, p1, p2), complement(h, n), ok;
    case DSP_FIR_HIGH_PASS:
      return fill_low_pass(h, n, p1), complement(h, n), ok;
    case DSP_FIR_LOW_PASS:
      return fill_low_pass(h, n, p1), ok;
    case DSP_FIR_COSINE_SUM:
      return cosine_sum_kernel(v, p1);
    case DSP_FIR_DELAYED:
      return fill_delayed(h, n, p1, p2), normalise_sum(v);
    case DSP_FIR_DIFFERENTIATOR:
      return fill_differentiator(h, n, p1), ok;
    case DSP_FIR_GAUSSIAN:
      return gaussian_kernel(v, p1);
    case DSP_FIR_HILBERT:
      return fill_hilbert(h, n, p1), ok;
    case DSP_FIR_KAISER:
      return kaiser_spectrum_kernel(v, p1);
    case DSP_FIR_RAMP:
      return fill_ramp(h, n, p1), ok;
    default:
      return failed;
  }
}

template <record V> bool finite(const V* v) noexcept {
  return std::all_of(v->data, v->data + length(v), [](scalar<V> x) { return std::isfinite(x); });
}

template <record V> status design(V* v, std::int32_t kind, scalar<V> p1, scalar<V> p2) noexcept {
  if (allocate(v) != ok) return failed;
  const kept_errno kept;
  const bool complex = is_complex(v);
  v->complex = 0;
  if (kind < DSP_FIR_BAND_PASS || kind > DSP_FIR_RAMP) return failed;
  const bool even = length(v) % 2 == 0;
  if (even && (kind == DSP_FIR_BAND_STOP || kind == DSP_FIR_HIGH_PASS)) return failed;
  if (length(v) > 0 && (fill_taps(v, kind, p1, p2) != ok || !finite(v))) return failed;
  return complex ? to_complex(v) : ok;
}

}  // namespace

template <record V> status normalise_sum(V* v) noexcept {
  using T = scalar<V>;
  temporary<V> level;
  if (mean<V>(v, &level) != ok) return failed;
  const T m = level.data[0];
  return m != 0 ? scale(v, 1 / (static_cast<T>(length(v)) * m)) : ok;
}

template status normalise_sum(dsp_vec*) noexcept;
template status normalise_sum(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspc_fir(dsp_vec* v, int32_t kind, double param1, double param2) {
  return design(v, kind, param1, param2);
}
int32_t dspfc_fir(dspf_vec* v, int32_t kind, float param1, float param2) {
  return design(v, kind, param1, param2);
}
