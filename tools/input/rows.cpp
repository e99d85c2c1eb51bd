// SPDX-License-Identifier: MIT
// The rows of a table, one after the other, as numbers.
#include "input/rows.h"

#include <cmath>
#include <cstring>

#include "input/times.h"

namespace tool {
namespace {

constexpr std::size_t longest_line = 1 << 16;

}  // namespace

rows::rows(stream& in, const table_layout& t, bool keeps_missing, subject& about)
    : in_(in),
      t_(t),
      keeps_missing_(keeps_missing),
      about_(about),
      slots_(t.columns.size()),
      values_(t.channels.size()),
      plain_(!t.looks_at_time || t.columns[*t.time] != cell_kind::moment),
      line_(t.first.number - 1) {
  for (std::size_t i = 0; i < t.channels.size(); ++i) slots_[t.channels[i]].value = static_cast<int>(i);
  if (t.looks_at_time) slots_[*t.time].time = true;
  for (std::size_t c = 0; c < slots_.size(); ++c) slots_[c].decimal = t.decimals[c];
  for (std::size_t left = t.first.at; left > 0;) {
    if (in_.waiting().empty() && !in_.more()) break;
    const std::size_t n = std::min(left, in_.waiting().size());
    in_.take(n);
    left -= n;
  }
}

void rows::fail(const std::string& what) const {
  data_error e(what);
  e.name_place(about_.name + ":" + std::to_string(line_));
  throw e;
}

// What was taken from the stream stays where it is until the stream reads more.
bool rows::next_line() {
  std::size_t looked_at = 0;
  while (true) {
    const std::string_view waiting = in_.waiting();
    const void* const end = std::memchr(waiting.data() + looked_at, t_.line_end, waiting.size() - looked_at);
    if (end != nullptr) {
      const auto size = static_cast<std::size_t>(static_cast<const char*>(end) - waiting.data());
      text_ = waiting.substr(0, size);
      in_.take(size + 1);
      ended_ = true;
      break;
    }
    looked_at = waiting.size();
    if (looked_at > longest_line) {
      ++line_;
      fail("too long for a line of numbers");
    }
    if (in_.more()) continue;
    if (in_.waiting().empty()) return false;
    text_ = in_.waiting();
    in_.take(text_.size());
    ended_ = false;
    break;
  }
  ++line_;
  return true;
}

const char* rows::pass_blanks(const char* at, const char* end) const {
  while (at != end && is_blank(*at) && *at != t_.delimiter) ++at;
  if (t_.delimiter == ' ') {
    while (at != end && is_blank(*at)) ++at;
  }
  return at;
}

const char* rows::pass_cell(const char* at, const char* end) const {
  if (at != end && *at == '"') return nullptr;
  if (t_.delimiter == ' ') {
    while (at != end && !is_blank(*at)) ++at;
    return at;
  }
  while (at != end && *at != t_.delimiter) ++at;
  return at;
}

const char* rows::scan_cell(const char* at, const char* end, const slot& s) {
  if (s.value < 0 && !s.time) return pass_cell(at, end);
  double x = 0;
  const char* const after = scan_number(at, end, s.decimal, x);
  if (after == nullptr) return nullptr;
  if (s.value >= 0) values_[static_cast<std::size_t>(s.value)] = x;
  if (s.time) time_number_ = x;
  return after;
}

// The usual row, nothing but numbers. What is anything else is left to take_apart().
bool rows::scan(const char* at, const char* end) {
  const char delimiter = t_.delimiter;
  at = pass_blanks(at, end);
  for (std::size_t c = 0; c < slots_.size(); ++c) {
    if (c > 0 && delimiter != ' ') {
      if (at == end || *at != delimiter) return false;
      at = pass_blanks(at + 1, end);
    }
    const char* const begin = at;
    at = scan_cell(at, end, slots_[c]);
    if (at == nullptr || (delimiter == ' ' && at == begin)) return false;
    const char* const after = pass_blanks(at, end);
    if (delimiter == ' ' && after == at && at != end) return false;
    at = after;
  }
  return at == end;
}

// From the first row on, so that the digits of an epoch do not cost those of the steps.
void rows::set_time(double x) {
  if (!has_origin_) origin_ = x;
  has_origin_ = true;
  time_ = (x - origin_) * t_.time_size;
}

bool rows::next() {
  while (next_line()) {
    if (plain_ && scan(text_.data(), text_.data() + text_.size())) {
      set_time(time_number_);
      return true;
    }
    const found what = take_apart();
    if (what == found::row) return true;
    if (what == found::end) return false;
  }
  return false;
}

// What is wrong with a last line that has no end is that it was cut.
rows::found rows::refuse(const std::string& what) {
  if (ended_ || in_.more()) fail(what);
  about_.truncated = true;
  about_.warnings.push_back("line " + std::to_string(line_) + " is cut short and was left away");
  return found::end;
}

rows::found rows::take_apart() {
  const std::string_view text = without_comment(text_);
  if (trimmed(text).empty()) return found::nothing;
  if (!split(text, t_.delimiter, cells_)) return refuse("a quote is not closed");
  if (cells_.size() == slots_.size() + 1 && cells_.back().empty()) cells_.pop_back();
  if (cells_.size() == 1 && cells_[0].empty() && slots_.size() > 1) return found::nothing;
  if (cells_.size() != slots_.size()) {
    const std::string shown(trimmed(text).substr(0, 40));
    if (slots_.size() == 1) return refuse("not a number in \"" + shown + '"');
    return refuse(std::to_string(cells_.size()) + (cells_.size() == 1 ? " column" : " columns") + ", but " +
                  std::to_string(slots_.size()) + " before");
  }
  for (std::size_t c = 0; c < slots_.size(); ++c) {
    if (slots_[c].value < 0) continue;
    if (const std::string wrong = take_cell(c, cells_[c]); !wrong.empty()) return refuse(wrong);
  }
  if (t_.looks_at_time) take_moment(*t_.time);
  return found::row;
}

// What is wrong with a cell, nothing usually.
std::string rows::take_cell(std::size_t column, std::string_view cell) {
  const auto x = number(cell, t_.decimals[column]);
  if (!x) return "not a number in \"" + std::string(cell.substr(0, 40)) + '"';
  if (std::isnan(*x) && !keeps_missing_) {
    const std::string shown = cell.empty() ? "empty" : std::string(cell);
    return "column " + std::to_string(column + 1) + " is " + shown + "; --gaps linear bridges it";
  }
  values_[static_cast<std::size_t>(slots_[column].value)] = *x;
  return {};
}

// Days count from the first, so that the seconds keep their digits.
void rows::take_moment(std::size_t column) {
  if (plain_) {
    const auto x = number(cells_[column], t_.decimals[column]);
    if (!x || std::isnan(*x)) fail("column " + std::to_string(column + 1) + " is no time");
    return set_time(*x);
  }
  const auto date = parse_moment(cells_[column]);
  const auto clock = t_.clock_beside ? parse_moment(cells_[column + 1]) : std::nullopt;
  if (!date || (t_.clock_beside && !clock)) fail("column " + std::to_string(column + 1) + " is no time");
  const double seconds = date->seconds + (clock ? clock->seconds : 0);
  if (date->days && t_.time_unit == "yr") {
    time_ = calendar_years(*date->days, seconds);
    return;
  }
  if (date->days) {
    if (!has_date_) first_day_ = *date->days;
    has_date_ = true;
    days_ = static_cast<double>(*date->days - first_day_);
  } else if (seconds < last_clock_ - seconds_per_day / 2) {
    ++days_;
  }
  last_clock_ = seconds;
  time_ = (days_ * seconds_per_day + seconds) * t_.time_size;
}

}  // namespace tool
