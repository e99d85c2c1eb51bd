// SPDX-License-Identifier: MIT
// Text of unknown origin, as documents in UTF-8 may hold it.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tool {

// Text in which `escape` stands for single characters where it gives text, without control characters and
// broken UTF-8: for these stands U+FFFD, the replacement character.
std::string utf8_text(std::string_view text, const std::function<std::string_view(char)>& escape);

}  // namespace tool
