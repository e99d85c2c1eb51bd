// SPDX-License-Identifier: MIT
// The point-by-point product, plain and with the conjugate.
#include "elementwise/combine.h"
#include "elementwise/elementwise.h"

namespace sigpak {
namespace {

struct times {
  template <class T> static constexpr auto kernel(T*) noexcept {
    return &kernels::point_functions<T>::multiply;
  }
  template <class A, class B> constexpr auto operator()(A a, B b) const noexcept { return product(a, b); }
};

struct times_conjugate {
  template <class T> static constexpr auto kernel(T*) noexcept {
    return &kernels::point_functions<T>::multiply_conjugate;
  }
  template <class A, class B> constexpr auto operator()(A a, point<B> b) const noexcept {
    return product(a, conjugate(b));
  }
  template <class A, class B> constexpr auto operator()(A a, B b) const noexcept { return product(a, b); }
};

}  // namespace

template <record V> status multiply(const V* a, const V* b, V* out) noexcept {
  return combine(a, b, out, times{});
}

template <class T>
void multiply_in_place(T* a, index a_width, const T* b, index b_width, index points) noexcept {
  const T* const in = a;
  if (a_width == 1) {
    combine_points(real_points{in}, real_points{b}, real_points{a}, points, times{});
  } else if (b_width == 1) {
    combine_points(complex_points{in}, real_points{b}, complex_points{a}, points, times{});
  } else {
    combine_points(complex_points{in}, complex_points{b}, complex_points{a}, points, times{});
  }
}

template <record V> status multiply_by_reals(V* v, const scalar<V>* factors) noexcept {
  if (reallocate(v, v->points, v->complex) != ok) return failed;
  multiply_in_place(v->data, width(v), factors, 1, length(v));
  return ok;
}

template <record V> status multiply_conjugate(const V* a, const V* b, V* out) noexcept {
  return combine(a, b, out, times_conjugate{});
}

template status multiply(const dsp_vec*, const dsp_vec*, dsp_vec*) noexcept;
template status multiply(const dspf_vec*, const dspf_vec*, dspf_vec*) noexcept;
template void multiply_in_place(double*, index, const double*, index, index) noexcept;
template void multiply_in_place(float*, index, const float*, index, index) noexcept;
template status multiply_by_reals(dsp_vec*, const double*) noexcept;
template status multiply_by_reals(dspf_vec*, const float*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspb_mul(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) { return multiply(a, b, out); }
int32_t dspfb_mul(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) { return multiply(a, b, out); }

int32_t dspb_conj_mul(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) {
  return multiply_conjugate(a, b, out);
}
int32_t dspfb_conj_mul(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) {
  return multiply_conjugate(a, b, out);
}
