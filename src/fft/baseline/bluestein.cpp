// SPDX-License-Identifier: MIT
// With 2nk = n^2 + k^2 - (k - n)^2 and a[k] = exp(-i pi k^2 / N),
//   X[k] = a[k] sum over n of (x[n] a[n]) conj a[k-n]
// L. I. Bluestein, "A linear filtering approach to the computation of discrete Fourier transform", IEEE
// Trans. Audio Electroacoust. 18 (1970).
#include "fft/baseline/bluestein.h"

#include <algorithm>
#include <bit>

#include "core/frame.h"
#include "core/lending.h"
#include "core/memory.h"
#include "core/product.h"
#include "core/roots.h"
#include "fft/baseline/split_radix.h"

namespace sigpak {
namespace {

// One block for the last length. Built for the forward direction, and conjugated for the other: exactly, so
// that a transform does not depend on the ones before it. For the same reason 1/N is no part of the filter.
template <class T> struct convolution {
  T* chirp = nullptr;   // N points
  T* filter = nullptr;  // M points, transformed
  T* work = nullptr;    // M points
  index points = 0;     // N
  index circle = 0;     // M
  bool inverse = false;

  status release() noexcept {
    free_table(chirp);
    *this = {};
    return ok;
  }
};
template <class T> constinit lender<convolution<T>> kept;

// The smallest power of two not below 2N - 2: the filter is symmetric, so that its ends may coincide.
constexpr index circle_for(index points) noexcept {
  return static_cast<index>(std::bit_ceil(static_cast<std::uint64_t>(2 * points - 2)));
}

// k^2 mod 2N grows by 2k - 1 from one k to the next, in integers.
template <class T> void fill_chirp(T* chirp, index points) noexcept {
  const index period = 2 * points;
  for (index k = 0, square = 0; k < points; ++k, square = (square + 2 * k - 1) % period) {
    const unit_root<double> w = root_of_unity<double>(square, period);
    put_point(chirp, k, {static_cast<T>(w.cosine), static_cast<T>(-w.sine)});
  }
}

// The conjugate of the chirp, for positive and negative distances.
template <class T> void fill_filter(T* filter, const T* chirp, index points, index circle) noexcept {
  std::fill_n(filter, 2 * circle, T(0));
  for (index k = 0; k < points; ++k) {
    const point<T> value = conjugate(point_at(chirp, k));
    put_point(filter, k, value);
    put_point(filter, k == 0 ? 0 : circle - k, value);
  }
}

// Nothing is kept until all of it is there.
template <class T> status build(convolution<T>& c, index points) noexcept {
  register_cache<record_of<T>>(cache::dft, []() noexcept { return kept<T>.release(); });
  c.release();
  const index circle = circle_for(points);
  T* const chirp = allocate_table<T>(2 * points + 4 * circle);
  if (chirp == nullptr) return failed;
  T* const filter = chirp + 2 * points;
  fill_chirp(chirp, points);
  fill_filter(filter, chirp, points, circle);
  if (split_radix_transform(filter, circle, true) != ok) {
    free_table(chirp);
    return failed;
  }
  c = {chirp, filter, filter + 2 * circle, points, circle, false};
  return ok;
}

template <class T> void conjugate_all(T* z, index points) noexcept {
  for (index i = 0; i < points; ++i) z[2 * i + 1] = -z[2 * i + 1];
}

template <class T> void reverse_points(T* z, index points) noexcept {
  for (index i = 0, j = points - 1; i < j; ++i, --j) {
    const point<T> low = point_at(z, i);
    put_point(z, i, point_at(z, j));
    put_point(z, j, low);
  }
}

// Conjugating in one domain conjugates and reverses in the other.
template <class T> void turn(convolution<T>& c, bool inverse) noexcept {
  if (c.inverse == inverse) return;
  conjugate_all(c.chirp, c.points);
  conjugate_all(c.filter, c.circle);
  reverse_points(c.filter + 2, c.circle - 1);
  c.inverse = inverse;
}

// out[i] = a[i] b[i]; out may be a.
template <class T> void multiply(const T* a, const T* b, T* out, index points) noexcept {
  for (index i = 0; i < points; ++i) put_point(out, i, product(point_at(a, i), point_at(b, i)));
}

// The data times the chirp; reals are not made points first, which would change the sign of zeros.
template <class T> void enter(const convolution<T>& c, const T* data, domain kind) noexcept {
  if (kind == domain::complex) {
    multiply(data, c.chirp, c.work, c.points);
  } else {
    for (index i = 0; i < c.points; ++i) put_point(c.work, i, product(data[i], point_at(c.chirp, i)));
  }
  std::fill_n(c.work + 2 * c.points, 2 * (c.circle - c.points), T(0));
}

}  // namespace

template <class T> status bluestein_transform(T* data, domain kind, index points, bool inverse) noexcept {
  const loan<convolution<T>> lent(kept<T>, 10 * points * index{sizeof(T)});
  convolution<T>& c = *lent;
  if (c.points != points && build(c, points) != ok) return failed;
  turn(c, inverse);
  enter(c, data, kind);
  if (split_radix_transform(c.work, c.circle, true) != ok) return failed;
  multiply(c.work, c.filter, c.work, c.circle);
  if (split_radix_transform(c.work, c.circle, false) != ok) return failed;
  multiply(c.work, c.chirp, data, points);
  if (inverse) return ok;
  const T scale = T(1) / static_cast<T>(points);
  for (index i = 0; i < 2 * points; ++i) data[i] *= scale;
  return ok;
}

template status bluestein_transform(double*, domain, index, bool) noexcept;
template status bluestein_transform(float*, domain, index, bool) noexcept;

}  // namespace sigpak
