// SPDX-License-Identifier: MIT
// What was analysed and how, in words.
#include "output/summary.h"

#include "output/number.h"

namespace tool {
namespace {

std::string with_unit(double x, int digits, const std::string& unit) {
  return number_text(x, digits) + (unit.empty() ? "" : ' ' + unit);
}

}  // namespace

std::string source_text(const spectrum& s) {
  std::string text = s.understood.empty() ? s.kind : s.understood;
  if (!text.empty()) text += ", ";
  text += std::to_string(s.samples) + " samples";
  if (s.time_unit.empty()) return text;
  if (!s.understood.ends_with("Hz"))  // a table has told its rate
    text += s.time_unit == "s" ? " at " + number_text(s.rate, 9) + " Hz"
                               : " at " + number_text(s.rate, 9) + " per " + s.time_unit;
  return text + " (" + with_unit(static_cast<double>(s.samples) / s.rate, 4, s.time_unit) + ')';
}

std::string analysis_text(const spectrum& s) {
  std::string text = "window " + s.window_name() + ", ";
  text += s.segments == 1 ? "one segment of " : std::to_string(s.segments) + " segments of ";
  text += std::to_string(s.segment) + " samples";
  if (s.segments > 1) text += ", overlap " + std::to_string(s.overlap);
  if (s.unused > 0) text += ", " + std::to_string(s.unused) + " not used";
  if (s.average != averaging::mean) text += std::string(", average ") + averaging_name(s.average);
  return text + ", resolution " + with_unit(s.resolution(), 4, frequency_unit(s)) + ", ENBW " +
         with_unit(s.enbw(), 4, frequency_unit(s));
}

std::string floor_text(const measure& told, double floor) {
  const measure density = told.density();
  if (!(floor > 0)) return "none";
  return told.as_level() ? fixed_text(density.level(floor), 2) + ' ' + density.level_unit()
                         : with_unit(density.value(floor), 4, density.unit());
}

}  // namespace tool
