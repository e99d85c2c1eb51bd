// SPDX-License-Identifier: MIT
// The options that every command that reads has in common.
#include "commands/input_options.h"

#include <algorithm>
#include <iterator>

namespace tool {
namespace {

constexpr double shortest_time = 1e-12;
constexpr double longest_time = 1e12;

// A single character, or the name of one that a shell makes hard to give.
taker character_taker(char& value, std::string allowed) {
  return [&value, allowed = std::move(allowed)](const std::string& word) -> std::string {
    const std::string text = word == "tab" || word == "\\t" ? "\t" : word == "space" ? " " : word;
    if (text.size() != 1 || allowed.find(text) == std::string::npos) return word + " cannot be used here";
    value = text[0];
    return {};
  };
}

taker channel_taker(std::vector<std::string>& channels) {
  return [&channels](const std::string& word) -> std::string {
    if (word.empty() || word.find_first_not_of('0') == std::string::npos) return "channels count from 1";
    channels.push_back(word);
    return {};
  };
}

taker gap_taker(gap_rule& rule) {
  return [&rule](const std::string& word) -> std::string {
    constexpr const char* names[] = {"refuse", "split", "linear"};
    const auto found = std::ranges::find(names, word);
    if (found == std::end(names)) return word + " is none of refuse, split, linear";
    rule = static_cast<gap_rule>(found - names);
    return {};
  };
}

}  // namespace

void add_input_options(options& o, input_options& input) {
  o.add("-c,--channel", "N|NAME|all", "Channel, by number or name; may be given again",
        channel_taker(input.channels));
  o.number("-r,--rate", "RATE", "Samples per unit of time, k M G; no time column then", input.rate, 1e-9,
           1e15);
  o.text("-t,--time", "COL|none", "Column of the times, by number or name", input.time_column);
  o.rare();
  o.choice("--time-unit", "Unit of the times", input.time_unit,
           {"s", "ms", "us", "ns", "min", "h", "d", "yr"});
  o.add("--delimiter", "CHAR", "Parts the columns: , ; tab space",
        character_taker(input.delimiter, ",;\t |:"));
  o.add("--decimal", "CHAR", "Decimal sign, . or ,", character_taker(input.decimal, ".,"));
  o.add("--gaps", "refuse|split|linear", "Where samples are missing", gap_taker(input.gaps), "refuse");
  o.flag("--resample", "Uneven times: straight lines at their mean rate", input.resample);
  o.text("--raw", "FORM", "Samples without a header: s16le f32le cu8 ...", input.raw);
  o.number("--start", "TIME", "Begin so far behind the first sample", input.start, 0, longest_time);
  o.number("--duration", "TIME", "Read no longer than this", input.duration, shortest_time, longest_time);
  o.flag("--each", "Every record of a vector file by itself", input.each);
}

}  // namespace tool
