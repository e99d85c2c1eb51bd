// What a terminal is shown beside the report: a plot, and how far the work is.
#pragma once

#include <cstdio>

#include "analysis/analysis.h"
#include "pictures/scale.h"

namespace tool {

bool is_terminal(std::FILE* f);

// A plot as wide as the terminal allows, in braille where it shows UTF-8.
void print_plot(std::FILE* out, const spectrum& s, const frequency_axis& axis);

// A line on standard error that tells how far the reading is; nothing where that is no terminal.
class progress_line {
 public:
  explicit progress_line(const std::string& name);
  ~progress_line();
  progress_line(const progress_line&) = delete;
  progress_line& operator=(const progress_line&) = delete;
  void show(double fraction);

 private:
  std::string name_;
  bool wanted_;
  int shown_ = -1;
};

}  // namespace tool
