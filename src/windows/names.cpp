// The names of the windows.
#include <algorithm>
#include <cstring>
#include <string_view>

#include "core/record.h"

namespace sigpak {
namespace {

struct name {
  std::string_view text;
  int window;
};

// In the order of the search: the first name of a window is the one that stands for it. The enumeration's own
// names are these in capitals behind the prefix.
constexpr name names[] = {
    {"Uniform", DSP_WINDOW_UNIFORM},     {"Rectangular", DSP_WINDOW_RECTANGULAR},
    {"None", DSP_WINDOW_NONE},           {"P000", DSP_WINDOW_P000},
    {"Bartlett", DSP_WINDOW_BARTLETT},   {"Triangular", DSP_WINDOW_TRIANGULAR},
    {"Hann", DSP_WINDOW_HANN},           {"P110", DSP_WINDOW_P110},
    {"Hamming", DSP_WINDOW_HAMMING},     {"P100", DSP_WINDOW_P100},
    {"Blackman", DSP_WINDOW_BLACKMAN},   {"Blackman_Harris3", DSP_WINDOW_BLACKMAN_HARRIS3},
    {"P200", DSP_WINDOW_P200},           {"Blackman_Harris4", DSP_WINDOW_BLACKMAN_HARRIS4},
    {"P310", DSP_WINDOW_P310},           {"Lowleak", DSP_WINDOW_LOWLEAK},
    {"Gausstop", DSP_WINDOW_GAUSSTOP},   {"P400", DSP_WINDOW_P400},
    {"Flat4", DSP_WINDOW_FLAT4},         {"P301", DSP_WINDOW_P301},
    {"Flattop", DSP_WINDOW_FLATTOP},     {"Flat5", DSP_WINDOW_FLAT5},
    {"P401", DSP_WINDOW_P401},           {"Flat6", DSP_WINDOW_FLAT6},
    {"P511", DSP_WINDOW_P511},           {"Flat7", DSP_WINDOW_FLAT7},
    {"P611", DSP_WINDOW_P611},           {"P501", DSP_WINDOW_P501},
    {"P601", DSP_WINDOW_P601},           {"Kaiser70", DSP_WINDOW_KAISER70},
    {"Kaiser80", DSP_WINDOW_KAISER80},   {"Kaiser90", DSP_WINDOW_KAISER90},
    {"Kaiser100", DSP_WINDOW_KAISER100}, {"Kaiser110", DSP_WINDOW_KAISER110},
    {"Kaiser120", DSP_WINDOW_KAISER120}, {"Gauss60", DSP_WINDOW_GAUSS60},
    {"Gauss70", DSP_WINDOW_GAUSS70},     {"Gauss80", DSP_WINDOW_GAUSS80},
    {"Riemann", DSP_WINDOW_RIEMANN},     {"Sinc_Lobe", DSP_WINDOW_SINC_LOBE},
};
constexpr std::string_view prefix = "DSP_WINDOW_";

// Whatever the locale.
constexpr char lower(char c) noexcept { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

constexpr bool same_text(std::string_view a, std::string_view b) noexcept {
  return std::ranges::equal(a, b, {}, lower, lower);
}

constexpr const name* named(int window) noexcept {
  const name* const found = std::ranges::find(names, window, &name::window);
  return found != std::end(names) ? found : nullptr;
}

status window_to_text(int window, char* buffer, std::int32_t size) noexcept {
  if (buffer == nullptr || size < 1) return failed;
  const name* const found = named(window);
  if (found == nullptr) {
    buffer[0] = '\0';
    return failed;
  }
  const auto room = static_cast<std::size_t>(size);
  const std::size_t copied = found->text.copy(buffer, room - 1);
  buffer[copied] = '\0';
  buffer[room - 1] = '\0';
  return ok;
}

status window_from_text(const char* text, std::int32_t* window) noexcept {
  if (text == nullptr || window == nullptr) return failed;
  std::string_view wanted = text;
  if (same_text(wanted.substr(0, prefix.size()), prefix)) wanted.remove_prefix(prefix.size());
  const name* const found =
      std::ranges::find_if(names, [wanted](const name& n) { return same_text(n.text, wanted); });
  const bool known = found != std::end(names);
  *window = known ? found->window : 0;
  return known ? ok : failed;
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
