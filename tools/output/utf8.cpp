// SPDX-License-Identifier: MIT
// Text of unknown origin, as documents in UTF-8 may hold it.
#include "output/utf8.h"

namespace tool {
namespace {

// The end of a sequence that begins at `at`, or `at` when there is none, or none that XML allows.
std::size_t sequence_end(std::string_view text, std::size_t at) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(at);
  if (lead < 0x80) return lead >= 0x20 && lead != 0x7F ? at + 1 : at;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || at + length > text.size()) return at;
  unsigned code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return at;
    code = code << 6 | (byte(at + i) & 0x3F);
  }
  constexpr unsigned smallest[] = {0x80, 0x800, 0x10000};
  const bool allowed = code >= smallest[length - 2] && code <= 0x10FFFF &&
                       !(code >= 0xD800 && code <= 0xDFFF) && code != 0xFFFE && code != 0xFFFF;
  return allowed ? at + length : at;
}

}  // namespace

std::string utf8_text(std::string_view text, const std::function<std::string_view(char)>& escape) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = sequence_end(text, at);
    if (end == at) {
      out += "\xEF\xBF\xBD";
      ++at;
      continue;
    }
    const std::string_view escaped = escape(text[at]);
    out += escaped.empty() ? text.substr(at, end - at) : escaped;
    at = end;
  }
  return out;
}

}  // namespace tool
