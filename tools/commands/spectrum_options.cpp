// SPDX-License-Identifier: MIT
// The options that commands about spectra have in common: how they are made, told and shown.
#include "commands/spectrum_options.h"

#include <algorithm>
#include <cctype>

#include "output/number.h"

namespace tool {
namespace {

constexpr double highest_frequency = 1e15;
constexpr double most_overlap = 0.95;

// As other programs call them.
constexpr struct {
  const char* name;
  int window;
} aliases[] = {
    {"hanning", DSP_WINDOW_HANN},       {"boxcar", DSP_WINDOW_UNIFORM},
    {"rect", DSP_WINDOW_UNIFORM},       {"rectwin", DSP_WINDOW_UNIFORM},
    {"triang", DSP_WINDOW_BARTLETT},    {"blackmanharris", DSP_WINDOW_BLACKMAN_HARRIS4},
    {"flattopwin", DSP_WINDOW_FLATTOP},
};

// Letters and digits, in small letters.
std::string bare(const std::string& name) {
  std::string out;
  for (const char c : name) {
    const auto letter = static_cast<unsigned char>(c);
    if (std::isalnum(letter) != 0) out += static_cast<char>(std::tolower(letter));
  }
  return out;
}

std::string name_of(int window) {
  char text[64];
  return dsp_window_to_str(window, text, sizeof text) == 0 ? text : "";
}

template <class T, std::size_t N> taker choice_taker(T& value, const char* const (&names)[N]) {
  return [&value, &names](const std::string& word) -> std::string {
    const auto found = std::ranges::find(names, word);
    if (found != std::end(names)) {
      value = static_cast<T>(found - std::begin(names));
      return {};
    }
    std::string all;
    for (const char* const name : names) all += (all.empty() ? "" : ", ") + std::string(name);
    return word + " is none of " + all;
  };
}

taker quantity_taker(std::optional<quantity>& what) {
  return [&what](const std::string& word) -> std::string {
    constexpr quantity all[] = {quantity::peak, quantity::rms, quantity::power, quantity::asd, quantity::psd};
    for (const quantity q : all) {
      if (word != quantity_name(q)) continue;
      what = q;
      return {};
    }
    return word + " is none of peak, rms, power, asd, psd";
  };
}

taker overlap_taker(double& overlap) {
  return [&overlap](const std::string& word) -> std::string {
    const bool percent = word.ends_with('%');
    double x = 0;
    if (!parse_number(percent ? word.substr(0, word.size() - 1) : word, x)) x = -1;
    if (percent) x /= 100;
    if (!(x >= 0 && x <= most_overlap)) return word + " is no part from 0 to 0.95, or 0% to 95%";
    overlap = x;
    return {};
  };
}

constexpr const char* averagings[] = {"mean", "exponential", "maximum", "minimum"};
constexpr const char* colors[] = {"auto", "always", "never"};

}  // namespace

std::string find_window(const std::string& name, int& window) {
  const std::string wanted = bare(name);
  for (const auto& alias : aliases) {
    if (wanted == alias.name) return window = alias.window, std::string();
  }
  if (dsp_window_from_str(name.c_str(), &window) == 0) return {};
  std::string all;
  for (int w = DSP_WINDOW_UNIFORM; w <= DSP_WINDOW_RIEMANN; ++w) {
    if (wanted == bare(name_of(w))) return window = w, std::string();
    all += (w == 0 ? "" : ", ") + name_of(w);
  }
  return "there is no window " + name + "; there are " + all;
}

void add_window_option(options& o, int& window) {
  o.add(
      "-w,--window", "NAME", "Window; sigpak window lists them",
      [&window](const std::string& name) { return find_window(name, window); }, name_of(window));
}

void add_sample_options(options& o, std::optional<std::string>& unit, double& gain) {
  o.add("--unit", "NAME", "Unit of the samples, in place of the heading's", [&unit](const std::string& word) {
    unit = word;
    return std::string();
  });
  o.number("--gain", "X", "Every sample is multiplied by it", gain, -1e30, 1e30);
}

void add_analysis_options(options& o, analysis_options& analysis) {
  add_window_option(o, analysis.window);
  o.count("-s,--segment", "Samples under a window", analysis.segment, 16, longest_segment);
  o.add("--overlap", "PART", "Part of a segment that the next shares", overlap_taker(analysis.overlap),
        "0.5");
  o.add("--average", "WORD", "Of segments: mean, exponential, maximum, minimum",
        choice_taker(analysis.average, averagings), "mean");
  o.count("--settled", "Segments in the memory of an exponential average", analysis.settled, 1, 1000000);
  add_sample_options(o, analysis.unit, analysis.gain);
  o.rarely({"--overlap", "--average", "--settled"});
}

void add_telling_options(options& o, telling_options& telling) {
  o.add("--as", "WORD", "V peak, V rms, V^2 power, V/sqrt(Hz) asd, V^2/Hz psd", quantity_taker(telling.what),
        "peak");
  o.flag("--db", "As levels in dB", telling.as_level);
  o.number("--from", "FREQ", "Begin of the band that is told, with its rms", telling.limits.from,
           -highest_frequency, highest_frequency);
  o.number("--to", "FREQ", "End of it", telling.limits.to, -highest_frequency, highest_frequency);
  o.count("-l,--lines", "Lines that are listed at most", telling.lines, 1, 10000);
  o.number("--min-snr", "DB", "List lines that stand so far above the noise", telling.least_snr, -1000, 1000);
  o.rarely({"--min-snr"});
}

void add_picture_options(options& o, picture_options& drawing) {
  o.text("--svg", "FILE", "Write a picture; - is standard output", drawing.svg);
  o.choice("--axis", "Frequency axis", drawing.axis, {"linear", "log"});
  o.text("--title", "TEXT", "Title of the picture", drawing.title);
  o.choice("--theme", "Colours of it", drawing.theme, {"light", "dark"});
  o.add("--color", "WORD", "On the terminal: auto, always, never", choice_taker(drawing.color, colors),
        "auto");
  o.rarely({"--axis", "--title", "--theme", "--color"});
}

}  // namespace tool
