// SPDX-License-Identifier: MIT
// The rate, as instruments tell it in the lines above their numbers.
#include <algorithm>
#include <cmath>
#include <optional>

#include "input/headings.h"
#include "input/layout.h"
#include "input/times.h"

namespace tool {
namespace {

constexpr std::string_view rate_words[] = {
    "sample rate",    "sampling rate",      "samplerate", "sample_rate",
    "sampling_rate",  "sampling frequency", "fs",         "sample frequency",
    "samples/second", "samples per second"};
constexpr std::string_view step_words[] = {"sample interval",
                                           "sampling interval",
                                           "sample period",
                                           "sampling period",
                                           "increment",
                                           "xincrement",
                                           "x increment",
                                           "xinc",
                                           "time step",
                                           "timestep",
                                           "dt",
                                           "delta t"};

std::string lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return out;
}

// The words and numbers of a line, whatever parts them.
cell_list words_of(std::string_view line) {
  const auto start = line.find_first_not_of("#%/*\" ");
  line.remove_prefix(std::min(start, line.size()));
  cell_list words;
  while (true) {
    const auto end = line.find_first_of(",;\t:=\"");
    words.push_back(trimmed(line.substr(0, end)));
    if (end == std::string_view::npos) return words;
    line.remove_prefix(end + 1);
  }
}

double hertz_in(std::string_view unit) {
  if (unit.starts_with('k')) return 1e3;
  return unit.starts_with('M') ? 1e6 : 1;
}

// "1000", "1 kHz", "4 us", with the unit from the key where the value has none.
std::optional<double> rate_of(std::string_view value, const channel& key, bool is_step) {
  double x = 0;
  const char* const end = value.data() + value.size();
  const char* const parsed = value.empty() ? nullptr : scan_number(value.data(), end, '.', x);
  if (parsed == nullptr || !(x > 0)) return std::nullopt;
  std::string_view unit = trimmed({parsed, static_cast<std::size_t>(end - parsed)});
  if (unit.empty()) unit = key.unit;
  if (is_step) return 1 / (x * seconds_in(unit).value_or(1));
  return x * hertz_in(unit);
}

template <std::size_t N> bool is_one_of(const std::string& word, const std::string_view (&words)[N]) {
  return std::ranges::find(words, word) != std::end(words);
}

}  // namespace

double told_rate(const std::vector<table_line>& lines, std::size_t first_row) {
  for (std::size_t i = 0; i < first_row; ++i) {
    const cell_list words = words_of(lines[i].text);
    for (std::size_t c = 0; c < words.size(); ++c) {
      const channel key = parse_heading(words[c]);
      const std::string name = lower(bare_name(key));
      const bool is_step = is_one_of(name, step_words);
      if (!is_step && !is_one_of(name, rate_words)) continue;
      if (c + 1 < words.size()) {
        if (const auto rate = rate_of(words[c + 1], key, is_step)) return *rate;
      }
      const cell_list below = i + 1 < first_row ? words_of(lines[i + 1].text) : cell_list();
      if (c >= below.size()) continue;
      if (const auto rate = rate_of(below[c], key, is_step)) return *rate;
    }
  }
  return 0;
}

}  // namespace tool
