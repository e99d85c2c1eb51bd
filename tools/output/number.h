// SPDX-License-Identifier: MIT
// Numbers as text.
#pragma once

#include <string>

namespace tool {

std::string exact_text(double x);                // the shortest that reads back as x
std::string number_text(double x, int digits);   // %.<digits>g
std::string padded_text(double x, int digits);   // the same with the zeros at its end
std::string fixed_text(double x, int decimals);  // %.<decimals>f

}  // namespace tool
