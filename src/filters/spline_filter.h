// SPDX-License-Identifier: MIT
// A filter for any time between two samples: the cubic spline through its taps, in rows for the sums.
#pragma once

#include <cmath>
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
// s. The samples that have a weight in phase r are those from first(r) to last(r): with R knots on either
// side, the m that make -R <= r - m * phases < R.
class spline_filter {
 public:
  spline_filter(index taps, index phases, double stretch) noexcept
      : taps_(taps),
        phases_(phases),
        stretch_(stretch),
        reach_(static_cast<index>(std::ceil(stretch * static_cast<double>((taps - 1) / 2)))),
        before_((reach_ - 1) / phases),
        before_rest_((reach_ - 1) % phases),
        after_(reach_ / phases),
        after_rest_(reach_ % phases) {}

  index taps() const noexcept { return taps_; }
  index phases() const noexcept { return phases_; }
  double stretch() const noexcept { return stretch_; }
  index first(index phase) const noexcept { return (phase > before_rest_ ? 1 : 0) - before_; }
  index last(index phase) const noexcept { return after_ + (phase + after_rest_ >= phases_ ? 1 : 0); }
  index longest() const noexcept { return 2 * reach_ / phases_ + 1; }
  index stride() const noexcept { return (longest() + 15) / 16 * 16; }
  index scalars() const noexcept { return phases_ * 4 * stride(); }

 private:
  index taps_;
  index phases_;
  double stretch_;
  index reach_;  // R
  index before_;
  index before_rest_;
  index after_;
  index after_rest_;
};

// The rows of all phases: of one phase the coefficients of v^0, of all its samples, then those of v^1, v^2,
// v^3.
template <class T> status build_rows(const spline_filter& f, const T* taps, T* rows) noexcept;

// A target in the rows: its phase and its place in it.
struct phase_place {
  index phase;
  double v;
};
inline phase_place place_in(const spline_filter& f, std::uint64_t part) noexcept {
  __extension__ using wide = unsigned __int128;
  const wide scaled = static_cast<wide>(part) * static_cast<std::uint64_t>(f.phases());
  return {static_cast<index>(scaled >> 64),
          static_cast<double>(static_cast<std::uint64_t>(scaled)) * 0x1p-64};
}

// Filtered values at targets of one block of samples.
template <class T> struct spline_target {
  const T* oldest;  // the first sample of the phase
  T v;
  std::int32_t phase;
};
inline constexpr index targets_at_once = 512;

// out[k * stride] for k < count <= targets_at_once; targets of one phase are summed together, each with the
// same bits as alone.
template <class T>
void filter_targets(const spline_filter& f, const T* rows, const spline_target<T>* targets, index count,
                    T* out, index stride) noexcept;

}  // namespace sigpak
