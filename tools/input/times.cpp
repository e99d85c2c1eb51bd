// SPDX-License-Identifier: MIT
// Times as tables hold them: units, dates, times of the day.
#include "input/times.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <string>

namespace tool {
namespace {

struct unit {
  std::string_view sign;
  double seconds;
  std::string_view words;  // with a blank on either side
};

constexpr unit units[] = {
    {"s", 1, " s sec secs second seconds sek sekunde sekunden "},
    {"ms", 1e-3, " ms msec msecs millisecond milliseconds millis "},
    {"us", 1e-6, " us usec usecs \xC2\xB5s \xCE\xBCs \xB5s microsecond microseconds micros "},
    {"ns", 1e-9, " ns nsec nanosecond nanoseconds nanos "},
    {"min", 60, " min mins minute minutes minuten "},
    {"h", 3600, " h hr hrs hour hours std stunde stunden "},
    {"d", seconds_per_day, " d day days tag tage "},
    {"yr", days_per_year* seconds_per_day, " yr yrs year years a jahr jahre annee "},
};

const unit* find_unit(std::string_view name) {
  std::string word = " ";
  for (const char c : name)
    word += c >= 'A' && c <= 'Z' && name.size() > 2 ? static_cast<char>(c - 'A' + 'a') : c;
  word += ' ';
  if (word.size() < 3 || word.find(' ', 1) != word.size() - 1) return nullptr;
  const auto found = std::ranges::find_if(
      units, [&](const unit& u) { return u.words.find(word) != std::string_view::npos; });
  return found == std::end(units) ? nullptr : &*found;
}

// Takes characters off the front of a text.
class scanner {
 public:
  explicit scanner(std::string_view text) : text_(text) {}

  bool at_end() const { return text_.empty(); }
  bool take(char c) {
    if (text_.empty() || text_.front() != c) return false;
    text_.remove_prefix(1);
    return true;
  }
  std::optional<int> whole(std::size_t fewest, std::size_t most) {
    std::size_t count = 0;
    while (count < text_.size() && text_[count] >= '0' && text_[count] <= '9') ++count;
    if (count < fewest || count > most) return std::nullopt;
    int value = 0;
    std::from_chars(text_.data(), text_.data() + count, value);
    text_.remove_prefix(count);
    return value;
  }
  // Digits behind a decimal sign, as a part of 1.
  std::optional<double> fraction() {
    std::size_t count = 0;
    while (count < text_.size() && text_[count] >= '0' && text_[count] <= '9') ++count;
    if (count == 0 || count > 18) return std::nullopt;
    double value = 0;
    const std::string digits = "0." + std::string(text_.substr(0, count));
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    text_.remove_prefix(count);
    return value;
  }

 private:
  std::string_view text_;
};

std::optional<std::int64_t> day_number(int year, int month, int day) {
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return std::nullopt;
  return std::chrono::sys_days(date).time_since_epoch().count();
}

// 2024-05-17, 2024-05, 20240517 with a T behind, 2024/05/17.
std::optional<std::int64_t> take_iso_date(scanner& s) {
  const auto year = s.whole(4, 4);
  if (!year) return std::nullopt;
  const char sign = s.take('-') ? '-' : s.take('/') ? '/' : ' ';
  if (sign == ' ') return std::nullopt;
  const auto month = s.whole(1, 2);
  if (!month) return std::nullopt;
  if (!s.take(sign)) return s.at_end() && sign == '-' ? day_number(*year, *month, 1) : std::nullopt;
  const auto day = s.whole(1, 2);
  return day ? day_number(*year, *month, *day) : std::nullopt;
}

// 17.05.2024
std::optional<std::int64_t> take_pointed_date(scanner& s) {
  const auto day = s.whole(1, 2);
  if (!day || !s.take('.')) return std::nullopt;
  const auto month = s.whole(1, 2);
  if (!month || !s.take('.')) return std::nullopt;
  const auto year = s.whole(4, 4);
  return year ? day_number(*year, *month, *day) : std::nullopt;
}

// 12:30, 12:30:05.25, the decimal sign a comma too.
std::optional<double> take_clock(scanner& s) {
  const auto hours = s.whole(1, 2);
  if (!hours || *hours > 24 || !s.take(':')) return std::nullopt;
  const auto minutes = s.whole(2, 2);
  if (!minutes || *minutes > 59) return std::nullopt;
  double seconds = *hours * 3600.0 + *minutes * 60.0;
  if (!s.take(':')) return seconds;
  const auto whole = s.whole(2, 2);
  if (!whole || *whole > 60) return std::nullopt;
  seconds += *whole;
  if (!s.take('.') && !s.take(',')) return seconds;
  const auto part = s.fraction();
  return part ? std::optional(seconds + *part) : std::nullopt;
}

// Z, +02:00, +0200, +02: seconds to take away.
std::optional<double> take_zone(scanner& s) {
  s.take(' ');
  if (s.at_end() || s.take('Z') || s.take('z')) return 0.0;
  const bool ahead = s.take('+');
  if (!ahead && !s.take('-')) return std::nullopt;
  const auto digits = s.whole(2, 4);
  if (!digits) return std::nullopt;
  int hours = *digits;
  int minutes = 0;
  if (hours > 99) minutes = hours % 100, hours /= 100;
  if (s.take(':')) minutes = s.whole(2, 2).value_or(0);
  const double distance = hours * 3600.0 + minutes * 60.0;
  return ahead ? distance : -distance;
}

}  // namespace

std::optional<double> seconds_in(std::string_view name) {
  const unit* const found = find_unit(name);
  return found == nullptr ? std::nullopt : std::optional(found->seconds);
}

std::string_view sign_of_unit(std::string_view name) {
  const unit* const found = find_unit(name);
  return found == nullptr ? std::string_view() : found->sign;
}

double calendar_years(std::int64_t days, double seconds) {
  using namespace std::chrono;
  const year_month_day date{sys_days{std::chrono::days{days}}};
  const year_month_day_last end{date.year() / date.month() / last};
  const double day = static_cast<double>(static_cast<unsigned>(date.day()) - 1) + seconds / seconds_per_day;
  const double month = static_cast<double>(static_cast<unsigned>(date.month()) - 1) +
                       day / static_cast<double>(static_cast<unsigned>(end.day()));
  return static_cast<int>(date.year()) - 1970 + month / 12;
}

bool is_slashed_date(std::string_view cell) {
  scanner s(cell);
  return s.whole(1, 2) && s.take('/') && s.whole(1, 2) && s.take('/') && s.whole(2, 4);
}

std::optional<moment> parse_moment(std::string_view cell) {
  if (cell.size() < 4 || cell.front() < '0' || cell.front() > '9') return std::nullopt;
  moment m;
  scanner s(cell);
  const auto mark = cell.find_first_of(":-/.");
  if (mark == std::string_view::npos) return std::nullopt;
  if (cell[mark] != ':') {
    m.days = cell[mark] == '.' ? take_pointed_date(s) : take_iso_date(s);
    if (!m.days) return std::nullopt;
    if (s.at_end()) return m;
    if (!s.take('T') && !s.take('t') && !s.take(' ')) return std::nullopt;
  }
  const auto clock = take_clock(s);
  const auto zone = clock ? take_zone(s) : std::nullopt;
  if (!zone || !s.at_end()) return std::nullopt;
  m.seconds = *clock - *zone;
  return m;
}

}  // namespace tool
