// SPDX-License-Identifier: MIT
// What the shortest transforms do to single points beyond the vectors of the level: each loaded into all
// places of a vector, each stored from its place.
#pragma once

#include "vectors/lanes.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// A point of single precision as one scalar that is only moved.
SIGPAK_INLINE double as_double(const float* x) {
  double point;
  __builtin_memcpy(&point, x, sizeof point);
  return point;
}

// One point in all places.
SIGPAK_INLINE void load_repeated(const double* x, d4& a) {
  a = {_mm256_broadcast_pd(reinterpret_cast<const __m128d*>(x))};
}
SIGPAK_INLINE void load_repeated(const float* x, f4& a) { a = as_floats(d2{_mm_set1_pd(as_double(x))}); }
SIGPAK_INLINE void load_repeated(const float* x, f8& a) { a = as_floats(d4{_mm256_set1_pd(as_double(x))}); }

// Point `place` of a.
template <int place> SIGPAK_INLINE void store_point_of(double* x, d4 a) {
  store(x, d2{_mm256_extractf128_pd(a.v, place)});
}
template <int place> SIGPAK_INLINE void store_point_of(float* x, f4 a) {
  if constexpr (place == 0) {
    _mm_storel_pi(reinterpret_cast<__m64*>(x), a.v);
  } else {
    _mm_storeh_pi(reinterpret_cast<__m64*>(x), a.v);
  }
}
template <int place> SIGPAK_INLINE void store_point_of(float* x, f8 a) {
  store_point_of<place % 2>(x, f4{_mm256_extractf128_ps(a.v, place / 2)});
}

// The parts of the second point of every two exchanged.
SIGPAK_INLINE d4 second_exchanged(d4 a) { return {_mm256_permute_pd(a.v, 0x6)}; }
SIGPAK_INLINE f4 second_exchanged(f4 a) { return {_mm_permute_ps(a.v, 0xb4)}; }
SIGPAK_INLINE f8 second_exchanged(f8 a) { return {_mm256_permute_ps(a.v, 0xb4)}; }

#if SIGPAK_VECTOR_BYTES == 64
SIGPAK_INLINE void load_repeated(const double* x, d8& a) { a = {_mm512_broadcast_f64x2(_mm_loadu_pd(x))}; }
template <int place> SIGPAK_INLINE void store_point_of(double* x, d8 a) {
  store(x, d2{_mm512_extractf64x2_pd(a.v, place)});
}
SIGPAK_INLINE d8 second_exchanged(d8 a) { return {_mm512_permute_pd(a.v, 0x66)}; }
#endif

// a + i b and a - i b by sums, which take half the time of fused products where nothing else is left to do.
SIGPAK_INLINE d2 quick_plus_i(d2 a, d2 b) { return {_mm_addsub_pd(a.v, exchanged(b).v)}; }
SIGPAK_INLINE f4 quick_plus_i(f4 a, f4 b) { return {_mm_addsub_ps(a.v, exchanged(b).v)}; }
SIGPAK_INLINE d2 quick_minus_i(d2 a, d2 b) { return exchanged(d2{_mm_addsub_pd(exchanged(a).v, b.v)}); }
SIGPAK_INLINE f4 quick_minus_i(f4 a, f4 b) { return exchanged(f4{_mm_addsub_ps(exchanged(a).v, b.v)}); }

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
