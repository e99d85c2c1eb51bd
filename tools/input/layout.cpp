// SPDX-License-Identifier: MIT
// How a table is laid out: where its numbers begin, what its columns hold, their names.
#include "input/layout.h"

#include <algorithm>
#include <map>

#include "input/channels.h"
#include "input/headings.h"
#include "input/times.h"

namespace tool {
namespace {

// The lines at the end of the head with the usual number of cells.
std::vector<cell_list> usual_rows(const std::vector<table_line>& lines, char delimiter,
                                  std::string_view decimals) {
  std::vector<cell_list> rows;
  std::map<std::size_t, std::size_t> counts;
  cell_list cells;
  for (std::size_t i = usual_from(lines.size()); i < lines.size(); ++i) {
    if (!cells_of(lines[i].text, delimiter, cells)) continue;
    const bool any =
        std::ranges::any_of(cells, [&](auto cell) { return kind_of(cell, decimals) == cell_kind::number; });
    if (!any) continue;
    ++counts[cells.size()];
    rows.push_back(cells);
  }
  const auto usual = std::ranges::max_element(counts, {}, [](const auto& c) { return c.second; });
  std::erase_if(rows, [&](const cell_list& row) { return row.size() != usual->first; });
  return rows;
}

// What a column mostly holds, and which decimal sign gives it more numbers. What ends before the others, as
// settings of an instrument beside its samples do, is no column.
void find_kind(const std::vector<cell_list>& rows, std::size_t c, std::string_view decimals,
               table_layout& t) {
  t.columns[c] = cell_kind::missing;
  const std::span behind = std::span(rows).subspan(rows.size() / 2);
  if (std::ranges::all_of(behind, [c](const cell_list& r) { return is_missing(r[c]); })) return;
  const auto count = [&](cell_kind kind, char decimal) {
    return std::ranges::count_if(rows, [&](const cell_list& r) {
      return kind_of(r[c], {&decimal, 1}) == kind;
    });
  };
  std::ptrdiff_t most = 0;
  for (const char decimal : decimals) {
    for (const auto kind : {cell_kind::number, cell_kind::moment}) {
      if (count(kind, decimal) <= most) continue;
      most = count(kind, decimal);
      t.columns[c] = kind;
      t.decimals[c] = decimal;
    }
  }
  if (count(cell_kind::text, t.decimals[c]) > most) t.columns[c] = cell_kind::text;
}

void find_columns(const std::vector<table_line>& lines, const input_options& options, table_layout& t) {
  const std::string_view decimals = decimals_beside(t.delimiter, options);
  const auto rows = usual_rows(lines, t.delimiter, decimals);
  const std::size_t count = rows.empty() ? 0 : rows[0].size();
  t.columns.resize(count);
  t.decimals.assign(count, decimals[0]);
  for (std::size_t c = 0; c < count; ++c) find_kind(rows, c, decimals, t);
}

// Whether a line holds what the columns hold.
bool is_row(const cell_list& cells, const table_layout& t) {
  const bool trailing = cells.size() == t.columns.size() + 1 && cells.back().empty();
  if (cells.size() != t.columns.size() && !trailing) return false;
  bool any = false;
  for (std::size_t c = 0; c < t.columns.size(); ++c) {
    const cell_kind kind = kind_of(cells[c], {&t.decimals[c], 1});
    if (t.columns[c] == cell_kind::text || t.columns[c] == cell_kind::missing || kind == cell_kind::missing)
      continue;
    if (kind != t.columns[c]) return false;
    any = true;
  }
  return any;
}

// For people: what stands in the place of numbers.
std::string beginning_of(const std::vector<table_line>& lines) {
  constexpr std::size_t most = 40;
  const auto told = std::ranges::find_if(lines, [](const table_line& l) { return !trimmed(l.text).empty(); });
  if (told == lines.end()) return {};
  const std::string_view text = trimmed(told->text);
  const bool plain = std::ranges::all_of(text, [](char c) { return c >= ' ' && c < '\x7F'; });
  if (!plain) return {};
  return "; it begins \"" + std::string(text.substr(0, most)) + (text.size() > most ? "..." : "") + '"';
}

std::size_t find_first_row(const std::vector<table_line>& lines, const table_layout& t) {
  cell_list cells;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (cells_of(lines[i].text, t.delimiter, cells) && is_row(cells, t)) return i;
  }
  throw data_error("no line of numbers in it" + beginning_of(lines));
}

// "t [s]  U [V]": units between blanks belong to the names before them.
void join_units(cell_list& cells) {
  cell_list joined;
  for (const auto cell : cells) {
    const bool unit = !joined.empty() && (cell.starts_with('[') || cell.starts_with('(')) && is_unit(cell);
    if (!unit) {
      joined.push_back(cell);
      continue;
    }
    const char* const start = joined.back().data();
    joined.back() = {start, static_cast<std::size_t>(cell.data() + cell.size() - start)};
  }
  cells = std::move(joined);
}

// The cells of a heading, which may be a comment, and may part its names in a way of its own.
cell_list heading_cells(std::string_view line, const table_layout& t) {
  std::string_view text = trimmed(line);
  // Above a single column any sentence has as many words as there are columns.
  if (t.columns.size() == 1 && text.find_first_of("#%/:=") != std::string_view::npos) return {};
  while (!text.empty() && std::string_view("#%/*").find(text.front()) != std::string_view::npos)
    text.remove_prefix(1);
  cell_list cells;
  for (const char delimiter : {t.delimiter, ',', ';', '\t', ' '}) {
    if (!split(text, delimiter, cells)) continue;
    if (delimiter == ' ') join_units(cells);
    if (cells.size() == t.columns.size() + 1 && cells.back().empty()) cells.pop_back();
    if (cells.size() + 1 == t.columns.size() && cells.size() > 1) {
      const bool empty_last = t.columns.back() == cell_kind::missing;
      cells.insert(empty_last ? cells.end() : cells.begin(), "");  // otherwise a column of row names
    }
    if (cells.size() == t.columns.size()) return cells;
  }
  return {};
}

bool has_names(const cell_list& cells) {
  return std::ranges::any_of(cells, [](auto cell) { return kind_of(cell, ".") == cell_kind::text; });
}

bool are_units(const cell_list& cells) {
  return std::ranges::all_of(cells, [](auto cell) { return cell.empty() || is_unit(cell); });
}

// The nearest lines above the numbers with as many words as there are columns: names, or names above units.
void find_headings(const std::vector<table_line>& lines, std::size_t first_row, table_layout& t) {
  std::vector<cell_list> found;
  constexpr std::size_t farthest = 4;
  for (std::size_t i = first_row; i-- > 0 && first_row - i <= farthest && found.size() < 2;) {
    if (trimmed(lines[i].text).empty()) continue;
    cell_list cells = heading_cells(lines[i].text, t);
    if (has_names(cells)) found.push_back(std::move(cells));
  }
  if (found.empty()) return;
  const bool units = found.size() == 2 && are_units(found[0]) && !are_units(found[1]);
  for (std::size_t c = 0; c < t.columns.size(); ++c) {
    channel heading = parse_heading(found[units ? 1 : 0][c]);
    if (units && !found[0][c].empty()) {
      heading.unit = parse_heading("x " + std::string(found[0][c])).unit;
      if (heading.unit.empty()) heading.unit = valid_text(found[0][c]);
    }
    t.headings.push_back(heading);
  }
}

// A column that only counts is no time where the lines above the numbers tell the rate.
void use_told_rate(double rate, table_layout& t) {
  if (t.time && !t.only_counts) return;
  if (t.time) t.index = t.time;
  t.time = std::nullopt;
  t.told_rate = rate;
}

void choose_columns(table_layout& t, const input_options& options) {
  std::vector<std::size_t> columns;
  std::vector<channel> all;
  for (const std::size_t c : number_columns(t)) {
    if (c == t.time || c == t.index) continue;
    columns.push_back(c);
    all.push_back(t.headings.empty() ? channel{std::to_string(columns.size()), ""} : t.headings[c]);
    if (all.back().name.empty()) all.back().name = std::to_string(columns.size());
  }
  if (columns.empty()) throw data_error("no column of samples beside the time");
  for (const std::size_t i : chosen_channels(options.channels, all)) {
    t.channels.push_back(columns[i]);
    t.names.push_back(all[i]);
  }
}

// The cell of a column that makes it one of words: the first that is no number.
std::string_view first_word(const std::vector<table_line>& rows, std::size_t c, std::string_view decimals,
                            const table_layout& t) {
  cell_list cells;
  for (const table_line& row : rows) {
    if (!cells_of(row.text, t.delimiter, cells) || cells.size() < t.columns.size()) continue;
    if (kind_of(cells[c], decimals) == cell_kind::text) return cells[c];
  }
  return {};
}

// A column of words is passed over, but not one of numbers and dates that are written in a way that nobody
// can be sure of.
void refuse_doubtful(const std::vector<table_line>& rows, const input_options& options,
                     const table_layout& t) {
  const std::string_view decimals = decimals_beside(t.delimiter, options);
  for (std::size_t c = 0; c < t.columns.size(); ++c) {
    if (t.columns[c] != cell_kind::text) continue;
    const std::string_view word = first_word(rows, c, decimals, t);
    if (word.empty()) continue;
    const auto other = word.find_first_not_of("+-0123456789.,'");
    const bool grouped = other == std::string_view::npos;
    const bool date = !grouped && word[other] == '/' && is_slashed_date(word);
    if (!grouped && !date) continue;
    throw data_error(
        "column " + std::to_string(c + 1) + ": \"" + std::string(word) +
        (date ? "\" can be two dates; 2024-12-31 is understood" : "\" is no number with one decimal sign"));
  }
}

// Beside words with digits, hexadecimal ones say, the only column of numbers is no signal where it is the
// time.
void refuse_time_alone(const std::vector<table_line>& rows, const input_options& options,
                       const table_layout& t) {
  const auto numbers = number_columns(t);
  const bool chosen = std::ranges::any_of(options.channels, [](const auto& c) { return c != "all"; });
  if (t.time || numbers.size() != 1 || chosen || options.time_column == "none") return;
  const std::size_t time = numbers[0];
  if (t.headings.empty() ? !is_even(rows, time, t) : !is_time_heading(t.headings[time])) return;
  for (std::size_t c = 0; c < t.columns.size(); ++c) {
    const std::string_view word = t.columns[c] == cell_kind::text ? first_word(rows, c, ".,", t) : "";
    if (word.find_first_of("0123456789") == std::string_view::npos) continue;
    throw data_error("column " + std::to_string(c + 1) + ": \"" + std::string(word) +
                     "\" is no number, and column " + std::to_string(time + 1) +
                     " looks like the time; -t none takes it for samples");
  }
}

}  // namespace

bool cells_of(std::string_view line, char delimiter, cell_list& cells) {
  return split(without_comment(line), delimiter, cells) && !cells.empty() &&
         !(cells.size() == 1 && cells[0].empty());
}

table_layout understand_table(std::string_view head, bool is_whole, const input_options& options) {
  const auto lines = lines_of(head, is_whole);
  table_layout t;
  t.delimiter = find_delimiter(lines, options);
  t.line_end = line_end_of(head);
  find_columns(lines, options, t);
  const std::size_t first_row = find_first_row(lines, t);
  t.first = lines[first_row];
  const std::vector rows(lines.begin() + static_cast<std::ptrdiff_t>(first_row), lines.end());
  refuse_doubtful(rows, options, t);
  find_headings(lines, first_row, t);
  find_time(lines, first_row, options, t);
  refuse_time_alone(rows, options, t);
  if (const double rate = told_rate(lines, first_row); rate > 0) use_told_rate(rate, t);
  t.looks_at_time = t.time && options.rate <= 0;
  choose_columns(t, options);
  return t;
}

}  // namespace tool
