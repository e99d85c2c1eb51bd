// SPDX-License-Identifier: MIT
// Which channels of a file are read.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "input/source.h"

namespace tool {

// Channels that are known by their numbers alone.
std::vector<channel> numbered_channels(std::size_t count);

// Places in `all` of those that were asked for: names, numbers from 1 on, or "all"; the first without a word.
std::vector<std::size_t> chosen_channels(const std::vector<std::string>& wanted,
                                         const std::vector<channel>& all);

// The same, and the subject tells them: ", channel 2 of 3" behind its kind when there are several.
std::vector<std::size_t> choose_channels(const std::vector<std::string>& wanted, std::size_t count,
                                         subject& about);

// A number from 1 on as a place from 0 on; -1 for other words.
std::ptrdiff_t place_of_number(const std::string& word);

}  // namespace tool
