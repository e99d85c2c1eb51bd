// SPDX-License-Identifier: MIT
// Scalars side by side: what every vector header starts from, and what needs no operation beyond the
// compiler's own. Only for sources compiled per level; everything here has internal linkage.
#pragma once

#include <cstdint>

namespace sigpak::SIGPAK_LEVEL {
namespace {

using index = std::int64_t;

#define SIGPAK_INLINE [[gnu::always_inline]] inline
#define SIGPAK_LAMBDA __attribute__((always_inline))

template <class T, int W> struct lanes {
  typedef T vector __attribute__((vector_size(W * sizeof(T))));
  typedef T loose __attribute__((vector_size(W * sizeof(T)), aligned(sizeof(T)), may_alias));
};

// W scalars side by side; `T` is the scalar, `width` is W.
template <class T, int W> struct pack {
  using scalar = T;
  static constexpr int width = W;
  using vector = typename lanes<T, W>::vector;
  using loose = typename lanes<T, W>::loose;
  vector v;
};

template <class T> constexpr bool is_single = sizeof(T) == sizeof(float);

// As many as the level's vectors hold.
template <class T> using widest = pack<T, SIGPAK_VECTOR_BYTES / static_cast<int>(sizeof(T))>;

template <class P> SIGPAK_INLINE P load(const typename P::scalar* from) {
  return {*reinterpret_cast<const typename P::loose*>(from)};
}
// The same, once for all uses: g++ thinks that even 32 registers are few, and reads memory again instead.
template <class P> SIGPAK_INLINE P load_once(const typename P::scalar* from) {
  P a = load<P>(from);
#if SIGPAK_VECTOR_BYTES == 64
  asm("" : "+v"(a.v));
#endif
  return a;
}
template <class P> SIGPAK_INLINE void store(typename P::scalar* to, P a) {
  *reinterpret_cast<typename P::loose*>(to) = a.v;
}
// x - 0 is x for every x, signed zeros included, so this is a broadcast and nothing else.
template <class P> SIGPAK_INLINE P splat(typename P::scalar x) { return {x - typename P::vector{}}; }

template <class T, int W> SIGPAK_INLINE pack<T, W> operator+(pack<T, W> a, pack<T, W> b) {
  return {a.v + b.v};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> operator-(pack<T, W> a, pack<T, W> b) {
  return {a.v - b.v};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> operator*(pack<T, W> a, pack<T, W> b) {
  return {a.v * b.v};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> operator/(pack<T, W> a, pack<T, W> b) {
  return {a.v / b.v};
}
template <class T, int W> SIGPAK_INLINE pack<T, W> operator-(pack<T, W> a) { return {-a.v}; }

using d2 = pack<double, 2>;
using d4 = pack<double, 4>;
using f4 = pack<float, 4>;
using f8 = pack<float, 8>;

// The doubles of the level, one to a lane, and their bits.
using real = widest<double>;
constexpr int lane_count = real::width;
typedef unsigned long long words __attribute__((vector_size(SIGPAK_VECTOR_BYTES)));

SIGPAK_INLINE words bits(real a) { return reinterpret_cast<words>(a.v); }
SIGPAK_INLINE real from_bits(words a) { return {reinterpret_cast<real::vector>(a)}; }
SIGPAK_INLINE words all_bits(unsigned long long x) { return x - words{}; }
SIGPAK_INLINE real all(double x) {
#if defined(__SSE2__) && !defined(__AVX__)
  // g++ reads equal doubles as one and doubles it at every use, but not words of which it knows nothing.
  words w = all_bits(__builtin_bit_cast(unsigned long long, x));
  asm("" : "+x"(w));
  return from_bits(w);
#else
  return splat<real>(x);
#endif
}

// The floats of the level, one to a lane, their bits, and the same as numbers with a sign.
using singles = widest<float>;
typedef unsigned float_words __attribute__((vector_size(SIGPAK_VECTOR_BYTES)));
typedef int signed_float_words __attribute__((vector_size(SIGPAK_VECTOR_BYTES)));
SIGPAK_INLINE singles every(float x) { return splat<singles>(x); }
SIGPAK_INLINE float_words bits(singles a) { return reinterpret_cast<float_words>(a.v); }
SIGPAK_INLINE singles from_bits(float_words a) { return {reinterpret_cast<singles::vector>(a)}; }
SIGPAK_INLINE singles absolute(singles a) { return from_bits(bits(a) & ~0U >> 1); }

// Added to x, leaves x rounded to an integer in the low bits, and itself as it was when subtracted again.
constexpr double to_integer = 0x1.8p52;

constexpr unsigned long long sign_bit = 1ULL << 63;
SIGPAK_INLINE real absolute(real a) { return from_bits(bits(a) & ~sign_bit); }
SIGPAK_INLINE real flip_sign(real a, words sign) { return from_bits(bits(a) ^ (sign & sign_bit)); }
SIGPAK_INLINE singles flip_sign(singles a, float_words sign) {
  return from_bits(bits(a) ^ (sign & 1U << 31));
}

// Calls body with 0, 1, ..., count - 1 as constants, so that arrays indexed by them stay in registers.
template <int value> struct constant {
  constexpr operator int() const { return value; }
};
template <int... values> struct sequence {};
template <int count, int... values> struct counting : counting<count - 1, count - 1, values...> {};
template <int... values> struct counting<0, values...> { using type = sequence<values...>; };
template <class Body, int... values> SIGPAK_INLINE void unrolled(Body& body, sequence<values...>) {
  (body(constant<values>{}), ...);
}
template <int count, class Body> SIGPAK_INLINE void unroll(Body body) {
  unrolled(body, typename counting<count>::type{});
}

}  // namespace
}  // namespace sigpak::SIGPAK_LEVEL
