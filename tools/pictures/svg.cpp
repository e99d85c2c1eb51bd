// The spectrum as a picture: the curve with its axes, its strongest lines numbered, and a list of them.
#include "pictures/svg.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "pictures/scale.h"

namespace tool {
namespace {

constexpr int width = 1080;
constexpr int height = 560;
constexpr double left = 76;
constexpr double right = 806;
constexpr double top = 84;
constexpr double bottom = 492;
constexpr double list_left = 842;  // numbers, frequencies and levels of the list
constexpr double frequency_right = 960;
constexpr double level_right = 1056;
constexpr std::size_t most_listed = 16;
constexpr double row_height = 23;

constexpr std::string_view style = R"(
  text { font-family: "DejaVu Sans", "Helvetica Neue", Arial, sans-serif; font-size: 12px; fill: #475569; }
  .title { font-size: 19px; font-weight: bold; fill: #0f172a; }
  .axis { font-size: 13px; fill: #334155; }
  .number { font-size: 11px; font-weight: bold; fill: #b91c1c; text-anchor: middle; }
  .value { fill: #0f172a; text-anchor: end; }
  .head { font-weight: bold; text-anchor: end; }
  .middle { text-anchor: middle; }
  .end { text-anchor: end; }
  .grid { stroke: #e2e8f0; stroke-width: 1; }
  .frame { stroke: #94a3b8; stroke-width: 1; fill: none; }
  .area { fill: #2563eb; fill-opacity: 0.13; }
  .curve { fill: none; stroke: #1d4ed8; stroke-width: 1.3; stroke-linejoin: round; }
  .mark { fill: #ffffff; stroke: #b91c1c; stroke-width: 1.6; }
)";

template <class... Parts> std::string joined(const Parts&... parts) {
  std::string out;
  (out.append(parts), ...);
  return out;
}

std::string coordinate(double x) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", x);
  return text;
}

std::string text_at(double x, double y, std::string_view kind, std::string_view text) {
  return joined("<text class=\"", kind, "\" x=\"", coordinate(x), "\" y=\"", coordinate(y), "\">",
                xml_text(text), "</text>\n");
}

std::string line_between(double x1, double y1, double x2, double y2) {
  return joined("<line class=\"grid\" x1=\"", coordinate(x1), "\" y1=\"", coordinate(y1), "\" x2=\"",
                coordinate(x2), "\" y2=\"", coordinate(y2), "\"/>\n");
}

std::string shortened(const std::string& text, std::size_t most) {
  return text.size() <= most ? text : joined("...", text.substr(text.size() - most + 3));
}

// Where frequencies and levels lie in the picture.
struct plane {
  frequency_axis axis;
  double low_level;
  double high_level;

  double x(double frequency) const { return left + (right - left) * axis.part(frequency); }
  double y(double level) const {
    const double part = (level - low_level) / (high_level - low_level);
    return bottom - (bottom - top) * std::clamp(part, 0.0, 1.0);
  }
};

std::string axes(const spectrum& s, const plane& p) {
  std::string out;
  const auto levels = ticks(p.low_level, p.high_level, 7);
  const double level_step = levels.size() > 1 ? levels[1] - levels[0] : 1;
  for (const double level : levels) {
    out += line_between(left, p.y(level), right, p.y(level));
    out += text_at(left - 9, p.y(level) + 4, "end", tick_text(level, level_step));
  }
  for (const auto& label : p.axis.labels(9)) {
    const double x = left + (right - left) * label.part;
    out += line_between(x, top, x, bottom);
    out += text_at(x, bottom + 20, "middle", label.text);
  }
  out += text_at((left + right) / 2, bottom + 44, "axis middle", joined("Frequency in ", p.axis.unit_name()));
  return out + joined("<text class=\"axis middle\" transform=\"translate(24 ", coordinate((top + bottom) / 2),
                      ") rotate(-90)\">Level in ", level_unit(s), "</text>\n");
}

std::string curve(const plane& p, const std::vector<double>& levels) {
  std::string points;
  const double step = (right - left) / static_cast<double>(levels.size() - 1);
  for (std::size_t i = 0; i < levels.size(); ++i) {
    const double x = left + step * static_cast<double>(i);
    points += joined(i == 0 ? "M" : "L", coordinate(x), " ", coordinate(p.y(levels[i])));
  }
  const std::string base = joined("L", coordinate(right), " ", coordinate(bottom), "L", coordinate(left), " ",
                                  coordinate(bottom), "Z");
  return joined("<path class=\"area\" d=\"", points, base, "\"/>\n<path class=\"curve\" d=\"", points,
                "\"/>\n");
}

struct place {
  double x;
  double y;
};

// Whether a number at one place is clear of the numbers and the circles of the peaks.
bool is_free(place p, const std::vector<place>& numbers, const std::vector<place>& peaks) {
  constexpr double digits = 14;  // width and height of a number of two digits, and the size of a circle
  constexpr double ascent = 10;
  constexpr double circle = 4;
  if (p.y < top + ascent) return false;
  const auto meets_number = [&](place o) {
    return std::abs(o.x - p.x) < digits && std::abs(o.y - p.y) < ascent + 2;
  };
  const auto meets_circle = [&](place o) {
    return std::abs(o.x - p.x) < digits / 2 + circle && o.y > p.y - ascent - circle && o.y < p.y + circle;
  };
  return std::ranges::none_of(numbers, meets_number) && std::ranges::none_of(peaks, meets_circle);
}

// A place near a peak for its number: the first that is free, above it if possible.
place number_place(place peak, const std::vector<place>& numbers, const std::vector<place>& peaks) {
  for (double up = 7; up < 120; up += 3) {
    for (const double aside : {0.0, -8.0, 8.0, -15.0, 15.0, -22.0, 22.0}) {
      const place p{peak.x + aside, peak.y - up + std::abs(aside) / 2};
      if (is_free(p, numbers, peaks)) return p;
    }
  }
  return {peak.x, peak.y - 7};
}

// The peaks of the listed lines, with their numbers.
std::string marks(const plane& p, const std::vector<line>& lines) {
  std::vector<place> peaks;
  std::string circles;
  for (const line& l : lines) {
    peaks.push_back({p.x(l.frequency), p.y(decibels(l.amplitude))});
    circles += joined("<circle class=\"mark\" cx=\"", coordinate(peaks.back().x), "\" cy=\"",
                      coordinate(peaks.back().y), "\" r=\"3\"/>\n");
  }
  std::vector<place> taken;
  std::string numbers;
  for (const place& peak : peaks) {
    taken.push_back(number_place(peak, taken, peaks));
    numbers += text_at(taken.back().x, taken.back().y, "number", std::to_string(taken.size()));
  }
  return circles + numbers;
}

std::string list(const spectrum& s, const std::vector<line>& lines) {
  std::string out = text_at(frequency_right, top + 4, "head", "Frequency");
  out += text_at(level_right, top + 4, "head", level_unit(s));
  double y = top + 4;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    y += row_height;
    out += text_at(list_left, y, "number", std::to_string(i + 1));
    out += text_at(frequency_right, y, "value", frequency_text(s, lines[i].frequency));
    out += text_at(level_right, y, "value", level_text(lines[i].amplitude));
  }
  return out;
}

// The end of a UTF-8 sequence that begins at `at`, or `at` when there is none that XML allows.
std::size_t sequence_end(std::string_view text, std::size_t at) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(at);
  if (lead < 0x80) return lead >= 0x20 && lead != 0x7F ? at + 1 : at;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || at + length > text.size()) return at;
  unsigned code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return at;
    code = code << 6 | (byte(at + i) & 0x3F);
  }
  constexpr unsigned smallest[] = {0x80, 0x800, 0x10000};
  const bool allowed = code >= smallest[length - 2] && code <= 0x10FFFF &&
                       !(code >= 0xD800 && code <= 0xDFFF) && code != 0xFFFE && code != 0xFFFF;
  return allowed ? at + length : at;
}

}  // namespace

std::string xml_text(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = sequence_end(text, at);
    if (end == at) {
      out += "\xEF\xBF\xBD";  // the replacement character
      ++at;
      continue;
    }
    switch (text[at]) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += text.substr(at, end - at);
    }
    at = end;
  }
  return out;
}

std::string svg_of(const subject& about, const std::string& window, const spectrum& s,
                   const std::vector<line>& lines, const frequency_axis& axis) {
  const outline shape = outline_of(s, axis, static_cast<std::size_t>(right - left));
  const plane p{axis, shape.low, shape.high};
  const auto count = static_cast<std::ptrdiff_t>(std::min(lines.size(), most_listed));
  const std::vector<line> shown(lines.begin(), lines.begin() + count);
  const std::string across = std::to_string(width);
  const std::string down = std::to_string(height);
  std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  out += joined("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"", across, "\" height=\"", down,
                "\" viewBox=\"0 0 ", across, " ", down, "\">\n");
  out += joined("<title>Spectrum of ", xml_text(about.name), "</title>\n<style>", style, "</style>\n");
  out += "<rect width=\"100%\" height=\"100%\" fill=\"#ffffff\"/>\n";
  out += text_at(left, 36, "title", shortened(about.name, 70));
  out += text_at(left, 58, "about", joined(about.understood, ", ", summary_of(window, s)));
  out += axes(s, p) + curve(p, shape.levels);
  out += joined("<rect class=\"frame\" x=\"", coordinate(left), "\" y=\"", coordinate(top), "\" width=\"",
                coordinate(right - left), "\" height=\"", coordinate(bottom - top), "\"/>\n");
  return out + marks(p, shown) + list(s, shown) + "</svg>\n";
}

}  // namespace tool
