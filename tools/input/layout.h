// SPDX-License-Identifier: MIT
// How a table is laid out: what parts its cells, where its numbers begin, which column is what.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "input/cells.h"
#include "input/source.h"

namespace tool {

// A line of the head of a table.
struct table_line {
  std::string_view text;  // without its end
  std::size_t at = 0;     // where it begins
  std::uint64_t number = 0;
};

// The line ends are LF or CR LF, or CR alone where there is no LF.
char line_end_of(std::string_view head);

// Of so many lines, the first that tells what is usual: preambles stand before it, when there are more than a
// few.
std::size_t usual_from(std::size_t lines);
std::vector<table_line> lines_of(std::string_view head, bool is_whole);

enum class cell_kind { missing, number, moment, text };
cell_kind kind_of(std::string_view cell, std::string_view decimals);  // any of these

// The decimal signs that there may be beside a delimiter.
std::string_view decimals_beside(char delimiter, const input_options& options);

// What parts the cells, from the lines at the end of the head. Refuses what can be read in two ways.
char find_delimiter(const std::vector<table_line>& lines, const input_options& options);

struct table_layout {
  char delimiter = ' ';
  char line_end = '\n';
  table_line first;                   // the first row
  std::vector<cell_kind> columns;     // missing: never anything in it
  std::vector<char> decimals;         // of the columns
  std::vector<channel> headings;      // of the columns; empty without
  std::vector<std::size_t> channels;  // the columns that are read
  std::vector<channel> names;         // of these

  std::optional<std::size_t> time;
  bool clock_beside = false;  // the date is in the time column, the time of the day in the next
  bool looks_at_time = false;
  double time_size = 1;              // of its unit, in time_unit
  std::string time_unit = "s";       // the base unit
  std::string time_sign = "s";       // the unit of the column
  double step = 0;                   // between rows, at the head, in time_unit
  std::optional<std::size_t> index;  // the column that only counts
  bool rises_alone = false;          // nothing but its numbers says that it is the time
  bool only_counts = false;          // so does the time
  double told_rate = 0;              // above the numbers; 0 without
};

using cell_list = std::vector<std::string_view>;

// The cells of a line; false where there is nothing but a comment.
bool cells_of(std::string_view line, char delimiter, cell_list& cells);

// The columns of numbers: those that hold words or nothing count for nothing.
std::vector<std::size_t> number_columns(const table_layout& t);

// Finds the column of the time, its unit and its step.
void find_time(const std::vector<table_line>& lines, std::size_t first_row, const input_options& options,
               table_layout& t);

// Whether the numbers of a column rise by even steps.
bool is_even(const std::vector<table_line>& rows, std::size_t c, const table_layout& t);

// What lines above the numbers tell about the rate: "Sample Interval,1e-3", "Sampling rate: 48 kHz", or a
// word and the number below it. 0 without.
double told_rate(const std::vector<table_line>& lines, std::size_t first_row);

table_layout understand_table(std::string_view head, bool is_whole, const input_options& options);

// The step of times that are even but for missing ones and a quarter of a step.
std::optional<double> even_step(const std::vector<double>& times);

}  // namespace tool
