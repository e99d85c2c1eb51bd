// SPDX-License-Identifier: MIT
// JSON text, written from the front to the back.
#include "output/json.h"

#include <cmath>

#include "output/number.h"
#include "output/utf8.h"

namespace tool {

void json::separate() {
  if (!text_.empty() && text_.back() != '{' && text_.back() != '[' && text_.back() != ':') text_ += ',';
}

json& json::open(char bracket) {
  separate();
  text_ += bracket;
  open_ += bracket;
  return *this;
}

json& json::close() {
  text_ += open_.back() == '{' ? '}' : ']';
  open_.pop_back();
  return *this;
}

json& json::key(std::string_view name) {
  value(name);
  text_ += ':';
  return *this;
}

json& json::value(std::string_view text) {
  separate();
  const auto escape = [](char c) -> std::string_view { return c == '"' ? "\\\"" : c == '\\' ? "\\\\" : ""; };
  text_ += '"' + utf8_text(text, escape) + '"';
  return *this;
}

json& json::value(double x) {
  separate();
  text_ += std::isfinite(x) ? exact_text(x) : "null";
  return *this;
}

json& json::value(std::uint64_t x) {
  separate();
  text_ += std::to_string(x);
  return *this;
}

json& json::value(bool x) {
  separate();
  text_ += x ? "true" : "false";
  return *this;
}

}  // namespace tool
