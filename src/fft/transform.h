// SPDX-License-Identifier: MIT
// The Fourier transforms on plain memory, of every length: what the records' operations stand on.
#pragma once

#include "core/power_of_two.h"
#include "core/record.h"

namespace sigpak {

// In place on interleaved complex data, natural order in and out; any number of points. Forward with exponent
// -, times 1/points; inverse with exponent +, unscaled. Tables are fetched before the data are touched: a
// failure leaves them as they were. So do all of these.
template <class T> status transform(T* data, index points, bool inverse) noexcept;

// The transform of `points` reals, which become pairs: data has room for 2 points scalars.
template <class T> status transform_reals(T* data, index points, bool inverse) noexcept;

// In place: `points` reals to the points / 2 + 1 pairs of their half spectrum, and back from the pairs to the
// reals. data has room for half_spectrum_room(points) scalars. The way back of a power of two, at least 4,
// ignores the imaginary parts of the two outer bins.
template <class T> status forward_real(T* data, index points) noexcept;
template <class T> status inverse_real(T* data, index points) noexcept;
constexpr bool has_packed(index points) noexcept { return points >= 4 && is_power_of_two(points); }
constexpr index half_spectrum_room(index points) noexcept {
  return has_packed(points) ? points + 2 : 2 * points;
}

// The same from one place to another, without a copy where sections of filters are as long. The way forward
// needs that room in `to`; the way back takes no more of it than the reals, and changes the spectrum.
template <class T> status forward_real_apart(const T* from, T* to, index points) noexcept;
template <class T> status inverse_real_apart(T* from, T* to, index points) noexcept;

// Whether reals go around a circle of so many points with a filter in one sweep less than by the transforms
// above, and in what order of bins: 0 where they do not.
template <class T> int circle_order(index points) noexcept;

// There: a filter, zero-padded to the circle and scaled by the points, to its bins, in place; and data around
// the circle, also in place.
constexpr index circle_room(index points) noexcept { return half_spectrum_room(points) + 16; }
template <class T> status make_filter(T* x, index points) noexcept;
template <class T> status run_circle(const T* filter, const T* from, T* to, index points) noexcept;

// What transforms complex data.
enum class algorithm {
  identity,     // of at most one point
  pair,         // of two, scaled before the sum, which then cannot overflow
  small,        // in registers, without tables: short powers of two
  coprime,      // the same of short lengths that are odd or products of coprime factors
  lanes,        // side by side in the lanes: powers of two
  product,      // by passes of short transforms: small prime factors
  square,       // in place, by those and transforms of squares: long lengths with a square factor
  mixed,        // by columns and rows: the same of other long lengths
  direct,       // by the definition: short odd lengths
  chirp,        // by a convolution in the lanes: all others
  split_radix,  // at the baseline: powers of two
  bluestein     // at the baseline: all others
};
template <class T> algorithm algorithm_for(index points) noexcept;

// Whether the level has passes for the length's small prime factors, told without the search for the best
// ones. Powers of two are others.
template <class T> bool has_short_factors(index points) noexcept;

}  // namespace sigpak
