// SPDX-License-Identifier: MIT
// The smaller and the larger of two records, point by point.
#include <cmath>

#include "core/guard.h"
#include "elementwise/combine.h"
#include "elementwise/elementwise.h"

namespace sigpak {
namespace {

template <class T> constexpr T rank(T x) noexcept { return x; }

// The squared magnitude; H when a component lies outside [-H, H].
template <class T> T rank(point<T> z) noexcept {
  constexpr T h = guard<T>::huge;
  return std::abs(z.re) > h ? h : std::abs(z.im) > h ? h : z.re * z.re + z.im * z.im;
}

template <class T> constexpr T chosen(bool first, T a, T b) noexcept { return first ? a : b; }
template <class T> constexpr point<T> chosen(bool first, point<T> a, point<T> b) noexcept {
  return {first ? a.re : b.re, first ? a.im : b.im};
}

// b on ties and wherever a NaN is compared.
struct smaller {
  template <class P> P operator()(P a, P b) const noexcept { return chosen(rank(a) < rank(b), a, b); }
  template <class A, class B> auto operator()(A a, B b) const noexcept {
    return (*this)(as_point(a), as_point(b));
  }
};

struct larger {
  template <class P> P operator()(P a, P b) const noexcept { return chosen(rank(a) > rank(b), a, b); }
  template <class A, class B> auto operator()(A a, B b) const noexcept {
    return (*this)(as_point(a), as_point(b));
  }
};

}  // namespace

template <record V> status take_minimum(const V* a, const V* b, V* out) noexcept {
  return combine(a, b, out, smaller{});
}

template <record V> status take_maximum(const V* a, const V* b, V* out) noexcept {
  return combine(a, b, out, larger{});
}

template status take_minimum(const dsp_vec*, const dsp_vec*, dsp_vec*) noexcept;
template status take_minimum(const dspf_vec*, const dspf_vec*, dspf_vec*) noexcept;
template status take_maximum(const dsp_vec*, const dsp_vec*, dsp_vec*) noexcept;
template status take_maximum(const dspf_vec*, const dspf_vec*, dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspb_min(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) { return take_minimum(a, b, out); }
int32_t dspfb_min(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) { return take_minimum(a, b, out); }

int32_t dspb_max(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) { return take_maximum(a, b, out); }
int32_t dspfb_max(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) { return take_maximum(a, b, out); }
