// SPDX-License-Identifier: MIT
// Numbers as files hold them in binary: forms, and their values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace tool {

// The value is scale * number + offset.
struct number_form {
  enum class kind { integer, natural, real } type = kind::real;
  std::size_t size = 8;  // bytes
  bool big_endian = false;
  double scale = 1;
  double offset = 0;
};

// An integer of so many bytes as a part of full scale, from -1 to below 1.
number_form full_scale(number_form form);

// A run of numbers, `step` bytes apart, to values `out_step` apart.
void convert(const number_form& form, const char* in, std::size_t step, std::size_t count, double* out,
             std::size_t out_step);

// An integer or a float in the byte order of a file.
template <class T> T load(const char* bytes, bool big_endian) {
  using bits = std::conditional_t<
      sizeof(T) == 1, std::uint8_t,
      std::conditional_t<sizeof(T) == 2, std::uint16_t,
                         std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>>;
  bits raw;
  std::memcpy(&raw, bytes, sizeof raw);
  constexpr bool big_machine = __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__;
  if (big_endian != big_machine) {
    if constexpr (sizeof(T) == 2) raw = __builtin_bswap16(raw);
    if constexpr (sizeof(T) == 4) raw = __builtin_bswap32(raw);
    if constexpr (sizeof(T) == 8) raw = __builtin_bswap64(raw);
  }
  T value;
  std::memcpy(&value, &raw, sizeof value);
  return value;
}

}  // namespace tool
