// SPDX-License-Identifier: MIT
// Ordering of two records within a tolerance.
#include "core/record_order.h"

#include "core/isa.h"

namespace sigpak {
namespace {

// The differences of a float pair are formed in double, where they are exact enough to order.
constexpr std::int32_t order_of(double difference, double tolerance) noexcept {
  return difference > tolerance ? 1 : difference < -tolerance ? -1 : 0;
}

template <class T> double component(const T* data, index point, index part, index width) noexcept {
  return part < width ? static_cast<double>(data[point * width + part]) : 0.0;
}

// How many scalars at the start, a piece of them at a time, are alike within the tolerance.
template <class T> index count_alike(const T* a, const T* b, index n, double tolerance) noexcept {
  return isa::run(n, [=] {
    constexpr index piece = 32;
    index i = 0;
    for (; i + piece <= n; i += piece) {
      index beyond = 0;
      for (index j = i; j < i + piece; ++j) {
        const double difference = static_cast<double>(a[j]) - static_cast<double>(b[j]);
        beyond += (difference > tolerance ? 1 : 0) + (difference < -tolerance ? 1 : 0);
      }
      if (beyond != 0) break;
    }
    return i;
  });
}

}  // namespace

template <record V>
status compare(const V* a, const V* b, scalar<V> tolerance, std::int32_t* order) noexcept {
  if (a->points != b->points) return failed;
  const auto tol = static_cast<double>(tolerance);
  *order = order_of(static_cast<double>(a->delta) - static_cast<double>(b->delta), tol);
  const index a_width = width(a);
  const index b_width = width(b);
  const index parts = a_width > b_width ? a_width : b_width;
  const bool alike = a_width == b_width && *order == 0;
  index i = alike ? count_alike(a->data, b->data, scalars(a), tol) / parts : 0;
  for (; i < length(a) && *order == 0; ++i) {
    for (index part = 0; part < parts && *order == 0; ++part) {
      *order = order_of(component(a->data, i, part, a_width) - component(b->data, i, part, b_width), tol);
    }
  }
  return ok;
}

template status compare(const dsp_vec*, const dsp_vec*, double, std::int32_t*) noexcept;
template status compare(const dspf_vec*, const dspf_vec*, float, std::int32_t*) noexcept;

}  // namespace sigpak

int32_t dsp_cmp(const dsp_vec* a, const dsp_vec* b, double tolerance, int32_t* order) {
  return sigpak::compare(a, b, tolerance, order);
}
int32_t dspf_cmp(const dspf_vec* a, const dspf_vec* b, float tolerance, int32_t* order) {
  return sigpak::compare(a, b, tolerance, order);
}
