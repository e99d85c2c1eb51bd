// SPDX-License-Identifier: MIT
// Sum and difference, the shorter operand padded with zeros.
#include "core/copy.h"
#include "elementwise/combine.h"
#include "elementwise/elementwise.h"

namespace sigpak {
namespace {

// A real operand contributes to the real part alone.
struct plus {
  template <class P> constexpr P operator()(P a, P b) const noexcept { return a + b; }
  template <class T> constexpr point<T> operator()(point<T> a, T b) const noexcept {
    return {a.re + b, a.im};
  }
  template <class T> constexpr point<T> operator()(T a, point<T> b) const noexcept {
    return {a + b.re, b.im};
  }
};

struct minus {
  template <class T> constexpr T operator()(T a, T b) const noexcept { return a - b; }
  template <class T> constexpr point<T> operator()(point<T> a, point<T> b) const noexcept {
    return {a.re - b.re, a.im - b.im};
  }
  template <class T> constexpr point<T> operator()(point<T> a, T b) const noexcept {
    return {a.re - b, a.im};
  }
  template <class T> constexpr point<T> operator()(T a, point<T> b) const noexcept {
    return {a - b.re, -b.im};
  }
};

template <record V, class F>
[[gnu::noinline]] status combine_padded(const V* a, const V* b, V* out, F f) noexcept {
  const bool a_shorter = length(a) < length(b);
  V longer = a_shorter ? *b : *a;
  longer.points = static_cast<std::uint32_t>(length(&longer));  // none for a negative count
  temporary<V> storage;
  V* const padded = &storage;
  if (copy(padded, a_shorter ? a : b) != ok) return failed;
  if (pad(padded, length(&longer)) != ok) return failed;
  return a_shorter ? combine<V>(padded, &longer, out, f) : combine<V>(&longer, padded, out, f);
}

template <record V, class F>
[[gnu::always_inline]] inline status combine_lengths(const V* a, const V* b, V* out, F f) noexcept {
  return a->points == b->points ? combine(a, b, out, f) : combine_padded(a, b, out, f);
}

template <record V> status add(const V* a, const V* b, V* out) noexcept {
  return combine_lengths(a, b, out, plus{});
}

template <record V> status subtract(const V* a, const V* b, V* out) noexcept {
  return combine_lengths(a, b, out, minus{});
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspb_add(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) { return add(a, b, out); }
int32_t dspfb_add(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) { return add(a, b, out); }

int32_t dspb_sub(const dsp_vec* a, const dsp_vec* b, dsp_vec* out) { return subtract(a, b, out); }
int32_t dspfb_sub(const dspf_vec* a, const dspf_vec* b, dspf_vec* out) { return subtract(a, b, out); }
