// SPDX-License-Identifier: MIT
// Names, units and roles of columns, as their headings tell them.
#include "input/headings.h"

#include <algorithm>

#include "input/cells.h"
#include "input/times.h"

namespace tool {
namespace {

constexpr std::string_view units[] = {"V",
                                      "mV",
                                      "uV",
                                      "\xC2\xB5V",
                                      "nV",
                                      "kV",
                                      "Volt",
                                      "Volts",
                                      "A",
                                      "mA",
                                      "uA",
                                      "\xC2\xB5"
                                      "A",
                                      "nA",
                                      "W",
                                      "mW",
                                      "kW",
                                      "Pa",
                                      "hPa",
                                      "kPa",
                                      "MPa",
                                      "bar",
                                      "mbar",
                                      "psi",
                                      "g",
                                      "m",
                                      "mm",
                                      "um",
                                      "nm",
                                      "m/s",
                                      "m/s2",
                                      "m/s^2",
                                      "m/s\xC2\xB2",
                                      "mm/s",
                                      "rad",
                                      "rad/s",
                                      "deg",
                                      "deg/s",
                                      "dps",
                                      "N",
                                      "kN",
                                      "Nm",
                                      "K",
                                      "degC",
                                      "\xC2\xB0"
                                      "C",
                                      "\xC2\xB0",
                                      "Hz",
                                      "kHz",
                                      "MHz",
                                      "dB",
                                      "dBV",
                                      "T",
                                      "mT",
                                      "uT",
                                      "nT",
                                      "G",
                                      "lux",
                                      "%",
                                      "ppm",
                                      "C",
                                      "Ohm",
                                      "F",
                                      "counts",
                                      "LSB",
                                      "Gal",
                                      "mGal"};

std::string lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  return out;
}

// The part of a heading that is its unit, with what parts it from the name; empty for none.
struct unit_part {
  std::string_view whole;
  std::string_view unit;
};

unit_part bracketed(std::string_view text) {
  for (const std::string_view pair : {"[]", "()", "{}"}) {
    if (!text.ends_with(pair[1])) continue;
    const auto open = text.rfind(pair[0]);
    if (open == std::string_view::npos) continue;
    return {text.substr(open), trimmed(text.substr(open + 1, text.size() - open - 2))};
  }
  return {};
}

// channel_A and axis_g count: their letters are no units.
bool names_channels(std::string_view word) {
  constexpr std::string_view words[] = {"ch",    "chan",  "channel", "kanal", "sensor",
                                        "probe", "phase", "axis",    "input", "port"};
  return std::ranges::find(words, lower(word)) != std::end(words);
}

unit_part find_unit(std::string_view text) {
  if (const unit_part found = bracketed(text); !found.whole.empty()) return found;
  for (const std::string_view mark : {"_", "/", " in ", ","}) {
    const auto at = text.rfind(mark);
    if (at == std::string_view::npos || at == 0) continue;
    const std::string_view word = trimmed(text.substr(at + mark.size()));
    const bool letter = word.size() == 1 && names_channels(text.substr(0, at));
    if (is_unit(word) && !letter) return {text.substr(at), word};
  }
  return {};
}

bool is_utf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80   ? 1
                               : lead < 0xC2 ? 0
                               : lead < 0xE0 ? 2
                               : lead < 0xF0 ? 3
                               : lead < 0xF5 ? 4
                                             : 0;
    if (length == 0 || i + length > text.size()) return false;
    for (std::size_t j = 1; j < length; ++j) {
      if ((static_cast<unsigned char>(text[i + j]) & 0xC0) != 0x80) return false;
    }
    i += length;
  }
  return true;
}

}  // namespace

std::string valid_text(std::string_view text) {
  if (is_utf8(text)) return std::string(text);
  std::string out;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (code < 0x80) {
      out += c;
    } else {
      out += {static_cast<char>(0xC0 | code >> 6), static_cast<char>(0x80 | (code & 0x3F))};
    }
  }
  return out;
}

bool is_unit(std::string_view word) {
  if (const unit_part found = bracketed(word); found.whole.size() == word.size()) return !word.empty();
  return std::ranges::find(units, word) != std::end(units) || seconds_in(word).has_value();
}

channel parse_heading(std::string_view cell) {
  channel c;
  c.name = valid_text(trimmed(cell));
  const unit_part found = find_unit(c.name);
  c.unit = std::string(found.unit);
  return c;
}

std::string bare_name(const channel& c) {
  const std::string_view name = c.name;
  return std::string(trimmed(name.substr(0, name.size() - find_unit(name).whole.size())));
}

bool is_time_heading(const channel& c) {
  const std::string name = lower(bare_name(c));
  constexpr std::string_view words[] = {
      "time",    "times",   "timestamp",   "timestamps", "datetime", "date_time", "date",  "datum",
      "zeit",    "uhrzeit", "zeitstempel", "temps",      "tiempo",   "tempo",     "tid",   "tijd",
      "elapsed", "x-axis",  "epoch",       "utc",        "unixtime", "year",      "years", "jahr",
      "seconds", "second",  "sec",         "millis",     "ms",       "us"};
  if (bare_name(c) == "t" || bare_name(c) == "s") return true;
  return std::ranges::find(words, name) != std::end(words) || name.starts_with("time ") ||
         name.starts_with("elapsed ") || name.starts_with("timestamp");
}

bool is_frequency_heading(const channel& c) {
  return c.unit.ends_with("Hz") || lower(bare_name(c)).starts_with("freq");
}

bool is_index_heading(const channel& c) {
  constexpr std::string_view words[] = {"",         "#",     "index", "idx", "no",     "no.",
                                        "nr",       "nr.",   "n",     "i",   "sample", "samples",
                                        "sequence", "point", "row",   "id",  "frame",  "number"};
  return std::ranges::find(words, lower(bare_name(c))) != std::end(words);
}

}  // namespace tool
