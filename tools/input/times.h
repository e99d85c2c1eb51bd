// SPDX-License-Identifier: MIT
// Times as tables hold them: units, dates, times of the day.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tool {

constexpr double seconds_per_day = 86400;
constexpr double days_per_year = 365.2425;  // of the calendar, in the mean

// Seconds in a unit of time that is called so, by its sign or a word; none for other names. Years have
// days_per_year.
std::optional<double> seconds_in(std::string_view unit);

// The sign that the options use for it: "s", "ms", ... "yr".
std::string_view sign_of_unit(std::string_view unit);

// A date of ISO 8601 or with points between day, month and year, with or without a time of the day and its
// distance from UTC; or a time of the day alone, whose days are none.
struct moment {
  std::optional<std::int64_t> days;  // since 1970-01-01
  double seconds = 0;                // of that day
};
std::optional<moment> parse_moment(std::string_view cell);

// Whether a cell begins like 03/04/2024, in which the month may stand first or second.
bool is_slashed_date(std::string_view cell);

// A time in years of the calendar since 1970, whose months are twelfths: monthly data are even.
double calendar_years(std::int64_t days, double seconds);
}  // namespace tool
