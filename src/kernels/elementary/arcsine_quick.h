// SPDX-License-Identifier: MIT
// Arcsines and arccosines in single precision at the first try: with the leg y = sqrt(1 - x^2) the angle of
// the point (y, x) is that of an entry and an arcsine of their cross product.
#pragma once

#include "kernels/elementary/arctangent_quick.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

struct direction {
  table_scalar sine;
  table_scalar cosine;
};

// From the angle 0 to pi / 2 by even steps of sine less cosine, nearly those of the angle.
constexpr int steps_to_diagonal = angle_entries / 2 - 1;

#if defined(SIGPAK_HAS_FLOAT_TABLES)

// Points within 2^-40 of the unit circle that are floats, from scripts/elementary-tables directions: close to
// those whose sine less cosine are the multiples of 1/15 from -14/15 to 0.
constexpr direction directions[] = {
    {0x1.077c02p-4F, 0x1.fef088p-1F}, {0x1.fffb84p-4F, 0x1.fbfc0ap-1F}, {0x1.75cacep-3F, 0x1.f7666p-1F},
    {0x1.e94c02p-3F, 0x1.f12c3cp-1F}, {0x1.29b4a2p-2F, 0x1.e9e27p-1F},  {0x1.5d0002p-2F, 0x1.e15884p-1F},
    {0x1.8d3d24p-2F, 0x1.d7e7aep-1F}, {0x1.bcecdap-2F, 0x1.cd2508p-1F}, {0x1.e9c008p-2F, 0x1.c1a5p-1F},
    {0x1.0acc8p-1F, 0x1.b4fe1p-1F},   {0x1.1f2f74p-1F, 0x1.a7df9p-1F},  {0x1.33333p-1F, 0x1.99999cp-1F},
    {0x1.46588p-1F, 0x1.8a83f8p-1F},  {0x1.5885f2p-1F, 0x1.7abeb6p-1F}, {0x1.69a3b6p-1F, 0x1.6a6ffap-1F}};
constexpr direction direction_at(int j) { return directions[15 / steps_to_diagonal * j - 1]; }

#else

// By the tangent of half the angle, with which sine less cosine is (2 t + t^2 - 1) / (1 + t^2).
constexpr direction direction_at(int j) {
  const double wanted = static_cast<double>(j) / steps_to_diagonal - 1;
  double t = 0;
  for (int step = 0; step < 40; ++step) t = (1 + wanted + (wanted - 1) * t * t) / 2;
  return {2 * t / (1 + t * t), (1 - t * t) / (1 + t * t)};
}

#endif

// The other half of the right angle has sine and cosine exchanged.
constexpr direction_table make_sines() {
  direction_table table{};
  table.set(-steps_to_diagonal, 0, 1);
  for (int j = 1; j <= steps_to_diagonal; ++j) {
    const direction d = direction_at(j);
    table.set(j - steps_to_diagonal, d.sine, d.cosine);
    table.set(steps_to_diagonal - j, d.cosine, d.sine);
  }
  table.set(steps_to_diagonal, 1, 0);
  table.set(steps_to_diagonal + 1, 1, 0);  // which no argument reaches
  return table;
}
constexpr direction_table sines = make_sines();

#if defined(SIGPAK_HAS_FLOAT_TABLES)

// pi / 2 and an angle of the table more or less, in two parts.
struct complement_table {
  float angles[float_entries];
  float rests[float_entries];
};
constexpr complement_table make_complements(double sign) {
  complement_table table{};
  for (int j = 0; j < float_entries; ++j) {
    const double sine = static_cast<double>(sines.sines[j]);
    const double angle = half_pi + sign * angle_of(sine, static_cast<double>(sines.cosines[j]));
    table.angles[j] = static_cast<float>(angle);
    table.rests[j] = static_cast<float>(angle - static_cast<double>(table.angles[j]));
  }
  return table;
}
constexpr complement_table cosines_above = make_complements(-1);
constexpr complement_table cosines_below = make_complements(1);

// sqrt(1 - a^2) in two parts, 0 <= a <= 1. The second is below 2^-24, and as good as the rough inverse.
constexpr float leg_error =
    rough_root_error * 0x1p-24F + 2 * angle_sum_error;  // an angle is up to pi / 2 of its sine
struct float_parts {
  singles hi;
  singles lo;
};
SIGPAK_INLINE float_parts other_leg(singles a) {
  const singles square = fnma(a, a, every(1));
  const singles other_square = every(1) - square;
  const singles square_rest = fnma(a, a, other_square) + ((every(1) - other_square) - square);  // to 2^-49
  const singles y = sqrt(square);
  const singles half_inverse = rough_inverse_root(fma(square, every(4), every(0x1p-60F)));
  return {y, (fnma(y, y, square) + square_rest) * half_inverse};
}

// The angle between (y, a) and an entry: its sine t, and what the angle has beyond.
struct angle_between {
  float_words entry;
  singles t;
  singles rest;
  singles range;  // of the errors
};
SIGPAK_INLINE angle_between nearest_sine(singles a) {
  const float_parts y = other_leg(a);
  const float_words j = bits(fma(a - y.hi, every(steps_to_diagonal), every(0x1.8p23F)));
  const singles s = pick(sines.sines, j);
  const singles c = pick(sines.cosines, j);
  const singles to = a * c;
  const singles from = y.hi * s;
  const singles t = to - from;  // exactly
  const singles t_rest = fnma(y.lo, s, fms(a, c, to) - fms(y.hi, s, from));
  const singles v = t + t_rest;
  const singles square = v * v;
  const singles rest = fma(v * square, chain(arcsine_pair_terms<float_entries>, square), t_rest);
  const singles leg_range = s * every(leg_error);
  return {j, t, rest, fma(square, every(arcsine_pair_error<float_entries>), leg_range)};
}

SIGPAK_INLINE attempt<singles> quick_arcsine_of(singles x) {
  const angle_between h = nearest_sine(absolute(x));
  const attempt<singles> y =
      angle_sum(pick(sines.angles, h.entry), pick(sines.rests, h.entry), h.t, h.rest, h.range);
  return {flip_sign(y.y, bits(x)), y.decided};
}

// pi / 2 less what has the sign of x.
SIGPAK_INLINE attempt<singles> quick_arccosine_of(singles x) {
  const angle_between h = nearest_sine(absolute(x));
  const singles angle =
      choose_by_sign(x, pick(cosines_below.angles, h.entry), pick(cosines_above.angles, h.entry));
  const singles rest =
      choose_by_sign(x, pick(cosines_below.rests, h.entry), pick(cosines_above.rests, h.entry));
  const float_words turn = ~bits(x);
  const singles range = fma(angle, every(angle_sum_error), h.range);
  return angle_sum(angle, rest, flip_sign(h.t, turn), flip_sign(h.rest, turn), range);
}

#else

SIGPAK_INLINE real angle_from(real angle, real v) {
  const real square = v * v;
  return angle + fma(v * square, chain(arcsine_quick_terms, square), v);
}

// The entry next to the angle, and the sine of the angle between them.
struct angle_between {
  words entry;
  real sine;
};
SIGPAK_INLINE angle_between nearest_sine(real a) {
  const real y = sqrt((all(1) - a) * (all(1) + a));
  const words j = bits((a - y) * all(steps_to_diagonal) + all(to_integer));
  return {j, a * pick(sines.cosines, j) - y * pick(sines.sines, j)};
}

SIGPAK_INLINE real quick_arcsine_of(real x) {
  const angle_between h = nearest_sine(absolute(x));
  return flip_sign(angle_from(pick(sines.angles, h.entry), h.sine), bits(x));
}

SIGPAK_INLINE real quick_arccosine_of(real x) {
  const angle_between h = nearest_sine(absolute(x));
  const real angle = all(half_pi) - flip_sign(pick(sines.angles, h.entry), bits(x));
  return angle_from(angle, flip_sign(h.sine, ~bits(x)));
}

#endif

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
