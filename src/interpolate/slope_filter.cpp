// SPDX-License-Identifier: MIT
// On regular knots without ends, the equations s[i-1] + 4 s[i] + s[i+1] = 3 (y[i+1] - y[i-1]) for the slopes
// per knot are a filter: with a = sqrt(3) - 2, 1 / (z + 4 + 1/z) = -a / ((1 - a z) (1 - a / z)), and
// 1 / (1 - a z) is the product of 1 + (a z)^m over m = 1, 2, 4, 8, ..., of which five leave an error of
// a^32 = 5e-19. Each with its mirror image is one symmetric pass over three values, and no value waits for
// its neighbour's. What the ends ask for adds a multiple of a^i, i the distance from the end.
#include "interpolate/slope_filter.h"

#include <algorithm>

#include "core/isa.h"

namespace sigpak::slope_filter {
namespace {

constexpr double a = -0.2679491924311227;  // sqrt(3) - 2
constexpr index reach = 31;                // 1 + 2 + 4 + 8 + 16
constexpr index block = 1024;
constexpr index longest = block + least_knots + 2 * reach;

struct buffers {
  double one[longest];
  double other[longest];
};

// differences[j] = y[i+1] - y[i-1], i = begin - reach + j, for the knots from `begin` on and `reach` more on
// either side; 0 at the ends and beyond them, or periodic.
template <class T>
void take_differences(const T* y, index n, bool periodic, index begin, index count, double* out) noexcept {
  const index first = begin - reach;
  const index end = begin + count + reach;
  const index inner = std::max<index>(first, 1);
  const index outer = std::min(end, n - 1);
  const auto outside = [=](index i) {
    if (!periodic) return 0.0;
    const index period = n - 1;
    const index k = (i + period) % period;
    return static_cast<double>(y[k + 1 == period ? 0 : k + 1]) -
           static_cast<double>(y[k == 0 ? period - 1 : k - 1]);
  };
  for (index i = first; i < inner; ++i) out[i - first] = outside(i);
  for (index i = inner; i < outer; ++i) {
    out[i - first] = static_cast<double>(y[i + 1]) - static_cast<double>(y[i - 1]);
  }
  for (index i = outer; i < end; ++i) out[i - first] = outside(i);
  // The last value of a period is the first, whatever it holds.
  if (periodic && first <= n - 2 && n - 2 < end) out[n - 2 - first] = outside(n - 2);
}

// The slopes per knot of `count` knots, from their differences.
double* filter(buffers& b, index count) noexcept {
  const index length = count + 2 * reach;
  double* from = b.one;
  double* to = b.other;
  double power = a;
  index begin = 0;
  for (index m = 1; m <= reach; m *= 2) {
    begin += m;
    const bool last = 2 * m > reach;
    const double gain = last ? -3 * a : 1;
    const double centre = gain * (1 + power * power);
    const double side = gain * power;
#pragma GCC ivdep
    for (index i = begin; i < length - begin; ++i)
      to[i] = centre * from[i] + side * (from[i - m] + from[i + m]);
    power *= power;
    std::swap(from, to);
  }
  return from + reach;
}

// The multiple of a^i that makes the slopes s0, s1, s2 of an end and behind it follow its rule; d0 and d1 are
// the differences there, d0 the outer one.
double missing(end_rule rule, double slope, double s0, double s1, double s2, double d0, double d1) noexcept {
  switch (rule.kind) {
    case spline_ends::natural:
      return (3 * d0 - 2 * s0 - s1) / (2 + a);
    case spline_ends::clamped:
      return slope - s0;
    default:
      return (2 * (d0 - d1) - s0 + s2) / (1 - a * a);
  }
}

// s points to the end; towards the inside lies `step`.
template <class T> void mend_end(const T* y, double* s, index step, end_rule rule, double slope) noexcept {
  const auto difference = [=](index i) {
    return static_cast<double>(step) *
           (static_cast<double>(y[(i + 1) * step]) - static_cast<double>(y[i * step]));
  };
  double term = missing(rule, slope, s[0], s[step], s[2 * step], difference(0), difference(1));
  for (index i = 0; i < least_knots; ++i, term *= a) s[i * step] += term;
}

}  // namespace

template <class T> void run(const T* y, index n, double spacing, end_rule rule, slopes_at<T> out) noexcept {
  const bool periodic = rule.kind == spline_ends::periodic;
  isa::run([=] {
    buffers b;
    const double scale = 1 / spacing;
    index count = 0;
    for (index begin = 0; begin < n; begin += count) {
      const index left = n - begin;
      count = left <= block + least_knots ? left : block;  // the last block holds a whole end
      take_differences(y, n, periodic, begin, count, b.one);
      double* const s = filter(b, count);
      if (!periodic && begin == 0) mend_end(y, s, 1, rule, rule.start * spacing);
      if (!periodic && count == left) mend_end(y + n - 1, s + count - 1, -1, rule, rule.end * spacing);
      T* const to = out.at + begin * out.stride;
      for (index i = 0; i < count; ++i) to[i * out.stride] = static_cast<T>(scale * s[i]);
    }
  });
}

template void run(const double*, index, double, end_rule, slopes_at<double>) noexcept;
template void run(const float*, index, double, end_rule, slopes_at<float>) noexcept;

}  // namespace sigpak::slope_filter
