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

struct magnitude {
  template <class T> T operator()(T x) const noexcept { return std::abs(x); }
  template <class T> T operator()(point<T> z) const noexcept { return std::hypot(z.re, z.im); }
};

// Each square on its own becomes H when its component lies outside [-H, H].
struct squared_magnitude {
  template <class T> T operator()(T x) const noexcept {
    return std::abs(x) > guard<T>::huge ? guard<T>::huge : x * x;
  }
  template <class T> T operator()(point<T> z) const noexcept { return (*this)(z.re) + (*this)(z.im); }
};

template <class T> void square_magnitudes_of(const T* z, T* out, index points) noexcept {
  const auto* wide = points > isa::short_run ? at_level<kernels::point_functions<T>>() : nullptr;
  if (wide == nullptr) return pack(z, out, points, squared_magnitude{});
  wide->square_magnitudes(z, out, points);
}

// The magnitudes' storage is sized in the form of the input and read back in place, so a complex one packs.
template <record V, class F> status fill_real(const operands<V>& in, V* out, F f) noexcept {
  if (in.a_complex) {
    pack(in.a, out->data, in.points, f);
  } else {
    map_reals(in.a, out->data, in.points, f);
  }
  out->complex = 0;
  return ok;
}

}  // namespace

template <record V> status take_magnitude(V* v) noexcept {
  const auto* wide = at_level<kernels::inverse_functions<scalar<V>>>();
  if (wide == nullptr || !is_complex(v)) return turn_real(v, magnitude{});
  wide->magnitude(v->data, v->data, length(v));
  v->complex = 0;
  return ok;
}
template <record V> status square_magnitude(V* v) noexcept {
  if (!is_complex(v)) return turn_real(v, squared_magnitude{});
  square_magnitudes_of(v->data, v->data, length(v));
  v->complex = 0;
  return ok;
}

template <record V> status take_magnitude(const V* in, V* out) noexcept {
  return prepare(in, in, out, is_complex(in), [out](const operands<V>& from) {
    const auto* wide = at_level<kernels::inverse_functions<scalar<V>>>();
    if (wide == nullptr || !from.a_complex) return fill_real(from, out, magnitude{});
    wide->magnitude(from.a, out->data, from.points);
    out->complex = 0;
    return ok;
  });
}

template <record V> status square_magnitude(const V* in, V* out) noexcept {
  return prepare(in, in, out, false, [out](const operands<V>& from) {
    if (!from.a_complex) return fill_real(from, out, squared_magnitude{});
    square_magnitudes_of(from.a, out->data, from.points);
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
