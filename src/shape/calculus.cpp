// SPDX-License-Identifier: MIT
// Differences, running integral, derivative of a polynomial, level crossings. Single precision is computed in
// double and rounded at the store.
#include "core/guard.h"
#include "core/isa.h"
#include "shape/shape.h"

namespace sigpak {
namespace {

// From the end, so that the previous value is still the input.
template <index width, class T> void differentiate(T* x, index points, double factor) noexcept {
  for (index i = points * width - 1; i >= width; --i) {
    x[i] = static_cast<T>((static_cast<double>(x[i]) - static_cast<double>(x[i - width])) * factor);
  }
  if (points == 0) return;
  for (index part = 0; part < width; ++part) x[part] = static_cast<T>(static_cast<double>(x[part]) * factor);
}

template <record V> status differentiate(V* v) noexcept {
  const auto delta = static_cast<double>(v->delta);
  const double factor = delta != 0 ? 1 / delta : static_cast<double>(guard<scalar<V>>::huge);
  isa::run([x = v->data, points = length(v), complex = is_complex(v), factor] {
    if (complex) {
      differentiate<2>(x, points, factor);
    } else {
      differentiate<1>(x, points, factor);
    }
  });
  return ok;
}

// The sum is scaled, not the terms.
template <index width, class T> void integrate(T* x, index points, double delta) noexcept {
  double sum[width] = {};
  for (index i = 0; i < points * width; i += width) {
    for (index part = 0; part < width; ++part) {
      sum[part] += static_cast<double>(x[i + part]);
      x[i + part] = static_cast<T>(delta * sum[part]);
    }
  }
}

template <record V> status integrate(V* v) noexcept {
  const auto delta = static_cast<double>(v->delta);
  if (is_complex(v)) {
    integrate<2>(v->data, length(v), delta);
  } else {
    integrate<1>(v->data, length(v), delta);
  }
  return ok;
}

// y[j] = (j + 1) c[j + 1].
template <index width, class T> void differentiate_polynomial(T* c, std::int32_t points) noexcept {
  for (std::int32_t power = 1; power < points; ++power) {
    for (index part = 0; part < width; ++part) {
      const T coefficient = c[power * width + part];
      c[(power - 1) * width + part] =
          static_cast<T>(static_cast<double>(power) * static_cast<double>(coefficient));
    }
  }
}

template <record V> status differentiate_polynomial(V* v) noexcept {
  const auto points = static_cast<std::int32_t>(length(v));
  if (points == 0) return ok;
  isa::run([c = v->data, points, complex = is_complex(v)] {
    if (complex) {
      differentiate_polynomial<2>(c, points);
    } else {
      differentiate_polynomial<1>(c, points);
    }
  });
  v->points = static_cast<std::uint32_t>(points - 1);
  return ok;
}

// The crossing times gather at the front: there is at most one for every pair that has been read.
template <class T>
index find_crossings(T* x, index points, std::int32_t flags, T level, double delta) noexcept {
  index count = 0;
  T a = x[0];
  for (index i = 0; i + 1 < points; ++i) {
    const T b = x[i + 1];
    const bool rises = a <= level && level < b && (flags & DSP_EDGE_RISING) != 0;
    const bool falls = a >= level && level > b && (flags & DSP_EDGE_FALLING) != 0;
    if (rises || falls) {
      const auto before = static_cast<double>(a);
      const double fraction = (static_cast<double>(level) - before) / (static_cast<double>(b) - before);
      x[count++] = static_cast<T>((fraction + static_cast<double>(i)) * delta);
    }
    a = b;
  }
  return count;
}

template <record V> status cross_level(V* v, std::int32_t flags, scalar<V> level) noexcept {
  if (is_complex(v)) return failed;
  if (length(v) == 0) return ok;
  v->points = static_cast<std::uint32_t>(
      find_crossings(v->data, length(v), flags, level, static_cast<double>(v->delta)));
  v->delta = 1;
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspi_differ(dsp_vec* v) { return differentiate(v); }
int32_t dspfi_differ(dspf_vec* v) { return differentiate(v); }

int32_t dspi_integ(dsp_vec* v) { return integrate(v); }
int32_t dspfi_integ(dspf_vec* v) { return integrate(v); }

int32_t dspi_pdiffer(dsp_vec* v) { return differentiate_polynomial(v); }
int32_t dspfi_pdiffer(dspf_vec* v) { return differentiate_polynomial(v); }

int32_t dspi_edge(dsp_vec* v, int32_t flags, double level) { return cross_level(v, flags, level); }
int32_t dspfi_edge(dspf_vec* v, int32_t flags, float level) { return cross_level(v, flags, level); }
