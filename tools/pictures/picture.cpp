// SPDX-License-Identifier: MIT
// The names in a picture.
#include "pictures/picture.h"

#include <functional>
#include <set>

namespace tool {

std::string file_name(const std::string& path) {
  const auto slash = path.find_last_of('/');
  return slash == std::string::npos || slash + 1 == path.size() ? path : path.substr(slash + 1);
}

std::string shortened(const std::string& text, std::size_t most) {
  if (text.size() <= most) return text;
  const std::size_t kept = most - 3;
  std::size_t front = kept - kept / 2;
  std::size_t back = text.size() - kept / 2;
  const auto is_inside = [&text](std::size_t i) {
    return (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80;
  };
  while (front > 0 && is_inside(front)) --front;
  while (back < text.size() && is_inside(back)) ++back;
  return text.substr(0, front) + "..." + text.substr(back);
}

void name_apart(std::vector<curve>& curves) {
  const std::function<std::string(const spectrum&)> parts[] = {
      [](const spectrum& s) { return file_name(s.name); }, [](const spectrum& s) { return s.channel; },
      [](const spectrum& s) { return s.window_name(); },
      [](const spectrum& s) { return "segments of " + std::to_string(s.segment); }};
  for (curve& c : curves) c.name.clear();
  for (const auto& part : parts) {
    std::set<std::string> names, values;
    for (const curve& c : curves) names.insert(c.name), values.insert(part(c.s));
    if (names.size() == curves.size()) break;
    if (values.size() == 1) continue;
    for (curve& c : curves) c.name += (c.name.empty() ? "" : ", ") + part(c.s);
  }
  for (curve& c : curves) {
    if (c.name.empty()) c.name = file_name(c.s.name);
  }
}

}  // namespace tool
