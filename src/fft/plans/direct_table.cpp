// The table of the transform by the definition.
#include "core/isa.h"
#include "fft/plans/chirp_plan.h"
#include "fft/plans/roots_of_unity.h"
#include "fft/wide/kernels.h"
#include "vectors/levels.h"

namespace sigpak::kernels {
namespace {

// The table of the last short odd length; small enough to stay.
template <class T> class kept_table {
 public:
  const T* of(index points) noexcept {
    const isa::level level = isa::current();
    if (points_ != points || level_ != level) fill(points, at_level<chirp_kernels<T>>(level)->widest_lanes);
    points_ = points;
    level_ = level;
    return values_;
  }

 private:
  void fill(index points, index lanes) noexcept {
    const roots w(points);
    T cosine[most_direct_points<T>];
    T sine[most_direct_points<T>];
    for (index k = 0; k < points; ++k) {
      const root r = w[k];
      cosine[k] = static_cast<T>(rounded(r.cosine));
      sine[k] = static_cast<T>(rounded(r.sine));
    }
    T* out = values_;
    for (index first = 1; 2 * first < points; first += lanes) {
      for (index j = 1; 2 * j < points; ++j, out += 2 * lanes) {
        for (index p = 0, at = j * first % points; p < lanes; ++p) {
          out[p] = cosine[at];
          out[lanes + p] = sine[at];
          at += j;
          if (at >= points) at -= points;
        }
      }
    }
  }

  static constexpr index most_terms = most_direct_points<T> / 2;
  static constexpr index most_in_lanes = (most_terms + most_lanes - 1) / most_lanes * most_lanes;
  alignas(64) T values_[2 * most_terms * most_in_lanes] = {};
  index points_ = 0;
  isa::level level_ = isa::level::baseline;
};
template <class T> constinit kept_table<T> kept;

}  // namespace

template <class T> const T* direct_table(index points) noexcept { return kept<T>.of(points); }

template const double* direct_table(index) noexcept;
template const float* direct_table(index) noexcept;

}  // namespace sigpak::kernels
