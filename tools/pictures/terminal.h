// SPDX-License-Identifier: MIT
// Spectra as a picture of characters.
#pragma once

#include <string>

#include "pictures/picture.h"

namespace tool {

struct canvas {
  int columns;
  int rows;
  bool utf8;
  bool color;
};

// Curves with their axes, as wide as the canvas and as high.
std::string plot_of(const picture& p, const canvas& on);

}  // namespace tool
