// SPDX-License-Identifier: MIT
// The turns by w^j and back, in rows: a power is the product of that of its row and that of its place in it.
#include "spectral/right_angle.h"

#include <algorithm>

#include "core/isa.h"
#include "fft/plans/roots_of_unity.h"

namespace sigpak::right_angle {
namespace {

constexpr index row = 64;

struct turn {
  double cosine;
  double sine;
};

// w^j = turn_of(begin) * places[s], j = begin + s.
struct powers {
  kernels::roots w;
  double cosine[row];
  double sine[row];

  explicit powers(index points) noexcept : w(4 * points) {
    for (index s = 0; s < row; ++s) {
      const turn t = turn_of(s);
      cosine[s] = t.cosine;
      sine[s] = t.sine;
    }
  }
  turn turn_of(index j) const noexcept {
    const kernels::root r = w[j];
    return {rounded(r.cosine), rounded(r.sine)};
  }
  turn at(turn begin, index s) const noexcept {
    return {begin.cosine * cosine[s] - begin.sine * sine[s], begin.cosine * sine[s] + begin.sine * cosine[s]};
  }
};

// The samples of a row from `begin` on; whether there are any.
template <class T> bool take_row(const T* x, index n, index begin, double* out) noexcept {
  const index some = std::clamp<index>(n - begin, 0, row);
  for (index s = 0; s < some; ++s) out[s] = static_cast<double>(x[begin + s]);
  std::fill(out + some, out + row, 0.0);
  return some > 0;
}

}  // namespace

template <class T> void fold(const T* x, index n, index points, T* z) noexcept {
  isa::run([=] {
    const powers w(points);
    double low[row];
    double high[row];
    for (index begin = 0; begin < points; begin += row) {
      const index count = std::min(row, points - begin);
      T* const to = z + 2 * begin;
      const bool any = take_row(x, n, begin, low);
      const turn first = w.turn_of(begin);
      if (!any) {
        std::fill_n(to, 2 * count, T(0));
      } else if (take_row(x, n, begin + points, high)) {
        for (index s = 0; s < count; ++s) {
          const turn t = w.at(first, s);
          to[2 * s] = static_cast<T>(low[s] * t.cosine - high[s] * t.sine);
          to[2 * s + 1] = static_cast<T>(low[s] * t.sine + high[s] * t.cosine);
        }
      } else {
        for (index s = 0; s < count; ++s) {
          const turn t = w.at(first, s);
          to[2 * s] = static_cast<T>(low[s] * t.cosine);
          to[2 * s + 1] = static_cast<T>(low[s] * t.sine);
        }
      }
    }
  });
}

template <class T> void unfold(const T* z, index points, index known, lag_scale scale, T* centre) noexcept {
  isa::run([=] {
    const powers w(points);
    double right[row];
    double left[row];
    const auto put = [=](const double* sums, index lag, index begin, index end) {
      const double whole = scale.whole;
      const double reach = scale.samples - static_cast<double>(lag < 0 ? -lag : lag);
      const double step = lag < 0 ? 1 : -1;
      T* const to = centre + lag;
      for (index s = begin; s < end && !scale.fades; ++s) to[s] = static_cast<T>(sums[s] * whole);
      for (index s = begin; s < end && scale.fades; ++s) {
        to[s] = static_cast<T>(sums[s] * whole /
                               (reach + step * static_cast<double>(static_cast<std::int32_t>(s))));
      }
    };
    for (index begin = 0; begin < points; begin += row) {
      const index count = std::min(row, points - begin);
      const index rights = std::clamp<index>(known + 1 - begin, 0, count);
      const index lefts = std::clamp<index>(points - known - begin, 0, count);
      if (rights == 0 && lefts == count) continue;
      const T* const from = z + 2 * begin;
      const turn first = w.turn_of(begin);
      for (index s = 0; s < count; ++s) {
        const turn t = w.at(first, s);
        const auto re = static_cast<double>(from[2 * s]);
        const auto im = static_cast<double>(from[2 * s + 1]);
        right[s] = re * t.cosine + im * t.sine;
        left[s] = re * t.sine - im * t.cosine;
      }
      put(right, begin, 0, rights);
      put(left, begin - points, lefts, count);
    }
  });
}

template void fold(const double*, index, index, double*) noexcept;
template void fold(const float*, index, index, float*) noexcept;
template void unfold(const double*, index, index, lag_scale, double*) noexcept;
template void unfold(const float*, index, index, lag_scale, float*) noexcept;

}  // namespace sigpak::right_angle
