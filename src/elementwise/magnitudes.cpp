// SPDX-License-Identifier: MIT
// Magnitudes and squared magnitudes, in place and into a second record.
#include <cmath>

#include "core/guard.h"
#include "elementwise/elementwise.h"
#include "elementwise/packing.h"
#include "elementwise/prepare.h"
#include "kernels/elementary/functions.h"
#include "kernels/points/points.h"
#include "vectors/levels.h"

namespace sigpak {
namespace {

// Each square on its own becomes H when its component lies outside [-H, H].
struct squared_magnitude {
  template <class T> T operator()(T x) const noexcept {
    return std::abs(x) > guard<T>::huge ? guard<T>::huge : x * x;
  }
  template <class T> T operator()(point<T> z) const noexcept { return (*this)(z.re) + (*this)(z.im); }
};

// Of reals or of points, which out may be.
template <class T> void take_magnitudes(const T* in, bool complex, T* out, index points) noexcept {
  if (complex) return run_at_level(&kernels::inverse_functions<T>::magnitude, in, out, points);
  map_reals(in, out, points, [](T x) { return std::abs(x); });
}

template <class T> void square_magnitudes(const T* in, bool complex, T* out, index points) noexcept {
  if (!complex) return map_reals(in, out, points, squared_magnitude{});
  if (points <= isa::short_run) return pack(in, out, points, squared_magnitude{});
  run_at_level(&kernels::point_functions<T>::square_magnitudes, in, out, points);
}

}  // namespace

template <record V> status take_magnitude(V* v) noexcept {
  take_magnitudes(v->data, is_complex(v), v->data, length(v));
  v->complex = 0;
  return ok;
}
template <record V> status square_magnitude(V* v) noexcept {
  square_magnitudes(v->data, is_complex(v), v->data, length(v));
  v->complex = 0;
  return ok;
}

template <record V> status take_magnitude(const V* in, V* out) noexcept {
  return prepare(in, in, out, is_complex(in), [out](const operands<V>& from) {
    take_magnitudes(from.a, from.a_complex, out->data, from.points);
    out->complex = 0;
    return ok;
  });
}

template <record V> status square_magnitude(const V* in, V* out) noexcept {
  return prepare(in, in, out, false, [out](const operands<V>& from) {
    square_magnitudes(from.a, from.a_complex, out->data, from.points);
    out->complex = 0;
    return ok;
  });
}

template status square_magnitude(const dsp_vec*, dsp_vec*) noexcept;
template status square_magnitude(const dspf_vec*, dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_mag(dsp_vec* v) { return take_magnitude(v); }
int32_t dspfi_mag(dspf_vec* v) { return take_magnitude(v); }

int32_t dspi_magsq(dsp_vec* v) { return square_magnitude(v); }
int32_t dspfi_magsq(dspf_vec* v) { return square_magnitude(v); }

int32_t dspu_mag(const dsp_vec* in, dsp_vec* out) { return take_magnitude(in, out); }
int32_t dspfu_mag(const dspf_vec* in, dspf_vec* out) { return take_magnitude(in, out); }

int32_t dspu_magsq(const dsp_vec* in, dsp_vec* out) { return square_magnitude(in, out); }
int32_t dspfu_magsq(const dspf_vec* in, dspf_vec* out) { return square_magnitude(in, out); }
