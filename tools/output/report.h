// SPDX-License-Identifier: MIT
// What is told about a spectrum: as a table for people, or as JSON for programs.
#pragma once

#include <string>
#include <vector>

#include "analysis/lines.h"
#include "analysis/quantity.h"

namespace tool {

// The spectrum, its lines, and the mean square with which its noise shows.
struct finding {
  const spectrum& s;
  measure told;
  const std::vector<line>& lines;
  double floor;
};

std::string table_of(const finding& f);

// One object and the end of its line; `all` puts the values of the spectrum in.
std::string json_of(const finding& f, bool all);

}  // namespace tool
