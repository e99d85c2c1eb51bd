// SPDX-License-Identifier: MIT
// JSON text, written from the front to the back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

class json {
 public:
  // Between an opening and its closing, members are named and elements are not.
  json& open(char bracket);  // { or [
  json& close();
  json& key(std::string_view name);
  json& value(std::string_view text);
  json& value(const char* text) { return value(std::string_view(text)); }
  json& value(double x);  // null when it is not finite
  json& value(std::uint64_t x);
  json& value(bool x);
  template <class T> json& member(std::string_view name, const T& x) { return key(name).value(x); }

  const std::string& text() const { return text_; }

 private:
  void separate();
  std::string text_;
  std::string open_;
};

}  // namespace tool
