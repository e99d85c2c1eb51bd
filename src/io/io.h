// SPDX-License-Identifier: MIT
// The forms of a vector in a file.
#pragma once

#include <cstdio>

#include "core/record.h"

namespace sigpak {

inline constexpr status vector_read = 1;  // what reading returns beside failed
inline constexpr status end_of_vectors = 0;

// What a vector is written as, and which parts of it.
enum class form : std::int32_t {
  binary = DSP_WRITE_BINARY,
  ascii = DSP_WRITE_ASCII,
  summary = DSP_WRITE_SUMMARY
};
struct parts {
  bool header;
  bool body;
};

// The next vector of the stream into a record without points, which on failure has those that arrived.
template <record V> status read_binary(V* v, std::FILE* f) noexcept;
template <record V> status read_ascii(V* v, std::FILE* f) noexcept;

// Fails on a short write.
template <record V> status write_binary(const V* v, std::FILE* f, parts wanted) noexcept;

// Text is written unchecked.
template <record V> void write_ascii(const V* v, std::FILE* f, parts wanted) noexcept;
template <record V> void write_summary(const V* v, std::FILE* f, parts wanted) noexcept;

}  // namespace sigpak
