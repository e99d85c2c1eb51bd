// SPDX-License-Identifier: MIT
// Numbers as text, with a point as decimal sign in every locale.
#include "output/number.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tool {
namespace {

template <class... Form> std::string converted(double x, Form... form) {
  std::array<char, 400> text;
  const auto result = std::to_chars(text.data(), text.data() + text.size(), x, form...);
  return {text.data(), result.ptr};
}

}  // namespace

std::string exact_text(double x) { return converted(x); }

std::string number_text(double x, int digits) { return converted(x, std::chars_format::general, digits); }

std::string padded_text(double x, int digits) {
  const double magnitude = x == 0 ? 0 : std::floor(std::log10(std::abs(x)));
  if (!(magnitude >= -4 && magnitude < 6)) return converted(x, std::chars_format::scientific, digits - 1);
  return fixed_text(x, std::max(digits - 1 - static_cast<int>(magnitude), 0));
}

std::string fixed_text(double x, int decimals) {
  std::string text = converted(x, std::chars_format::fixed, decimals);
  const bool minus_zero = text.starts_with('-') && text.find_first_of("123456789") == std::string::npos;
  return minus_zero ? text.substr(1) : text;
}

}  // namespace tool
