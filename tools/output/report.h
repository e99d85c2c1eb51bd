// What the program prints.
#pragma once

#include <cstdio>

#include "analysis/analysis.h"

namespace tool {

// What was analysed, in a line or two.
struct subject {
  std::string name;
  std::string description;
  std::string window;
};

std::string summary_of(const subject& about, const spectrum& s);
void print_report(std::FILE* out, const subject& about, const spectrum& s, const std::vector<line>& lines);

}  // namespace tool
