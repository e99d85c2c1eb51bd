// SPDX-License-Identifier: MIT
// Windows seen from outside, as records of ones, and as their formulas define them.
#pragma once

#include <functional>
#include <numbers>

#include "support/forms.h"
#include "windows/catalogue.h"

namespace sigpak::test {

using real = long double;

constexpr real exact(double x) { return static_cast<real>(x); }
constexpr real exact(float x) { return static_cast<real>(x); }

inline constexpr int by_mean = DSP_WINDOW_FLAG_MEAN;
inline constexpr int by_rms = DSP_WINDOW_FLAG_RMS;
inline constexpr int by_peak = DSP_WINDOW_FLAG_PEAK;
inline constexpr int symmetric = DSP_WINDOW_FLAG_SYMMETRIC;
inline constexpr int by_width = DSP_WINDOW_FLAG_WIDTH;

// The windows that take a parameter, beside those of the catalogue, whose parameter is a width.
enum : int { kaiser = 100, gaussian };

template <record V> status apply(V* v, int window, int flags, double parameter = 0) {
  const auto p = static_cast<scalar<V>>(parameter);
  if (window == kaiser) return TWIN(i_window_kaiser)(v, p, flags);
  if (window == gaussian) return TWIN(i_window_gauss)(v, p, flags);
  return (flags & by_width) != 0 ? TWIN(i_window2)(v, window, flags, p) : TWIN(i_window)(v, window, flags);
}

template <record V> samples<V> ones(index n) { return samples<V>(static_cast<std::size_t>(n), scalar<V>(1)); }

// The window of n points, its middle in place; empty when it is refused.
template <record V> samples<V> window_of(index n, int window, int flags, double parameter = 0) {
  signal<V> v(ones<V>(n));
  return apply<V>(&v, window, flags | DSP_WINDOW_FLAG_NO_ROTATE, parameter) == 0 ? v.values() : samples<V>{};
}

// The power series, whose terms are all positive.
inline real bessel(real x) {
  real term = 1;
  real sum = 1;
  for (int k = 1; term > sum * 1e-22L; ++k) sum += (term *= x * x / (4.0L * k * k));
  return sum;
}

// The shape at the distance x from the middle of a window of the given length; for a sum of cosines its
// terms, scaled to unit mean, which alone decide its gain. Where the relative error is bounded, not the
// absolute one, says by how many rounding errors of double.
struct definition {
  std::function<real(real x, real length)> shape;
  std::vector<real> terms = {};
  bool shorter_if_symmetric = false;
  double relative = 0;
};

// The digits of a window of the catalogue are its own: their figures are tested apart.
inline definition definition_of(int window, double parameter = 0) {
  constexpr real turn = 2 * std::numbers::pi_v<real>;
  const real p = exact(parameter);
  if (window == kaiser) {
    return {[p](real x, real d) {
              return d > 0 ? bessel(p * std::sqrt(std::fmax(0.0L, 1 - 4 * x * x / (d * d)))) : 1;
            },
            {},
            true,
            20 + std::abs(parameter)};
  }
  if (window == gaussian)
    return {[p](real x, real n) { return std::exp(-x * x / (2 * p * p * n * n)); }, {}, false, 16};
  if (window == DSP_WINDOW_RIEMANN) {
    return {[](real x, real d) {
      return x == 0 ? 1 : 2 * x >= d ? 0 : std::sin(turn * x / d) / (turn * x / d);
    }};
  }
  if (window == DSP_WINDOW_TRIANGULAR) return {[](real x, real n) { return 1 - 2 * x / n; }};
  const catalogued_window& w = *find_window(window);
  if (window >= DSP_WINDOW_KAISER70)
    return definition_of(window >= DSP_WINDOW_GAUSS60 ? gaussian : kaiser, w.parameter);
  const auto terms = w.terms_of(by_mean);
  const std::vector<real> a(terms.begin(), terms.end());
  const auto sum = [a](real x, real d) {
    real y = 0;
    for (std::size_t k = 0; k < a.size(); ++k) y += a[k] * std::cos(turn * static_cast<real>(k) * x / d);
    return y;
  };
  return {sum, a};
}

struct level {
  real mean = 0;
  real square = 0;  // its mean
};

template <class T> level level_of(const std::vector<T>& points) {
  level l;
  for (const T w : points) {
    l.mean += static_cast<real>(w) / static_cast<real>(points.size());
    l.square += static_cast<real>(w) * static_cast<real>(w) / static_cast<real>(points.size());
  }
  return l;
}

// The points of a window, normalised. Narrower than the record, a window of even width ends on the left of
// its centre and is 0 where it would end on the right; wider, it is cut by the record.
inline std::vector<real> points_of(const definition& d, index n, int flags, double width = 0) {
  const bool between = (flags & symmetric) != 0 && n % 2 == 0;
  const bool cut = (flags & by_width) != 0 && width < static_cast<double>(n);
  const index half = static_cast<index>(std::floor(width)) / 2;
  const real whole = static_cast<real>(n - ((flags & symmetric) != 0 && d.shorter_if_symmetric ? 1 : 0));
  const real length = (flags & by_width) != 0 ? exact(width) : whole;
  std::vector<real> w;
  for (index m = -(n / 2); m < n - n / 2; ++m) {
    const bool blank = cut && (width <= 0 || std::abs(m) > half || (m == half && std::fmod(width, 2) == 0));
    w.push_back(blank ? 0 : d.shape(std::abs(static_cast<real>(m) + (between ? 0.5L : 0)), length));
  }
  const int mode = flags & 3;
  level l = level_of(w);
  real peak = d.shape(0, whole);
  if (!d.terms.empty()) {
    l = {1, d.terms[0] * d.terms[0] / 2};
    for (const real a : d.terms) l.square += a * a / 2;
  }
  const real unit = mode == by_mean ? l.mean : mode == by_rms ? std::sqrt(l.square) : peak;
  for (real& x : w) x /= unit != 0 ? unit : 1;
  return w;
}

// The largest error, in units of what the definition allows.
template <record V>
double worst_error(const samples<V>& got, const std::vector<real>& wanted, const definition& d) {
  EXPECT_EQ(got.size(), wanted.size());
  using limits = std::numeric_limits<scalar<V>>;
  const double least = d.relative > 0 ? static_cast<double>(limits::min()) / unit_roundoff<V> : 1;
  const double allowed = 4 * unit_roundoff<V> + (d.relative > 0 ? d.relative : 800) * 0x1p-52;
  double worst = 0;
  for (std::size_t i = 0; i < got.size(); ++i) {
    const double error = static_cast<double>(std::abs(exact(got[i]) - wanted[i]));
    worst = std::fmax(worst, error / std::fmax(least, static_cast<double>(std::abs(wanted[i]))));
  }
  return worst / allowed;
}

}  // namespace sigpak::test
