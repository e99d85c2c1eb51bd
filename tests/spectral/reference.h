// SPDX-License-Identifier: MIT
// How far a record is from the transform in long double.
#pragma once

#include "references/exact_transform.h"
#include "support/signal.h"

namespace sigpak::test {

// The points of a record, real ones as complex ones.
template <record V> exact_signal exact_points(const V& v) {
  exact_signal out;
  for (index i = 0; i < length(&v); ++i) {
    const auto* const p = v.data + i * width(&v);
    out.emplace_back(p[0], is_complex(&v) ? static_cast<long double>(p[1]) : 0.0L);
  }
  return out;
}

// Relative distance in the Euclidean norm, in units of u sqrt(log2 n) of the record's precision.
template <record V> double transform_error(const V& got, const exact_signal& wanted, index n) {
  long double difference = 0;
  long double total = 0;
  const exact_signal points = exact_points(got);
  for (std::size_t i = 0; i < points.size(); ++i) {
    difference += std::norm(points[i] - wanted[i]);
    total += std::norm(wanted[i]);
  }
  const double unit = unit_roundoff<V> * std::sqrt(std::log2(static_cast<double>(n < 2 ? 2 : n)));
  return static_cast<double>(std::sqrt(difference / (total > 0 ? total : 1))) / unit;
}

}  // namespace sigpak::test
