// SPDX-License-Identifier: MIT
// Histogram: how many samples fall into each of a row of bins.
#include <algorithm>
#include <cmath>
#include <limits>

#include "core/blocks.h"
#include "core/guard.h"
#include "core/isa.h"
#include "shape/shape.h"
#include "stats/result.h"

namespace sigpak {
namespace {

// The magnitude of a point; H when a component is beyond H.
template <class T> T magnitude(const T* point) noexcept {
  const double re = wide(point[0]);
  const double im = wide(point[1]);
  constexpr double most = wide_guard<T>::huge;
  const bool beyond = re > most || re < -most || im > most || im < -most;
  return beyond ? guard<T>::huge : static_cast<T>(std::sqrt(re * re + im * im));
}

// A row of bins of one width. The edge above the last belongs to it, with a few roundings of tolerance.
template <class T> struct bins {
  T low;
  T width;
  index count;

  // In widths from the low edge.
  T position(T value) const noexcept {
    return width != 0 ? (value - low) / width : value == low ? T(0) : guard<T>::huge;
  }

  // The bin of a position; -1 when it has none. The index is capped: in single precision the bounds round.
  index at(T t) const noexcept {
    constexpr T tolerance = T(1) + T(10) * std::numeric_limits<T>::epsilon();
    const auto upper = static_cast<T>(count);
    if (t >= 0 && t < upper) return std::min(static_cast<index>(t), count - 1);
    if (t >= upper && t < upper * tolerance) return std::min(static_cast<index>(t), count) - 1;
    return -1;
  }
};

// Block by block the positions first, many at once, for their quotients are most of the work.
template <class T, class Value>
void count_values(index points, Value value, bins<T> row, T* counts) noexcept {
  constexpr index block = 128;
  isa::run(points, [=] {
    for_blocks(points, block, [=](index begin, index n) {
      T positions[block];
      for (index i = 0; i < n; ++i) positions[i] = row.position(value(begin + i));
      for (index i = 0; i < n; ++i) {
        const index bin = row.at(positions[i]);
        if (bin >= 0) counts[bin] += 1;
      }
    });
  });
}

template <record V>
status histogram(const V* v, V* result, scalar<V> low, scalar<V> bin_width, std::int32_t count) noexcept {
  using T = scalar<V>;
  const bins<T> row{low, bin_width, std::max(count, 0)};
  return run_apart(v, result, [row](const V* in, V* out) {
    out->delta = row.width;
    if (prepare_result(out, row.count, false) != ok || zero(out) != ok) return failed;
    const T* const x = in->data;
    if (is_complex(in)) {
      count_values(
          length(in), [x](index i) { return magnitude(x + 2 * i); }, row, out->data);
    } else {
      count_values(
          length(in), [x](index i) { return x[i]; }, row, out->data);
    }
    return ok;
  });
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_hist(const dsp_vec* v, dsp_vec* result, double lo, double width, int32_t bins) {
  return histogram(v, result, lo, width, bins);
}
int32_t dspfs_hist(const dspf_vec* v, dspf_vec* result, float lo, float width, int32_t bins) {
  return histogram(v, result, lo, width, bins);
}
