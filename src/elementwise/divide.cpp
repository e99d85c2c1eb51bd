// SPDX-License-Identifier: MIT
// The guarded quotient: 0/0 is 0, and anything else over 0 is +H in every part.
#include <cmath>

#include "core/guard.h"
#include "elementwise/combine.h"
#include "elementwise/elementwise.h"

namespace sigpak {
namespace {

// Selects instead of branches, so that the loops vectorise.
struct over {
  static constexpr bool divides = true;
  template <class T> static constexpr auto kernel(T*) noexcept {
    return &kernels::point_functions<T>::divide;
  }

  template <class T> constexpr T operator()(T a, T b) const noexcept {
    return b != 0 ? a / b : a != 0 ? guard<T>::huge : T(0);
  }

  template <class T> point<T> operator()(point<T> a, T b) const noexcept {
    return guarded(product(a, 1 / b), b, size(a) == 0);
  }

  template <class T> point<T> operator()(point<T> a, point<T> b) const noexcept {
    const T d = b.re * b.re + b.im * b.im;  // may underflow to 0 where b is not
    return guarded(product(product(a, conjugate(b)), 1 / d), d, size(a) + size(b) == 0);
  }

  template <class T> point<T> operator()(T a, point<T> b) const noexcept { return (*this)(as_point(a), b); }

 private:
  // Zero for zero points alone, found by one comparison.
  template <class T> static T size(point<T> z) noexcept { return std::abs(z.re) + std::abs(z.im); }

  template <class T> static constexpr point<T> guarded(point<T> value, T divisor, bool nothing) noexcept {
    const T instead = nothing ? T(0) : guard<T>::huge;
    return {divisor != 0 ? value.re : instead, divisor != 0 ? value.im : instead};
  }
};

template <record V> status divide(const V* a, const V* b, V* out) noexcept {
  return combine(a, b, out, over{});
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspb_div(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) { return divide(a, b, out); }
int32_t dspfb_div(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) { return divide(a, b, out); }
