// SPDX-License-Identifier: MIT
// Samples of either precision as vectors of doubles, and parts of a vector.
#pragma once

#include "core/machine.h"
#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// The doubles of floats, each exactly.
template <class P> SIGPAK_INLINE real widened(P a) { return {__builtin_convertvector(a.v, real::vector)}; }

SIGPAK_INLINE real read(const double* from) { return load<real>(from); }
SIGPAK_INLINE real read(const float* from) { return widened(load<pack<float, lane_count>>(from)); }
SIGPAK_INLINE void write(double* to, real a) { store(to, a); }
SIGPAK_INLINE void write(float* to, real a) {
  using floats = pack<float, lane_count>;
  store(to, floats{__builtin_convertvector(a.v, floats::vector)});
}

// At least one scalar and at most a vector of them, at a stride; the last one repeated in the lanes that are
// left. Loads of single scalars, because a wider one would wait for the stores of a caller who has just
// filled his record.
template <class T> SIGPAK_INLINE real read_some(const T* from, index count, index stride = 1) {
  return made_of(
      [=](index i) SIGPAK_LAMBDA { return static_cast<double>(from[(i < count ? i : count - 1) * stride]); });
}

// The scalars, at most n, to where vectors begin that are not in two lines.
template <class T> SIGPAK_INLINE index to_whole_vectors(const T* x, index n) {
  const index first = machine::bytes_to_line(x) / index{sizeof(T)} % widest<T>::width;
  return first < n ? first : n;
}

// Into all caches but the nearest.
SIGPAK_INLINE void prefetch(const void* from) { __builtin_prefetch(from, 0, 2); }

// Whether so many bytes are half of the last cache and more: most of them come from memory then, and the
// processor foresees too little of what is met. No last cache is as small as the least that is asked about.
SIGPAK_INLINE bool come_from_memory(index bytes) {
  constexpr index least = 2 * machine::way_bytes;
  return bytes >= least && 2 * bytes >= machine::caches().last;
}

// Calls for `count` scalars that are met a while after those at x, line by line. There may be none any more.
template <int count, class T> SIGPAK_INLINE void fetch_ahead(const T* x) {
  constexpr index ahead = 512;
  constexpr int line = machine::line_bytes / sizeof(T);
  for (int i = 0; i < count; i += line) __builtin_prefetch(x + ahead + i);
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
