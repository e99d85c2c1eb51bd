// How a table is laid out: where its numbers begin, the names of its columns, which of them is the time.
#include "input/layout.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "input/channels.h"
#include "input/headings.h"
#include "input/times.h"

namespace tool {
namespace {

constexpr std::size_t most_rows = 1000;  // that are looked at for the time
constexpr double unevenness = 0.25;
constexpr double shortest_month = 28 * seconds_per_day;

using cell_list = std::vector<std::string_view>;

bool cells_of(std::string_view line, char delimiter, cell_list& cells) {
  return split(without_comment(line), delimiter, cells) && !cells.empty() &&
         !(cells.size() == 1 && cells[0].empty());
}

// The lines of the second half with the usual number of cells.
std::vector<cell_list> usual_rows(const std::vector<table_line>& lines, char delimiter,
                                  std::string_view decimals) {
  std::vector<cell_list> rows;
  std::map<std::size_t, std::size_t> counts;
  cell_list cells;
  for (std::size_t i = lines.size() / 2; i < lines.size(); ++i) {
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

// What a column mostly holds, and which decimal sign gives it more numbers.
void find_kind(const std::vector<cell_list>& rows, std::size_t c, std::string_view decimals,
               table_layout& t) {
  t.columns[c] = cell_kind::missing;
  std::ptrdiff_t most = 0;
  for (const char decimal : decimals) {
    const std::string_view sign = decimal == '.' ? "." : ",";
    for (const auto kind : {cell_kind::number, cell_kind::moment, cell_kind::text}) {
      const auto count =
          std::ranges::count_if(rows, [&](const cell_list& r) { return kind_of(r[c], sign) == kind; });
      const bool better = count > most || (count == most && count > 0 && kind == cell_kind::number &&
                                           t.columns[c] == cell_kind::text);
      if (!better) continue;
      most = count;
      t.columns[c] = kind;
      t.decimals[c] = decimal;
    }
  }
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

std::size_t find_first_row(const std::vector<table_line>& lines, const table_layout& t) {
  cell_list cells;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (cells_of(lines[i].text, t.delimiter, cells) && is_row(cells, t)) return i;
  }
  throw data_error("no line of numbers in it");
}

// The cells of a heading, which may be a comment, and may part its names in a way of its own.
cell_list heading_cells(std::string_view line, const table_layout& t) {
  std::string_view text = trimmed(line);
  while (!text.empty() && std::string_view("#%/*").find(text.front()) != std::string_view::npos)
    text.remove_prefix(1);
  cell_list cells;
  for (const char delimiter : {t.delimiter, ',', ';', '\t', ' '}) {
    if (!split(text, delimiter, cells)) continue;
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

bool holds_numbers(const table_layout& t, std::size_t c) { return t.columns[c] == cell_kind::number; }

// The columns that only hold words, or nothing, count for nothing.
std::vector<std::size_t> number_columns(const table_layout& t) {
  std::vector<std::size_t> found;
  for (std::size_t c = 0; c < t.columns.size(); ++c) {
    if (holds_numbers(t, c)) found.push_back(c);
  }
  return found;
}

// The numbers of a column at the head; dates in seconds.
std::vector<double> head_of_column(const std::vector<table_line>& lines, std::size_t first_row,
                                   const table_layout& t, std::size_t c) {
  std::vector<double> values;
  cell_list cells;
  for (std::size_t i = first_row; i < lines.size() && values.size() < most_rows; ++i) {
    if (!cells_of(lines[i].text, t.delimiter, cells) || cells.size() < t.columns.size()) continue;
    if (t.columns[c] == cell_kind::moment) {
      const auto date = parse_moment(cells[c]);
      const auto clock = t.clock_beside ? parse_moment(cells[c + 1]) : std::nullopt;
      if (!date) continue;
      values.push_back(static_cast<double>(date->days.value_or(0)) * seconds_per_day + date->seconds +
                       (clock ? clock->seconds : 0));
    } else if (const auto x = number(cells[c], t.decimals[c]); x && !std::isnan(*x)) {
      values.push_back(*x);
    }
  }
  return values;
}

bool rises(const std::vector<double>& x) {
  return std::ranges::adjacent_find(x, [](double a, double b) { return !(b > a); }) == x.end();
}

bool counts(const std::vector<double>& x) {
  if (x.size() < 3 || (x[0] != 0 && x[0] != 1)) return false;
  return std::ranges::adjacent_find(x, [](double a, double b) { return b != a + 1; }) == x.end();
}

std::optional<std::size_t> named_column(const std::string& word, const table_layout& t) {
  for (std::size_t c = 0; c < t.headings.size(); ++c) {
    if (t.headings[c].name == word || bare_name(t.headings[c]) == word) return c;
  }
  const std::ptrdiff_t place = place_of_number(word);
  if (place < 0 || place >= std::ssize(t.columns)) return std::nullopt;
  return static_cast<std::size_t>(place);
}

class time_finder {
 public:
  time_finder(const std::vector<table_line>& lines, std::size_t first_row, const input_options& options,
              table_layout& t)
      : lines_(lines), first_row_(first_row), options_(options), t_(t) {}

  void find() {
    if (options_.time_column == "none") return;
    if (!options_.time_column.empty()) {
      t_.time = named_column(options_.time_column, t_);
      if (!t_.time) throw data_error("there is no column '" + options_.time_column + "' for the time");
    } else if (!find_by_heading() && !find_moment()) {
      find_rising();
    }
    if (!t_.time) return;
    take_clock_beside();
    find_unit();
  }

 private:
  std::vector<double> head(std::size_t c) const { return head_of_column(lines_, first_row_, t_, c); }

  bool find_by_heading() {
    if (number_columns(t_).size() + (has_moment() ? 1 : 0) < 2) return false;
    for (std::size_t c = 0; c < t_.headings.size(); ++c) {
      const bool can_be = holds_numbers(t_, c) || t_.columns[c] == cell_kind::moment;
      if (!can_be || !is_time_heading(t_.headings[c])) continue;
      t_.time = c;
      return true;
    }
    return false;
  }

  bool has_moment() const { return std::ranges::find(t_.columns, cell_kind::moment) != t_.columns.end(); }

  bool find_moment() {
    const auto found = std::ranges::find(t_.columns, cell_kind::moment);
    if (found == t_.columns.end()) return false;
    t_.time = static_cast<std::size_t>(found - t_.columns.begin());
    return true;
  }

  // The first column that rises, unless it only counts: then the second, if that is even and not the last.
  void find_rising() {
    const auto columns = number_columns(t_);
    if (columns.size() < 2) return;
    const std::vector<double> first = head(columns[0]);
    const bool named_index = !t_.headings.empty() && is_index_heading(t_.headings[columns[0]]);
    if (columns.size() > 2 && (named_index || counts(first))) {
      const std::vector<double> second = head(columns[1]);
      if (second.size() > 2 && even_step(second)) {
        t_.index = columns[0];
        t_.time = columns[1];
        return;
      }
    }
    if (named_index) {
      t_.index = columns[0];
    } else if (rises(first)) {
      t_.time = columns[0];
    } else if (t_.headings.empty()) {
      throw data_error("column " + std::to_string(columns[0] + 1) +
                       " does not increase, so it is no time; -t none takes every column for samples");
    }
  }

  void take_clock_beside() {
    const std::size_t c = *t_.time;
    if (t_.columns[c] != cell_kind::moment || c + 1 >= t_.columns.size()) return;
    cell_list cells;
    cells_of(t_.first.text, t_.delimiter, cells);
    const auto date = parse_moment(cells[c]);
    const auto clock = parse_moment(cells[c + 1]);
    t_.clock_beside = t_.columns[c + 1] == cell_kind::moment && date && date->days && clock && !clock->days;
  }

  // What the command line says, or the heading, or the size of the numbers: Unix time may count ms, us, ns.
  std::string unit_of_numbers(const std::vector<double>& times) const {
    if (!options_.time_unit.empty()) return options_.time_unit;
    if (!t_.headings.empty()) {
      const channel& heading = t_.headings[*t_.time];
      for (const std::string& word : {heading.unit, bare_name(heading)}) {
        if (seconds_in(word) && word != "t") return std::string(sign_of_unit(word));
      }
    }
    const double size = times.empty() ? 0 : times.front();
    for (const auto& [scale, sign] : {std::pair(1e12, "ms"), {1e15, "us"}, {1e18, "ns"}}) {
      if (size >= scale && size < 2.2 * scale) return sign;
    }
    return "s";
  }

  void find_unit() {
    const std::vector<double> times = head(*t_.time);
    const bool dates = t_.columns[*t_.time] == cell_kind::moment;
    t_.time_sign = dates ? "s" : unit_of_numbers(times);
    t_.step = step_of(times);
    const bool years = dates ? options_.time_unit == "yr" || t_.step >= shortest_month : t_.time_sign == "yr";
    t_.time_unit = years ? "yr" : "s";
    const double year = days_per_year * seconds_per_day;
    t_.time_size = *seconds_in(t_.time_sign) / (years ? year : 1);
    t_.step *= t_.time_size;
  }

  static double step_of(const std::vector<double>& times) {
    if (const auto even = even_step(times)) return *even;
    return times.size() < 2 ? 0 : (times.back() - times.front()) / static_cast<double>(times.size() - 1);
  }

  const std::vector<table_line>& lines_;
  std::size_t first_row_;
  const input_options& options_;
  table_layout& t_;
};

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

bool lie_on(const std::vector<double>& times, double step) {
  return std::ranges::all_of(times, [&](double t) {
    const double place = (t - times.front()) / step;
    return std::abs(place - std::round(place)) <= unevenness;
  });
}

}  // namespace

std::optional<double> even_step(const std::vector<double>& times) {
  if (times.size() < 2 || !rises(times)) return std::nullopt;
  const double mean = (times.back() - times.front()) / static_cast<double>(times.size() - 1);
  double worst = 0;
  for (std::size_t i = 0; i < times.size(); ++i) {
    worst = std::max(worst, std::abs(times[i] - times.front() - static_cast<double>(i) * mean));
  }
  if (worst <= unevenness * mean) return mean;
  std::vector<double> steps;
  for (std::size_t i = 1; i < times.size(); ++i) steps.push_back(times[i] - times[i - 1]);
  std::ranges::nth_element(steps, steps.begin() + std::ssize(steps) / 2);
  const double median = steps[steps.size() / 2];
  const double count = std::round((times.back() - times.front()) / median);
  const double step = (times.back() - times.front()) / count;
  return lie_on(times, step) ? std::optional(step) : std::nullopt;
}

table_layout understand_table(std::string_view head, bool is_whole, const input_options& options) {
  const auto lines = lines_of(head, is_whole);
  table_layout t;
  t.delimiter = find_delimiter(lines, options);
  t.line_end = line_end_of(head);
  find_columns(lines, options, t);
  const std::size_t first_row = find_first_row(lines, t);
  t.first = lines[first_row];
  find_headings(lines, first_row, t);
  time_finder(lines, first_row, options, t).find();
  t.looks_at_time = t.time && options.rate <= 0;
  choose_columns(t, options);
  return t;
}

}  // namespace tool
