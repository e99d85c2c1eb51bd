// SPDX-License-Identifier: MIT
// Ascending order of complex points, by keys of their magnitudes where that pays. The order is total enough
// for NaN: a comparison that calls NaN equal to everything is no weak order, and sorting by it may run out of
// the record.
#include <algorithm>
#include <bit>
#include <cstdint>

#include "core/guard.h"
#include "core/memory.h"
#include "shape/digits.h"
#include "shape/shape.h"

namespace sigpak {
namespace {

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

// A point with its magnitude, or with where it stands in the record: by the magnitude alone.
template <class T> struct measured_point {
  T magnitude;
  point<T> z;
};
template <class T> struct place_of_point {
  typename digits<T>::word key;
  std::uint32_t place;
};
template <class T> auto key_of(const place_of_point<T>& p) noexcept { return p.key; }

template <class T> constexpr bool precedes(const measured_point<T>& a, const measured_point<T>& b) noexcept {
  if (a.magnitude != b.magnitude) return a.magnitude < b.magnitude;
  if (precedes(a.z.re, b.z.re)) return true;
  if (precedes(b.z.re, a.z.re)) return false;
  return precedes(a.z.im, b.z.im);
}

template <class T> constexpr measured_point<T> measured(point<T> z) noexcept {
  return {guarded_magnitude(z), z};
}

template <class T> void sort_by_comparison(point<T>* z, index n) noexcept {
  std::sort(z, z + n, [](point<T> a, point<T> b) { return precedes(measured(a), measured(b)); });
}

// A few points: each is measured once.
constexpr index worth_places = 400;
template <class T> void sort_few(point<T>* z, index n) noexcept {
  measured_point<T> items[worth_places];
  std::transform(z, z + n, items, measured<T>);
  std::sort(items, items + n, [](const auto& a, const auto& b) { return precedes(a, b); });
  std::transform(items, items + n, z, [](const auto& item) { return item.z; });
}

// Points of one magnitude stand together; the parts order them.
template <class T> void sort_ties(point<T>* z, index n) noexcept {
  for (index i = 0; i < n;) {
    index end = i + 1;
    while (end < n && guarded_magnitude(z[end]) == guarded_magnitude(z[i])) ++end;
    if (end - i > 1) sort_by_comparison(z + i, end - i);
    i = end;
  }
}

// The places by magnitude, in memory for two lists of them and for the points in their order. A magnitude is
// never negative and no NaN, so its bits order it.
template <class T>
void sort_by_places(point<T>* z, index n, place_of_point<T>* places, point<T>* sorted) noexcept {
  using word = typename digits<T>::word;
  for (index i = 0; i < n; ++i) {
    places[i] = {std::bit_cast<word>(guarded_magnitude(z[i])), static_cast<std::uint32_t>(i)};
  }
  const place_of_point<T>* const order = sort_by_digits<T>(places, places + n, n);
  for (index i = 0; i < n; ++i) sorted[i] = z[order[i].place];
  sort_ties(sorted, n);
  std::copy_n(sorted, n, z);
}

template <class T> void sort_complex(T* data, index n) noexcept {
  auto* const z = reinterpret_cast<point<T>*>(data);
  if (n <= worth_places) return sort_few(z, n);
  auto* const places = allocate_table<place_of_point<T>>(2 * n);
  auto* const sorted = allocate_table<point<T>>(n);
  if (places != nullptr && sorted != nullptr) {
    sort_by_places(z, n, places, sorted);
  } else {
    sort_by_comparison(z, n);
  }
  free_table(sorted);
  free_table(places);
}

}  // namespace

template <record V> status sort(V* v) noexcept {
  if (is_complex(v)) {
    sort_complex(v->data, length(v));
  } else {
    sort_numbers(v->data, length(v));
  }
  return ok;
}

template status sort(dsp_vec*) noexcept;
template status sort(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_sort(dsp_vec* v) { return sort(v); }
int32_t dspfi_sort(dspf_vec* v) { return sort(v); }
