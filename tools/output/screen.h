// SPDX-License-Identifier: MIT
// The terminal at the other end, if there is one.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <string>

#include "input/source.h"

namespace tool {

bool is_terminal(std::FILE* f);

struct screen_size {
  int columns;
  int rows;
};
screen_size size_of(std::FILE* f);  // 80x24 where nobody knows

bool shows_utf8();

enum class color_choice { automatic, always, never };
bool shows_color(std::FILE* f, color_choice choice);  // NO_COLOR is obeyed

// A line on standard error that tells how far the reading is; nothing where that is no terminal.
class progress_line {
 public:
  explicit progress_line(bool quiet);
  ~progress_line() { clear(); }
  progress_line(const progress_line&) = delete;
  progress_line& operator=(const progress_line&) = delete;
  void show(const source& in);
  void clear();

 private:
  using clock = std::chrono::steady_clock;
  bool wanted_;
  bool shown_ = false;
  clock::time_point begun_ = clock::now();
  clock::time_point last_ = begun_;
};

}  // namespace tool
