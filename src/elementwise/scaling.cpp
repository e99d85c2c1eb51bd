// SPDX-License-Identifier: MIT
// Arithmetic with a scalar, and signs, in place.
#include <cmath>

#include "core/each.h"
#include "core/isa.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "elementwise/in_place.h"
#include "kernels/points/points.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> void offset_scalars(T* x, index n, T amount) noexcept {
  isa::run(n, [=] { each(x, n, [=](index i) { x[i] += amount; }); });
}

// The real part of a point moves, the imaginary part stays: x + -0 is x for every x. The compiler must not
// know, or it takes the points one by one.
template <class T> void offset_points(T* z, index points, T amount) noexcept {
  T still = -T(0);
  asm("" : "+m"(still));
  isa::run(points, [=] {
    each<2>(z, points, [=](index i) { put_point(z, i, {z[2 * i] + amount, z[2 * i + 1] + still}); });
  });
}

template <record V> status offset(V* v, scalar<V> amount) noexcept {
  return apply(
      v, [amount](auto* x, index n) { offset_scalars(x, n, amount); },
      [amount](auto* z, index points) { offset_points(z, points, amount); });
}

template <record V> status take_absolute(V* v) noexcept {
  return apply(
      v, [](auto* x, index n) { isa::run(n, [=] { each(x, n, [=](index i) { x[i] = std::abs(x[i]); }); }); });
}

template <class T> void rotate_points(T* z, index points, point<double> factor) noexcept {
  const auto wide = points > isa::short_run ? at_level(&kernels::point_functions<T>::turn) : nullptr;
  if (wide != nullptr) return wide(z, points, factor.re, factor.im);
  isa::run(points, [=] {
    map_pairs(z, points, [=](double a, double b) { return product(point<double>{a, b}, factor); });
  });
}

// Backwards: the real samples stand at the start of the storage that the points fill.
template <class T> void spread_points(T* x, index points, T re, T im) noexcept {
  isa::run(points, [=] {
    each_from_end<2>(x, points, [=](index i) {
      const T sample = x[i];
      x[2 * i] = re * sample;
      x[2 * i + 1] = im * sample;
    });
  });
}

template <record V> status scale_complex(V* v, scalar<V> re, scalar<V> im) noexcept {
  const index points = length(v);
  if (points == 0) return ok;
  if (is_complex(v)) {
    rotate_points(v->data, points, {static_cast<double>(re), static_cast<double>(im)});
    return ok;
  }
  v->complex = 1;
  if (reallocate(v, v->points, 0) != ok) return failed;
  spread_points(v->data, points, re, im);
  return ok;
}

}  // namespace

template <record V> status scale(V* v, scalar<V> factor) noexcept {
  isa::run(scalars(v),
           [x = v->data, n = scalars(v), factor] { each(x, n, [=](index i) { x[i] = factor * x[i]; }); });
  return ok;
}

template <record V> status negate(V* v) noexcept {
  isa::run(scalars(v), [x = v->data, n = scalars(v)] { each(x, n, [=](index i) { x[i] = -x[i]; }); });
  return ok;
}

template status scale(dsp_vec*, double) noexcept;
template status scale(dspf_vec*, float) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_scale(dsp_vec* v, double factor) { return scale(v, factor); }
int32_t dspfi_scale(dspf_vec* v, float factor) { return scale(v, factor); }
int32_t dspi_offset(dsp_vec* v, double amount) { return offset(v, amount); }
int32_t dspfi_offset(dspf_vec* v, float amount) { return offset(v, amount); }
int32_t dspi_cscale(dsp_vec* v, double re, double im) { return scale_complex(v, re, im); }
int32_t dspfi_cscale(dspf_vec* v, float re, float im) { return scale_complex(v, re, im); }
int32_t dspi_neg(dsp_vec* v) { return negate(v); }
int32_t dspfi_neg(dspf_vec* v) { return negate(v); }
int32_t dspi_abs(dsp_vec* v) { return take_absolute(v); }
int32_t dspfi_abs(dspf_vec* v) { return take_absolute(v); }
