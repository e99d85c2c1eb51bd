// SPDX-License-Identifier: MIT
// Taps for changing the sample rate: low-passes of a given attenuation, raised cosines and their roots. They
// are symmetric, so half of them is computed, in double, and rounded once at the store.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "core/memory.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "filters/filters.h"
#include "windows/windows.h"

namespace sigpak {
namespace {

constexpr double pi = std::numbers::pi;

// sin(pi x) and cos(pi x) from x less the nearest whole number, which is exact; 0 at whole x.
double sine_turns(double x) noexcept {
  const double whole = std::round(x);
  const double sine = std::sin(pi * (x - whole));
  return std::fmod(whole, 2) == 0 ? sine : -sine;
}
double cosine_turns(double x) noexcept {
  const double whole = std::round(x);
  const double cosine = std::cos(pi * (x - whole));
  return std::fmod(whole, 2) == 0 ? cosine : -cosine;
}

double sinc(double x) noexcept { return x == 0 ? 1 : sine_turns(x) / (pi * x); }

bool is_rate(std::int32_t factor) noexcept { return factor >= 1 && factor <= most_rate_factor; }

// The taps h[0 .. centre] of 2 centre + 1, the middle one last.
struct leading_half {
  double* h;
  index centre;
  index up;
};

// Scales every phase, the taps `up` apart, to the sum 1. Mirrored phases hold the same taps and are scaled
// alike, so that the taps stay symmetric.
void scale_phases(const leading_half& half) noexcept {
  const index last = 2 * half.centre;
  const auto tap = [&half, last](index j) -> double& { return half.h[std::min(j, last - j)]; };
  for (index phase = 0; phase < std::min(half.up, last + 1); ++phase) {
    const index mirrored = (last - phase) % half.up;
    if (mirrored < phase) continue;
    double sum = 0;
    for (index j = phase; j <= last; j += half.up) sum += tap(j);
    const bool own = mirrored == phase;
    for (index j = phase; j <= (own ? half.centre : last); j += half.up) tap(j) /= sum;
  }
}

void scale_energy(const leading_half& half) noexcept {
  double sum = half.h[half.centre] * half.h[half.centre];
  for (index j = 0; j < half.centre; ++j) sum += 2 * half.h[j] * half.h[j];
  const double unit = std::sqrt(static_cast<double>(half.up) / sum);
  for (index j = 0; j <= half.centre; ++j) half.h[j] *= unit;
}

template <record V> status store_taps(V* v, const leading_half& half) noexcept {
  const index last = 2 * half.centre;
  v->points = static_cast<std::uint32_t>(last + 1);
  v->complex = 0;
  v->delta = static_cast<scalar<V>>(1 / static_cast<double>(half.up));
  if (allocate(v) != ok) return failed;
  for (index j = 0; j <= half.centre; ++j) {
    v->data[j] = v->data[last - j] = static_cast<scalar<V>>(half.h[j]);
  }
  return ok;
}

// The design whose tap at the distance m from the middle is shape(m).
template <record V, class Shape>
status design(V* v, index centre, index up, Shape shape,
              void (*normalise)(const leading_half&) noexcept) noexcept {
  if (centre > std::numeric_limits<std::int32_t>::max() / 2) return failed;
  const leading_half half = {allocate_table<double>(centre + 1), centre, up};
  if (half.h == nullptr) return failed;
  for (index m = 0; m <= centre; ++m) half.h[centre - m] = shape(static_cast<double>(m));
  normalise(half);
  const status stored = store_taps(v, half);
  free_table(half.h);
  return stored;
}

// A sinc under a Kaiser window. The attenuation asked of the formula is a little higher: the transition band
// may hold no image, and a deep stop band comes out shallower than the formula says.
template <record V>
status design_low_pass(V* v, std::int32_t up, std::int32_t down, double passband,
                       double attenuation) noexcept {
  if (!is_rate(up) || !is_rate(down) || !(passband > 0 && passband < 1)) return failed;
  if (!(attenuation >= 20 && attenuation <= 200)) return failed;
  const double asked = attenuation + 3.5 + std::fmax(0, attenuation - 100) / 20;
  const double slower = std::max(up, down);
  const double reach = std::ceil(slower * (asked - 7.95) / (14.36 * (1 - passband)));
  if (reach > std::numeric_limits<std::int32_t>::max()) return failed;
  const double beta = kaiser_shape(asked);
  const double cutoff = (1 + passband) / (2 * slower);
  const auto shape = [=](double m) {
    const double rest = (reach - m) * (reach + m);
    return sinc(cutoff * m) * bessel_i0(beta * std::sqrt(rest) / reach);
  };
  return design(v, static_cast<index>(reach), up, shape, scale_phases);
}

// The angle of the cosine is taken from its zero, which cancels that of the denominator:
// cos(pi u / 2) / (1 - u^2) = (pi / 2) sinc((1 - u) / 2) / (1 + u), u = 2 r t.
double raised_cosine(double t, double rolloff) noexcept {
  const double u = 2 * rolloff * t;
  return sinc(t) * (pi / 2) * sinc((1 - u) / 2) / (1 + u);
}

// (sin(pi t (1 - r)) + u cos(pi t (1 + r))) / (pi t (1 - u^2)), u = 4 r t. From u = 1/2 on both terms are
// taken from the zero at u = 1: the numerator is (1 - u) times what is left below, as sin(a - b) + cos(a + b)
// = (sin a + cos a) sqrt(2) sin(pi / 4 - b).
double root_raised_cosine(double t, double rolloff) noexcept {
  if (t == 0) return 1 - rolloff + 4 * rolloff / pi;
  const double u = 4 * rolloff * t;
  if (u < 0.5) {
    return (sine_turns(t * (1 - rolloff)) + u * cosine_turns(t * (1 + rolloff))) / (pi * t * (1 - u * u));
  }
  const double front = (sine_turns(t) + cosine_turns(t)) * std::numbers::sqrt2 * (pi / 4) * sinc((1 - u) / 4);
  return (front - cosine_turns(t + u / 4)) / ((1 + u) * pi * t);
}

using pulse = double (*)(double t, double rolloff) noexcept;

template <record V>
status design_pulse(V* v, std::int32_t up, std::int32_t span, double rolloff, pulse shape,
                    void (*normalise)(const leading_half&) noexcept) noexcept {
  if (!is_rate(up) || span < 1 || !(rolloff >= 0 && rolloff <= 1)) return failed;
  const auto value = [=](double m) { return shape(m / static_cast<double>(up), rolloff); };
  return design(v, index{span} * up, up, value, normalise);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspc_rsmp(dsp_vec* v, int32_t up, int32_t down, double passband, double attenuation) {
  return design_low_pass(v, up, down, passband, attenuation);
}
int32_t dspfc_rsmp(dspf_vec* v, int32_t up, int32_t down, float passband, float attenuation) {
  return design_low_pass(v, up, down, static_cast<double>(passband), static_cast<double>(attenuation));
}

int32_t dspc_rsmp_cos(dsp_vec* v, int32_t up, int32_t span, double rolloff) {
  return design_pulse(v, up, span, rolloff, raised_cosine, scale_phases);
}
int32_t dspfc_rsmp_cos(dspf_vec* v, int32_t up, int32_t span, float rolloff) {
  return design_pulse(v, up, span, static_cast<double>(rolloff), raised_cosine, scale_phases);
}

int32_t dspc_rsmp_pcos(dsp_vec* v, int32_t up, int32_t span, double rolloff) {
  return design_pulse(v, up, span, rolloff, root_raised_cosine, scale_energy);
}
int32_t dspfc_rsmp_pcos(dspf_vec* v, int32_t up, int32_t span, float rolloff) {
  return design_pulse(v, up, span, static_cast<double>(rolloff), root_raised_cosine, scale_energy);
}
