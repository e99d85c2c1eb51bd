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

template <record V> status multiply_conjugate(const V* a, const V* b, V* out) noexcept {
  return combine(a, b, out, times_conjugate{});
}

template status multiply(const dsp_vec*, const dsp_vec*, dsp_vec*) noexcept;
template status multiply(const dspf_vec*, const dspf_vec*, dspf_vec*) noexcept;
template status multiply_conjugate(const dsp_vec*, const dsp_vec*, dsp_vec*) noexcept;
template status multiply_conjugate(const dspf_vec*, const dspf_vec*, dspf_vec*) noexcept;

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
