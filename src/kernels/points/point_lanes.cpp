// SPDX-License-Identifier: MIT
// Products, quotients and squared magnitudes of complex points that lie re, im side by side. Shuffles stay
// within 128 bits wherever they can; no product is fused, so every level gives the bits of the plain loop.
#include "core/guard.h"
#include "core/machine.h"
#include "kernels/points/points.h"
#include "vectors/levels.h"
#include "vectors/rows.h"

namespace sigpak::SIGPAK_LEVEL {
namespace {

// a b: (a_re b_re - a_im b_im, a_im b_re + a_re b_im).
template <class P> SIGPAK_INLINE P product(P a, P b) {
  return turned_sum(a * evens_twice(b), exchanged(a) * odds_twice(b));
}

// a conj(b): (a_re b_re + a_im b_im, a_im b_re - a_re b_im).
template <class P> SIGPAK_INLINE P conjugate_product(P a, P b) {
  return turned_sum(a * evens_twice(b), -(exchanged(a) * odds_twice(b)));
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
    const P size = evens(b0b0, b1b1) + odds(b0b0, b1b1);
    const P inverse = splat<P>(1) / size;
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
    P sums = evens(z0 * z0, z1 * z1) + odds(z0 * z0, z1 * z1);
    if (!all_below(sums, splat<P>(huge * huge))) [[unlikely]] {
      z0 = guarded_square(z0);
      z1 = guarded_square(z1);
      sums = evens(z0, z1) + odds(z0, z1);
    }
    store(out, evens_first(sums));
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
  using P = widest<T>;
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

// From a line on, where the points can lie on one. The way there may be longer than a step.
template <class T> SIGPAK_INLINE index points_to_line(const T* out, index points, index scalars) {
  const index head = machine::bytes_to_line(out) / (scalars * index{sizeof(T)});
  return points >= 128 ? head : 0;
}

template <class Step, class T> void run_pairs(const T* a, const T* b, T* out, index points) noexcept {
  using P = widest<T>;
  constexpr index most = P::width;
  index i = 0;
  for (const index head = points_to_line(out, points, 2); i < head;) {
    const index count = head - i < most ? head - i : most;
    run_rest<Step>(a + 2 * i, b + 2 * i, out + 2 * i, count);
    i += count;
  }
  const bool far = come_from_memory(2 * points * index{sizeof(T)});
  for (; i + P::width <= points; i += P::width) {
    if (far) {
      fetch_ahead<2 * P::width>(a + 2 * i);
      fetch_ahead<2 * P::width>(b + 2 * i);
    }
    Step::template run<P>(a + 2 * i, b + 2 * i, out + 2 * i);
  }
  if (i < points) run_rest<Step>(a + 2 * i, b + 2 * i, out + 2 * i, points - i);
}

template <class T> SIGPAK_INLINE void magnitudes_of_rest(const T* z, T* out, index points) {
  using P = widest<T>;
  T x[2 * P::width];
  store(x, splat<P>(1));
  store(x + P::width, splat<P>(1));
  move(z, x, 2 * points);
  magnitude_step::run<P>(x, x);
  move(x, out, points);
}

template <class T> void square_magnitudes(const T* z, T* out, index points) noexcept {
  using P = widest<T>;
  constexpr index most = P::width;
  index i = 0;
  for (const index head = points_to_line(out, points, 1); i < head;) {
    const index count = head - i < most ? head - i : most;
    magnitudes_of_rest(z + 2 * i, out + i, count);
    i += count;
  }
  const bool far = come_from_memory(2 * points * index{sizeof(T)});
  for (; i + P::width <= points; i += P::width) {
    if (far) fetch_ahead<2 * P::width>(z + 2 * i);
    magnitude_step::run<P>(z + 2 * i, out + i);
  }
  if (i < points) magnitudes_of_rest(z + 2 * i, out + i, points - i);
}

// What the limits leave of 1 / z, or of z / H.
template <class T> [[gnu::noinline]] void reciprocate_guarded(T* z, index points) {
  constexpr double huge = wide_guard<T>::huge;
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
  constexpr double huge = wide_guard<T>::huge;
  const real z0 = read(z);
  const real z1 = read(z + real::width);
  const real size = evens(z0 * z0, z1 * z1) + odds(z0 * z0, z1 * z1);
  if (any_zero(size) || !all_below(size, all(huge * huge))) [[unlikely]] {
    return reciprocate_guarded(z, real::width);
  }
  const real inverse = all(1) / size;
  write(z, z0 * low_parts(inverse, -inverse));
  write(z + real::width, z1 * high_parts(inverse, -inverse));
}

template <class T> void reciprocate(T* z, index points) noexcept {
  index i = 0;
  for (; i + real::width <= points; i += real::width) reciprocal_step(z + 2 * i);
  if (i < points) reciprocate_guarded(z + 2 * i, points - i);
}

template <class T> SIGPAK_INLINE void turn_rest(T* z, index points, double re, double im) {
  for (index i = 0; i < 2 * points; i += 2) {
    const auto a = static_cast<double>(z[i]);
    const auto b = static_cast<double>(z[i + 1]);
    z[i] = static_cast<T>(a * re + -b * im);
    z[i + 1] = static_cast<T>(b * re + a * im);
  }
}

template <class T> void turn(T* z, index points, double re, double im) noexcept {
  constexpr index vectors = 2;
  const real c = all(re);
  const real s = all(im);
  index i = points_to_line(z, points, 2);
  turn_rest(z, i, re, im);
  // Floats, half a vector at a time, come too slowly unless they are called for; doubles gain nothing.
  const bool far = is_single<T> && come_from_memory(2 * points * index{sizeof(T)});
  for (; i + vectors * real::width / 2 <= points; i += vectors * real::width / 2) {
    T* const to = z + 2 * i;
    if (far) fetch_ahead<vectors * real::width>(to);
    unroll<vectors>([&](auto v) SIGPAK_LAMBDA {
      const real a = read(to + v * real::width);
      write(to + v * real::width, turned_sum(a * c, exchanged(a) * s));
    });
  }
  turn_rest(z + 2 * i, points - i, re, im);
}

// Of a product in 128 bits the shuffles take as long as the plain loop's.
template <bool conjugate, class T> constexpr kernels::point_function<T> multiplication() {
  return lane_count == 2 ? nullptr : run_pairs<product_step<conjugate>, T>;
}

template <class T>
constexpr kernels::point_functions<T> table = {multiplication<false, T>(),
                                               multiplication<true, T>(),
                                               run_pairs<quotient_step, T>,
                                               square_magnitudes<T>,
                                               reciprocate<T>,
                                               lane_count == 2 ? nullptr : turn<T>};

}  // namespace

}  // namespace sigpak::SIGPAK_LEVEL

namespace sigpak {

SIGPAK_LEVEL_TABLE(kernels::point_functions<double>) = SIGPAK_LEVEL::table<double>;
SIGPAK_LEVEL_TABLE(kernels::point_functions<float>) = SIGPAK_LEVEL::table<float>;

}  // namespace sigpak
