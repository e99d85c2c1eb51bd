// SPDX-License-Identifier: MIT
// The cells of a line of a table, and the numbers in them.
#include "input/cells.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>

namespace tool {
namespace {

// Whole numbers and powers of ten up to these are doubles, so that one product or quotient of them is rounded
// once: the nearest double (W. D. Clinger, "How to read floating point numbers accurately", PLDI 1990).
constexpr std::uint64_t largest_whole = std::uint64_t{1} << 53;
constexpr int largest_power = 22;
constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                             1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

constexpr unsigned digit(char c) { return static_cast<unsigned>(c) - static_cast<unsigned>('0'); }

struct digits {
  std::uint64_t whole = 0;
  int count = 0;

  const char* scan(const char* at, const char* end) {
    const char* const begin = at;
    for (; at != end && digit(*at) <= 9; ++at) whole = 10 * whole + digit(*at);
    count += static_cast<int>(std::min<std::ptrdiff_t>(at - begin, 100));
    return at;
  }
};

const char* scan_exponent(const char* at, const char* end, int& power) {
  ++at;
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  digits d;
  at = d.scan(at, end);
  if (d.count == 0 || d.count > 3) return nullptr;
  power += negative ? -static_cast<int>(d.whole) : static_cast<int>(d.whole);
  return at;
}

// More digits than a double holds.
const char* scan_long(const char* at, const char* end, char decimal, double& value) {
  if (decimal != '.') return nullptr;
  const auto [parsed, error] = std::from_chars(*at == '+' ? at + 1 : at, end, value);
  return error == std::errc() ? parsed : nullptr;
}

std::string lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return out;
}

// A quoted cell; `at` then stands behind it, and behind the blanks that follow.
bool take_quoted(std::string_view line, std::size_t& at, std::vector<std::string_view>& cells) {
  const char quote = line[at];
  const auto close = line.find(quote, at + 1);
  if (close == std::string_view::npos) return false;
  cells.push_back(trimmed(line.substr(at + 1, close - at - 1)));
  at = close + 1;
  while (at < line.size() && is_blank(line[at]) && line[at] != '\t') ++at;
  return true;
}

void skip_blanks(std::string_view line, char delimiter, std::size_t& at) {
  while (at < line.size() && is_blank(line[at]) && (line[at] != delimiter || delimiter == ' ')) ++at;
}

}  // namespace

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
  return text;
}

const char* scan_number(const char* at, const char* end, char decimal, double& value) {
  const char* const begin = at;
  const bool negative = at != end && *at == '-';
  if (at != end && (*at == '-' || *at == '+')) ++at;
  digits d;
  at = d.scan(at, end);
  int power = 0;
  if (at != end && *at == decimal) {
    const int before = d.count;
    at = d.scan(at + 1, end);
    power = before - d.count;
  }
  if (d.count == 0) return nullptr;
  if (d.count > 19 || d.whole > largest_whole) return scan_long(begin, end, decimal, value);
  if (at != end && (*at == 'e' || *at == 'E')) {
    at = scan_exponent(at, end, power);
    if (at == nullptr) return nullptr;
  }
  if (power < -largest_power || power > largest_power) return scan_long(begin, end, decimal, value);
  const auto whole = static_cast<double>(d.whole);
  const double magnitude = power < 0 ? whole / powers[-power] : whole * powers[power];
  value = negative ? -magnitude : magnitude;
  return at;
}

bool is_missing(std::string_view cell) {
  constexpr std::string_view words[] = {"",     "nan",  "+nan", "-nan", "na", "n/a", "#n/a",
                                        "null", "none", "-",    "--",   "?",  "."};
  return cell.size() <= 4 && std::ranges::find(words, lower(cell)) != std::end(words);
}

std::optional<double> number(std::string_view cell, char decimal) {
  if (is_missing(cell)) return std::numeric_limits<double>::quiet_NaN();
  std::string text = lower(cell);
  if (decimal != '.') {
    if (text.find('.') != std::string::npos) return std::nullopt;
    std::ranges::replace(text, decimal, '.');
  }
  std::ranges::replace(text, 'd', 'e');
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.erase(0, 1);
  if (text.starts_with('-')) return std::nullopt;
  double x = 0;
  const char* const end = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), end, x);
  if (parsed != end || error == std::errc::invalid_argument) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    const bool small =
        text.find("e-") != std::string::npos || text.starts_with("0.") || text.starts_with(".");
    x = small ? 0 : std::numeric_limits<double>::infinity();
  }
  return negative ? -x : x;
}

bool split(std::string_view line, char delimiter, std::vector<std::string_view>& cells) {
  cells.clear();
  const bool blanks = delimiter == ' ';
  line = blanks ? trimmed(line) : line;
  std::size_t at = 0;
  while (true) {
    skip_blanks(line, delimiter, at);
    if (blanks && at >= line.size()) return true;
    if (at < line.size() && line[at] == '"') {
      if (!take_quoted(line, at, cells)) return false;
    } else {
      const auto end =
          std::min(blanks ? line.find_first_of(" \t\r", at) : line.find(delimiter, at), line.size());
      cells.push_back(trimmed(line.substr(at, end - at)));
      at = end;
    }
    if (at >= line.size()) return true;
    if (blanks) continue;
    if (line[at] != delimiter) return false;
    ++at;
  }
}

std::string_view without_comment(std::string_view line) {
  const std::string_view text = trimmed(line);
  if (text.starts_with("//")) return {};
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '"') quoted = !quoted;
    const bool missing = line.substr(i, 4) == "#N/A" || line.substr(i, 4) == "#n/a";
    if (!quoted && (line[i] == '#' || line[i] == '%') && !missing) return line.substr(0, i);
  }
  return line;
}

}  // namespace tool
