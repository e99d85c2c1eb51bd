// SPDX-License-Identifier: MIT
// Slopes on any knots: of splines by a tridiagonal system, of monotone curves from the neighbours.
#include "interpolate/slopes.h"

#include <cmath>

#include "core/memory.h"
#include "interpolate/slope_filter.h"
#include "interpolate/tridiagonal.h"

namespace sigpak {
namespace {

// Lengths and chords of the intervals, whatever the knots are.
template <class T> struct rising_knots {
  const T* x;
  double length(index i) const noexcept { return static_cast<double>(x[i + 1]) - static_cast<double>(x[i]); }
};
struct even_knots {
  double spacing;
  double length(index) const noexcept { return spacing; }
};

template <class T> double value(const T* y, index n, spline_ends kind, index i) noexcept {
  return static_cast<double>(y[kind == spline_ends::periodic && i == n - 1 ? 0 : i]);
}

template <class T, class Knots> struct intervals {
  Knots knots;
  const T* y;
  index n;  // values
  spline_ends kind;

  double length(index i) const noexcept { return knots.length(i); }
  double chord(index i) const noexcept {
    return (value(y, n, kind, i + 1) - value(y, n, kind, i)) / knots.length(i);
  }
};

template <class Intervals> slope_row row_at(const Intervals& of, end_rule rule, index i) noexcept {
  const index last = of.n - 2;  // interval
  if (i > 0 && i <= last) return inner_row(of.length(i - 1), of.length(i), of.chord(i - 1), of.chord(i));
  const bool first = i == 0;
  const index outer = first ? 0 : last;
  const index inner = last == 0 ? 0 : first ? 1 : last - 1;
  slope_row row = end_row(rule.kind, first ? rule.start : rule.end, of.length(outer), of.length(inner),
                          of.chord(outer), of.chord(inner));
  if (!first) row = {row.after, row.pivot, 0, row.right};
  return row;
}

// One cubic through three values is a parabola.
template <class Intervals> void solve_parabola(const Intervals& of, double* s) noexcept {
  const double h0 = of.length(0);
  const double h1 = of.length(1);
  s[1] = (h1 * of.chord(0) + h0 * of.chord(1)) / (h0 + h1);
  s[0] = 2 * of.chord(0) - s[1];
  s[2] = 2 * of.chord(1) - s[1];
}

// With the first slope known the others follow as those of a clamped spline do; what they gain per unit of it
// is a second solution, without data. The first slope is then what its own row asks for.
template <class Intervals> void solve_periodic(const Intervals& of, double* factor, double* s) noexcept {
  const index n = of.n;
  const index last = n - 2;  // interval, and the knot before the first
  if (last == 0) {
    s[0] = s[1] = 0;
    return;
  }
  const slope_row first = inner_row(of.length(last), of.length(0), of.chord(last), of.chord(0));
  solve_rows(
      n,
      [&of](index i) {
        slope_row row = row_at(of, {spline_ends::clamped, 1, 1}, i);
        if (i > 0 && i < of.n - 1) row.right = 0;
        return row;
      },
      factor, s);
  const double gained_last = s[last];
  const double gained_next = s[1];
  solve_rows(
      n,
      [&of](index i) {
        return row_at(of, {spline_ends::clamped, 0, 0}, i);
      },
      factor, s);
  const double slope = (first.right - first.before * s[last] - first.after * s[1]) /
                       (first.pivot + first.before * gained_last + first.after * gained_next);
  solve_rows(
      n,
      [&of, slope](index i) {
        return row_at(of, {spline_ends::clamped, slope, slope}, i);
      },
      factor, s);
}

template <class Intervals>
void solve_spline(const Intervals& of, end_rule rule, double* factor, double* s) noexcept {
  if (rule.kind == spline_ends::periodic) return solve_periodic(of, factor, s);
  if (of.n == 2 && rule.kind != spline_ends::clamped) {
    s[0] = s[1] = of.chord(0);
  } else if (of.n == 3 && rule.kind == spline_ends::not_a_knot) {
    solve_parabola(of, s);
  } else {
    solve_rows(
        of.n, [&of, rule](index i) { return row_at(of, rule, i); }, factor, s);
  }
}

// F. N. Fritsch, J. Butland, "A method for constructing local monotone piecewise cubic interpolants", SIAM J.
// Sci. Stat. Comput. 5 (1984): where the chords agree in sign, their harmonic mean, with more weight on that
// of the shorter interval.
constexpr double monotone_slope(double h0, double h1, double d0, double d1) noexcept {
  if ((d0 >= 0 && d1 <= 0) || (d0 <= 0 && d1 >= 0)) return 0;
  return 3 * (h0 + h1) / ((2 * h1 + h0) / d0 + (h1 + 2 * h0) / d1);
}

// The slope of the parabola through three values at the first of them, kept from leading out of their range.
inline double monotone_end(double h0, double h1, double d0, double d1) noexcept {
  const double slope = ((2 * h0 + h1) * d0 - h0 * d1) / (h0 + h1);
  if ((slope >= 0 && d0 <= 0) || (slope <= 0 && d0 >= 0)) return 0;
  const bool turns = (d0 > 0 && d1 < 0) || (d0 < 0 && d1 > 0);
  return turns && std::abs(slope) > 3 * std::abs(d0) ? 3 * d0 : slope;
}

template <class T, class Intervals> void store_monotone(const Intervals& of, slopes_at<T> out) noexcept {
  const index last = of.n - 2;
  const auto put = [out](index i, double s) { out.at[i * out.stride] = static_cast<T>(s); };
  if (last == 0) return put(0, of.chord(0)), put(1, of.chord(0));
  put(0, monotone_end(of.length(0), of.length(1), of.chord(0), of.chord(1)));
  double chord = of.chord(0);
  for (index i = 1; i <= last; ++i) {
    const double next = of.chord(i);
    put(i, monotone_slope(of.length(i - 1), of.length(i), chord, next));
    chord = next;
  }
  put(last + 1, monotone_end(of.length(last), of.length(last - 1), of.chord(last), of.chord(last - 1)));
}

template <class T> void store(const double* s, index n, slopes_at<T> out) noexcept {
  for (index i = 0; i < n; ++i) out.at[i * out.stride] = static_cast<T>(s[i]);
}

constexpr double no_slope = 0;
constexpr index few = slope_filter::least_knots;

}  // namespace

template <class T>
void regular_slopes(const T* y, index n, double spacing, end_rule rule, slopes_at<T> out) noexcept {
  const intervals<T, even_knots> of = {{spacing}, y, n, rule.kind};
  if (n == 1) return store(&no_slope, 1, out);
  if (rule.kind == spline_ends::monotone) return store_monotone(of, out);
  if (n >= few) return slope_filter::run(y, n, spacing, rule, out);
  double factor[few];
  double s[few];
  solve_spline(of, rule, factor, s);
  store(s, n, out);
}

template <class T>
status irregular_slopes(const T* x, const T* y, index n, end_rule rule, slopes_at<T> out) noexcept {
  const intervals<T, rising_knots<T>> of = {{x}, y, n, rule.kind};
  if (n == 1) return store(&no_slope, 1, out), ok;
  if (rule.kind == spline_ends::monotone) return store_monotone(of, out), ok;
  double* const work = allocate_table<double>(2 * n);
  if (work == nullptr) return failed;
  solve_spline(of, rule, work, work + n);
  store(work + n, n, out);
  free_table(work);
  return ok;
}

template void regular_slopes(const double*, index, double, end_rule, slopes_at<double>) noexcept;
template void regular_slopes(const float*, index, double, end_rule, slopes_at<float>) noexcept;
template status irregular_slopes(const double*, const double*, index, end_rule, slopes_at<double>) noexcept;
template status irregular_slopes(const float*, const float*, index, end_rule, slopes_at<float>) noexcept;

}  // namespace sigpak
