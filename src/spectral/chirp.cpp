// The transform of any length as a convolution with a chirp, which power-of-two transforms carry out, or a
// kernel of its own where vectors are wide.
//
// With 2nk = n^2 + k^2 - (k - n)^2 and a[k] = exp(-i pi k^2 / N),
//   X[k] = a[k] sum over n of (x[n] a[n]) conj a[k-n]
// L. I. Bluestein, "A linear filtering approach to the computation of discrete Fourier transform", IEEE
// Trans. Audio Electroacoust. 18 (1970).
#include "spectral/chirp.h"

#include <bit>

#include "core/frame.h"
#include "core/roots.h"
#include "core/storage.h"
#include "elementwise/elementwise.h"
#include "fft/wide_chirp.h"
#include "fft/transform.h"
#include "fft/baseline/tables.h"

namespace sigpak {
namespace {

// Built for the forward direction, and conjugated for the other: exactly, so that a transform does not depend
// on the ones before it. For the same reason 1/N is no part of the filter.
template <record V> struct chirp_tables {
  V chirp = {};
  V filter = {};     // transformed
  index length = 0;  // 0 while the tables are not complete
  bool inverse = false;
};

template <record V> constinit chirp_tables<V> tables;

template <record V> status release() noexcept {
  destroy(&tables<V>.chirp);
  destroy(&tables<V>.filter);
  kernels::release_wide_chirp<scalar<V>>();
  tables<V>.length = 0;
  return ok;
}

template <record V> status size_complex(V* v, index points) noexcept {
  v->points = static_cast<std::uint32_t>(points);
  v->complex = 1;
  return allocate(v);
}

// The smallest power of two not below 2N - 2: the filter is symmetric, so that its ends may coincide.
constexpr index convolution_length(index points) noexcept {
  return static_cast<index>(std::bit_ceil(static_cast<std::uint64_t>(2 * points - 2)));
}

// k^2 mod 2N grows by 2k - 1 from one k to the next, in integers.
template <class T> void fill_chirp(T* chirp, index points) noexcept {
  const index period = 2 * points;
  for (index k = 0, square = 0; k < points; ++k, square = (square + 2 * k - 1) % period) {
    const unit_root<double> w = root_of_unity<double>(square, period);
    chirp[2 * k] = static_cast<T>(w.cosine);
    chirp[2 * k + 1] = static_cast<T>(-w.sine);
  }
}

// The conjugate of the chirp, for positive and negative distances.
template <class T> void fill_filter(T* filter, const T* chirp, index points, index convolution) noexcept {
  for (index i = 0; i < 2 * convolution; ++i) filter[i] = 0;
  for (index k = 0; k < points; ++k) {
    T* const mirrored = filter + 2 * (k == 0 ? 0 : convolution - k);
    filter[2 * k] = mirrored[0] = chirp[2 * k];
    filter[2 * k + 1] = mirrored[1] = -chirp[2 * k + 1];
  }
}

template <record V> status build(index points) noexcept {
  auto& t = tables<V>;
  register_cache<V>(cache::dft, release<V>);
  t.length = 0;
  const index convolution = convolution_length(points);
  if (size_complex(&t.chirp, points) != ok || size_complex(&t.filter, convolution) != ok) return failed;
  fill_chirp(t.chirp.data, points);
  fill_filter(t.filter.data, t.chirp.data, points, convolution);
  if (transform(t.filter.data, convolution, true) != ok) return failed;
  t.length = points;
  t.inverse = false;
  return ok;
}

template <class T> void conjugate(T* z, index points) noexcept {
  for (index i = 0; i < points; ++i) z[2 * i + 1] = -z[2 * i + 1];
}

template <class T> void reverse_points(T* z, index points) noexcept {
  for (index i = 0, j = points - 1; i < j; ++i, --j) {
    for (index part = 0; part < 2; ++part) {
      const T t = z[2 * i + part];
      z[2 * i + part] = z[2 * j + part];
      z[2 * j + part] = t;
    }
  }
}

// Conjugating in one domain conjugates and reverses in the other.
template <record V> void turn(bool inverse) noexcept {
  auto& t = tables<V>;
  if (t.inverse == inverse) return;
  conjugate(t.chirp.data, length(&t.chirp));
  conjugate(t.filter.data, length(&t.filter));
  reverse_points(t.filter.data + 2, length(&t.filter) - 1);
  t.inverse = inverse;
}

// The mean of the two spacings, which multiply leaves, is then the one that v has.
template <record V> status multiply_by(V* v, V* table) noexcept {
  table->delta = v->delta;
  return multiply(v, table, v);
}

// By power-of-two transforms, on the record itself.
template <record V> status convolve(V* v, bool inverse) noexcept {
  auto& t = tables<V>;
  const index points = length(v);
  const index convolution = convolution_length(points);
  if (t.length != points && build<V>(points) != ok) return failed;
  turn<V>(inverse);
  if (multiply_by(v, &t.chirp) != ok || pad(v, convolution) != ok) return failed;
  if (transform(v->data, convolution, true) != ok || multiply_by(v, &t.filter) != ok) return failed;
  if (transform(v->data, convolution, false) != ok) return failed;
  v->points = static_cast<std::uint32_t>(points);
  if (multiply_by(v, &t.chirp) != ok) return failed;
  return inverse ? ok : scale(v, scalar<V>(1) / static_cast<scalar<V>>(points));
}

}  // namespace

template <record V> status chirp_transform(V* v, bool inverse) noexcept {
  if (!kernels::has_wide_chirp<scalar<V>>()) return convolve(v, inverse);
  if (to_complex(v) != ok) return failed;
  register_cache<V>(cache::dft, release<V>);
  own_twiddle_cache<scalar<V>>();
  return kernels::wide_chirp(v->data, length(v), inverse);
}

template status chirp_transform(dsp_vec*, bool) noexcept;
template status chirp_transform(dspf_vec*, bool) noexcept;

}  // namespace sigpak
