// SPDX-License-Identifier: MIT
// Arctangents in single precision at the first try: the angle of an entry, and the rest of the angle. Where
// vectors of floats are tables in pairs of floats, else in double.
#pragma once

#include "kernels/elementary/coefficients.h"
#include "kernels/elementary/quick.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr double half_pi = 0x1.921fb54442d18p+0;

// Euler's series below the diagonal.
constexpr double angle_of(double sine, double cosine) {
  if (sine > cosine) return half_pi - angle_of(cosine, sine);
  const double norm = sine * sine + cosine * cosine;
  double sum = 1;
  for (int k = 60; k > 0; --k) sum = 1 + 2 * k / (2 * k + 1.0) * (sine * sine / norm) * sum;
  return sine * cosine / norm * sum;
}

#if defined(SIGPAK_HAS_FLOAT_TABLES)
using table_scalar = float;
constexpr int angle_entries = float_entries;
#else
using table_scalar = double;
constexpr int angle_entries = table_entries;
#endif

// For every entry a direction, and its angle in two parts.
struct direction_table {
  table_scalar sines[angle_entries];
  table_scalar cosines[angle_entries];
  table_scalar angles[angle_entries];
  table_scalar rests[angle_entries];

  constexpr void set(int place, table_scalar sine, table_scalar cosine) {
    const int j = (place + angle_entries) % angle_entries;
    const double angle = angle_of(static_cast<double>(sine), static_cast<double>(cosine));
    sines[j] = sine;
    cosines[j] = cosine;
    angles[j] = static_cast<table_scalar>(angle);
    rests[j] = static_cast<table_scalar>(angle - static_cast<double>(angles[j]));
  }
};

// Tangents are put into the entries by the leading bits of 1 + scale x, up to 2^8: nearly evenly by their
// angles, the first of which is 0 and the last pi / 2, so that what is near either keeps its digits.
constexpr int entries_to_octave = angle_entries / 8;
constexpr float tangent_scale = entries_to_octave == 1 ? 16 : entries_to_octave == 4 ? 12.625F : 4;
constexpr float last_tangent_place = 255;

// The least tangent of entry j.
constexpr double first_tangent(int j) {
  const int octave = j / entries_to_octave;
  const double in_octave = 1 + static_cast<double>(j % entries_to_octave) / entries_to_octave;
  return ((1 << octave) * in_octave - 1) / static_cast<double>(tangent_scale);
}

// The tangent of the angle between two others.
constexpr double tangent_between(double from, double to) {
  double low = from;
  double high = to;
  for (int step = 0; step < 50; ++step) {
    const double x = (low + high) / 2;
    ((x - from) * (1 + x * to) < (to - x) * (1 + x * from) ? low : high) = x;
  }
  return low;
}

constexpr direction_table make_tangents() {
  constexpr int last = angle_entries - 1;
  direction_table table{};
  table.set(-entries_to_octave, 0, 1);
  table.set(last - entries_to_octave, 1, 0);
  for (int j = 1; j < last; ++j) {
    const double tangent = tangent_between(first_tangent(j), first_tangent(j + 1));
    table.set(j - entries_to_octave, static_cast<table_scalar>(tangent), 1);
  }
  return table;
}
constexpr direction_table tangents = make_tangents();

enum class domain { finite, to_one };

#if defined(SIGPAK_HAS_FLOAT_TABLES)

constexpr int tangent_shift = 23 - __builtin_ctz(entries_to_octave);

// angle + angle_rest + t + rest, whose errors and those of the last sums are within `range`.
constexpr float angle_sum_error = 0x1p-48F;  // of the angle
SIGPAK_INLINE attempt<singles> angle_sum(singles angle, singles angle_rest, singles t, singles rest,
                                         singles range) {
  const singles hi = angle + t;
  const singles lo = (t - (hi - angle)) + (angle_rest + rest);
  return rounded(hi, lo - range, lo + range);
}

// With a direction (c, s) of the table: t = (x c - s) / (c + x s), whose numerator is exact.
SIGPAK_INLINE attempt<singles> quick_arctangent_of(singles x) {
  const singles a = absolute(x);
  const singles place = lesser(fma(a, every(tangent_scale), every(1)), every(last_tangent_place));
  const float_words j = bits(place) >> tangent_shift;
  const singles s = pick(tangents.sines, j);
  const singles c = pick(tangents.cosines, j);
  const singles above = fms(a, c, s);
  const singles below = fma(a, s, c);
  const singles below_rest = fma(a, s, c - below);
  const singles inverse = every(1) / below;
  const singles t = above * inverse;
  const singles left = fnma(t, below_rest, fnma(t, below, above));
  const singles square = t * t;
  const singles rest = fma(t * square, chain(arctangent_pair_terms<float_entries>, square), left * inverse);
  const singles angle = pick(tangents.angles, j);
  const singles range =
      fma(angle, every(angle_sum_error), square * every(arctangent_pair_error<float_entries>));
  const attempt<singles> y = angle_sum(angle, pick(tangents.rests, j), t, rest, range);
  return {flip_sign(y.y, bits(x)), y.decided};
}

// Infinity, NaN and arguments outside of the domain come out as NaN, which is not decided.
template <attempt<singles> f(singles x), domain, class F> struct quick_angle : F {
  SIGPAK_INLINE attempt<singles> quick(const float* x) const { return f(load<singles>(x)); }
};

#else

constexpr int tangent_shift = 52 - __builtin_ctz(entries_to_octave);

SIGPAK_INLINE real quick_arctangent_of(real x) {
  const real a = absolute(x);
  const real place = at_most(a * all(static_cast<double>(tangent_scale)) + all(1), last_tangent_place);
  const words j = bits(place) >> tangent_shift;
  const real s = pick(tangents.sines, j);
  const real c = pick(tangents.cosines, j);
  const real t = (a * c - s) / (c + a * s);
  const real square = t * t;
  const real y = pick(tangents.angles, j) + fma(t * square, chain(arctangent_quick_terms, square), t);
  return flip_sign(y, bits(x));
}

template <real f(real x), domain within, class F> struct quick_angle : F {
  SIGPAK_INLINE attempt<halves> quick(const float* x) const {
    constexpr float end = within == domain::finite ? 0x1.fffffep+127F : 1;
    return judged<43>(is_between(load<singles>(x), -end, end), each_half(x, f));
  }
};

#endif

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
