// SPDX-License-Identifier: MIT
// What parts the cells of a table.
#include <algorithm>
#include <map>

#include "input/headings.h"
#include "input/layout.h"
#include "input/times.h"

namespace tool {
namespace {

constexpr std::size_t most_looked_at = 100;
constexpr std::size_t few = 10;

std::vector<std::string_view> sample_of(const std::vector<table_line>& lines) {
  std::vector<std::string_view> sample;
  for (const auto& line : lines) {
    const auto text = trimmed(without_comment(line.text));
    if (!text.empty()) sample.push_back(without_comment(line.text));
  }
  sample.erase(sample.begin(), sample.begin() + static_cast<std::ptrdiff_t>(usual_from(sample.size())));
  return sample;
}

// The part of the cells that are numbers or times, in the lines with the usual number of cells.
struct fit {
  double score = 0;
  std::size_t columns = 0;
  std::size_t lines = 0;  // with a number, of any number of cells
};

fit fit_of(const std::vector<std::string_view>& sample, char delimiter, std::string_view decimals) {
  std::map<std::size_t, double> scores;
  std::size_t lines = 0;
  std::vector<std::string_view> cells;
  for (const auto line : sample) {
    if (!split(line, delimiter, cells)) continue;
    std::size_t known = 0;
    bool any = false;
    for (const auto cell : cells) {
      const cell_kind kind = kind_of(cell, decimals);
      known += kind != cell_kind::text ? 1 : 0;
      any = any || kind == cell_kind::number || kind == cell_kind::moment;
    }
    if (!any) continue;
    ++lines;
    scores[cells.size()] += static_cast<double>(known) / static_cast<double>(cells.size());
  }
  fit best;
  for (const auto& [columns, score] : scores) {
    if (score > best.score) best = {score, columns, lines};
  }
  return best;
}

// One comma in each line and digits around it. What tells a decimal sign: a zero at the start of what would
// be another whole number, or a minus before a zero.
bool has_decimal_digits(const std::vector<table_line>& lines) {
  return std::ranges::any_of(lines, [](const table_line& l) {
    const std::string_view line = trimmed(l.text);
    const auto comma = line.find(',');
    if (comma == std::string_view::npos || kind_of(line, ",") != cell_kind::number) return false;
    const auto second = line.substr(comma + 1);
    return line.starts_with("-0,") ||
           (second.size() > 1 && second[0] == '0' && second[1] >= '0' && second[1] <= '9');
  });
}

// Times that count seconds since 1970, or parts of them.
bool has_unix_times(const std::vector<std::string_view>& sample) {
  constexpr std::size_t digits = 10;
  return std::ranges::all_of(sample, [](std::string_view line) { return line.find(',') >= digits; });
}

// And the heading: one name, or two.
enum class names { unknown, one, two };
names names_above(const std::vector<table_line>& lines) {
  names found = names::unknown;
  for (const auto& line : lines) {
    std::string_view text = trimmed(line.text);
    if (text.empty()) continue;
    if (kind_of(text.substr(0, text.find(',')), ".") == cell_kind::number) return found;
    const auto comma = text.find(',');
    const bool unit = comma != std::string_view::npos && is_unit(trimmed(text.substr(comma + 1))) &&
                      !is_time_heading(parse_heading(text.substr(0, comma)));
    found = unit || text.starts_with('#')     ? names::unknown
            : comma == std::string_view::npos ? names::one
                                              : names::two;
  }
  return found;
}

// A column of decimal commas, and two columns of whole numbers, look alike.
char told_apart(const std::vector<table_line>& lines, const std::vector<std::string_view>& sample) {
  const names above = names_above(lines);
  if (above == names::two) return ',';
  if (above == names::one || has_decimal_digits(lines)) return ' ';
  if (has_unix_times(sample)) return ',';
  const std::string text(trimmed(sample.back()));
  const auto comma = text.find(',');
  const std::string first = text.substr(0, comma);
  const std::string second = text.substr(comma + 1);
  throw data_error('"' + text + "\" can be " + first + " and " + second + ", or " + first + "." + second +
                   "; --delimiter , or --decimal , tells which");
}

// Two cells that are hardly two whole numbers: a zero stands before more digits, or a minus before it.
bool is_decimal(std::string_view whole, std::string_view fraction) {
  const bool digits = fraction.find_first_not_of("0123456789") == std::string_view::npos;
  return digits && !fraction.empty() && (whole == "-0" || (fraction.size() > 1 && fraction[0] == '0'));
}

// Whether there are as many names above the numbers as there are columns.
bool has_names(const std::vector<table_line>& lines, std::size_t columns) {
  std::vector<std::string_view> names;
  std::vector<std::string_view> cells;
  for (const auto& line : lines) {
    if (trimmed(line.text).empty() || !split(line.text, ',', cells)) continue;
    if (kind_of(cells[0], ".") == cell_kind::number) break;
    names = cells;
  }
  return names.size() == columns;
}

// "2,0,041": where commas part the columns and the digits too, nothing tells which does what.
void refuse_commas_of_two_kinds(const std::vector<table_line>& lines,
                                const std::vector<std::string_view>& sample, std::size_t columns) {
  std::string found;
  std::vector<std::string_view> cells;
  for (const auto line : sample) {
    if (!split(line, ',', cells) || kind_of(cells[0], ".") != cell_kind::number) continue;
    if (line.find_first_of(".:eE\"") != std::string_view::npos) return;
    const auto at = std::adjacent_find(cells.begin(), cells.end(), is_decimal);
    if (at != cells.end()) found = std::string(at[0]) + ',' + std::string(at[1]);
  }
  if (found.empty() || has_names(lines, columns)) return;
  throw data_error('"' + found +
                   "\" can be two numbers or one; --delimiter , takes every comma for the end of a " +
                   "column, and decimal commas need columns parted by something else");
}

}  // namespace

std::size_t usual_from(std::size_t lines) {
  const std::size_t half = std::max((lines + 1) / 2, std::min(lines, few));
  return lines - std::min(most_looked_at, half);
}

char line_end_of(std::string_view head) {
  return head.find('\n') == std::string_view::npos && head.find('\r') != std::string_view::npos ? '\r' : '\n';
}

std::vector<table_line> lines_of(std::string_view head, bool is_whole) {
  const char end_sign = line_end_of(head);
  std::vector<table_line> lines;
  for (std::size_t at = 0; at < head.size();) {
    const auto end = head.find(end_sign, at);
    if (end == std::string_view::npos && !is_whole && !lines.empty()) break;
    std::string_view text = head.substr(at, end - at);
    if (text.ends_with('\r')) text.remove_suffix(1);
    lines.push_back({text, at, lines.size() + 1});
    if (end == std::string_view::npos) break;
    at = end + 1;
  }
  return lines;
}

cell_kind kind_of(std::string_view cell, std::string_view decimals) {
  if (is_missing(cell)) return cell_kind::missing;
  for (const char decimal : decimals) {
    if (number(cell, decimal)) return cell_kind::number;
  }
  return parse_moment(cell) ? cell_kind::moment : cell_kind::text;
}

std::string_view decimals_beside(char delimiter, const input_options& options) {
  if (options.decimal != 0) return options.decimal == ',' ? "," : ".";
  return delimiter == ',' ? "." : ".,";
}

char find_delimiter(const std::vector<table_line>& lines, const input_options& options) {
  if (options.delimiter != 0) return options.delimiter;
  const auto sample = sample_of(lines);
  char best = ' ';
  fit best_fit;
  for (const char delimiter : {';', '\t', '|', ',', ' '}) {
    if (delimiter == options.decimal) continue;
    const fit f = fit_of(sample, delimiter, decimals_beside(delimiter, options));
    const bool same = f.score == best_fit.score && f.lines == best_fit.lines && f.score > 0;
    if (delimiter == ' ' && best == ',' && same && f.columns == 1 && best_fit.columns == 2)
      return told_apart(lines, sample);
    if (f.score < best_fit.score || (f.score == best_fit.score && f.columns <= best_fit.columns)) continue;
    best = delimiter;
    best_fit = f;
  }
  if (best == ',' && options.decimal == 0) refuse_commas_of_two_kinds(lines, sample, best_fit.columns);
  return best;
}

}  // namespace tool
