// SPDX-License-Identifier: MIT
// What is told about a spectrum: as a table for people, or as JSON for programs.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/lines.h"
#include "analysis/quantity.h"

namespace tool {

// A part of the spectrum, and the root mean square of what lies in it.
struct told_band {
  double from;
  double to;
  double rms;
};

// The spectrum, its lines, and the mean square with which its noise shows; the band where one was asked for.
struct finding {
  const spectrum& s;
  measure told;
  const std::vector<line>& lines;
  const std::optional<told_band>& band;
  double floor;
};

std::string table_of(const finding& f);

// One object and the end of its line; `all` puts the values of the spectrum in.
std::string json_of(const finding& f, bool all);

}  // namespace tool
