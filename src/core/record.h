// SPDX-License-Identifier: MIT
// The two record types as one concept, and how their counts are read.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "sigpak.h"

namespace sigpak {

using status = std::int32_t;
inline constexpr status ok = 0;
inline constexpr status failed = -1;

// Counts and positions inside a record; always 64 bits wide, so that no size overflows.
using index = std::int64_t;

template <class V>
concept record = std::same_as<V, dsp_vec> || std::same_as<V, dspf_vec>;
template <record V> using scalar = std::remove_pointer_t<decltype(V::data)>;
template <class T> using record_of = std::conditional_t<std::same_as<T, double>, dsp_vec, dspf_vec>;

// Points read as signed: a negative count means empty.
template <record V> constexpr index length(const V* v) noexcept {
  const auto points = static_cast<std::int32_t>(v->points);
  return points > 0 ? points : 0;
}

template <record V> constexpr bool is_complex(const V* v) noexcept { return v->complex != 0; }

// Scalars per point.
template <record V> constexpr index width(const V* v) noexcept { return is_complex(v) ? 2 : 1; }

// Scalars in use.
template <record V> constexpr index scalars(const V* v) noexcept { return length(v) * width(v); }

}  // namespace sigpak
