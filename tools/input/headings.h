// SPDX-License-Identifier: MIT
// Names, units and roles of columns, as their headings tell them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "input/source.h"

namespace tool {

// "voltage_V", "Spannung [V]", "U (mV)", "p / Pa": the name as it stands, and its unit.
channel parse_heading(std::string_view cell);

// The name without the unit.
std::string bare_name(const channel& c);

// Whether a word is a unit by itself: "V", "(ms)", "[Pa]", "Volt".
bool is_unit(std::string_view word);

bool is_time_heading(const channel& c);
bool is_index_heading(const channel& c);
bool is_frequency_heading(const channel& c);

// Text as it may stand in a report: what is no UTF-8 is taken for Latin-1.
std::string valid_text(std::string_view text);

}  // namespace tool
