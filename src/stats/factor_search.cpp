// SPDX-License-Identifier: MIT
// One root of a polynomial to twice the precision, by Laguerre's iteration.
#include <algorithm>

#include "stats/factors.h"

namespace sigpak {
namespace {

constexpr double epsilon = limits_of<double>().epsilon;

// The polynomial as points near 2^exponent see it: with that unit, over a power of two that makes the largest
// coefficient 1. Its terms stay in range there, and those too small to count vanish.
class close_view {
 public:
  close_view(const scaled_polynomial& p, double_double* spare, index exponent) noexcept
      : p_(p), a_(spare), exponent_(exponent) {
    rescale();
  }

  // z in the unit of the view, moved to where z is unless that is 0.
  complex_number focus(complex_number z) noexcept {
    const double size = magnitude(z);
    if (size > 0) {
      const index exponent = std::ilogb(size * 1.4142135623730951);
      if (exponent != exponent_) {
        exponent_ = exponent;
        rescale();
      }
    }
    return outward(z, -exponent_);
  }
  // The logarithm of a value of the view, comparable across units.
  double log_size(double value) const noexcept { return std::log2(value) + static_cast<double>(top_); }
  complex_number back(complex_number w) const noexcept { return outward(w, exponent_); }

  expansion<complex_number> approximation(complex_number w) const noexcept;
  expansion<complex_number> at(complex_number w) const noexcept {
    return expand(polynomial<double_double>{a_, p_.count}, w);
  }

  // The first terms of the expansion around w.
  static constexpr index most_terms = 16;
  void terms_at(complex_number w, complex_number* c) const noexcept;

 private:
  static complex_number outward(complex_number z, index exponent) noexcept {
    const int e = static_cast<int>(exponent);
    return {std::scalbn(z.re, e), std::scalbn(z.im, e)};
  }

  void rescale() noexcept {
    top_ = std::numeric_limits<index>::min();
    for (index k = 0; k < p_.count; ++k) {
      if (p_.a[k].hi != 0) top_ = std::max(top_, std::ilogb(p_.a[k].hi) + k * exponent_);
    }
    for (index k = 0; k < p_.count; ++k) a_[k] = scaled(p_.a[k], k * exponent_ - top_);
  }

  scaled_polynomial p_;
  double_double* a_;
  index exponent_;
  index top_ = 0;
};

// The expansion in double, for the way to the root.
expansion<complex_number> close_view::approximation(complex_number w) const noexcept {
  expansion<complex_number> e{};
  const double r = magnitude(w);
  for (index k = p_.count - 1; k >= 0; --k) {
    const double a = a_[k].hi;
    e.half_curvature = w * e.half_curvature + e.slope;
    e.slope = w * e.slope + e.value;
    e.value = w * e.value + complex_number{a, 0};
    e.size = r * e.size + std::abs(a);
  }
  return e;
}

void close_view::terms_at(complex_number w, complex_number* c) const noexcept {
  precise_complex terms[most_terms + 1] = {};
  for (index k = p_.count - 1; k >= 0; --k) {
    for (index m = most_terms; m >= 1; --m) terms[m] = w * terms[m] + terms[m - 1];
    terms[0] = w * terms[0] + a_[k];
  }
  std::transform(terms, terms + most_terms + 1, c, [](const precise_complex& t) { return rounded(t); });
}

// The exponent of the smallest of (|a[0]| / |a[k]|)^(1/k): no root is smaller than half of it, and one is not
// much larger.
index smallest_size(const scaled_polynomial& p) noexcept {
  double least = std::numeric_limits<double>::infinity();
  const double constant = std::log2(std::abs(p.a[0].hi));
  for (index k = 1; k < p.count; ++k) {
    if (p.a[k].hi == 0) continue;
    least = std::min(least, (constant - std::log2(std::abs(p.a[k].hi))) / static_cast<double>(k));
  }
  return static_cast<index>(std::nearbyint(least));
}

// What rounding leaves of the value at a root, relative to the sum of its terms. A real root is preferred to
// a pair so close to it that dividing the pair out would magnify the rounding.
double noise(index count) noexcept { return static_cast<double>(count) * double_double_rounding; }
double noise_of_real(index count) noexcept { return 1024 * noise(count); }

// Newton's correction in the unit of the view where it is one to the last bits; at a multiple root, where it
// is not, there is none.
complex_number last_correction(const expansion<complex_number>& at, complex_number w) noexcept {
  const complex_number step = quotient(at.value, at.slope, limits_of<double>());
  return magnitude(step) <= 4 * epsilon * magnitude(w) ? step : complex_number{0, 0};
}

factor corrected(const close_view& view, complex_number w, const expansion<complex_number>& at,
                 bool pair) noexcept {
  const complex_number z = view.back(w);
  const complex_number step = view.back(last_correction(at, w));
  return {{exact_sum(z.re, -step.re), exact_sum(z.im, pair ? -step.im : 0.0)}, pair, true};
}

// Whether the point that the search has ended in stands for a real root or for a pair.
factor concluded(const close_view& view, complex_number w, const expansion<complex_number>& at,
                 index count) noexcept {
  constexpr double close = 0x1p-24;  // far above what a double root is known to
  if (w.im == 0) return corrected(view, w, at, false);
  if (std::abs(w.im) < close * std::abs(w.re)) {
    const complex_number real{w.re, 0};
    const expansion<complex_number> there = view.at(real);
    const complex_number step = last_correction(there, real);
    const double left = magnitude(there.value - step * there.slope);
    if (left <= noise_of_real(count) * there.size) return corrected(view, real, there, false);
  }
  if (count < 3) return {{}, false, false};
  return corrected(view, w, at, true);
}

// A step may not lead far beyond the circle that the smallest roots are on.
complex_number tamed(complex_number step, complex_number w) noexcept {
  const double longest = 2 * std::max(magnitude(w), 1.0);
  const double length = magnitude(step);
  return length > longest ? (longest / length) * step : step;
}

// The step from w by the one term c[m] h^m of the expansion around it that brings the value to 0 soonest:
// short enough, such a step always leads to a smaller value. Amid m roots that lie close together, where the
// lower derivatives vanish with the value, Laguerre's step is wild instead.
complex_number steepest_step(const close_view& view, complex_number w) noexcept {
  constexpr index most = close_view::most_terms;
  complex_number c[most + 1];
  view.terms_at(w, c);
  double shortest = std::numeric_limits<double>::infinity();
  index m = 1;
  for (index k = 1; k <= most; ++k) {
    const double size = magnitude(c[k]);
    if (size == 0) continue;
    const double length = std::pow(magnitude(c[0]) / size, 1 / static_cast<double>(k));
    if (length < shortest) m = k, shortest = length;
  }
  const double angle = std::atan2(-c[0].im, -c[0].re) - std::atan2(c[m].im, c[m].re);
  const double turned = angle / static_cast<double>(m);
  return -shortest * complex_number{std::cos(turned), std::sin(turned)};
}

// The way to a root: every step leads from the best point so far to a smaller value, or is replaced by one
// that does.
struct descent {
  complex_number from;
  complex_number step{0, 0};
  double least = std::numeric_limits<double>::infinity();  // the logarithm of the value there
  index misses = 0;
  bool precise = false;

  bool leads_down(double size) const noexcept {
    constexpr double enough = 0.15;
    return size < least - (misses > most_turns ? 0 : enough);
  }
  void go_on(complex_number point, double size, complex_number next) noexcept {
    from = point;
    least = size;
    step = next;
    misses = 0;
  }
  void turn(close_view& view) noexcept {
    constexpr complex_number shortened_and_turned{0.4, 0.3};
    if (misses++ == most_turns) {
      const complex_number w = view.focus(from);
      step = view.back(steepest_step(view, w));
    } else {
      step = (misses < most_turns ? shortened_and_turned : complex_number{0.5, 0}) * step;
    }
  }

 private:
  static constexpr index most_turns = 6;
};

bool is_in_range(const expansion<complex_number>& at) noexcept {
  return at.size >= wide_guard<double>::tiny && magnitude(at.value) < std::numeric_limits<double>::infinity();
}

// Whether the value is no more than the rounding of its sum.
bool is_rounding(const expansion<complex_number>& at, index count, bool precise) noexcept {
  const double most = precise ? noise(count) : static_cast<double>(count) * epsilon;
  return magnitude(at.value) <= most * at.size;
}

// In double up to its rounding, from there in twice the precision.
factor search_from(close_view& view, complex_number z, index count) noexcept {
  constexpr search_limits limits = limits_of<double>();
  constexpr index most_rounds = 200;
  constexpr index free_rounds = 12;
  constexpr double near = 1e-4;  // the next step of third order ends at the rounding of double
  constexpr double infinite = std::numeric_limits<double>::infinity();
  descent way{.from = z};
  for (index round = 0; round < most_rounds; ++round) {
    const complex_number w = view.focus(z);
    const expansion<complex_number> at = way.precise ? view.at(w) : view.approximation(w);
    const bool in_range = is_in_range(at);
    if (!in_range && way.least == infinite) break;
    if (in_range && is_rounding(at, count, way.precise)) {
      if (way.precise) return concluded(view, w, at, count);
      way.precise = true;
      way.least = infinite;
      continue;
    }
    const double size = in_range ? view.log_size(magnitude(at.value)) : infinite;
    const bool free = !way.precise && in_range && round < free_rounds;
    if (free || way.leads_down(size)) {
      const complex_number next = laguerre_step(at, count, limits);
      const double length = magnitude(next);
      if (way.precise && length <= 2 * epsilon * magnitude(w)) return concluded(view, w, at, count);
      way.precise = way.precise || length <= near * magnitude(w);
      way.go_on(z, size, view.back(tamed(next, w)));
    } else {
      way.turn(view);
    }
    z = way.from - way.step;
  }
  return {{}, false, false};
}

}  // namespace

factor find_factor(const scaled_polynomial& p, search_start start, double_double* spare) noexcept {
  constexpr index most_starts = 16;
  constexpr double golden_angle = 2.399963229728653;
  const bool from_zero = start == search_start::zero;
  const index turns = from_zero ? 0 : p.count / 2;  // one more for every pair divided out
  const index smallest = smallest_size(p);
  factor f{{}, false, false};
  for (index i = 0; i < most_starts && !f.found; ++i) {
    close_view view(p, spare, smallest);
    const double angle = golden_angle * static_cast<double>(turns + i) + 0.5;
    const double radius = from_zero && i == 0 ? 0 : 1 + 0.25 * static_cast<double>(i / 4);
    f = search_from(view, view.back({radius * std::cos(angle), radius * std::sin(angle)}), p.count);
  }
  return f;
}

}  // namespace sigpak
