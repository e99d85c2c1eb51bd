// SPDX-License-Identifier: MIT
// Zeros appended, inserted and written over; points cut off.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "core/each.h"
#include "core/isa.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "shape/shape.h"

namespace sigpak {
namespace {

// The flags word of dspi_zpad2 and dspi_unzpad.
constexpr std::int32_t mode_bits = 3;
constexpr std::int32_t placement_bits = 0x700;
constexpr std::int32_t invalid_mode = 3;

constexpr bool valid(std::int32_t flags) noexcept {
  return (flags & mode_bits) != invalid_mode && (flags & placement_bits) <= DSP_PAD_SPLIT;
}

constexpr bool scaled(std::int32_t flags) noexcept { return (flags & mode_bits) != DSP_PAD_UNSCALED; }

template <record V> scalar<V> factor(std::int32_t flags, index points, index old_points) noexcept {
  const double ratio = static_cast<double>(points) / static_cast<double>(old_points);
  return static_cast<scalar<V>>((flags & mode_bits) == DSP_PAD_RATIO ? ratio : std::sqrt(ratio));
}

// How the points of the shorter record lie in the longer one: the first `leading` at its start, the rest from
// `following` on.
struct layout {
  index leading;
  index following;
};

// When centred the middle points coincide, those at half the lengths rounded down.
constexpr layout layout_of(std::int32_t flags, index longer, index shorter) noexcept {
  switch (flags & placement_bits) {
    case DSP_PAD_CENTRE:
      return {0, longer / 2 - shorter / 2};
    case DSP_PAD_END:
      return {0, longer - shorter};
    case DSP_PAD_SPLIT:
      return {shorter - shorter / 2, longer - shorter / 2};
    case DSP_PAD_START:
    default:
      return {shorter, shorter};
  }
}

template <class T> void move_scalars(T* to, const T* from, index count) noexcept {
  if (count > 0) std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(T));
}

// The growth comes before the flags are looked at: a bad word leaves the record lengthened.
template <record V> status pad_placed(V* v, index points, std::int32_t flags) noexcept {
  const index old = length(v);
  if (old >= points) return ok;
  v->points = static_cast<std::uint32_t>(points);
  if (reallocate(v, static_cast<std::uint32_t>(old), v->complex) != ok) return failed;
  if (!valid(flags)) return failed;
  if (scaled(flags) && old > 0) {
    V before = *v;
    before.points = static_cast<std::uint32_t>(old);
    scale(&before, factor<V>(flags, points, old));
  }
  const layout at = layout_of(flags, points, old);
  const index w = width(v);
  scalar<V>* const gap = v->data + at.leading * w;
  scalar<V>* const moved = v->data + at.following * w;
  const index count = (old - at.leading) * w;
  move_scalars(moved, gap, count);
  std::fill(gap, moved, scalar<V>(0));
  std::fill(moved + count, v->data + points * w, scalar<V>(0));
  return ok;
}

template <record V> status cut_placed(V* v, index wanted, std::int32_t flags) noexcept {
  const index old = length(v);
  if (old <= wanted) return ok;
  if (!valid(flags)) return failed;
  const index points = std::max<index>(wanted, 0);
  const layout at = layout_of(flags, old, points);
  const index w = width(v);
  move_scalars(v->data + at.leading * w, v->data + at.following * w, (points - at.leading) * w);
  v->points = static_cast<std::uint32_t>(points);
  return scaled(flags) ? scale(v, factor<V>(flags, points, old)) : ok;
}

template <index width, class T> void interleave_zeros(T* x, index points) noexcept {
  each_from_end<2 * width>(x, points, [=](index i) {
    T point[width];
    for (index part = 0; part < width; ++part) point[part] = x[i * width + part];
    for (index part = 0; part < width; ++part) {
      x[2 * i * width + part] = point[part];
      x[(2 * i + 1) * width + part] = 0;
    }
  });
}

template <record V> status interleave_zeros(V* v) noexcept {
  const index points = length(v);
  v->points = static_cast<std::uint32_t>(2 * points);
  v->delta *= scalar<V>(0.5);
  if (reallocate(v, static_cast<std::uint32_t>(points), v->complex) != ok) return failed;
  isa::run(points, [x = v->data, points, complex = is_complex(v)] {
    if (complex) {
      interleave_zeros<2>(x, points);
    } else {
      interleave_zeros<1>(x, points);
    }
  });
  return ok;
}

}  // namespace

template <record V> status zero(V* v) noexcept {
  const index points = length(v);
  v->points = 0;
  return pad(v, points);
}

template status zero(dsp_vec*) noexcept;
template status zero(dspf_vec*) noexcept;

}  // namespace sigpak

using namespace sigpak;

int32_t dspi_zpad(dsp_vec* v, int32_t points) { return pad(v, points); }
int32_t dspfi_zpad(dspf_vec* v, int32_t points) { return pad(v, points); }

int32_t dspi_zero(dsp_vec* v) { return zero(v); }
int32_t dspfi_zero(dspf_vec* v) { return zero(v); }

int32_t dspi_zinter(dsp_vec* v) { return interleave_zeros(v); }
int32_t dspfi_zinter(dspf_vec* v) { return interleave_zeros(v); }

int32_t dspi_zpad2(dsp_vec* v, int32_t points, int32_t flags) { return pad_placed(v, points, flags); }
int32_t dspfi_zpad2(dspf_vec* v, int32_t points, int32_t flags) { return pad_placed(v, points, flags); }

int32_t dspi_unzpad(dsp_vec* v, int32_t points, int32_t flags) { return cut_placed(v, points, flags); }
int32_t dspfi_unzpad(dspf_vec* v, int32_t points, int32_t flags) { return cut_placed(v, points, flags); }
