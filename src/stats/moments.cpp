// SPDX-License-Identifier: MIT
// Variance, standard deviation, skewness and excess kurtosis.
//
// One pass over the deviations from a centre near the data: T. F. Chan, G. H. Golub, R. J. LeVeque,
// Algorithms for computing the sample variance, The American Statistician 37 (1983).
#include <cmath>

#include "core/guard.h"
#include "kernels/sums/block_sums.h"
#include "stats/centre.h"
#include "stats/result.h"

namespace sigpak {
namespace {

template <class T, class Limits> constexpr double deviation(T x, double from, Limits limits) noexcept {
  return wide_guard<T>::clamp(wide(x) - from, limits);
}

template <class T>
lane_terms<T> deviations(kernels::lane_sums<T> kernels::lane_sum_table<T>::*kernel, const T* x,
                         double centre) noexcept {
  return {kernel, x, 1, {.centre = centre, .huge = wide_guard<T>::huge}};
}

// Of d and d^2.
template <class T> auto deviation_sums(const T* x, index points, double from) noexcept {
  return limited_sums<1>(
      points, wide_guard<T>::huge,
      [x, from](index i, auto limits) {
        const double d = deviation(x[i], from, limits);
        return sums<2>{d, d * d};
      },
      [x, from] { return deviations(&kernels::lane_sum_table<T>::deviations, x, from); });
}

template <record V> double variance_of_real(const V* v, double reciprocal) noexcept {
  using T = scalar<V>;
  const T* const x = v->data;
  const index points = length(v);
  const double c = wide(centre(x, points, 1));
  const auto [s1, s2] = deviation_sums(x, points, c);
  const double m1 = s1 * reciprocal;
  return s2 * reciprocal - m1 * m1;
}

template <record V> double variance_of_complex(const V* v, double reciprocal) noexcept {
  using T = scalar<V>;
  const T* const z = v->data;
  const index points = length(v);
  const double c_re = wide(centre(z, points, 2));
  const double c_im = wide(centre(z + 1, points, 2));
  const auto [re1, re2, im1, im2] = limited_sums<1, 3>(
      points, wide_guard<T>::huge,
      [=](index i, auto limits) {
        const double re = deviation(z[2 * i], c_re, limits);
        const double im = deviation(z[2 * i + 1], c_im, limits);
        return sums<4>{re, re * re, im, im * im};
      },
      [=] {
        return lane_terms<T>{.kernel = &kernels::lane_sum_table<T>::point_deviations,
                             .x = z,
                             .width = 2,
                             .constants = {.centre = c_re, .centre_im = c_im, .huge = wide_guard<T>::huge},
                             .blocks = 3};
      });
  const double m_re = re1 * reciprocal;
  const double m_im = im1 * reciprocal;
  return re2 * reciprocal + im2 * reciprocal - m_re * m_re - m_im * m_im;
}

template <record V> double variance(const V* v) noexcept {
  const index points = length(v);
  if (points == 0) return 0;
  const double reciprocal = 1.0 / static_cast<double>(points);
  return is_complex(v) ? variance_of_complex(v, reciprocal) : variance_of_real(v, reciprocal);
}

// From the population to the sample: n / (n - 1).
template <record V> double sample_factor(const V* v) noexcept {
  const auto n = static_cast<double>(length(v));
  return n < 2 ? 1.0 : n / (n - 1);
}

template <record V> status population_variance(const V* v, V* result) noexcept {
  return store(result, variance(v));
}
template <record V> status sample_variance(const V* v, V* result) noexcept {
  return store(result, variance(v) * sample_factor(v));
}
template <record V> status population_deviation(const V* v, V* result) noexcept {
  return store(result, std::sqrt(variance(v)));
}
template <record V> status sample_deviation(const V* v, V* result) noexcept {
  return store(result, std::sqrt(variance(v) * sample_factor(v)));
}

template <record V> double skewness(const V* v) noexcept {
  using T = scalar<V>;
  const T* const x = v->data;
  const index points = length(v);
  if (points == 0) return 0;
  const double c = wide(centre(x, points, 1));
  const auto [s1, s2, s3] = limited_sums<1>(
      points, wide_guard<T>::huge,
      [x, c](index i, auto limits) {
        const double d = deviation(x[i], c, limits);
        return sums<3>{d, d * d, d * d * d};
      },
      [x, c] { return deviations(&kernels::lane_sum_table<T>::cubed_deviations, x, c); });
  const double reciprocal = 1.0 / static_cast<double>(points);
  const double m1 = s1 * reciprocal;
  const double m2 = s2 * reciprocal;
  const double m3 = s3 * reciprocal;
  const double u3 = m3 - 3 * m1 * m2 + 2 * m1 * m1 * m1;
  const double v2 = m2 - m1 * m1;
  const double s = v2 * std::sqrt(v2);
  if (s != 0) return u3 / s;
  return u3 != 0 ? wide_guard<scalar<V>>::huge : 0;
}

template <record V> double excess_kurtosis(const V* v) noexcept {
  using T = scalar<V>;
  constexpr double of_normal = 3;
  const T* const x = v->data;
  const index points = length(v);
  if (points == 0) return -of_normal;
  const auto n = static_cast<double>(points);
  const double mean = deviation_sums(x, points, 0)[0] / n;
  const auto [s2, s4] = limited_sums<0>(
      points, wide_guard<T>::huge,
      [x, mean](index i, auto limits) {
        const double d = deviation(x[i], mean, limits);
        return sums<2>{d * d, d * d * (d * d)};
      },
      [x, mean] { return deviations(&kernels::lane_sum_table<T>::fourth_deviations, x, mean); });
  const double m2 = s2 / n;
  const double m4 = s4 / n;
  if (m2 * m2 != 0) return m4 / (m2 * m2) - of_normal;
  return m4 != 0 ? wide_guard<T>::huge : -of_normal;
}

template <record V> status skew(const V* v, V* result) noexcept {
  return is_complex(v) ? failed : store(result, skewness(v));
}
template <record V> status excess(const V* v, V* result) noexcept {
  return is_complex(v) ? failed : store(result, excess_kurtosis(v));
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_pop_var(const dsp_vec* v, dsp_vec* result) { return population_variance(v, result); }
int32_t dspfs_pop_var(const dspf_vec* v, dspf_vec* result) { return population_variance(v, result); }

int32_t dsps_samp_var(const dsp_vec* v, dsp_vec* result) { return sample_variance(v, result); }
int32_t dspfs_samp_var(const dspf_vec* v, dspf_vec* result) { return sample_variance(v, result); }

int32_t dsps_pop_stddev(const dsp_vec* v, dsp_vec* result) { return population_deviation(v, result); }
int32_t dspfs_pop_stddev(const dspf_vec* v, dspf_vec* result) { return population_deviation(v, result); }

int32_t dsps_samp_stddev(const dsp_vec* v, dsp_vec* result) { return sample_deviation(v, result); }
int32_t dspfs_samp_stddev(const dspf_vec* v, dspf_vec* result) { return sample_deviation(v, result); }

int32_t dsps_skew(const dsp_vec* v, dsp_vec* result) { return skew(v, result); }
int32_t dspfs_skew(const dspf_vec* v, dspf_vec* result) { return skew(v, result); }

int32_t dsps_excess(const dsp_vec* v, dsp_vec* result) { return excess(v, result); }
int32_t dspfs_excess(const dspf_vec* v, dspf_vec* result) { return excess(v, result); }
