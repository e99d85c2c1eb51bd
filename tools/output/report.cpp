// What the program prints.
#include "output/report.h"

#include <algorithm>

#include "pictures/scale.h"

namespace tool {
namespace {

constexpr int amplitude_digits = 5;

std::string length_text(const spectrum& s) {
  std::string text = std::to_string(s.samples) + " samples";
  if (!s.has_rate) return text;
  return text + " at " + number_text(s.rate, 9) + " Hz (" +
         number_text(static_cast<double>(s.samples) / s.rate, 4) + " s)";
}

}  // namespace

std::string summary_of(const std::string& window, const spectrum& s) {
  std::string text = "window " + window + ", ";
  if (s.segments == 1) {
    text += "one segment of " + std::to_string(s.segment) + " samples";
  } else {
    text += std::to_string(s.segments) + " segments of " + std::to_string(s.segment) + " samples";
  }
  return text + ", resolution " + number_text(s.resolution(), 4) +
         (s.has_rate ? " Hz" : " cycles per sample");
}

void print_report(std::FILE* out, const subject& about, const std::string& window, const spectrum& s,
                  const std::vector<line>& lines) {
  std::fprintf(out, "%s: %s, %s\n", about.name.c_str(), about.understood.c_str(), length_text(s).c_str());
  std::fprintf(out, "%s\n", summary_of(window, s).c_str());
  if (!s.two_sided) std::fprintf(out, "mean %s, taken out\n", number_text(s.mean, amplitude_digits).c_str());
  if (lines.empty()) {
    std::fprintf(out, "\nno lines\n");
    return;
  }
  std::fprintf(out, "\n%20s  %12s  %9s\n", s.has_rate ? "frequency" : "cycles per sample", "amplitude",
               level_unit(s));
  for (const line& l : lines) {
    std::fprintf(out, "%20s  %12s  %9s\n", frequency_text(s, l.frequency).c_str(),
                 number_text(l.amplitude, amplitude_digits).c_str(), level_text(l.amplitude).c_str());
  }
}

}  // namespace tool
