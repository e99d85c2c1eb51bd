// SPDX-License-Identifier: MIT
// What a picture of spectra shows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "analysis/lines.h"
#include "analysis/quantity.h"
#include "analysis/spectrum.h"

namespace tool {

struct curve {
  const spectrum& s;
  measure told;
  std::vector<line> lines;
  double floor;      // mean square with which the noise shows
  std::string name;  // beside others
};

struct picture {
  std::vector<curve> curves;  // one at least, in the same unit
  bool logarithmic = false;   // the frequency axis
  bool dark = false;
  std::string title;
};

// The name of a file without its folder.
std::string file_name(const std::string& path);

// At most so many bytes of a text; what is cut away is its middle.
std::string shortened(const std::string& text, std::size_t most);

// Names curves by what tells them apart: their files, or else channels, windows and lengths of segments.
void name_apart(std::vector<curve>& curves);

}  // namespace tool
