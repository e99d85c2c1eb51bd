// SPDX-License-Identifier: MIT
// Single precision at the first try: short formulas in double decide nearly every float, two vectors of
// doubles to one of floats. Where the error of a result reaches across the middle of two floats, or an
// argument is outside of what the formula is made for, the walk goes on for a while with the function that
// holds everywhere.
//
// Such a function has, beside what walk.h asks for, quick(x): the formula for a vector of floats in memory,
// and which of its results are decided.
#pragma once

#include "kernels/elementary/walk.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

constexpr int floats_at_once = 2 * lane_count;

// Results for a vector of floats, and those that have the right bits.
template <class Y> struct attempt {
  Y y;
  float_mask decided;
};

// What becomes of the lower and of the upper half of the floats.
struct halves {
  real low;
  real high;
};
template <class F> SIGPAK_INLINE halves each_half(const float* x, F f) {
  return {f(read(x)), f(read(x + lane_count))};
}

// Highest coefficient first, in one chain: the halves fill each other's waits, and what counts is the number
// of operations.
template <int terms> SIGPAK_INLINE real chain(const double (&coefficients)[terms], real x) {
  real sum = all(coefficients[0]);
  unroll<terms - 1>([&](auto k) SIGPAK_LAMBDA { sum = fma(sum, x, all(coefficients[k + 1])); });
  return sum;
}

template <int terms> SIGPAK_INLINE singles chain(const float (&coefficients)[terms], singles x) {
  singles sum = every(coefficients[0]);
  unroll<terms - 1>([&](auto k) SIGPAK_LAMBDA { sum = fma(sum, x, every(coefficients[k + 1])); });
  return sum;
}

// The lower words of the doubles, in any order.
SIGPAK_INLINE float_words lower_words(halves a) {
  const widest<float> x = {reinterpret_cast<widest<float>::vector>(a.low.v)};
  const widest<float> y = {reinterpret_cast<widest<float>::vector>(a.high.v)};
  return bits(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ ? evens(x, y) : odds(x, y));
}

// Results of relative error below 2^-good_bits, where the formula fits: decided where the 29 bits that a
// float has not lie farther from the middle of their range than the error. The functions take care that no
// result is subnormal in single precision and inexact.
template <int good_bits> SIGPAK_INLINE attempt<halves> judged(float_mask fits, halves y) {
  constexpr unsigned error = 1U << (53 - good_bits);
  constexpr unsigned middle = 1U << 28;
  constexpr unsigned fraction = (1U << 29) - 1;
  return {y, with_bits(fits, lower_words(y) + (error - middle), fraction & -(2 * error))};
}

SIGPAK_INLINE void write(float* to, halves y) {
  write(to, y.low);
  write(to + lane_count, y.high);
}

SIGPAK_INLINE void write(float* to, singles y) { store(to, y); }

// hi + lo for any lo from `least` to `most`: decided where both give one float.
SIGPAK_INLINE attempt<singles> rounded(singles hi, singles least, singles most) {
  const singles y = hi + least;
  return {y, equal(y, hi + most)};
}
SIGPAK_INLINE attempt<singles> rounded(float_mask fits, singles hi, singles least, singles most) {
  const singles y = hi + least;
  return {y, equal_in(fits, y, hi + most)};
}

// x[i] = f(x[i]) from i on, up to floats that f.quick leaves open; how far it came. One test decides about
// two vectors.
template <class F> [[gnu::noinline]] index walk_quickly(float* x, index i, index n, F f) {
  for (; i + 2 * floats_at_once <= n; i += 2 * floats_at_once) {
    const auto first = f.quick(x + i);
    const auto second = f.quick(x + i + floats_at_once);
    const bool decided = all_of(both(first.decided, second.decided));
    if (__builtin_expect(!decided, 0) && !all_of(first.decided)) return i;
    write(x + i, first.y);
    if (__builtin_expect(!decided, 0)) return i + floats_at_once;
    write(x + i + floats_at_once, second.y);
  }
  if (i + floats_at_once > n) return i;
  const auto last = f.quick(x + i);
  if (!all_of(last.decided)) return i;
  write(x + i, last.y);
  return i + floats_at_once;
}

// The same to the end, where `otherwise(from, to)` serves the rest and returns whether to go on. What is left
// open every few vectors goes there by longer and longer pieces.
template <class F, class Otherwise>
[[gnu::noinline]] void walk_in_pieces(float* x, index n, F f, Otherwise otherwise) {
  constexpr index few = 4 * floats_at_once;
  index piece = floats_at_once;
  for (index i = 0; i < n;) {
    const index from = i;
    i = walk_quickly(x, i, n, f);
    piece = i - from < few ? 2 * piece : floats_at_once;
    const index to = n - i < piece ? n : i + piece;
    if (i < to && !otherwise(i, to)) return;
    i = to;
  }
}

template <class F, class Otherwise>
SIGPAK_INLINE void walk_quickly(float* x, index n, F f, Otherwise otherwise) {
  if (n >= floats_at_once) return walk_in_pieces(x, n, f, otherwise);
  otherwise(0, n);
}

template <class F> SIGPAK_INLINE void walk_quickly(float* x, index n, F f) {
  walk_quickly(x, n, f, [=](index from, index to) SIGPAK_LAMBDA {
    walk(x + from, to - from, f);
    return true;
  });
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
