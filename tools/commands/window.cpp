// SPDX-License-Identifier: MIT
// sigpak window: the points of a window, and what it does to lines and noise.
#include <cmath>
#include <cstdio>
#include <memory>

#include "analysis/spectrum.h"
#include "analysis/window_figures.h"
#include "commands/commands.h"
#include "commands/results.h"
#include "commands/spectrum_options.h"
#include "output/json.h"
#include "output/number.h"
#include "output/vector_text.h"

namespace tool {
namespace {

constexpr std::size_t fewest_points = 8;
constexpr std::size_t most_points = std::size_t{1} << 24;

struct window_command {
  int window = -1;  // none: all of them
  std::size_t points = 1024;
  std::string file = "-";
  std::string format = "csv";
};

std::string name_of(int window) {
  char text[64];
  return dsp_window_to_str(window, text, sizeof text) == 0 ? text : "";
}

std::string all_windows(std::size_t points) {
  std::string out = "window             coherent gain  ENBW bins  scallop dB  side lobe dB\n";
  for (int w = DSP_WINDOW_UNIFORM; w <= DSP_WINDOW_RIEMANN; ++w) {
    const window_figures f = figures_of(w, points);
    char line[128];
    const double loss = std::abs(f.scallop) < 5e-5 ? 0 : f.scallop;  // no -0.0000
    std::snprintf(line, sizeof line, "%-18s %13.6f %10.4f %11.4f %13.1f\n", name_of(w).c_str(),
                  f.coherent_gain, f.enbw, loss, f.side_lobe);
    out += line;
  }
  return out;
}

std::string csv_of(int window, const record& v) {
  const window_figures f = figures_of(window, v.points);
  std::string out = "# window: " + name_of(window) + "\n# points: " + std::to_string(v.points);
  out += "\n# coherent gain: " + number_text(f.coherent_gain, 9) + "\n# enbw: " + number_text(f.enbw, 9) +
         " bins\n";
  out += "# scallop: " + number_text(f.scallop, 5) + " dB\n# side lobe: " + number_text(f.side_lobe, 5) +
         " dB\n";
  out += "index,value\n";
  for (std::size_t i = 0; i < v.points; ++i) out += std::to_string(i) + ',' + exact_text(v.data[i]) + '\n';
  return out;
}

std::string json_of(int window, const record& v) {
  const window_figures f = figures_of(window, v.points);
  json out;
  out.open('{').member("window", name_of(window)).member("points", std::uint64_t{v.points});
  out.member("coherent_gain", f.coherent_gain).member("enbw_bins", f.enbw);
  out.member("scallop_db", f.scallop).member("side_lobe_db", f.side_lobe).key("values").open('[');
  for (const double x : v.scalars()) out.value(x);
  return out.close().close().text() + '\n';
}

void run(const window_command& command) {
  writer out(command.file);
  if (command.window < 0) {
    out.write(all_windows(command.points));
    return out.commit();
  }
  const record v = window_points(command.points, command.window);
  if (command.format == "vector" && out.is_terminal())
    throw usage_error("a vector is not for a terminal; -o FILE, or a pipe");
  out.write(command.format == "vector" ? vector_text(v)
            : command.format == "json" ? json_of(command.window, v)
                                       : csv_of(command.window, v));
  out.commit();
}

constexpr const char* about =
    "The points have the mean 1, as spectrum uses them; divided by the coherent gain their middle is 1.\n"
    "Without a NAME the figures of every window are printed.\n\n"
    "  sigpak window                              which there are\n"
    "  sigpak window flattop 4096 -o flattop.csv  the points of one";

}  // namespace

work add_window(options& o) {
  const auto command = std::make_shared<window_command>();
  o.optional_place("NAME", "Window, by any of its names",
                   [command](const std::string& name) { return find_window(name, command->window); });
  o.optional_place("N", "Points, 1024 if not given",
                   o.count_taker(command->points, fewest_points, most_points));
  o.choice("--format", "What is written", command->format, {"csv", "json", "vector"});
  o.text("-o,--output", "FILE", "Write there; - is standard output", command->file);
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
