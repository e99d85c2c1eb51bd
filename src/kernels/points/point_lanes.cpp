// Products, quotients and squared magnitudes of complex points that lie re, im side by side. Shuffles stay
// within 128 bits wherever they can; no product is fused, so every level gives the bits of the plain loop.
#include "core/guard.h"
#include "core/machine.h"
#include "kernels/points/points.h"
#include "vectors/lanes.h"
#include "vectors/levels.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

template <class T> using wide = pack<T, SIGPAK_VECTOR_BYTES / sizeof(T)>;

// both_re, both_im: (re, re), (im, im) for every point. firsts, seconds: the real (imaginary) parts of the
// points of a, then of b, by 128 bits; in_order: what they leave, in the order of the points. turned_sum: a -
// b in the real parts and a + b in the imaginary ones. all_below is false where a value is NaN.
#if SIGPAK_VECTOR_BYTES == 64

SIGPAK_INLINE d8 both_re(d8 a) { return {_mm512_movedup_pd(a.v)}; }
SIGPAK_INLINE f16 both_re(f16 a) { return {_mm512_moveldup_ps(a.v)}; }
SIGPAK_INLINE d8 both_im(d8 a) { return {_mm512_permute_pd(a.v, 0xff)}; }
SIGPAK_INLINE f16 both_im(f16 a) { return {_mm512_movehdup_ps(a.v)}; }
SIGPAK_INLINE d8 firsts(d8 a, d8 b) { return low_parts(a, b); }
SIGPAK_INLINE f16 firsts(f16 a, f16 b) { return choose<0x88>(a, b); }
SIGPAK_INLINE d8 seconds(d8 a, d8 b) { return high_parts(a, b); }
SIGPAK_INLINE f16 seconds(f16 a, f16 b) { return choose<0xdd>(a, b); }
SIGPAK_INLINE d8 in_order(d8 a) {
  return {_mm512_permutexvar_pd(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), a.v)};
}
SIGPAK_INLINE f16 in_order(f16 a) { return as_floats(in_order(as_doubles(a))); }
SIGPAK_INLINE d8 turned_sum(d8 a, d8 b) {
  return {_mm512_mask_sub_pd(_mm512_add_pd(a.v, b.v), 0x55, a.v, b.v)};
}
SIGPAK_INLINE f16 turned_sum(f16 a, f16 b) {
  return {_mm512_mask_sub_ps(_mm512_add_ps(a.v, b.v), 0x5555, a.v, b.v)};
}
SIGPAK_INLINE bool any_zero(d8 a) { return _mm512_cmp_pd_mask(a.v, _mm512_setzero_pd(), _CMP_EQ_OQ) != 0; }
SIGPAK_INLINE bool any_zero(f16 a) { return _mm512_cmp_ps_mask(a.v, _mm512_setzero_ps(), _CMP_EQ_OQ) != 0; }
SIGPAK_INLINE bool all_below(d8 a, d8 b) { return _mm512_cmp_pd_mask(a.v, b.v, _CMP_NLT_UQ) == 0; }
SIGPAK_INLINE bool all_below(f16 a, f16 b) { return _mm512_cmp_ps_mask(a.v, b.v, _CMP_NLT_UQ) == 0; }

#else

SIGPAK_INLINE d4 both_re(d4 a) { return {_mm256_movedup_pd(a.v)}; }
SIGPAK_INLINE f8 both_re(f8 a) { return {_mm256_moveldup_ps(a.v)}; }
SIGPAK_INLINE d4 both_im(d4 a) { return {_mm256_permute_pd(a.v, 0xf)}; }
SIGPAK_INLINE f8 both_im(f8 a) { return {_mm256_movehdup_ps(a.v)}; }
SIGPAK_INLINE d4 firsts(d4 a, d4 b) { return low_parts(a, b); }
SIGPAK_INLINE f8 firsts(f8 a, f8 b) { return choose<0x88>(a, b); }
SIGPAK_INLINE d4 seconds(d4 a, d4 b) { return high_parts(a, b); }
SIGPAK_INLINE f8 seconds(f8 a, f8 b) { return choose<0xdd>(a, b); }
SIGPAK_INLINE d4 in_order(d4 a) { return {_mm256_permute4x64_pd(a.v, 0xd8)}; }
SIGPAK_INLINE f8 in_order(f8 a) { return as_floats(in_order(as_doubles(a))); }
SIGPAK_INLINE d4 turned_sum(d4 a, d4 b) { return {_mm256_addsub_pd(a.v, b.v)}; }
SIGPAK_INLINE f8 turned_sum(f8 a, f8 b) { return {_mm256_addsub_ps(a.v, b.v)}; }
SIGPAK_INLINE bool any_zero(d4 a) {
  return _mm256_movemask_pd(_mm256_cmp_pd(a.v, _mm256_setzero_pd(), _CMP_EQ_OQ)) != 0;
}
SIGPAK_INLINE bool any_zero(f8 a) {
  return _mm256_movemask_ps(_mm256_cmp_ps(a.v, _mm256_setzero_ps(), _CMP_EQ_OQ)) != 0;
}
SIGPAK_INLINE bool all_below(d4 a, d4 b) {
  return _mm256_movemask_pd(_mm256_cmp_pd(a.v, b.v, _CMP_NLT_UQ)) == 0;
}
SIGPAK_INLINE bool all_below(f8 a, f8 b) {
  return _mm256_movemask_ps(_mm256_cmp_ps(a.v, b.v, _CMP_NLT_UQ)) == 0;
}

#endif

// a b: (a_re b_re - a_im b_im, a_im b_re + a_re b_im).
template <class P> SIGPAK_INLINE P product(P a, P b) {
  return turned_sum(a * both_re(b), exchanged(a) * both_im(b));
}

// a conj(b): (a_re b_re + a_im b_im, a_im b_re - a_re b_im).
template <class P> SIGPAK_INLINE P conjugate_product(P a, P b) {
  return turned_sum(a * both_re(b), -(exchanged(a) * both_im(b)));
}

// A step writes two vectors from the 2 * width scalars of either operand.
template <bool conjugate> struct product_step {
  template <class P> SIGPAK_INLINE static P of(P a, P b) {
    if constexpr (conjugate) return conjugate_product(a, b);
    return product(a, b);
  }
  template <class P, class T> SIGPAK_INLINE static void run(const T* a, const T* b, T* out) {
    const P first = of(load<P>(a), load<P>(b));
    const P second = of(load<P>(a + P::width), load<P>(b + P::width));
    store(out, first);
    store(out + P::width, second);
  }
};

// Points over a divisor whose square underflows to 0, or is 0.
template <class P, class T> [[gnu::noinline]] void guard_quotients(P a, P b, T* out) {
  T x[P::width];
  T y[P::width];
  store(x, a);
  store(y, b);
  for (int i = 0; i < P::width; i += 2) {
    if (y[i] * y[i] + y[i + 1] * y[i + 1] != 0) continue;
    const bool nothing = x[i] == 0 && x[i + 1] == 0 && y[i] == 0 && y[i + 1] == 0;
    out[i] = out[i + 1] = nothing ? T(0) : guard<T>::huge;
  }
}

// One division serves both vectors: conj(b) a times 1 / |b|^2.
struct quotient_step {
  template <class P, class T> SIGPAK_INLINE static void run(const T* a, const T* b, T* out) {
    const P a0 = load<P>(a);
    const P a1 = load<P>(a + P::width);
    const P b0 = load<P>(b);
    const P b1 = load<P>(b + P::width);
    const P b0b0 = b0 * b0;
    const P b1b1 = b1 * b1;
    const P size = firsts(b0b0, b1b1) + seconds(b0b0, b1b1);
    const P inverse = {1 / size.v};
    store(out, conjugate_product(a0, b0) * low_parts(inverse, inverse));
    store(out + P::width, conjugate_product(a1, b1) * high_parts(inverse, inverse));
    if (any_zero(size)) [[unlikely]] {
      guard_quotients(a0, b0, out);
      guard_quotients(a1, b1, out + P::width);
    }
  }
};

template <class P> SIGPAK_INLINE P guarded_square(P x) {
  const P huge = splat<P>(guard<typename P::scalar>::huge);
  return {((x.v > huge.v) | (x.v < -huge.v)) ? huge.v : x.v * x.v};
}

// A part outside [-H, H] makes the sum of the squares H^2 at least, so that one comparison does for both.
struct magnitude_step {
  template <class P, class T> SIGPAK_INLINE static void run(const T* z, T* out) {
    constexpr T huge = guard<T>::huge;
    P z0 = load<P>(z);
    P z1 = load<P>(z + P::width);
    P sums = firsts(z0 * z0, z1 * z1) + seconds(z0 * z0, z1 * z1);
    if (!all_below(sums, splat<P>(huge * huge))) [[unlikely]] {
      z0 = guarded_square(z0);
      z1 = guarded_square(z1);
      sums = firsts(z0, z1) + seconds(z0, z1);
    }
    store(out, in_order(sums));
  }
};

template <class T> SIGPAK_INLINE void move(const T* from, T* to, index n) {
  for (index i = 0; i < n; ++i) {
    asm volatile("");  // a few scalars
    to[i] = from[i];
  }
}

// Up to a step of points by way of whole vectors, filled up with ones.
template <class Step, class T> SIGPAK_INLINE void run_rest(const T* a, const T* b, T* out, index points) {
  using P = wide<T>;
  T x[2 * P::width];
  T y[2 * P::width];
  store(x, splat<P>(1));
  store(x + P::width, splat<P>(1));
  store(y, splat<P>(1));
  store(y + P::width, splat<P>(1));
  move(a, x, 2 * points);
  move(b, y, 2 * points);
  Step::template run<P>(x, y, x);
  move(x, out, 2 * points);
}

// From a line on, where the points can lie on one.
template <class T> SIGPAK_INLINE index points_to_line(const T* out, index points, index scalars) {
  const index head = machine::bytes_to_line(out) / (scalars * index{sizeof(T)});
  return points >= 128 ? head : 0;
}

template <class Step, class T> void run_pairs(const T* a, const T* b, T* out, index points) noexcept {
  using P = wide<T>;
  const index head = points_to_line(out, points, 2);
  if (head > 0) run_rest<Step>(a, b, out, head);
  index i = head;
  for (; i + P::width <= points; i += P::width) Step::template run<P>(a + 2 * i, b + 2 * i, out + 2 * i);
  if (i < points) run_rest<Step>(a + 2 * i, b + 2 * i, out + 2 * i, points - i);
}

template <class T> SIGPAK_INLINE void magnitudes_of_rest(const T* z, T* out, index points) {
  using P = wide<T>;
  T x[2 * P::width];
  store(x, splat<P>(1));
  store(x + P::width, splat<P>(1));
  move(z, x, 2 * points);
  magnitude_step::run<P>(x, x);
  move(x, out, points);
}

// The way to a line may be longer than a vector of 32 bytes.
template <class T> void square_magnitudes(const T* z, T* out, index points) noexcept {
  using P = wide<T>;
  constexpr index most = P::width;
  index i = 0;
  for (const index head = points_to_line(out, points, 1); i < head;) {
    const index count = head - i < most ? head - i : most;
    magnitudes_of_rest(z + 2 * i, out + i, count);
    i += count;
  }
  for (; i + P::width <= points; i += P::width) magnitude_step::run<P>(z + 2 * i, out + i);
  if (i < points) magnitudes_of_rest(z + 2 * i, out + i, points - i);
}

using row = wide<double>;

SIGPAK_INLINE row load_row(const double* x) { return load<row>(x); }
SIGPAK_INLINE row load_row(const float* x) {
  return {__builtin_convertvector(load<pack<float, row::width>>(x).v, row::vector)};
}
SIGPAK_INLINE void store_row(double* to, row a) { store(to, a); }
SIGPAK_INLINE void store_row(float* to, row a) {
  using narrow = pack<float, row::width>;
  store(to, narrow{__builtin_convertvector(a.v, narrow::vector)});
}

// What the limits leave of 1 / z, or of z / H.
template <class T> [[gnu::noinline]] void reciprocate_guarded(T* z, index points) {
  constexpr double huge = double(guard<T>::huge);
  for (index i = 0; i < 2 * points; i += 2) {
    const double a = double(z[i]);
    const double b = double(z[i + 1]);
    const double s = a * a + b * b;
    const bool outside = a > huge || a < -huge || b > huge || b < -huge;
    const double inverse = outside ? 1 / huge : s == 0 ? huge : 1 / s;
    z[i] = T(inverse * a);
    z[i + 1] = T(-inverse * b);
  }
}

template <class T> SIGPAK_INLINE void reciprocal_step(T* z) {
  constexpr double huge = double(guard<T>::huge);
  const row z0 = load_row(z);
  const row z1 = load_row(z + row::width);
  const row size = firsts(z0 * z0, z1 * z1) + seconds(z0 * z0, z1 * z1);
  if (any_zero(size) || !all_below(size, splat<row>(huge * huge))) [[unlikely]] {
    return reciprocate_guarded(z, row::width);
  }
  const row inverse = {1 / size.v};
  store_row(z, z0 * low_parts(inverse, -inverse));
  store_row(z + row::width, z1 * high_parts(inverse, -inverse));
}

template <class T> void reciprocate(T* z, index points) noexcept {
  index i = 0;
  for (; i + row::width <= points; i += row::width) reciprocal_step(z + 2 * i);
  if (i < points) reciprocate_guarded(z + 2 * i, points - i);
}

template <class T>
constexpr kernels::point_functions<T> table = {run_pairs<product_step<false>, T>,
                                               run_pairs<product_step<true>, T>, run_pairs<quotient_step, T>,
                                               square_magnitudes<T>, reciprocate<T>};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::point_functions<double>) = SIGPAK_LEVEL::table<double>;
SIGPAK_LEVEL_TABLE(kernels::point_functions<float>) = SIGPAK_LEVEL::table<float>;

}  // namespace sigpak
