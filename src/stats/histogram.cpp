// Histogram: how many samples fall into each of a row of bins.
#include <algorithm>
#include <cmath>
#include <limits>

#include "shape/shape.h"
#include "stats/result.h"
#include "stats/wide.h"

namespace sigpak {
namespace {

// The sample, of a complex record the magnitude; H when a component is beyond H.
template <record V> scalar<V> level(const V* v, index i) noexcept {
  using T = scalar<V>;
  if (!is_complex(v)) return v->data[i];
  const double re = wide(v->data[2 * i]);
  const double im = wide(v->data[2 * i + 1]);
  constexpr double most = wide_huge<T>;
  const bool beyond = re > most || re < -most || im > most || im < -most;
  return beyond ? guard<T>::huge : static_cast<T>(std::sqrt(re * re + im * im));
}

// A row of bins of one width. The edge above the last belongs to it, with a few roundings of tolerance.
template <class T> struct bins {
  T low;
  T width;
  index count;

  // The bin of a value; -1 when it has none. The index is capped: in single precision the bounds round.
  index of(T value) const noexcept {
    constexpr T tolerance = T(1) + T(10) * std::numeric_limits<T>::epsilon();
    const auto upper = static_cast<T>(count);
    const T t = width != 0 ? (value - low) / width : value == low ? T(0) : guard<T>::huge;
    if (t >= 0 && t < upper) return std::min(static_cast<index>(t), count - 1);
    if (t >= upper && t < upper * tolerance) return std::min(static_cast<index>(t), count) - 1;
    return -1;
  }
};

template <record V>
status histogram(const V* v, V* result, scalar<V> low, scalar<V> bin_width, std::int32_t count) noexcept {
  const bins<scalar<V>> row{low, bin_width, std::max(count, 0)};
  return run_apart(v, result, [row](const V* in, V* out) {
    out->delta = row.width;
    if (prepare_result(out, row.count, false) != ok || zero(out) != ok) return failed;
    for (index i = 0; i < length(in); ++i) {
      const index bin = row.of(level(in, i));
      if (bin >= 0) out->data[bin] += 1;
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
