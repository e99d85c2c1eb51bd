// SPDX-License-Identifier: MIT
// The terminal at the other end, if there is one.
#include "output/screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "output/number.h"

namespace tool {
namespace {

using std::chrono::duration;
constexpr std::chrono::milliseconds first_after(300);
constexpr std::chrono::milliseconds then_every(200);

std::string rate_text(double bytes, double seconds) {
  return fixed_text(bytes / 1e6, 0) + " MB, " + fixed_text(bytes / 1e6 / std::max(seconds, 1e-3), 0) +
         " MB/s";
}

}  // namespace

bool is_terminal(std::FILE* f) { return isatty(fileno(f)) == 1; }

screen_size size_of(std::FILE* f) {
  winsize size{};
  const bool known = ioctl(fileno(f), TIOCGWINSZ, &size) == 0 && size.ws_col > 0 && size.ws_row > 0;
  return known ? screen_size{size.ws_col, size.ws_row} : screen_size{80, 24};
}

bool shows_utf8() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value == nullptr || *value == '\0') continue;
    std::string locale(value);
    std::ranges::transform(locale, locale.begin(), [](unsigned char c) { return std::tolower(c); });
    return locale.find("utf-8") != std::string::npos || locale.find("utf8") != std::string::npos;
  }
  return false;
}

bool shows_color(std::FILE* f, color_choice choice) {
  if (choice != color_choice::automatic) return choice == color_choice::always;
  const char* const refused = std::getenv("NO_COLOR");
  const char* const terminal = std::getenv("TERM");
  const bool dumb = terminal != nullptr && std::string(terminal) == "dumb";
  return is_terminal(f) && !dumb && (refused == nullptr || *refused == '\0');
}

progress_line::progress_line(bool quiet) : wanted_(!quiet && is_terminal(stderr)) {}

void progress_line::clear() {
  if (shown_) std::fputs("\r\033[K", stderr);
  shown_ = false;
}

void progress_line::show(const source& in) {
  const auto now = clock::now();
  if (!wanted_ || now - begun_ < first_after || (shown_ && now - last_ < then_every)) return;
  last_ = now;
  shown_ = true;
  const double seconds = duration<double>(now - begun_).count();
  std::string text = rate_text(static_cast<double>(in.bytes()), seconds);
  if (const double part = in.progress(); part > 0)
    text = fixed_text(100 * part, 0) + " %, " + text + ", " + fixed_text(seconds * (1 - part) / part, 0) +
           " s left";
  std::fprintf(stderr, "\r%s: %s\033[K", in.about().name.c_str(), text.c_str());
  std::fflush(stderr);
}

}  // namespace tool
