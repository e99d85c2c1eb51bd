// Workers of statistics and polynomials that other families call. A result is a record of one point.
#pragma once

#include "core/record.h"

namespace sigpak {

template <record V> status sum(const V* v, V* result) noexcept;
template <record V> status mean(const V* v, V* result) noexcept;
template <record V> status root_mean_square(const V* v, V* result) noexcept;

}  // namespace sigpak
