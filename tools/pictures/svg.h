// The spectrum as a picture.
#pragma once

#include <string_view>

#include "analysis/analysis.h"
#include "output/report.h"
#include "pictures/scale.h"

namespace tool {

std::string svg_of(const subject& about, const std::string& window, const spectrum& s,
                   const std::vector<line>& lines, const frequency_axis& axis);

// Text as it may stand inside XML: escaped, without control characters and broken UTF-8.
std::string xml_text(std::string_view text);

}  // namespace tool
