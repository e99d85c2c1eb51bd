// SPDX-License-Identifier: MIT
// Text in two bytes a character, as spreadsheets write it.
#include "input/utf16.h"

namespace tool {
namespace {

constexpr char32_t replacement = 0xFFFD;

bool is_first_half(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool is_second_half(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

char tail(char32_t code, int shift) { return static_cast<char>(0x80 | (code >> shift & 0x3F)); }

void append(std::string& out, char32_t code) {
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += {static_cast<char>(0xC0 | code >> 6), tail(code, 0)};
  } else if (code < 0x10000) {
    out += {static_cast<char>(0xE0 | code >> 12), tail(code, 6), tail(code, 0)};
  } else {
    out += {static_cast<char>(0xF0 | code >> 18), tail(code, 12), tail(code, 6), tail(code, 0)};
  }
}

}  // namespace

std::optional<bool> utf16_order(std::string_view head) {
  if (head.starts_with("\xFF\xFE")) return false;
  if (head.starts_with("\xFE\xFF")) return true;
  if (head.size() < 4) return std::nullopt;
  std::size_t zeros[2] = {};
  for (std::size_t i = 0; i < head.size(); ++i) zeros[i % 2] += head[i] == '\0' ? 1U : 0U;
  const std::size_t most = head.size() / 2 - head.size() / 20;  // characters beyond Latin are few
  if (zeros[1] >= most && zeros[0] == 0) return false;
  if (zeros[0] >= most && zeros[1] == 0) return true;
  return std::nullopt;
}

std::string utf8_of(std::string& bytes, bool big_endian) {
  const auto unit = [&](std::size_t at) {
    const auto low = static_cast<unsigned char>(bytes[at + (big_endian ? 1 : 0)]);
    const auto high = static_cast<unsigned char>(bytes[at + (big_endian ? 0 : 1)]);
    return static_cast<char32_t>(high) << 8 | low;
  };
  std::string out;
  std::size_t at = 0;
  for (; at + 2 <= bytes.size(); at += 2) {
    const char32_t first = unit(at);
    if (!is_first_half(first)) {
      append(out, is_second_half(first) ? replacement : first);
      continue;
    }
    if (at + 4 > bytes.size()) break;
    const char32_t second = unit(at + 2);
    if (!is_second_half(second)) {
      append(out, replacement);
      continue;
    }
    append(out, 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00));
    at += 2;
  }
  bytes.erase(0, at);
  return out;
}

}  // namespace tool
