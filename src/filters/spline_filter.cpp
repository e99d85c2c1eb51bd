// SPDX-License-Identifier: MIT
// Rows of the spline through the taps of a filter, and the sums over them.
#include "filters/spline_filter.h"

#include <algorithm>
#include <cmath>

#include "core/memory.h"
#include "interpolate/slopes.h"
#include "kernels/spline_rows.h"
#include "vectors/levels.h"

namespace sigpak {

namespace {

struct cubic {
  double value;
  double slope;
};

// The spline, knots one apart, and zeros outside.
struct tap_spline {
  const double* y;
  const double* slope;
  index n;

  cubic at(double x) const noexcept {
    if (!(x >= 0 && x <= static_cast<double>(n - 1))) return {0, 0};
    const index j = std::min(static_cast<index>(x), n - 2);
    const double v = x - static_cast<double>(j);
    const double d = y[j + 1] - y[j];
    const double c = 3 * d - 2 * slope[j] - slope[j + 1];
    const double cube = slope[j] + slope[j + 1] - 2 * d;
    return {y[j] + v * (slope[j] + v * (c + v * cube)), slope[j] + v * (2 * c + 3 * v * cube)};
  }
};

// The cubic between two knots of the rows; where the filter is not stretched, a piece of the spline itself.
template <class T> void put_piece(cubic a, cubic b, index i, index stride, T* row) noexcept {
  const double d = b.value - a.value;
  row[i] = static_cast<T>(a.value);
  row[stride + i] = static_cast<T>(a.slope);
  row[2 * stride + i] = static_cast<T>(3 * d - 2 * a.slope - b.slope);
  row[3 * stride + i] = static_cast<T>(a.slope + b.slope - 2 * d);
}

template <class T> void fill_rows(const spline_filter& f, const tap_spline& h, T* rows) noexcept {
  const index stride = f.stride();
  const auto centre = static_cast<double>((f.taps() - 1) / 2);
  const auto weight = [&](index knot) {
    const cubic c = h.at(centre + static_cast<double>(knot) / f.stretch());
    return cubic{c.value / f.stretch(), c.slope / (f.stretch() * f.stretch())};
  };
  for (index phase = 0; phase < f.phases(); ++phase, rows += 4 * stride) {
    std::fill_n(rows, 4 * stride, T(0));
    for (index m = f.first(phase); m <= f.last(phase); ++m) {
      const index knot = phase - m * f.phases();
      put_piece(weight(knot), weight(knot + 1), m - f.first(phase), stride, rows);
    }
  }
}

// Four chains side by side.
template <class T>
void sum_plainly(const kernels::cubic_rows<T>& rows, const T* const* x, const T* v, index outputs, T* out) {
  for (index k = 0; k < outputs; ++k) {
    T sums[4] = {};
    for (index i = 0; i < rows.size; ++i) {
      for (index p = 0; p < 4; ++p) sums[p] += rows.at[p * rows.stride + i] * x[k][i];
    }
    out[k] = sums[0] + v[k] * (sums[1] + v[k] * (sums[2] + v[k] * sums[3]));
  }
}

template <class T> kernels::cubic_sum<T> current_sum() noexcept {
  const auto* const wide = at_level<kernels::cubic_table<T>>();
  return wide != nullptr ? wide->sum : sum_plainly<T>;
}

constexpr index most_sorted_phases = 1024;

template <class T> struct sorted_targets {
  const T* x[targets_at_once];
  T v[targets_at_once];
  std::int32_t from[targets_at_once];

  void put(index place, const spline_target<T>& target, index k) noexcept {
    x[place] = target.oldest;
    v[place] = target.v;
    from[place] = static_cast<std::int32_t>(k);
  }
};

// Phase by phase, body(phase, begin, end) for its targets; where phases are too many to come twice, target by
// target.
template <class T, class Body>
void for_phases(const spline_target<T>* targets, index count, index phases, sorted_targets<T>& sorted,
                Body body) noexcept {
  if (phases > most_sorted_phases) {
    for (index k = 0; k < count; ++k) {
      sorted.put(k, targets[k], k);
      body(targets[k].phase, k, k + 1);
    }
    return;
  }
  std::int32_t next[most_sorted_phases + 1];
  std::fill_n(next, phases + 1, 0);
  for (index k = 0; k < count; ++k) ++next[targets[k].phase + 1];
  for (index p = 1; p < phases; ++p) next[p] += next[p - 1];
  for (index k = 0; k < count; ++k) sorted.put(next[targets[k].phase]++, targets[k], k);
  for (index p = 0, begin = 0; p < phases; begin = next[p++]) {
    if (begin < next[p]) body(p, begin, index{next[p]});
  }
}

}  // namespace

template <class T> status build_rows(const spline_filter& f, const T* taps, T* rows) noexcept {
  double* const y = allocate_table<double>(2 * f.taps());
  if (y == nullptr) return failed;
  std::copy_n(taps, f.taps(), y);
  regular_slopes(y, f.taps(), 1, {}, slopes_at<double>{y + f.taps(), 1});
  fill_rows(f, {y, y + f.taps(), f.taps()}, rows);
  free_table(y);
  return ok;
}

template <class T>
void filter_targets(const spline_filter& f, const T* rows, const spline_target<T>* targets, index count,
                    T* out, index stride) noexcept {
  sorted_targets<T> sorted;
  T values[targets_at_once];
  const kernels::cubic_sum<T> sum = current_sum<T>();
  for_phases(targets, count, f.phases(), sorted, [&](index phase, index begin, index end) {
    const index size = f.last(phase) - f.first(phase) + 1;
    sum({rows + phase * 4 * f.stride(), f.stride(), size}, sorted.x + begin, sorted.v + begin, end - begin,
        values + begin);
  });
  for (index i = 0; i < count; ++i) out[sorted.from[i] * stride] = values[i];
}

template status build_rows(const spline_filter&, const double*, double*) noexcept;
template status build_rows(const spline_filter&, const float*, float*) noexcept;
template void filter_targets(const spline_filter&, const double*, const spline_target<double>*, index,
                             double*, index) noexcept;
template void filter_targets(const spline_filter&, const float*, const spline_target<float>*, index, float*,
                             index) noexcept;

}  // namespace sigpak
