// SPDX-License-Identifier: MIT
// The plain loops: what anyone would write, compiled like anyone's code, without a level.
#pragma once

#include <cstddef>

namespace bench::plain {

using index = std::ptrdiff_t;

void scale(double* x, index n, double c);
void offset(double* x, index n, double c);
void negate(double* x, index n);
void add(double* a, const double* b, index n);
void multiply(double* a, const double* b, index n);
void minimum(double* a, const double* b, index n);
void divide(double* a, const double* b, index n);
void reciprocal(double* x, index n);
void square_root(double* x, index n);
bool limit(double* x, index n, double low, double high);
void blend(double* a, const double* b, index n, double weight);
void multiply_points(double* a, const double* b, index points);
void divide_points(double* a, const double* b, index points);
void reverse(double* x, index n);
void swap_halves(double* x, index n);
void to_complex(double* x, index n);
void keep_part(double* z, index points, index part);
void square_magnitude(double* z, index points);
void interleave(const double* a, const double* b, double* out, index n);
double sum(const double* x, index n);
double sum_of_squares(const double* x, index n);
double variance(const double* x, index n);
double skewness(const double* x, index n);
double excess(const double* x, index n);
double smallest(const double* x, index n);
index smallest_point(const double* z, index points);
double dot(const double* a, const double* b, index n);
double harmonic_mean(const double* x, index n);
float sum(const float* x, index n);
// By rotation, from an exact angle at every 256th point.
void cosine(double* x, index n, double step);
void complex_exponential(double* z, index points, double step);

}  // namespace bench::plain
