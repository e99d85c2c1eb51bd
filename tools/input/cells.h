// SPDX-License-Identifier: MIT
// The cells of a line of a table, and the numbers in them.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace tool {

constexpr bool is_blank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\v' || c == '\f'; }

std::string_view trimmed(std::string_view text);

// Reads a number at the front and tells where it ends; null where none begins that could be read at once, and
// then number() may still know it.
const char* scan_number(const char* at, const char* end, char decimal, double& value);

// The number that a cell is as a whole: also 1.0D+00, inf, and a missing one as NaN.
std::optional<double> number(std::string_view cell, char decimal);

// Nothing, or a word for it: NaN, NA, null, a dash.
bool is_missing(std::string_view cell);

// A line into its cells, without their quotes and blanks around them. A blank as delimiter stands for any run
// of blanks and tabs. False when a quote does not close.
bool split(std::string_view line, char delimiter, std::vector<std::string_view>& cells);

// The line without a comment: behind # or %, outside of quotes, or as a whole when it begins with two
// slashes.
std::string_view without_comment(std::string_view line);

}  // namespace tool
