// Squares, reciprocals and square roots, in place.
#include <cmath>

#include "core/isa.h"
#include "elementwise/elementwise.h"
#include "elementwise/in_place.h"
#include "elementwise/wide_guard.h"

namespace sigpak {
namespace {

// Squares and differences of squares of T fit here without overflow, underflow or visible rounding.
template <class T> struct wider;
template <> struct wider<double> { using type = long double; };
template <> struct wider<float> { using type = double; };

template <class T> void square(T* x, index n) noexcept {
  isa::run([=] {
    constexpr T huge = guard<T>::huge;
    for (index i = 0; i < n; ++i) x[i] = x[i] > huge || x[i] < -huge ? huge : x[i] * x[i];
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
  isa::run([=] {
    for (index i = 0; i < n; ++i) x[i] = x[i] != 0 ? 1 / x[i] : guard<T>::huge;
  });
}

// conj(z) / |z|^2; a point beyond H is divided by H instead, and 0 becomes (0, -0).
template <class T> void reciprocal_points(T* z, index points) noexcept {
  isa::run([=] {
    map_pairs(z, points, [](double a, double b) {
      constexpr double huge = wide_guard<T>::huge;
      const double s = a * a + b * b;
      const double inverse = wide_guard<T>::excludes(a, b) ? 1 / huge : s == 0 ? huge : 1 / s;
      return point<double>{inverse * a, -inverse * b};
    });
  });
}

template <class T> void square_root(T* x, index n) noexcept {
  isa::run([=] {
    for (index i = 0; i < n; ++i) x[i] = x[i] < 0 ? T(0) : std::sqrt(x[i]);
  });
}

// The principal root by half angles: with r = |z|, re = sqrt((r + a) / 2) and im = b / (2 re) in the right
// half plane, the two exchanged in the left one. No cancellation, and exact signs.
template <class W> point<double> half_angle_root(W a, W b) noexcept {
  const W r = std::sqrt(a * a + b * b);
  if (r == 0) return {0, 0};
  const W major = std::sqrt((r + std::abs(a)) / 2);
  const W minor = std::abs(b) / (2 * major);
  const W re = a < 0 ? minor : major;
  const W im = a < 0 ? major : minor;
  return {static_cast<double>(re), static_cast<double>(std::copysign(im, b))};
}

// A point beyond H keeps its direction and counts as |z| = H.
template <class T> void square_root_points(T* z, index points) noexcept {
  using W = typename wider<T>::type;
  map_pairs(z, points, [root = std::sqrt(wide_guard<T>::huge)](double a, double b) {
    if (wide_guard<T>::excludes(a, b)) {
      const double angle = std::atan2(b, a) / 2;
      return point<double>{root * std::cos(angle), root * std::sin(angle)};
    }
    return half_angle_root(static_cast<W>(a), static_cast<W>(b));
  });
}

template <record V> status take_square(V* v) noexcept {
  return apply(v, square<scalar<V>>, square_points<scalar<V>>);
}

template <record V> status take_square_root(V* v) noexcept {
  return apply(v, square_root<scalar<V>>, square_root_points<scalar<V>>);
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
