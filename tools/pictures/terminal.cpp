// What a terminal is shown beside the report: a plot, and how far the work is.
#include "pictures/terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "pictures/scale.h"

namespace tool {
namespace {

constexpr int rows = 12;
constexpr int margin = 7;  // columns of the level axis
constexpr int narrowest = 30;
constexpr int widest = 110;

// A character shows dots in 2 columns and 4 rows.
constexpr int dots_across = 2;
constexpr int dots_down = 4;

bool shows_utf8() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value == nullptr || *value == '\0') continue;
    std::string locale(value);
    std::ranges::transform(locale, locale.begin(), [](unsigned char c) { return std::tolower(c); });
    return locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
  }
  return false;
}

int terminal_width(std::FILE* f) {
  winsize size{};
  const bool known = ioctl(fileno(f), TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return std::clamp(known ? size.ws_col - 1 : 79, narrowest, widest) - margin;
}

// U+2800 and a bit for each dot: down the left column 0, 1, 2, 6, down the right one 3, 4, 5, 7.
std::string braille(unsigned dots) {
  const unsigned code = 0x2800 + dots;
  return {static_cast<char>(0xE0 | code >> 12), static_cast<char>(0x80 | (code >> 6 & 0x3F)),
          static_cast<char>(0x80 | (code & 0x3F))};
}

// The character at a row and column of a curve filled down to the axis; heights are in dots from below.
std::string cell(const std::vector<int>& heights, int column, int row, bool utf8) {
  constexpr unsigned bits[dots_across][dots_down] = {{0x01, 0x02, 0x04, 0x40}, {0x08, 0x10, 0x20, 0x80}};
  const int above = (rows - row) * dots_down;  // dots below the upper edge of the row
  unsigned dots = 0;
  for (int x = 0; x < dots_across; ++x) {
    for (int y = 0; y < dots_down; ++y) {
      if (heights[static_cast<std::size_t>(column * dots_across + x)] > above - 1 - y) dots |= bits[x][y];
    }
  }
  if (utf8) return braille(dots);
  return dots == 0 ? " " : dots == 0xFF ? "#" : ".";
}

// The labels that fit, each clear of the one before.
std::string labels_below(const frequency_axis& axis, int width) {
  std::string text(static_cast<std::size_t>(margin + width), ' ');
  int free = 0;
  for (const auto& label : axis.labels(width / 14)) {
    const int size = static_cast<int>(label.text.size());
    const int centre = static_cast<int>(std::lround(label.part * (width - 1))) + margin;
    const int start = std::clamp(centre - size / 2, 0, margin + width - size);
    if (start < free) continue;
    text.replace(static_cast<std::size_t>(start), label.text.size(), label.text);
    free = start + size + 2;
  }
  return text;
}

// The levels beside the rows that hold them.
std::vector<std::string> labels_beside(const outline& shape) {
  std::vector<std::string> labels(rows);
  const auto values = ticks(shape.low, shape.high, rows / 3);
  for (const double level : values) {
    const double row = (shape.high - level) / (shape.high - shape.low) * rows;
    if (row < rows) labels[static_cast<std::size_t>(row)] = tick_text(level, 1);
  }
  return labels;
}

}  // namespace

bool is_terminal(std::FILE* f) { return isatty(fileno(f)) == 1; }

void print_plot(std::FILE* out, const spectrum& s, const frequency_axis& axis) {
  const bool utf8 = shows_utf8();
  const int width = terminal_width(out);
  const outline shape = outline_of(s, axis, static_cast<std::size_t>(width * dots_across));
  std::vector<int> heights;
  for (const double level : shape.levels) {
    const double part = (level - shape.low) / (shape.high - shape.low);
    heights.push_back(static_cast<int>(std::lround(part * rows * dots_down)));
  }
  const auto levels = labels_beside(shape);
  for (int row = 0; row < rows; ++row) {
    std::string text;
    for (int column = 0; column < width; ++column) text += cell(heights, column, row, utf8);
    std::fprintf(out, "%*s %s\n", margin - 1, levels[static_cast<std::size_t>(row)].c_str(), text.c_str());
  }
  std::fprintf(out, "%s\n%*s%s in %s\n", labels_below(axis, width).c_str(), margin, "", level_unit(s),
               axis.unit_name());
}

progress_line::progress_line(const std::string& name) : name_(name), wanted_(is_terminal(stderr)) {}

progress_line::~progress_line() {
  if (shown_ >= 0) std::fprintf(stderr, "\r\033[K");
}

void progress_line::show(double fraction) {
  const int percent = static_cast<int>(100 * fraction);
  if (!wanted_ || percent == shown_) return;
  shown_ = percent;
  std::fprintf(stderr, "\r%s: %d %%", name_.c_str(), percent);
  std::fflush(stderr);
}

}  // namespace tool
