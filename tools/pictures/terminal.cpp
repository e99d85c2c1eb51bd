// SPDX-License-Identifier: MIT
// Spectra as a picture of characters: braille where the terminal shows it.
#include "pictures/terminal.h"

#include <algorithm>
#include <cmath>

#include "pictures/scale.h"

namespace tool {
namespace {

constexpr int margin = 7;      // columns of the level axis, its tick included
constexpr int rows_below = 3;  // the axis, its labels, and what they are in
constexpr int fewest_rows = 4;
constexpr int fewest_columns = 16;

// A character shows dots in 2 columns and 4 rows.
constexpr int dots_across = 2;
constexpr int dots_down = 4;

constexpr const char* plain = "\033[0m";
constexpr const char* peak_color = "\033[1;31m";
constexpr const char* curve_colors[] = {"\033[34m", "\033[33m", "\033[32m", "\033[35m"};

struct strokes {
  const char* side;
  const char* side_tick;
  const char* corner;
  const char* base;
  const char* base_tick;
  const char* filled;
  const char* line;
};
constexpr strokes drawn{"\u2502", "\u2524", "\u2514", "\u2500", "\u252C", "\u2588", "\u2500"};
constexpr strokes typed{"|", "+", "+", "-", "+", "#", "*"};

// U+2800 and a bit for each dot: down the left column 0, 1, 2, 6, down the right one 3, 4, 5, 7.
std::string braille(unsigned dots) {
  const unsigned code = 0x2800 + dots;
  return {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
          static_cast<char>(0x80 | (code & 0x3F))};
}

// Heights of a curve in dots, -1 where it has none.
using heights = std::vector<int>;

class plot {
 public:
  plot(const picture& p, const canvas& on)
      : p_(p),
        on_(on),
        columns_(std::max(on.columns - margin, fewest_columns)),
        axis_(p),
        lines_(on.utf8 ? drawn : typed) {
    rows_ = std::max(on.rows - rows_below - (p.curves.size() > 1 ? 1 : 0), fewest_rows);
    std::vector<std::vector<double>> outlines;
    for (const curve& c : p.curves)
      outlines.push_back(outline_of(c, axis_, static_cast<std::size_t>(columns_ * dots_across)));
    levels_ = level_axis_of(outlines, std::max(rows_ / 2, 2));
    for (const auto& outline : outlines) curves_.push_back(heights_of(outline));
    for (const line& l : p.curves.front().lines) {
      const double part = axis_.part(l.frequency);
      if (part >= 0 && part <= 1) peaks_.push_back(std::min(static_cast<int>(part * columns_), columns_ - 1));
    }
  }

  std::string text() const {
    std::string out;
    const auto labels = labels_beside();
    for (int row = 0; row < rows_; ++row) {
      const std::string& label = labels[static_cast<std::size_t>(row)];
      out += std::string(static_cast<std::size_t>(margin - 2) - label.size(), ' ') + label + ' ';
      out += label.empty() ? lines_.side : lines_.side_tick;
      out += curve_row(row) + '\n';
    }
    return out + below();
  }

 private:
  heights heights_of(const std::vector<double>& outline) const {
    heights out;
    for (const double level : outline) {
      const double part = std::clamp(levels_.part(level), 0.0, 1.0);
      out.push_back(std::isnan(level) ? -1 : static_cast<int>(std::lround(part * rows_ * dots_down)));
    }
    return out;
  }

  // The first curve is filled down to the axis, others are lines, which reach as far as where they come from.
  std::pair<int, int> dots_at(std::size_t curve, std::size_t place) const {
    const heights& all = curves_[curve];
    const int height = all[place];
    if (curve == 0 || height < 0) return {0, height};
    const int before = place > 0 && all[place - 1] >= 0 ? all[place - 1] : height;
    return {std::min(before, height - 1), std::max(height, before - 1)};
  }

  // The dots of a curve in a character.
  unsigned dots(std::size_t curve, int column, int row) const {
    constexpr unsigned bits[dots_across][dots_down] = {{0x01, 0x02, 0x04, 0x40}, {0x08, 0x10, 0x20, 0x80}};
    const int above = (rows_ - row) * dots_down;  // dots below the upper edge of the row
    unsigned out = 0;
    for (int x = 0; x < dots_across; ++x) {
      const auto [low, high] = dots_at(curve, static_cast<std::size_t>(column * dots_across + x));
      for (int y = 0; y < dots_down; ++y) {
        const int place = above - 1 - y;
        if (low <= place && place < high) out |= bits[x][y];
      }
    }
    return out;
  }

  std::string curve_row(int row) const {
    std::string out;
    std::string now;
    for (int column = 0; column < columns_; ++column) {
      unsigned all = 0;
      std::size_t top = 0;
      for (std::size_t c = 0; c < curves_.size(); ++c) {
        const unsigned own = dots(c, column, row);
        if (own == 0) continue;
        top = c;
        all = on_.color || !on_.utf8 ? own : all ^ own;  // a line without a colour leaves the filled ground
      }
      const bool peak = top == 0 && std::ranges::find(peaks_, column) != peaks_.end();
      const std::string color = !on_.color || all == 0 ? "" : peak ? peak_color : curve_colors[top % 4];
      if (color != now) out += now.empty() ? color : plain + color;
      now = color;
      out += character(all, top);
    }
    return now.empty() ? out : out + plain;
  }

  std::string character(unsigned dots, std::size_t curve) const {
    if (dots == 0) return " ";
    if (on_.utf8) return braille(dots);
    return curve > 0 ? "*" : dots == 0xFF ? "#" : ".";
  }

  // The levels beside the rows that hold them.
  std::vector<std::string> labels_beside() const {
    std::vector<std::string> labels(static_cast<std::size_t>(rows_));
    for (const tick& t : levels_.ticks()) {
      const auto row =
          static_cast<std::size_t>(std::clamp(std::lround((1 - t.part) * rows_), 0L, long{rows_} - 1));
      if (labels[row].empty() && t.text.size() < margin - 1) labels[row] = t.text;
    }
    return labels;
  }

  // The axis with its ticks, and the labels with what they are in.
  std::string below() const {
    const std::string title = p_.curves.front().told.level_unit() + " over " + axis_.title();
    std::vector<const char*> axis(static_cast<std::size_t>(columns_), lines_.base);
    std::string labels(static_cast<std::size_t>(columns_ + margin), ' ');
    const auto room = [&](const std::string& text) {
      return static_cast<double>(text.size() + 2) / columns_;
    };
    for (const tick& t : axis_.ticks(columns_ / 14, room)) {
      if (t.text.empty()) continue;
      const auto column = std::min(static_cast<int>(t.part * columns_), columns_ - 1);
      axis[static_cast<std::size_t>(column)] = lines_.base_tick;
      const int size = static_cast<int>(t.text.size());
      const int start = std::clamp(column + margin - size / 2, 0, columns_ + margin - size);
      labels.replace(static_cast<std::size_t>(start), t.text.size(), t.text);
    }
    std::string out(margin - 1, ' ');
    out += lines_.corner;
    for (const char* const c : axis) out += c;
    return out + '\n' + labels + '\n' + std::string(margin, ' ') + title + '\n' + legend();
  }

  // Which curve is which, where there are several.
  std::string legend() const {
    if (p_.curves.size() < 2) return "";
    constexpr std::size_t longest_name = 24;
    constexpr std::size_t besides = 4;
    std::string out(margin - 2, ' ');
    std::size_t used = 0;
    for (std::size_t c = 0; c < p_.curves.size(); ++c) {
      const std::string name = shortened(p_.curves[c].name, longest_name);
      used += name.size() + besides;
      if (used > static_cast<std::size_t>(columns_)) break;
      const std::string mark = c == 0 ? lines_.filled : lines_.line;
      out += "  " + (on_.color ? curve_colors[c % 4] + mark + plain : mark) + ' ' + name;
    }
    return out + '\n';
  }

  const picture& p_;
  const canvas& on_;
  int columns_;
  int rows_ = 0;
  frequency_axis axis_;
  strokes lines_;
  level_axis levels_{};
  std::vector<heights> curves_;
  std::vector<int> peaks_;
};

}  // namespace

std::string plot_of(const picture& p, const canvas& on) { return plot(p, on).text(); }

}  // namespace tool
