// SPDX-License-Identifier: MIT
// The statistics of GSL, and the dot product of its reference BLAS.
#include <gsl/gsl_statistics_double.h>
#include <gsl/gsl_statistics_float.h>

#include "vector_peers.h"

namespace bench {
namespace {

template <class T> struct entry {
  std::string_view job;
  double (*statistic)(const T*, std::size_t, std::size_t);
};

constexpr entry<double> of_double[] = {
    {"mean", gsl_stats_mean},
    {"variance",
     [](const double* x, std::size_t stride, std::size_t n) {
       return gsl_stats_variance_with_fixed_mean(x, stride, n, gsl_stats_mean(x, stride, n));
     }},
    {"skewness", gsl_stats_skew},
    {"excess", gsl_stats_kurtosis},
    {"smallest", gsl_stats_min},
};
constexpr entry<float> of_float[] = {
    {"mean", gsl_stats_float_mean},
    {"variance",
     [](const float* x, std::size_t stride, std::size_t n) {
       return gsl_stats_float_variance_with_fixed_mean(x, stride, n, gsl_stats_float_mean(x, stride, n));
     }},
    {"skewness", gsl_stats_float_skew},
    {"excess", gsl_stats_float_kurtosis},
    {"smallest", [](const float* x, std::size_t stride,
                    std::size_t n) { return static_cast<double>(gsl_stats_float_min(x, stride, n)); }},
};

template <class T, std::size_t count>
void add(std::vector<vector_peer>& to, std::string_view job, const arrays<T>& on,
         const entry<T> (&entries)[count]) {
  for (const entry<T>& e : entries) {
    if (e.job != job) continue;
    to.push_back({"GSL", [statistic = e.statistic, on] {
                    on.out[0] = static_cast<T>(statistic(on.a, 1, static_cast<std::size_t>(on.points)));
                  }});
  }
}

}  // namespace

template <> void add_gsl(std::vector<vector_peer>& to, std::string_view job, const arrays<double>& on) {
  add(to, job, on, of_double);
}
template <> void add_gsl(std::vector<vector_peer>& to, std::string_view job, const arrays<float>& on) {
  add(to, job, on, of_float);
}

}  // namespace bench
