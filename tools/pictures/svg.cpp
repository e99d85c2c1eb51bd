// SPDX-License-Identifier: MIT
// Spectra as a picture: curves with their axes, the strongest lines numbered, and a list of them beside.
#include "pictures/svg.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "output/number.h"
#include "output/summary.h"
#include "output/utf8.h"
#include "pictures/marks.h"
#include "pictures/scale.h"

namespace tool {
namespace {

constexpr int width = 1080;
constexpr int height = 580;
constexpr box frame{80, 104, 806, 512};
constexpr double list_left = 836;  // numbers, frequencies and values of the list
constexpr double frequency_right = 946;
constexpr double value_right = 1056;
constexpr double row_height = 21;
constexpr double character = 7.2;  // widest of text of 12 px on the average
constexpr std::size_t most_listed = 16;
constexpr std::size_t longest_title = 68;
constexpr std::size_t longest_about = 132;
constexpr std::size_t longest_note = 28;
constexpr std::size_t longest_heading = 24;

// Colours of the light theme and the dark one.
struct palette {
  const char* paper;
  const char* strong;
  const char* soft;
  const char* grid;
  const char* minor;
  const char* frame;
  const char* mark;
  const char* curves[4];
};

constexpr palette light{"#ffffff", "#0f172a", "#475569", "#e2e8f0",
                        "#f1f5f9", "#94a3b8", "#b91c1c", {"#1d4ed8", "#d97706", "#059669", "#9333ea"}};
constexpr palette dark{"#0f172a", "#f1f5f9", "#a8b5c7", "#26344a",
                       "#1a2639", "#64748b", "#f87171", {"#60a5fa", "#fbbf24", "#34d399", "#c084fc"}};

template <class... Parts> std::string joined(const Parts&... parts) {
  std::string out;
  (out.append(parts), ...);
  return out;
}

std::string at(double x) { return fixed_text(x, 1); }

std::string xml_text(std::string_view text) {
  return utf8_text(text, [](char c) -> std::string_view {
    return c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : c == '"' ? "&quot;" : "";
  });
}

std::string text_at(double x, double y, std::string_view kind, std::string_view text) {
  return joined("<text class=\"", kind, "\" x=\"", at(x), "\" y=\"", at(y), "\">", xml_text(text),
                "</text>\n");
}

std::string line_between(std::string_view kind, double x1, double y1, double x2, double y2) {
  return joined("<line class=\"", kind, "\" x1=\"", at(x1), "\" y1=\"", at(y1), "\" x2=\"", at(x2),
                "\" y2=\"", at(y2), "\"/>\n");
}

// At most so many characters; what is cut away is its middle.
std::string shortened(const std::string& text, std::size_t most) {
  if (text.size() <= most) return text;
  const std::size_t kept = most - 3;
  std::size_t front = kept - kept / 2;
  std::size_t back = text.size() - kept / 2;
  const auto is_inside = [&text](std::size_t i) {
    return (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
  };
  while (front > 0 && is_inside(front)) --front;
  while (back < text.size() && is_inside(back)) ++back;
  return text.substr(0, front) + "..." + text.substr(back);
}

// Where frequencies and levels lie in the picture.
struct plane {
  frequency_axis frequencies;
  level_axis levels;

  static double x_of(double part) { return frame.left + (frame.right - frame.left) * part; }
  double x(double frequency) const { return x_of(frequencies.part(frequency)); }
  double y(double level) const {
    return frame.bottom - (frame.bottom - frame.top) * std::clamp(levels.part(level), 0.0, 1.0);
  }
};

std::string style_of(const palette& c) {
  std::string out = joined(
      "text{font-family:\"DejaVu Sans\",\"Helvetica Neue\",Arial,sans-serif;font-size:12px;fill:", c.soft,
      "}\n", ".title{font-size:19px;font-weight:bold;fill:", c.strong, "}\n.axis{font-size:13px}\n",
      ".number{font-size:11px;font-weight:bold;fill:", c.mark, ";text-anchor:middle}\n",
      ".value{fill:", c.strong, ";text-anchor:end}\n.head{font-weight:bold;text-anchor:end}\n",
      ".middle{text-anchor:middle}\n.end{text-anchor:end}\n.grid{stroke:", c.grid,
      "}\n.minor{stroke:", c.minor, "}\n.frame{stroke:", c.frame, ";fill:none}\n.tick{stroke:", c.frame,
      "}\n", ".mark{fill:", c.paper, ";stroke:", c.mark, ";stroke-width:1.6}\n", ".floor{stroke:", c.soft,
      ";stroke-width:1.2;stroke-dasharray:6 4}\n",
      ".curve{fill:none;stroke-width:1.3;stroke-linejoin:round}\n.area{stroke:none;fill-opacity:0.13}\n");
  for (std::size_t i = 0; i < std::size(c.curves); ++i) {
    const std::string kind = ".c" + std::to_string(i);
    out += joined(kind, "{stroke:", c.curves[i], "}\n.area", kind, "{fill:", c.curves[i], "}\n");
  }
  return out;
}

std::string frequency_ticks(const plane& p) {
  std::string out;
  const auto room = [](const std::string& text) {
    return (static_cast<double>(text.size()) + 1.5) * character / (frame.right - frame.left);
  };
  for (const tick& t : p.frequencies.ticks(9, room)) {
    const double x = plane::x_of(t.part);
    out += line_between(t.text.empty() ? "minor" : "grid", x, frame.top, x, frame.bottom);
    if (t.text.empty()) continue;
    out += line_between("tick", x, frame.bottom, x, frame.bottom + 5);
    out += text_at(x, frame.bottom + 20, "middle", t.text);
  }
  return out;
}

std::string level_ticks(const plane& p) {
  std::string out;
  for (const tick& t : p.levels.ticks()) {
    const double y = frame.bottom - (frame.bottom - frame.top) * t.part;
    out += line_between("grid", frame.left, y, frame.right, y);
    out += line_between("tick", frame.left - 5, y, frame.left, y);
    out += text_at(frame.left - 9, y + 4, "end", t.text);
  }
  return out;
}

std::string axis_titles(const picture& p, const plane& on) {
  const double middle = (frame.top + frame.bottom) / 2;
  return text_at((frame.left + frame.right) / 2, frame.bottom + 44, "axis middle",
                 joined("Frequency in ", on.frequencies.title())) +
         joined("<text class=\"axis middle\" transform=\"translate(24 ", at(middle),
                ") rotate(-90)\">Level in ", xml_text(p.curves.front().told.level_unit()), "</text>\n");
}

// The curve in one piece for every run of columns that has levels.
std::string drawn(const plane& p, const std::vector<double>& levels, std::size_t number) {
  const double step = (frame.right - frame.left) / static_cast<double>(levels.size() - 1);
  const std::string colour = " c" + std::to_string(number);
  std::string out;
  for (std::size_t i = 0; i < levels.size();) {
    if (std::isnan(levels[i])) {
      ++i;
      continue;
    }
    const double left = frame.left + step * static_cast<double>(i);
    std::string points = joined("M", at(left), " ", at(p.y(levels[i])));
    std::size_t end = i + 1;
    for (; end < levels.size() && !std::isnan(levels[end]); ++end)
      points += joined("L", at(frame.left + step * static_cast<double>(end)), " ", at(p.y(levels[end])));
    const std::string right = at(frame.left + step * static_cast<double>(end - 1));
    const std::string base =
        joined("L", right, " ", at(frame.bottom), "L", at(left), " ", at(frame.bottom), "Z");
    if (number == 0) out += joined("<path class=\"area", colour, "\" d=\"", points, base, "\"/>\n");
    out += joined("<path class=\"curve", colour, "\" d=\"", points, "\"/>\n");
    i = end;
  }
  return out;
}

std::string floor_line(const plane& p, const curve& c) {
  const double level = c.told.level(c.floor);
  if (!(c.floor > 0) || level < p.levels.low || level > p.levels.high) return {};
  const double from = std::max(p.x(c.s.first()), frame.left);
  return line_between("floor", from, p.y(level), std::min(p.x(c.s.last()), frame.right), p.y(level));
}

// The peaks of the listed lines, with their numbers.
std::string marks(const plane& p, const curve& c, std::size_t count) {
  std::vector<place> peaks;
  std::string out;
  for (std::size_t i = 0; i < count; ++i) {
    const line& l = c.lines[i];
    peaks.push_back({std::clamp(p.x(l.frequency), frame.left, frame.right), p.y(c.told.level(l.power))});
    out += joined("<circle class=\"mark\" cx=\"", at(peaks.back().x), "\" cy=\"", at(peaks.back().y),
                  "\" r=\"3\"/>\n");
  }
  const auto places = number_places(peaks, frame);
  for (std::size_t i = 0; i < count; ++i) {
    if (places[i]) out += text_at(places[i]->x, places[i]->y, "number", std::to_string(i + 1));
  }
  return out;
}

std::string value_text(const curve& c, double power) {
  return c.told.as_level() ? fixed_text(c.told.level(power), 2) : padded_text(c.told.value(power), 5);
}

// A unit that has no room beside that of the frequencies stands above it.
std::string list_heading(const plane& p, const curve& c, double& y) {
  constexpr std::size_t narrow = 11;
  const std::string& title = p.frequencies.title();
  const std::string unit = c.told.shown_unit().empty() ? quantity_name(c.told.what()) : c.told.shown_unit();
  std::string out = text_at(value_right, y, "head", shortened(unit, longest_heading));
  if (unit.size() > narrow) y += row_height;
  return out + text_at(frequency_right, y, "head", title == "cycles per sample" ? "cycles/sample" : title);
}

std::string list(const plane& p, const curve& c, std::size_t count) {
  double y = frame.top + 10;
  if (count == 0) return text_at(list_left - 6, y, "", "no line above the noise");
  std::string out = list_heading(p, c, y);
  for (std::size_t i = 0; i < count; ++i) {
    y += row_height;
    out += text_at(list_left, y, "number", std::to_string(i + 1));
    out += text_at(frequency_right, y, "value", p.frequencies.text(c.s, c.lines[i].frequency));
    out += text_at(value_right, y, "value", value_text(c, c.lines[i].power));
  }
  return out;
}

// What tells a curve from the others: its file, its channel where the file has others, or both.
std::string name_in(const picture& p, std::size_t i) {
  const spectrum& s = p.curves[i].s;
  const auto of_file = [&s](const curve& c) { return c.s.name == s.name; };
  if (std::ranges::all_of(p.curves, of_file)) return s.channel;
  const bool shared = std::ranges::count_if(p.curves, of_file) > 1;
  return file_name(s.name) + (shared ? ' ' + s.channel : "");
}

// At the foot of the list: which curve is which, and the noise.
std::string legend(const picture& p) {
  double y = frame.bottom - 2;
  std::string out;
  if (const curve& c = p.curves.front(); c.floor > 0) {
    out += text_at(list_left + 26, y, "", shortened(floor_text(c.told, c.floor), longest_note));
    y -= 17;
    out += line_between("floor", list_left - 6, y - 4, list_left + 18, y - 4);
    out += text_at(list_left + 26, y, "", "noise floor");
    y -= row_height;
  }
  for (std::size_t i = p.curves.size(); p.curves.size() > 1 && i-- > 0; y -= row_height) {
    out += line_between("curve c" + std::to_string(i % 4), list_left - 6, y - 4, list_left + 18, y - 4);
    out += text_at(list_left + 26, y, "", shortened(name_in(p, i), longest_note - 6));
  }
  return out;
}

std::size_t listed(const picture& p) {
  const std::size_t legends = p.curves.size() > 1 ? p.curves.size() : 0;
  return std::min(p.curves.front().lines.size(), most_listed - std::min(most_listed, legends));
}

std::string head(const picture& p) {
  const spectrum& s = p.curves.front().s;
  const std::string title = p.title.empty() ? file_name(s.name) : p.title;
  const std::string size =
      joined("width=\"", std::to_string(width), "\" height=\"", std::to_string(height), "\" viewBox=\"0 0 ",
             std::to_string(width), " ", std::to_string(height), "\"");
  const palette& colours = p.dark ? dark : light;
  return joined("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" ",
                size, ">\n<title>Spectrum of ", xml_text(title), "</title>\n<style>\n", style_of(colours),
                "</style>\n<rect width=\"100%\" height=\"100%\" fill=\"", colours.paper, "\"/>\n") +
         text_at(frame.left, 38, "title", shortened(title, longest_title)) +
         text_at(frame.left, 62, "about", shortened(source_text(s), longest_about)) +
         text_at(frame.left, 81, "about", shortened(analysis_text(s), longest_about));
}

}  // namespace

std::string svg_of(const picture& p) {
  const frequency_axis axis(p);
  std::vector<std::vector<double>> outlines;
  for (const curve& c : p.curves) {
    outlines.push_back(has_signal(c) ? outline_of(c, axis, static_cast<std::size_t>(frame.right - frame.left))
                                     : std::vector<double>(2, std::nan("")));
  }
  const plane on{axis, level_axis_of(outlines, 8)};
  const curve& first = p.curves.front();
  const std::size_t count = listed(p);
  std::string out = head(p) + frequency_ticks(on) + level_ticks(on) + axis_titles(p, on);
  for (std::size_t i = 0; i < outlines.size(); ++i) out += drawn(on, outlines[i], i % 4);
  out += floor_line(on, first);
  out += joined("<rect class=\"frame\" x=\"", at(frame.left), "\" y=\"", at(frame.top), "\" width=\"",
                at(frame.right - frame.left), "\" height=\"", at(frame.bottom - frame.top), "\"/>\n");
  if (!has_signal(first) && p.curves.size() == 1)
    return out +
           text_at((frame.left + frame.right) / 2, (frame.top + frame.bottom) / 2, "axis middle",
                   "no signal") +
           "</svg>\n";
  return out + marks(on, first, count) + list(on, first, count) + legend(p) + "</svg>\n";
}

}  // namespace tool
