// SPDX-License-Identifier: MIT
#include "plain.h"

#include <algorithm>
#include <cmath>

namespace bench::plain {
namespace {

constexpr double huge = 1e100;
constexpr index block = 2048;

double clamped(double x) { return x > huge ? huge : x < -huge ? -huge : x; }
double guarded_square(double x) { return std::abs(x) > huge ? huge : x * x; }

// The sum in blocks, as the statistics define it.
template <class Term> double blocked(index n, Term term) {
  double total = 0;
  for (index begin = 0; begin < n; begin += block) {
    double s = 0;
    for (index i = begin; i < std::min(begin + block, n); ++i) s += term(i);
    total += s;
  }
  return total;
}

// put(i, cos, sin) of i * step.
template <class Put> void rotate(index n, double step, Put put) {
  constexpr index anchored = 256;
  const double c = std::cos(step);
  const double s = std::sin(step);
  double re = 1;
  double im = 0;
  for (index i = 0; i < n; ++i) {
    if (i % anchored == 0) {
      re = std::cos(static_cast<double>(i) * step);
      im = std::sin(static_cast<double>(i) * step);
    }
    put(i, re, im);
    const double next = re * c - im * s;
    im = re * s + im * c;
    re = next;
  }
}

double centre(const double* x, index n) { return (x[n - 1] + x[n / 2] + x[0]) * 0.3333333333333333; }

}  // namespace

void scale(double* x, index n, double c) {
  for (index i = 0; i < n; ++i) x[i] *= c;
}
void offset(double* x, index n, double c) {
  for (index i = 0; i < n; ++i) x[i] += c;
}
void negate(double* x, index n) {
  for (index i = 0; i < n; ++i) x[i] = -x[i];
}
void add(double* a, const double* b, index n) {
  for (index i = 0; i < n; ++i) a[i] += b[i];
}
void multiply(double* a, const double* b, index n) {
  for (index i = 0; i < n; ++i) a[i] *= b[i];
}
void minimum(double* a, const double* b, index n) {
  for (index i = 0; i < n; ++i) a[i] = a[i] < b[i] ? a[i] : b[i];
}
void divide(double* a, const double* b, index n) {
  for (index i = 0; i < n; ++i) a[i] = b[i] != 0 ? a[i] / b[i] : a[i] != 0 ? huge : 0;
}
void reciprocal(double* x, index n) {
  for (index i = 0; i < n; ++i) x[i] = x[i] != 0 ? 1 / x[i] : huge;
}
void square_root(double* x, index n) {
  for (index i = 0; i < n; ++i) x[i] = x[i] > 0 ? std::sqrt(x[i]) : 0;
}
bool limit(double* x, index n, double low, double high) {
  bool any = false;
  for (index i = 0; i < n; ++i) {
    if (x[i] > high) {
      x[i] = high;
      any = true;
    } else if (x[i] < low) {
      x[i] = low;
      any = true;
    }
  }
  return any;
}
void blend(double* a, const double* b, index n, double weight) {
  for (index i = 0; i < n; ++i) a[i] = b[i] + weight * (a[i] - b[i]);
}
void multiply_points(double* a, const double* b, index points) {
  for (index i = 0; i < 2 * points; i += 2) {
    const double re = a[i] * b[i] - a[i + 1] * b[i + 1];
    a[i + 1] = a[i] * b[i + 1] + a[i + 1] * b[i];
    a[i] = re;
  }
}
void divide_points(double* a, const double* b, index points) {
  for (index i = 0; i < 2 * points; i += 2) {
    const double d = b[i] * b[i] + b[i + 1] * b[i + 1];
    if (d == 0) {
      a[i] = a[i + 1] = a[i] != 0 || a[i + 1] != 0 ? huge : 0;
      continue;
    }
    const double r = 1 / d;
    const double re = (a[i] * b[i] + a[i + 1] * b[i + 1]) * r;
    a[i + 1] = (a[i + 1] * b[i] - a[i] * b[i + 1]) * r;
    a[i] = re;
  }
}
void reverse(double* x, index n) {
  for (index i = 0, j = n - 1; i < j; ++i, --j) std::swap(x[i], x[j]);
}
void swap_halves(double* x, index n) { std::rotate(x, x + (n + 1) / 2, x + n); }
void to_complex(double* x, index n) {
  for (index i = n - 1; i >= 0; --i) {
    x[2 * i] = x[i];
    x[2 * i + 1] = 0;
  }
}
void keep_part(double* z, index points, index part) {
  for (index i = 0; i < points; ++i) z[i] = z[2 * i + part];
}
void square_magnitude(double* z, index points) {
  for (index i = 0; i < points; ++i) z[i] = guarded_square(z[2 * i]) + guarded_square(z[2 * i + 1]);
}
void interleave(const double* a, const double* b, double* out, index n) {
  for (index i = 0; i < n; ++i) {
    out[2 * i] = a[i];
    out[2 * i + 1] = b[i];
  }
}
double sum(const double* x, index n) {
  return blocked(n, [x](index i) { return x[i]; });
}
double sum_of_squares(const double* x, index n) {
  return blocked(n, [x](index i) { return clamped(x[i]) * clamped(x[i]); });
}

double variance(const double* x, index n) {
  const double c = centre(x, n);
  double s1 = 0;
  double s2 = 0;
  for (index begin = 0; begin < n; begin += block) {
    double b1 = 0;
    double b2 = 0;
    for (index i = begin; i < std::min(begin + block, n); ++i) {
      const double d = clamped(x[i] - c);
      b1 += d;
      b2 += d * d;
    }
    s1 += b1;
    s2 += b2;
  }
  const double r = 1 / static_cast<double>(n);
  return s2 * r - s1 * r * (s1 * r);
}

double skewness(const double* x, index n) {
  const double c = centre(x, n);
  double s1 = 0;
  double s2 = 0;
  double s3 = 0;
  for (index begin = 0; begin < n; begin += block) {
    double b1 = 0;
    double b2 = 0;
    double b3 = 0;
    for (index i = begin; i < std::min(begin + block, n); ++i) {
      const double d = clamped(x[i] - c);
      b1 += d;
      b2 += d * d;
      b3 += d * d * d;
    }
    s1 += b1;
    s2 += b2;
    s3 += b3;
  }
  return s1 + s2 + s3;
}

double excess(const double* x, index n) {
  const double mean = blocked(n, [x](index i) { return clamped(x[i]); }) / static_cast<double>(n);
  double s2 = 0;
  double s4 = 0;
  for (index begin = 0; begin < n; begin += block) {
    double b2 = 0;
    double b4 = 0;
    for (index i = begin; i < std::min(begin + block, n); ++i) {
      const double d = clamped(x[i] - mean);
      b2 += d * d;
      b4 += d * d * (d * d);
    }
    s2 += b2;
    s4 += b4;
  }
  return s2 + s4;
}

double smallest(const double* x, index n) {
  double best = huge;
  for (index i = 0; i < n; ++i) best = best > x[i] ? x[i] : best;
  return best;
}

index smallest_point(const double* z, index points) {
  double best = huge;
  index place = -1;
  for (index i = 0; i < points; ++i) {
    const double score = z[2 * i] * z[2 * i] + z[2 * i + 1] * z[2 * i + 1];
    if (score < best) {
      best = score;
      place = i;
    }
  }
  return place;
}

double dot(const double* a, const double* b, index n) {
  return blocked(n, [a, b](index i) { return a[i] * b[i]; });
}

double harmonic_mean(const double* x, index n) {
  return static_cast<double>(n) / blocked(n, [x](index i) { return 1 / x[i]; });
}

float sum(const float* x, index n) {
  return static_cast<float>(blocked(n, [x](index i) { return static_cast<double>(x[i]); }));
}

void cosine(double* x, index n, double step) {
  rotate(n, step, [x](index i, double c, double) { x[i] = c; });
}

void complex_exponential(double* z, index points, double step) {
  rotate(points, step, [z](index i, double c, double s) {
    z[2 * i] = c;
    z[2 * i + 1] = s;
  });
}

}  // namespace bench::plain
