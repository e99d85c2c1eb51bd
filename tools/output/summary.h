// SPDX-License-Identifier: MIT
// What was analysed and how, in words.
#pragma once

#include <string>

#include "analysis/quantity.h"
#include "analysis/spectrum.h"

namespace tool {

std::string source_text(const spectrum& s);    // "WAV (Microsoft), 68608 samples at 48 kHz (1.429 s)"
std::string analysis_text(const spectrum& s);  // "window Hann, 15 segments of 8192, overlap 4096, ..."
std::string floor_text(const measure& told, double floor);

}  // namespace tool
