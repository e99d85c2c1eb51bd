// SPDX-License-Identifier: MIT
// Sinusoids and straight lines.
#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>

#include "core/each.h"
#include "core/isa.h"
#include "core/storage.h"
#include "generate/rotation.h"

namespace sigpak {
namespace {

template <record V> sweep sweep_of(const V* v, scalar<V> frequency, scalar<V> phase) noexcept {
  return {2 * std::numbers::pi * static_cast<double>(frequency) * static_cast<double>(v->delta),
          static_cast<double>(phase)};
}

template <class T> void write_cosine(T* x, index n, sweep angle) noexcept {
  sweep_points(angle, n, swept<T>{&kernels::sweep_table<T>::cosine, x},
               [=](index i, double c, double) { x[i] = static_cast<T>(c); });
}

template <class T> void write_exponential(T* z, index points, sweep angle) noexcept {
  sweep_points(angle, points, swept<T>{&kernels::sweep_table<T>::exponential, z, 2},
               [=](index i, double c, double s) {
                 z[2 * i] = static_cast<T>(c);
                 z[2 * i + 1] = static_cast<T>(s);
               });
}

template <class T> void add_to(T& x, double term) noexcept {
  x = static_cast<T>(static_cast<double>(x) + term);
}

// Into every `width`-th scalar.
template <class T> void add_cosine(T* x, index points, index width, sweep angle, double amplitude) noexcept {
  using table = kernels::sweep_table<T>;
  const auto kernel = width == 1 ? &table::add_cosine : &table::add_cosine_to_points;
  sweep_points(angle, points, swept<T>{kernel, x, width, amplitude},
               [=](index i, double c, double) { add_to(x[i * width], amplitude * c); });
}

template <class T> void add_exponential(T* z, index points, sweep angle, double amplitude) noexcept {
  sweep_points(angle, points, swept<T>{&kernels::sweep_table<T>::add_exponential, z, 2, amplitude},
               [=](index i, double c, double s) {
                 add_to(z[2 * i], amplitude * c);
                 add_to(z[2 * i + 1], amplitude * s);
               });
}

// The largest power of two that divides x, as an exponent.
int power_of_two_in(double x) noexcept {
  if (x == 0) return std::numeric_limits<double>::max_exponent;
  int exponent = 0;
  constexpr int digits = std::numeric_limits<double>::digits;
  const auto whole = static_cast<std::int64_t>(std::ldexp(std::frexp(x, &exponent), digits));
  return exponent - digits + std::countr_zero(static_cast<std::uint64_t>(whole));
}

// Whether adding the step again and again never rounds: all sums are multiples of one power of two, and small
// enough for the digits of T.
template <class T> bool adds_exactly(T start, T step, index n) noexcept {
  const auto first = static_cast<double>(start);
  const auto rise = static_cast<double>(step);
  const double most = std::abs(first) + std::abs(rise) * static_cast<double>(n);
  if (!std::isfinite(most)) return false;
  const int unit = std::min(power_of_two_in(first), power_of_two_in(rise));
  return most < std::ldexp(1.0, unit + std::numeric_limits<T>::digits - 1);
}

// x[i + 1] = x[i] + step.
template <class T> void write_line(T* x, index n, T start, T step) noexcept {
  constexpr index worth_a_test = 1024;
  if (n >= worth_a_test && adds_exactly(start, step, n)) {
    isa::run([=] {
      each(x, n, [=](index i) {
        const auto steps = static_cast<double>(static_cast<std::int32_t>(i));
        x[i] = static_cast<T>(static_cast<double>(start) + steps * static_cast<double>(step));
      });
    });
    x[0] = start;  // -0 stays what it is
    return;
  }
  for (index i = 0; i < n; ++i) {
    x[i] = start;
    start += step;
  }
}

// Sizes the record as preset, lets `write` fill it as a real one, and gives it its form back.
template <record V, class Write>
[[gnu::always_inline]] inline status generate_real(V* v, Write write) noexcept {
  if (allocate(v) != ok) return failed;
  const bool complex = is_complex(v);
  v->complex = 0;
  write(v->data, length(v));
  return complex ? to_complex(v) : ok;
}

template <record V> status generate_cosine(V* v, scalar<V> frequency, scalar<V> phase) noexcept {
  const sweep angle = sweep_of(v, frequency, phase);
  return generate_real(v, [=](scalar<V>* x, index n) { write_cosine(x, n, angle); });
}

template <record V> status generate_exponential(V* v, scalar<V> frequency, scalar<V> phase) noexcept {
  if (!is_complex(v)) return generate_cosine(v, frequency, phase);
  if (allocate(v) != ok) return failed;
  write_exponential(v->data, length(v), sweep_of(v, frequency, phase));
  return ok;
}

template <record V> status generate_line(V* v, scalar<V> slope, scalar<V> start) noexcept {
  return generate_real(
      v, [step = slope * v->delta, start](scalar<V>* x, index n) { write_line(x, n, start, step); });
}

constexpr std::int32_t exponential_mode = 1;

template <record V>
status add_sinusoid(V* v, std::int32_t mode, scalar<V> frequency, scalar<V> amplitude,
                    scalar<V> phase) noexcept {
  const sweep angle = sweep_of(v, frequency, phase);
  if (is_complex(v) && (mode & exponential_mode) != 0) {
    add_exponential(v->data, length(v), angle, static_cast<double>(amplitude));
  } else {
    add_cosine(v->data, length(v), width(v), angle, static_cast<double>(amplitude));
  }
  return ok;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dspc_cos(dsp_vec* v, double f, double phase) { return generate_cosine(v, f, phase); }
int32_t dspfc_cos(dspf_vec* v, float f, float phase) { return generate_cosine(v, f, phase); }

int32_t dspc_cexp(dsp_vec* v, double f, double phase) { return generate_exponential(v, f, phase); }
int32_t dspfc_cexp(dspf_vec* v, float f, float phase) { return generate_exponential(v, f, phase); }

int32_t dspc_line(dsp_vec* v, double slope, double start) { return generate_line(v, slope, start); }
int32_t dspfc_line(dspf_vec* v, float slope, float start) { return generate_line(v, slope, start); }

int32_t dspi_addcos(dsp_vec* v, int32_t mode, double f, double amp, double phase) {
  return add_sinusoid(v, mode, f, amp, phase);
}
int32_t dspfi_addcos(dspf_vec* v, int32_t mode, float f, float amp, float phase) {
  return add_sinusoid(v, mode, f, amp, phase);
}
