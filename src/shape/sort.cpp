// Ascending order of real and complex points. Every order here is total enough for NaN: a comparison that
// calls NaN equal to everything is no weak order, and sorting by it may run out of the record.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numeric>

#include "core/guard.h"
#include "core/memory.h"
#include "shape/shape.h"

namespace sigpak {
namespace {

// Digits of the keys that order numbers as unsigned integers do: negative ones complemented, the sign of the
// others set, so that -0 comes before 0.
template <class T> struct digits {
  using word = std::conditional_t<sizeof(T) == 8, std::uint64_t, std::uint32_t>;
  static constexpr int bits = 11;
  static constexpr int count = (8 * sizeof(T) + bits - 1) / bits;
  static constexpr std::size_t values = std::size_t{1} << bits;

  static word key(T x) noexcept {
    constexpr int sign = 8 * sizeof(T) - 1;
    const auto word_of = std::bit_cast<word>(x);
    return word_of ^ ((word(0) - (word_of >> sign)) | (word(1) << sign));
  }
  static std::size_t at(word key, int digit) noexcept { return (key >> (digit * bits)) & (values - 1); }
};

// One stable pass: `places` counts the values of the digit, and becomes where the next of each goes.
template <class T> void distribute(const T* from, T* to, index n, int digit, std::uint32_t* places) noexcept {
  using d = digits<T>;
  std::exclusive_scan(places, places + d::values, places, std::uint32_t{0});
  for (index i = 0; i < n; ++i) to[places[d::at(d::key(from[i]), digit)]++] = from[i];
}

// Radix sort from the lowest digit up; false, and nothing done, without memory. A digit that all share is
// passed over.
template <class T> bool sort_by_digits(T* x, index n) noexcept {
  using d = digits<T>;
  T* const scratch = allocate_table<T>(n);
  if (scratch == nullptr) return false;
  std::uint32_t places[d::count][d::values] = {};
  for (index i = 0; i < n; ++i) {
    const auto key = d::key(x[i]);
    for (int digit = 0; digit < d::count; ++digit) ++places[digit][d::at(key, digit)];
  }
  T* from = x;
  T* to = scratch;
  for (int digit = 0; digit < d::count; ++digit) {
    if (places[digit][d::at(d::key(x[0]), digit)] == static_cast<std::uint32_t>(n)) continue;
    distribute(from, to, n, digit, places[digit]);
    std::swap(from, to);
  }
  if (from != x) std::copy_n(from, n, x);
  free_table(scratch);
  return true;
}

// The rest compares as numbers do, and the zeros, equal so far, are put in order where they lie.
template <class T> void sort_by_comparison(T* x, index n) noexcept {
  std::sort(x, x + n);
  const auto [zeros, zeros_end] = std::equal_range(x, x + n, T(0));
  std::partition(zeros, zeros_end, [](T a) { return std::signbit(a); });
}

// NaN go to the end first, whatever their sign.
template <class T> void sort_real(T* x, index n) noexcept {
  constexpr index worth_counting = 700;
  const index numbers = std::partition(x, x + n, [](T a) { return a == a; }) - x;
  if (numbers < worth_counting || !sort_by_digits(x, numbers)) sort_by_comparison(x, numbers);
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
