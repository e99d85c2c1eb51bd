// SPDX-License-Identifier: MIT
// Real and complex forms of a record, and a run of points into a second record.
#include "core/copy.h"
#include "elementwise/elementwise.h"
#include "elementwise/packing.h"

namespace sigpak {
namespace {

struct real_part {
  template <class T> constexpr T operator()(T x) const noexcept { return x; }
  template <class T> constexpr T operator()(point<T> z) const noexcept { return z.re; }
};

struct imaginary_part {
  template <class T> constexpr T operator()(T) const noexcept { return 0; }
  template <class T> constexpr T operator()(point<T> z) const noexcept { return z.im; }
};

struct times_i {
  template <class T> constexpr point<T> operator()(T x) const noexcept { return {0, x}; }
  template <class T> constexpr point<T> operator()(point<T> z) const noexcept { return {-z.im, z.re}; }
};

}  // namespace

template <record V> status keep_real(V* v) noexcept { return is_complex(v) ? turn_real(v, real_part{}) : ok; }
template <record V> status keep_imaginary(V* v) noexcept { return turn_real(v, imaginary_part{}); }

template <record V> status conjugate(V* v) noexcept {
  if (!is_complex(v)) return ok;
  map_points(v->data, v->data, length(v), [](auto z) { return sigpak::conjugate(z); });
  return ok;
}

template <record V> status multiply_by_i(V* v) noexcept { return turn_complex(v, times_i{}); }

template status keep_real(dsp_vec*) noexcept;
template status keep_real(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_rtoc(dsp_vec* v) { return to_complex(v); }
int32_t dspfi_rtoc(dspf_vec* v) { return to_complex(v); }

int32_t dspi_real(dsp_vec* v) { return keep_real(v); }
int32_t dspfi_real(dspf_vec* v) { return keep_real(v); }

int32_t dspi_imag(dsp_vec* v) { return keep_imaginary(v); }
int32_t dspfi_imag(dspf_vec* v) { return keep_imaginary(v); }

int32_t dspi_conj(dsp_vec* v) { return conjugate(v); }
int32_t dspfi_conj(dspf_vec* v) { return conjugate(v); }

int32_t dspi_timesi(dsp_vec* v) { return multiply_by_i(v); }
int32_t dspfi_timesi(dspf_vec* v) { return multiply_by_i(v); }

int32_t dspu_subvec(const dsp_vec* in, dsp_vec* out, int32_t start, int32_t count) {
  return copy_run(in, out, start, count);
}
int32_t dspfu_subvec(const dspf_vec* in, dspf_vec* out, int32_t start, int32_t count) {
  return copy_run(in, out, start, count);
}
