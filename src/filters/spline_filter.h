// A filter for any time between two samples: the cubic spline through its taps, in rows for the sums.
#pragma once

#include <cstdint>

#include "core/record.h"

namespace sigpak {

// A time in samples: whole ones, and 2^-64 parts.
struct sample_time {
  std::int64_t whole;
  std::uint64_t part;
};

// The spline through 2 c + 1 taps, `phases` of them per sample, stretched by s: with x = part of a sample,
// phase r the whole part of x * phases and v the rest, a sample m further on is weighted by h((x - m) / s) /
// s. The samples that have a weight in phase r are those from first(r) to last(r).
struct spline_filter {
  index taps;
  index phases;
  double stretch;

  index reach() const noexcept;  // in knots, to either side
  index first(index phase) const noexcept;
  index last(index phase) const noexcept;
  index longest() const noexcept;
  index stride() const noexcept { return (longest() + 15) / 16 * 16; }
  index scalars() const noexcept { return phases * 4 * stride(); }
};

// The rows of all phases: of one phase the coefficients of v^0, of all its samples, then those of v^1, v^2,
// v^3.
template <class T> status build_rows(const spline_filter& f, const T* taps, T* rows) noexcept;

// A target in the rows: its phase and its place in it.
struct phase_place {
  index phase;
  double v;
};
phase_place place_in(const spline_filter& f, std::uint64_t part) noexcept;

// Filtered values at targets of one block of samples.
template <class T> struct spline_target {
  const T* oldest;  // the first sample of the phase
  T v;
  std::int32_t phase;
};
inline constexpr index targets_at_once = 512;

// out[k] for k < count <= targets_at_once; targets of one phase are summed together, each with the same bits
// as alone.
template <class T>
void filter_targets(const spline_filter& f, const T* rows, const spline_target<T>* targets, index count,
                    T* out) noexcept;

}  // namespace sigpak
