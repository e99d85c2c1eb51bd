// What the program prints.
#pragma once

#include <cstdio>

#include "analysis/analysis.h"
#include "input/source.h"

namespace tool {

std::string summary_of(const std::string& window, const spectrum& s);
void print_report(std::FILE* out, const subject& about, const std::string& window, const spectrum& s,
                  const std::vector<line>& lines);

}  // namespace tool
