// SPDX-License-Identifier: MIT
// Squares, reciprocals and square roots, in place.
#include "core/each.h"
#include "core/guard.h"
#include "core/isa.h"
#include "elementwise/elementwise.h"
#include "elementwise/in_place.h"
#include "elementwise/square_root.h"
#include "kernels/points/points.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

template <class T> void square(T* x, index n) noexcept {
  isa::run(n, [=] {
    constexpr T huge = guard<T>::huge;
    each(x, n, [=](index i) { x[i] = x[i] > huge || x[i] < -huge ? huge : x[i] * x[i]; });
  });
}

template <class T> void square_points(T* z, index points) noexcept {
  isa::run([=] {
    map_pairs(z, points, [](double re, double im) {
      const double a = wide_guard<T>::clamp(re);
      const double b = wide_guard<T>::clamp(im);
      return point<double>{a * a - b * b, 2 * a * b};
    });
  });
}

template <class T> void reciprocal(T* x, index n) noexcept {
  isa::run(n, [=] {
    each<1, bound::divider>(x, n, [=](index i) { x[i] = x[i] != 0 ? 1 / x[i] : guard<T>::huge; });
  });
}

// conj(z) / |z|^2; a point beyond H is divided by H instead, and 0 becomes (0, -0).
template <class T> void reciprocal_points(T* z, index points) noexcept {
  run_at_level(&kernels::point_functions<T>::reciprocate, z, points);
}

template <class T> void square_roots(T* x, index n) noexcept {
  isa::run(n, [=] { each<1, bound::divider>(x, n, [=](index i) { x[i] = square_root(x[i]); }); });
}

template <record V> status take_square(V* v) noexcept {
  return apply(v, square<scalar<V>>, square_points<scalar<V>>);
}

template <record V> status take_square_root(V* v) noexcept {
  return apply(v, square_roots<scalar<V>>, [](auto* z, index points) { square_root_points(z, z, points); });
}

}  // namespace

template <record V> status reciprocate(V* v) noexcept {
  return apply(v, reciprocal<scalar<V>>, reciprocal_points<scalar<V>>);
}

template status reciprocate(dsp_vec*) noexcept;
template status reciprocate(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_square(dsp_vec* v) { return take_square(v); }
int32_t dspfi_square(dspf_vec* v) { return take_square(v); }
int32_t dspi_recip(dsp_vec* v) { return reciprocate(v); }
int32_t dspfi_recip(dspf_vec* v) { return reciprocate(v); }
int32_t dspi_sqrt(dsp_vec* v) { return take_square_root(v); }
int32_t dspfi_sqrt(dspf_vec* v) { return take_square_root(v); }
