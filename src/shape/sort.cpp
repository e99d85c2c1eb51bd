// Ascending order of real and complex points. Every order here is total enough for NaN: a comparison that
// calls NaN equal to everything is no weak order, and sorting by it may run out of the record.
#include <algorithm>
#include <cmath>

#include "core/guard.h"
#include "shape/shape.h"

namespace sigpak {
namespace {

// NaN go to the end first, whatever their sign; the rest compares as numbers do, and the zeros, equal so far,
// are put in order where they lie.
template <class T> void sort_real(T* x, index n) noexcept {
  T* const numbers_end = std::partition(x, x + n, [](T a) { return a == a; });
  std::sort(x, numbers_end);
  const auto [zeros, zeros_end] = std::equal_range(x, numbers_end, T(0));
  std::partition(zeros, zeros_end, [](T a) { return std::signbit(a); });
}

template <class T> struct point {
  T re;
  T im;
};

// Whatever is not within [-H, H] counts as H.
template <class T> constexpr T guarded_square(T x) noexcept {
  constexpr T h = guard<T>::huge;
  const T limited = x >= -h && x <= h ? x : h;
  return limited * limited;
}

template <class T> constexpr T guarded_magnitude(point<T> z) noexcept {
  return guarded_square(z.re) + guarded_square(z.im);
}

// The two zeros are equal, NaN come last.
template <class T> constexpr bool precedes(T a, T b) noexcept { return a < b || (a == a && b != b); }

template <class T> constexpr bool precedes(point<T> a, point<T> b) noexcept {
  const T a_magnitude = guarded_magnitude(a);
  const T b_magnitude = guarded_magnitude(b);
  if (a_magnitude != b_magnitude) return a_magnitude < b_magnitude;
  if (precedes(a.re, b.re)) return true;
  if (precedes(b.re, a.re)) return false;
  return precedes(a.im, b.im);
}

template <class T> void sort_complex(T* data, index points) noexcept {
  auto* const z = reinterpret_cast<point<T>*>(data);
  std::sort(z, z + points, [](point<T> a, point<T> b) { return precedes(a, b); });
}

}  // namespace

template <record V> status sort(V* v) noexcept {
  if (is_complex(v)) {
    sort_complex(v->data, length(v));
  } else {
    sort_real(v->data, length(v));
  }
  return ok;
}

template status sort(dsp_vec*) noexcept;
template status sort(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_sort(dsp_vec* v) { return sort(v); }
int32_t dspfi_sort(dspf_vec* v) { return sort(v); }
