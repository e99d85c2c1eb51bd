// Numbers as text, with a point as decimal sign in every locale.
#include "output/number.h"

#include <array>
#include <charconv>

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

std::string fixed_text(double x, int decimals) { return converted(x, std::chars_format::fixed, decimals); }

}  // namespace tool
