// SPDX-License-Identifier: MIT
// Straight lines of least squares, of y on x and of x on y, with the variances of their parameters.
#include <algorithm>
#include <cmath>

#include "core/guard.h"
#include "kernels/sums/block_sums.h"
#include "stats/centre.h"
#include "stats/result.h"

namespace sigpak {
namespace {

using table = std::array<double, 20>;

// Sums of the deviations of n pairs from a centre.
struct pair_sums {
  double n, x_centre, y_centre;
  double x, y, xx, yy, xy;
};

template <class T, class Pair, class Describe>
[[gnu::always_inline]] inline pair_sums sum_pairs(index points, double x_centre, double y_centre, Pair pair,
                                                  Describe describe) noexcept {
  const auto [x, y, xx, yy, xy] = limited_sums<2, 3>(
      points, wide_guard<T>::huge,
      [=](index i, auto limits) {
        const auto [px, py] = pair(i);
        const double dx = wide_guard<T>::clamp(px - x_centre, limits);
        const double dy = wide_guard<T>::clamp(py - y_centre, limits);
        return sums<5>{dx, dy, dx * dx, dy * dy, dx * dy};
      },
      describe);
  return {static_cast<double>(points), x_centre, y_centre, x, y, xx, yy, xy};
}

// A list of (x, y).
template <class T> pair_sums sum_list(const T* z, index points) noexcept {
  const double x = wide(centre(z, points, 2));
  const double y = wide(centre(z + 1, points, 2));
  return sum_pairs<T>(
      points, x, y,
      [z](index i) {
        return sums<2>{wide(z[2 * i]), wide(z[2 * i + 1])};
      },
      [=] {
        return lane_terms<T>{.kernel = &kernels::lane_sum_table<T>::point_line,
                             .x = z,
                             .width = 2,
                             .constants = {.centre = x, .centre_im = y, .huge = wide_guard<T>::huge},
                             .blocks = 3};
      });
}

// Samples against their times.
template <class T> pair_sums sum_samples(const T* samples, index points, double step) noexcept {
  const double x = static_cast<double>(points - 1) * step * 0.5;
  const double y = wide(centre(samples, points, 1));
  return sum_pairs<T>(
      points, x, y,
      [samples, step](index i) {
        return sums<2>{static_cast<double>(i) * step, wide(samples[i])};
      },
      [=] {
        return lane_terms<T>{
            .kernel = &kernels::lane_sum_table<T>::line,
            .x = samples,
            .constants = {.centre = y, .centre_im = x, .huge = wide_guard<T>::huge, .step = step},
            .blocks = 3};
      });
}

template <record V> pair_sums sum_record(const V* v) noexcept {
  const index points = length(v);
  if (points == 0) return {};
  if (is_complex(v)) return sum_list(v->data, points);
  return sum_samples(v->data, points, v->delta != 0 ? wide(v->delta) : 1.0);
}

// Mean square less squared mean, of deviations from a centre that is the mean of three of the values or of
// all: a true variance is then at least 1.5 mean^2 / n, and less, or negative, is rounding.
double spread(double mean_square, double mean, double n) noexcept {
  const double variance = mean_square - mean * mean;
  return variance <= mean * mean / n ? 0.0 : variance;
}

double correlation(double covariance, double vx, double vy) noexcept {
  if (vx == 0 || vy == 0) return 0;
  const double product = vy * vx;
  const bool in_range = std::isnormal(product);
  const double r = covariance / (in_range ? std::sqrt(product) : std::sqrt(vy) * std::sqrt(vx));
  return std::clamp(r, -1.0, 1.0);
}

struct variable {
  double mean, variance;
};

struct pair_moments {
  variable x, y;
  double covariance;
};

pair_moments moments_of(const pair_sums& s) noexcept {
  const double reciprocal = 1 / s.n;
  const double u = s.x * reciprocal;
  const double w = s.y * reciprocal;
  return {{u + s.x_centre, spread(s.xx * reciprocal, u, s.n)},
          {w + s.y_centre, spread(s.yy * reciprocal, w, s.n)},
          s.xy * reciprocal - u * w};
}

struct line {
  double slope, intercept;
};

template <class T> line fit(variable predictor, variable response, double covariance) noexcept {
  if (predictor.variance == 0) return {wide_guard<T>::huge, wide_guard<T>::huge};
  const double slope = 1 / predictor.variance * covariance;
  return {slope, response.mean - slope * predictor.mean};
}

// The seven numbers of the line of `response` on `predictor`.
template <class T>
void describe_line(variable predictor, variable response, double covariance, double r, double n,
                   double* out) noexcept {
  constexpr double most = wide_guard<T>::huge;
  const auto [mean, variance] = predictor;
  const bool vertical = variance == 0;
  const double freedom = n < 3 ? 0.0 : n / (n - 2);
  const double unexplained = response.variance * (1 - r * r);
  const double residual = freedom * (unexplained < 0 ? 0.0 : unexplained);
  const double slope_variance = vertical ? freedom * most : residual / (n * variance);
  const double mean_square = mean * mean + variance;
  const auto [slope, intercept] = fit<T>(predictor, response, covariance);
  out[0] = slope;
  out[1] = intercept;
  out[2] = residual;
  out[3] = slope_variance;
  out[4] = slope_variance * mean_square;
  out[5] = -(slope_variance * mean);
  out[6] = mean_square != 0 ? std::clamp(-(mean / std::sqrt(mean_square)), -1.0, 1.0) : 0.0;
}

template <class T> table describe(const pair_sums& s) noexcept {
  table out{};
  if (s.n < 2) {
    out[1] = out[15] = s.y + s.y_centre;
    out[8] = out[14] = s.x + s.x_centre;
    return out;
  }
  const auto [x, y, covariance] = moments_of(s);
  const double r = correlation(covariance, x.variance, y.variance);
  const double sample_factor = s.n / (s.n - 1);
  describe_line<T>(x, y, covariance, r, s.n, &out[0]);
  describe_line<T>(y, x, covariance, r, s.n, &out[7]);
  out[14] = x.mean;
  out[15] = y.mean;
  out[16] = sample_factor * x.variance;
  out[17] = sample_factor * y.variance;
  out[18] = sample_factor * covariance;
  out[19] = r;
  return out;
}

template <class T> line least_squares(const pair_sums& s) noexcept {
  if (s.n < 2) return {0, s.y + s.y_centre};
  const auto [x, y, covariance] = moments_of(s);
  return fit<T>(x, y, covariance);
}

template <record V> status regress(const V* v, V* result) noexcept {
  const auto [slope, intercept] = least_squares<scalar<V>>(sum_record(v));
  if (prepare_result(result, 2, false) != ok) return failed;
  result->data[0] = static_cast<scalar<V>>(slope);
  result->data[1] = static_cast<scalar<V>>(intercept);
  return ok;
}

template <record V> status regress_both_ways(const V* v, V* result) noexcept {
  const table found = describe<scalar<V>>(sum_record(v));
  if (prepare_result(result, static_cast<index>(found.size()), false) != ok) return failed;
  std::transform(found.begin(), found.end(), result->data,
                 [](double x) { return static_cast<scalar<V>>(x); });
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_lin_regres(const dsp_vec* v, dsp_vec* result) { return regress(v, result); }
int32_t dspfs_lin_regres(const dspf_vec* v, dspf_vec* result) { return regress(v, result); }

int32_t dsps_lin_regres2(const dsp_vec* v, dsp_vec* result) { return regress_both_ways(v, result); }
int32_t dspfs_lin_regres2(const dspf_vec* v, dspf_vec* result) { return regress_both_ways(v, result); }
