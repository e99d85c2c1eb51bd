// Workers of statistics and polynomials that other families call. A result is a record of one point.
#pragma once

#include "core/record.h"

namespace sigpak {

template <record V> status sum(const V* v, V* result) noexcept;
template <record V> status mean(const V* v, V* result) noexcept;
template <record V> status root_mean_square(const V* v, V* result) noexcept;

// Half a spectrum to the whole: 2 (points - 1) points, one more when odd.
template <record V> status reconstruct(V* v, bool odd) noexcept;

}  // namespace sigpak
