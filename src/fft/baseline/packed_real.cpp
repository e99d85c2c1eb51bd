// SPDX-License-Identifier: MIT
// The transform of real data by one of half the length: even samples as real parts, odd ones as imaginary
// parts, which is how they lie in memory. The spectra of both are then told apart by their symmetry.
//
// J. W. Cooley, P. A. W. Lewis, P. D. Welch, "The fast Fourier transform algorithm: programming
// considerations in the calculation of sine, cosine and Laplace transforms", J. Sound Vib. 12 (1970).
#include "fft/baseline/packed_real.h"

#include "fft/baseline/split_radix.h"

namespace sigpak {
namespace {

// With Z the transform of the packed points, h their number, E and O those of even and odd samples:
// 2 E[k] = Z[k] + conj Z[h-k], 2 O[k] = -i (Z[k] - conj Z[h-k]), X[k] = E[k] + O[k] exp(-2 pi i k / 2h), and
// X[h-k] is the conjugate of E[k] less the same product. Z carries 1/h, X has 1/2h.
template <class T> void unpack(T* x, index h, const T* groups) noexcept {
  constexpr T half = T(0.5);
  constexpr T quarter = T(0.25);
  const T re = x[0];
  const T im = x[1];
  x[0] = half * (re + im);
  x[1] = 0;
  x[2 * h] = half * (re - im);
  x[2 * h + 1] = 0;
  for (index k = 1; 2 * k < h; ++k) {
    T* const a = x + 2 * k;
    T* const b = x + 2 * (h - k);
    const T even_re = a[0] + b[0];
    const T even_im = a[1] - b[1];
    T odd_re;
    T odd_im;
    store_product(&odd_re, &odd_im, a[1] + b[1], b[0] - a[0], groups + group * k);
    a[0] = quarter * (even_re + odd_re);
    a[1] = quarter * (even_im + odd_im);
    b[0] = quarter * (even_re - odd_re);
    b[1] = quarter * (odd_im - even_im);
  }
  x[h] *= half;
  x[h + 1] *= -half;
}

// Z[k] = E[k] + i O[k] with E[k] = X[k] + conj X[h-k], O[k] = (X[k] - conj X[h-k]) exp(2 pi i k / 2h); at h -
// k both are the conjugates.
template <class T> void pack(T* x, index h, const T* groups) noexcept {
  const T first = x[0];
  const T last = x[2 * h];
  x[0] = first + last;
  x[1] = first - last;
  for (index k = 1; 2 * k < h; ++k) {
    T* const a = x + 2 * k;
    T* const b = x + 2 * (h - k);
    const T even_re = a[0] + b[0];
    const T even_im = a[1] - b[1];
    T odd_re;
    T odd_im;
    store_product(&odd_im, &odd_re, a[1] + b[1], a[0] - b[0], groups + group * k);
    a[0] = even_re - odd_im;
    a[1] = even_im + odd_re;
    b[0] = even_re + odd_im;
    b[1] = odd_re - even_im;
  }
  x[h] *= 2;
  x[h + 1] *= -2;
}

}  // namespace

template <class T> status forward_packed(T* data, index points) noexcept {
  split_radix<T> packed;
  const T* const groups = twiddles<T>(points);
  if (groups == nullptr || packed.prepare(points / 2, false) != ok) return failed;
  packed.run(data);
  unpack(data, points / 2, groups);
  return ok;
}

template <class T> status inverse_packed(T* data, index points) noexcept {
  split_radix<T> packed;
  const T* const groups = twiddles<T>(points);
  if (groups == nullptr || packed.prepare(points / 2, true) != ok) return failed;
  pack(data, points / 2, groups);
  packed.run(data);
  return ok;
}

template status forward_packed(double*, index) noexcept;
template status forward_packed(float*, index) noexcept;
template status inverse_packed(double*, index) noexcept;
template status inverse_packed(float*, index) noexcept;

}  // namespace sigpak
