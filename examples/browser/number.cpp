// Numbers as text where the C++ library cannot convert them: the C library's, which knows one locale here.
#include "output/number.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace tool {
namespace {

std::string printed(const char* form, int digits, double x) {
  char text[400];
  std::snprintf(text, sizeof text, form, digits, x);
  return text;
}

}  // namespace

// The fewest digits that read back as the same number are 17 at most, and seldom below 15 without zeros at
// the end.
std::string exact_text(double x) {
  std::string text;
  for (int digits = 15; digits <= 17; ++digits) {
    text = printed("%.*g", digits, x);
    if (std::strtod(text.c_str(), nullptr) == x) break;
  }
  return text;
}

std::string number_text(double x, int digits) { return printed("%.*g", digits, x); }

std::string fixed_text(double x, int decimals) { return printed("%.*f", decimals, x); }

std::string padded_text(double x, int digits) { return printed("%#.*g", digits, x); }

}  // namespace tool
