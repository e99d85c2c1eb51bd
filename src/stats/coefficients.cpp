// SPDX-License-Identifier: MIT
// A polynomial evaluated, and put together from its roots.
#include "core/memory.h"
#include "stats/polynomial.h"
#include "stats/result.h"

namespace sigpak {
namespace {

template <record V> status evaluate(const V* v, V* result, scalar<V> at) noexcept {
  if (is_complex(v)) return failed;
  const double x = wide(at);
  const index top = length(v) - 1;
  double value = top >= 0 ? wide(v->data[top]) : 0;  // no product with 0: x may be infinite
  for (index k = top - 1; k >= 0; --k) value = value * x + wide(v->data[k]);
  return store(result, value);
}

// a = (x - r[0]) (x - r[1]) ... (x - r[count - 1]), one factor after the other.
template <class T> void multiply_factors(const T* roots, index count, double* a) noexcept {
  a[0] = 1;
  for (index n = 0; n < count; ++n) {
    const double root = wide(roots[n]);
    a[n + 1] = a[n];
    for (index j = n; j >= 1; --j) a[j] = -root * a[j] + a[j - 1];
    a[0] = -root * a[0];
  }
}

template <class T> void multiply_factors(const T* roots, index count, complex_number* a) noexcept {
  a[0] = {1, 0};
  for (index n = 0; n < count; ++n) {
    const complex_number negated{-wide(roots[2 * n]), -wide(roots[2 * n + 1])};
    a[n + 1] = a[n];
    for (index j = n; j >= 1; --j) a[j] = negated * a[j] + a[j - 1];
    a[0] = negated * a[0];
  }
}

template <class T> void store_coefficient(double a, index k, T* out) noexcept { out[k] = static_cast<T>(a); }
template <class T> void store_coefficient(complex_number a, index k, T* out) noexcept {
  out[2 * k] = static_cast<T>(a.re);
  out[2 * k + 1] = static_cast<T>(a.im);
}

// Z is the number that roots and coefficients are, real or complex.
template <class Z, record V> status replace_by_coefficients(V* v) noexcept {
  const index degree = length(v);
  Z* const a = allocate_table<Z>(degree + 1);
  if (a == nullptr) return failed;
  multiply_factors(v->data, degree, a);
  const status outcome = reshape(v, degree + 1, is_complex(v));
  for (index k = 0; outcome == ok && k <= degree; ++k) store_coefficient(a[k], k, v->data);
  free_table(a);
  return outcome;
}

template <record V> status multiply_out(V* v) noexcept {
  return is_complex(v) ? replace_by_coefficients<complex_number>(v) : replace_by_coefficients<double>(v);
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsps_peval(const dsp_vec* p, dsp_vec* result, double x) { return evaluate(p, result, x); }
int32_t dspfs_peval(const dspf_vec* p, dspf_vec* result, float x) { return evaluate(p, result, x); }

int32_t dspi_pztoc(dsp_vec* v) { return multiply_out(v); }
int32_t dspfi_pztoc(dspf_vec* v) { return multiply_out(v); }
