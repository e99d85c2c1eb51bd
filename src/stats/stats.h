// SPDX-License-Identifier: MIT
// Workers of statistics and polynomials that other families call. A result is a record of one point.
#pragma once

#include "core/record.h"

namespace sigpak {

template <record V> status sum(const V* v, V* result) noexcept;
template <record V> status mean(const V* v, V* result) noexcept;
template <record V> status root_mean_square(const V* v, V* result) noexcept;

// Folds a record into a running average, as dsph_avg tells; a negative weight is that of the count.
template <record V>
status average(const V* in, V* avg, V* scratch, int flags, std::int32_t count, std::int32_t every,
               scalar<V> weight, scalar<V> most) noexcept;
template <class T> T average_weight(int flags, std::int32_t count, T most) noexcept;

}  // namespace sigpak
