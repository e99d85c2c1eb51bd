// Sums of eight blocks side by side at the wide levels, one lane each.
#pragma once

#include <cstddef>

namespace sigpak::kernels {

inline constexpr int sum_lanes = 8;
inline constexpr int most_sums = 4;

// What a term subtracts from a sample (from its imaginary part), and the limits -huge .. huge of the outcome.
struct term_constants {
  double centre = 0;
  double centre_im = 0;
  double huge = 0;
};

// sums[k][lane] = the k-th sum over `points` points from x[lane] on (products: with those from y[lane] on),
// from zero in the order of the points; lanes may read the same points. `points` is a multiple of 8.
template <class T>
using lane_sums = void (*)(const T* const* x, const T* const* y, std::ptrdiff_t points,
                           const term_constants& constants, double (*sums)[sum_lanes]);

template <class T> struct lane_sum_table {
  lane_sums<T> samples;            // x
  lane_sums<T> points;             // re, im
  lane_sums<T> limited;            // x within the limits
  lane_sums<T> squares;            // x^2, x within the limits
  lane_sums<T> point_squares;      // re^2 + im^2, each within the limits
  lane_sums<T> deviations;         // d = x - centre within the limits, d^2
  lane_sums<T> point_deviations;   // the same of re, then of im
  lane_sums<T> cubed_deviations;   // d, d^2, d^3
  lane_sums<T> fourth_deviations;  // d^2, d^4
  lane_sums<T> products;           // x y
};

}  // namespace sigpak::kernels

namespace sigpak::avx2 {
extern const kernels::lane_sum_table<double> lane_sums_double;
extern const kernels::lane_sum_table<float> lane_sums_float;
}  // namespace sigpak::avx2

namespace sigpak::avx512 {
extern const kernels::lane_sum_table<double> lane_sums_double;
extern const kernels::lane_sum_table<float> lane_sums_float;
}  // namespace sigpak::avx512
