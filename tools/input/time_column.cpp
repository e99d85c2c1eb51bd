// SPDX-License-Identifier: MIT
// Which column of a table is the time, and what it counts.
#include <algorithm>
#include <cmath>

#include "input/channels.h"
#include "input/headings.h"
#include "input/layout.h"
#include "input/times.h"

namespace tool {
namespace {

constexpr std::size_t most_rows = 1000;  // that are looked at
constexpr double unevenness = 0.25;
constexpr double shortest_month = 28 * seconds_per_day;

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
      const bool can_be = t_.columns[c] == cell_kind::number || t_.columns[c] == cell_kind::moment;
      if (!can_be || !is_time_heading(t_.headings[c])) continue;
      t_.time = c;
      const std::size_t first = number_columns(t_).front();
      if (first < c && is_index_heading(t_.headings[first])) t_.index = first;
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
    if (columns.size() > 2 && t_.headings.empty() && counts(first)) {
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
      t_.only_counts = counts(first);
      t_.rises_alone = true;
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
      if (seconds_in(heading.unit)) return std::string(sign_of_unit(heading.unit));
      const std::string name = bare_name(heading);
      if (is_time_heading(heading) && seconds_in(name)) return std::string(sign_of_unit(name));
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
    if (dates && years) t_.step = std::round(12 * t_.step) / 12;  // whole months, as the calendar has them
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

// Near whole steps from the first, and no two near the same.
bool lie_on(const std::vector<double>& times, double step) {
  double last = -1;
  return std::ranges::all_of(times, [&](double t) {
    const double place = (t - times.front()) / step;
    const double whole = std::round(place);
    const bool fits = whole > last && std::abs(place - whole) <= unevenness;
    last = whole;
    return fits;
  });
}

}  // namespace

// The columns that only hold words, or nothing, count for nothing.
std::vector<std::size_t> number_columns(const table_layout& t) {
  std::vector<std::size_t> found;
  for (std::size_t c = 0; c < t.columns.size(); ++c) {
    if (t.columns[c] == cell_kind::number) found.push_back(c);
  }
  return found;
}

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
  std::ranges::sort(steps);
  for (const double likely : {steps[steps.size() / 2], steps.front()}) {
    const double count = std::round((times.back() - times.front()) / likely);
    const double step = (times.back() - times.front()) / count;
    if (lie_on(times, step)) return step;
  }
  return std::nullopt;
}

bool is_even(const std::vector<table_line>& rows, std::size_t c, const table_layout& t) {
  const std::vector<double> numbers = head_of_column(rows, 0, t, c);
  return numbers.size() > 2 && even_step(numbers);
}

void find_time(const std::vector<table_line>& lines, std::size_t first_row, const input_options& options,
               table_layout& t) {
  time_finder(lines, first_row, options, t).find();
}

}  // namespace tool
