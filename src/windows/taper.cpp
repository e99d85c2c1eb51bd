// SPDX-License-Identifier: MIT
// The Kaiser window over the taps of a filter, shaped by the attenuation that its stop band needs.
#include <cmath>

#include "core/storage.h"
#include "windows/catalogue.h"
#include "windows/generated.h"
#include "windows/windows.h"

namespace sigpak {

// J. F. Kaiser, "Nonrecursive digital filter design using the I0-sinh window function", ISCAS 1974.
double kaiser_shape(double attenuation) noexcept {
  const double a = attenuation;
  if (a > 50) return 0.1102 * (a - 8.7);
  return a > 21 ? 0.5842 * std::pow(a - 21, 0.4) + 0.07886 * (a - 21) : 0;
}

namespace {

constexpr int unit_sum = 1;  // the only flag

template <class T> void scale_to_unit_sum(T* taps, index n) noexcept {
  double sum = 0;
  for (index i = 0; i < n; ++i) sum += static_cast<double>(taps[i]);
  if (sum == 0) return;
  for (index i = 0; i < n; ++i) taps[i] = static_cast<T>(static_cast<double>(taps[i]) / sum);
}

// Divides the pairs (re, im) by their sum.
template <class T> void scale_pairs_to_unit_sum(T* taps, index n) noexcept {
  double re = 0;
  double im = 0;
  for (index i = 0; i < n; ++i) {
    re += static_cast<double>(taps[2 * i]);
    im += static_cast<double>(taps[2 * i + 1]);
  }
  const double square = re * re + im * im;
  if (square == 0) return;
  for (index i = 0; i < n; ++i) {
    const auto a = static_cast<double>(taps[2 * i]);
    const auto b = static_cast<double>(taps[2 * i + 1]);
    taps[2 * i] = static_cast<T>((a * re + b * im) / square);
    taps[2 * i + 1] = static_cast<T>((b * re - a * im) / square);
  }
}

template <record V> status taper(V* v, double attenuation, int flags) noexcept {
  if (!(attenuation >= 0) || (flags & ~unit_sum) != 0) return failed;
  constexpr int shape = DSP_WINDOW_FLAG_SYMMETRIC | DSP_WINDOW_FLAG_PEAK | DSP_WINDOW_FLAG_NO_ROTATE;
  const double beta = kaiser_shape(attenuation);
  if (length(v) > 1 && apply_generated(v, shape, [=](V* w) { return kaiser(w, beta, shape); }) != ok) {
    return failed;
  }
  if (flags == unit_sum) {
    is_complex(v) ? scale_pairs_to_unit_sum(v->data, length(v)) : scale_to_unit_sum(v->data, length(v));
  }
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_window_fir(dsp_vec* v, double attenuation, int32_t flags) {
  return taper(v, attenuation, flags);
}
int32_t dspfi_window_fir(dspf_vec* v, float attenuation, int32_t flags) {
  return taper(v, static_cast<double>(attenuation), flags);
}
