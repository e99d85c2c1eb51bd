// SPDX-License-Identifier: MIT
// Spectra as a picture in SVG.
#pragma once

#include <string>

#include "pictures/picture.h"

namespace tool {

std::string svg_of(const picture& p);

}  // namespace tool
