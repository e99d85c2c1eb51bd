// SPDX-License-Identifier: MIT
// Geometric mean, harmonic mean.
#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>

#include "core/guard.h"
#include "core/kept_errno.h"
#include "kernels/sums/block_sums.h"
#include "stats/result.h"

namespace sigpak {
namespace {

// The product itself, no logarithms: it runs out of range where the product of the samples does.
template <record V> double product_of_real(const V* v) noexcept {
  double product = 1;
  for (index i = 0; i < length(v); ++i) product *= wide(v->data[i]);
  return product;
}

template <record V> std::complex<double> product_of_complex(const V* v) noexcept {
  double re = 1;
  double im = 0;
  for (index i = 0; i < length(v); ++i) {
    const double x = wide(v->data[2 * i]);
    const double y = wide(v->data[2 * i + 1]);
    const double next_re = re * x - im * y;
    im = re * y + im * x;
    re = next_re;
  }
  return {re, im};
}

// The principal n-th root of the product; 0 where the squared magnitude of the product is below T.
template <record V> status geometric_mean(const V* v, V* result) noexcept {
  const kept_errno kept;
  const auto n = static_cast<double>(length(v));
  constexpr double tiny = wide_guard<scalar<V>>::tiny;
  if (!is_complex(v)) {
    const double product = product_of_real(v);
    return store(result, n >= 1 && product >= tiny ? std::exp(std::log(product) / n) : 0.0);
  }
  const std::complex<double> product = product_of_complex(v);
  const double q = product.real() * product.real() + product.imag() * product.imag();
  if (!(n >= 1 && q >= tiny)) return store(result, 0.0, 0.0);
  const double magnitude = std::exp(std::log(q) / (2 * n));
  const double angle = std::atan2(product.imag(), product.real()) / n;
  return store(result, magnitude * std::cos(angle), magnitude * std::sin(angle));
}

template <class T> bool contains_zero(const T* x, index points) noexcept {
  return isa::run([=] {
    index zeros = 0;
    for (index i = 0; i < points; ++i) zeros += x[i] == 0 ? 1 : 0;
    return zeros != 0;
  });
}

// A block, or a good part of it. Its additions wait for each other, and scalar divisions take longer than
// they do: they are made ahead, a tile at once. Vectors of 512 bits divide no faster than those of 256, and
// take longer to be parted.
template <class T> double sum_reciprocals_of_block(const T* x, index points) noexcept {
  return isa::run_at(std::min(isa::current(), isa::level::avx2), [=] {
    constexpr index tile = 16;
    double sum = 0;
    index i = 0;
    for (; i + tile <= points; i += tile) {
      double r[tile];
      for (index j = 0; j < tile; ++j) r[j] = 1.0 / wide(x[i + j]);
      for (index j = 0; j < tile; ++j) sum += r[j];
    }
    for (; i < points; ++i) sum += 1.0 / wide(x[i]);
    return sum;
  });
}

template <class T> double sum_reciprocals(const T* x, index points) noexcept {
  if (points > isa::short_run && points <= sum_block) return sum_reciprocals_of_block(x, points);
  return blocked_sums(
      points, [x](index i) { return sums<1>{1.0 / wide(x[i])}; },
      [x] {
        return lane_terms<T>{.kernel = &kernels::lane_sum_table<T>::reciprocals,
                             .x = x,
                             .blocks = sizeof(T) == sizeof(double) ? 4 : 1};
      })[0];
}

template <record V> double harmonic_mean_of_real(const V* v) noexcept {
  const scalar<V>* const x = v->data;
  const index points = length(v);
  const double s = sum_reciprocals(x, points);
  if (points == 0 || (!std::isfinite(s) && contains_zero(x, points))) return 0;
  return s != 0 ? static_cast<double>(points) / s : wide_guard<scalar<V>>::huge;
}

// 1 / q, kept finite; H for 0.
template <class T> constexpr double reciprocal_of_square(double q) noexcept {
  return q <= 0 ? wide_guard<T>::huge : std::min(1.0 / q, std::numeric_limits<double>::max());
}

template <record V> status store_harmonic_mean_of_complex(const V* v, V* result) noexcept {
  using T = scalar<V>;
  const T* const z = v->data;
  const auto [re, im, squares] = limited_sums<2>(
      length(v), wide_guard<T>::huge,
      [z](index i, auto limits) {
        const double x = wide_guard<T>::clamp(wide(z[2 * i]), limits);
        const double y = wide_guard<T>::clamp(wide(z[2 * i + 1]), limits);
        const double q = x * x + y * y;
        const double r = reciprocal_of_square<T>(q);
        return sums<3>{x * r, -(y * r), q};
      },
      [z] {
        return lane_terms<T>{.kernel = &kernels::lane_sum_table<T>::point_reciprocals,
                             .x = z,
                             .width = 2,
                             .constants = {.huge = wide_guard<T>::huge},
                             .blocks = 3};
      });
  const double factor = static_cast<double>(length(v)) * reciprocal_of_square<T>(re * re + im * im);
  return store(result, factor * re, -(factor * im));
}

template <record V> status harmonic_mean(const V* v, V* result) noexcept {
  if (is_complex(v)) return store_harmonic_mean_of_complex(v, result);
  return store(result, harmonic_mean_of_real(v));
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_gmean(const dsp_vec* v, dsp_vec* result) { return geometric_mean(v, result); }
int32_t dspfs_gmean(const dspf_vec* v, dspf_vec* result) { return geometric_mean(v, result); }

int32_t dsps_hmean(const dsp_vec* v, dsp_vec* result) { return harmonic_mean(v, result); }
int32_t dspfs_hmean(const dspf_vec* v, dspf_vec* result) { return harmonic_mean(v, result); }
