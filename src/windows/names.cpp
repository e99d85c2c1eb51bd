// SPDX-License-Identifier: MIT
// The names of the windows.
#include <algorithm>
#include <string_view>

#include "windows/catalogue.h"

namespace sigpak {
namespace {

// The enumeration's names are those of the catalogue, in capitals, behind it.
constexpr std::string_view prefix = "DSP_WINDOW_";

// Whatever the locale.
constexpr char lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

constexpr bool same_text(std::string_view a, std::string_view b) noexcept {
  return std::ranges::equal(a, b, {}, lower, lower);
}

status window_to_text(int window, char* buffer, std::int32_t size) noexcept {
  if (buffer == nullptr || size < 1) return failed;
  const catalogued_window* const found = find_window(window);
  buffer[0] = '\0';
  if (found == nullptr) return failed;
  const std::size_t last = static_cast<std::size_t>(size) - 1;
  buffer[found->names[0].copy(buffer, last)] = '\0';
  buffer[last] = '\0';
  return ok;
}

bool is_called(const catalogued_window& window, std::string_view text) noexcept {
  return !text.empty() &&
         std::ranges::any_of(window.names, [text](std::string_view name) { return same_text(name, text); });
}

status window_from_text(const char* text, std::int32_t* window) noexcept {
  if (text == nullptr || window == nullptr) return failed;
  std::string_view wanted = text;
  if (same_text(wanted.substr(0, prefix.size()), prefix)) wanted.remove_prefix(prefix.size());
  *window = 0;
  for (const catalogued_window& w : window_catalogue()) {
    if (!is_called(w, wanted)) continue;
    *window = w.window;
    return ok;
  }
  return failed;
}

}  // namespace
}  // namespace sigpak

using namespace sigpak;

int32_t dsp_window_to_str(int32_t window, char* buffer, int32_t size) {
  return window_to_text(window, buffer, size);
}
int32_t dspf_window_to_str(int32_t window, char* buffer, int32_t size) {
  return window_to_text(window, buffer, size);
}

int32_t dsp_window_from_str(const char* text, int32_t* window) { return window_from_text(text, window); }
int32_t dspf_window_from_str(const char* text, int32_t* window) { return window_from_text(text, window); }
