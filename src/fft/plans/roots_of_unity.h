// SPDX-License-Identifier: MIT
// Roots of unity, good to the last digit of a double.
#pragma once

#include "core/record.h"

namespace sigpak::kernels {

// The sum of both parts. The high one is a multiple of 2^-22, so that sums of a few of them are exact, and so
// are their products with the short part of a factor; the low one is small, and so is its error, below 2^-58.
struct parted {
  double high;
  double low;
};
constexpr double rounded(parted x) noexcept { return x.high + x.low; }
constexpr parted operator+(parted a, parted b) noexcept { return {a.high + b.high, a.low + b.low}; }
constexpr parted operator-(parted a) noexcept { return {-a.high, -a.low}; }

// A factor, of which `high` has 26 bits.
class factor {
 public:
  explicit constexpr factor(long double x) noexcept
      : all_(static_cast<double>(x)),
        high_(short_part(all_)),
        low_(static_cast<double>(x - static_cast<long double>(high_))) {}
  // x times the factor, rounded once but for an error near 2^-58.
  constexpr double operator*(parted x) const noexcept {
    return x.high * high_ + (x.high * low_ + x.low * all_);
  }

 private:
  // Veltkamp's splitting.
  static constexpr double short_part(double x) noexcept {
    const double c = (0x1p27 + 1) * x;
    return c - (c - x);
  }

  double all_;
  double high_;
  double low_;
};

struct root {
  parted cosine;
  parted sine;
};
constexpr root conjugate(root a) noexcept { return {a.cosine, -a.sine}; }

// The same, longer by a part of at most a few times 2^-24.
constexpr parted lengthened(parted x, double by) noexcept { return {x.high, x.low + by * x.high}; }
constexpr root lengthened(root a, double by) noexcept {
  return {lengthened(a.cosine, by), lengthened(a.sine, by)};
}

// An angle as so many 256ths of a turn and at most a few times 2^-7 on top.
struct angle {
  std::int32_t coarse;
  double fine;
};
constexpr angle operator-(angle a, angle b) noexcept { return {a.coarse - b.coarse, a.fine - b.fine}; }

inline constexpr int coarse_roots = 256;

// sin of 2 pi k / 256 for k < 320, so that the cosines are those a quarter further on.
struct coarse_sines {
  double high[coarse_roots + coarse_roots / 4];
  double low[coarse_roots + coarse_roots / 4];
};
extern constinit const coarse_sines sine_table;

inline root coarse_root(std::int32_t k) noexcept {
  k &= coarse_roots - 1;
  constexpr int quarter = coarse_roots / 4;
  return {{sine_table.high[k + quarter], sine_table.low[k + quarter]},
          {sine_table.high[k], sine_table.low[k]}};
}

// A coarse root turned by the angle x, by Taylor series that end below the last digit.
inline root turned_by(root r, double x) noexcept {
  const double square = x * x;
  const double sine = x + x * square * (-1.0 / 6 + square * (1.0 / 120 - square * (1.0 / 5040)));
  const double versed = square * (-0.5 + square * (1.0 / 24 - square * (1.0 / 720 - square * (1.0 / 40320))));
  const double c = rounded(r.cosine);
  const double s = rounded(r.sine);
  return {{r.cosine.high, r.cosine.low + (c * versed - s * sine)},
          {r.sine.high, r.sine.low + (s * versed + c * sine)}};
}

// cos and sin of 2 pi k / n for k up to 2^22 n, below 2^45.
class roots {
 public:
  explicit constexpr roots(index n) noexcept
      : n_(static_cast<double>(n)), coarse_per_step_(coarse_roots / n_), radians_(turn / coarse_roots / n_) {}

  angle angle_of(double k) const noexcept {
    const auto coarse = static_cast<std::int32_t>(k * coarse_per_step_ + 0.5);
    return {coarse, (k * coarse_roots - coarse * n_) * radians_};
  }
  root operator[](index k) const noexcept {
    const angle a = angle_of(static_cast<double>(k));
    return turned_by(coarse_root(a.coarse), a.fine);
  }

 private:
  static constexpr double turn = 6.283185307179586477;

  double n_;
  double coarse_per_step_;
  double radians_;  // of one n-th of a coarse step
};

}  // namespace sigpak::kernels
