// SPDX-License-Identifier: MIT
// The rows of a table, one after the other, as numbers.
#pragma once

#include <string>
#include <vector>

#include "input/layout.h"
#include "input/stream.h"

namespace tool {

class rows {
 public:
  // The stream stands at its start; `about` is warned of a last line that is cut short.
  rows(stream& in, const table_layout& t, bool keeps_missing, subject& about);

  // Reads the next row; false at the end.
  bool next();

  // The chosen channels, NaN where one is missing, and the time in the layout's unit.
  const std::vector<double>& values() const { return values_; }
  double time() const { return time_; }

  // An error at the line that was read last.
  [[noreturn]] void fail(const std::string& what) const;
  std::uint64_t line() const { return line_; }

 private:
  enum class found { row, nothing, end };
  struct slot {
    int value = -1;  // where the number goes; -1: it is passed over
    bool time = false;
    char decimal = '.';
  };

  bool next_line();
  bool scan(const char* at, const char* end);
  const char* scan_cell(const char* at, const char* end, const slot& s);
  const char* pass_cell(const char* at, const char* end) const;
  const char* pass_blanks(const char* at, const char* end) const;
  found take_apart();
  std::string take_cell(std::size_t column, std::string_view cell);
  void take_moment(std::size_t column);
  void set_time(double x);
  found refuse(const std::string& what);

  stream& in_;
  const table_layout& t_;
  bool keeps_missing_;
  subject& about_;
  std::vector<slot> slots_;
  std::vector<double> values_;
  std::vector<std::string_view> cells_;
  double time_ = 0;
  double time_number_ = 0;
  double last_clock_ = 0;
  double days_ = 0;
  bool plain_ = true;  // times are numbers
  double origin_ = 0;
  bool has_origin_ = false;
  bool has_date_ = false;  // the first day is known
  std::int64_t first_day_ = 0;
  std::string_view text_;  // the line, without its end
  bool ended_ = false;     // by a line end
  std::uint64_t line_ = 0;
};

}  // namespace tool
