// SPDX-License-Identifier: MIT
// Text in two bytes a character, as spreadsheets write it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tool {

// Whether the head of a file is such text, by its mark or by the zeros in every other byte: big-endian or
// not.
std::optional<bool> utf16_order(std::string_view head);

// Takes the whole characters off the front; halves of pairs that stand alone become U+FFFD.
std::string utf8_of(std::string& bytes, bool big_endian);

}  // namespace tool
