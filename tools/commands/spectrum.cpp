// sigpak spectrum: the strongest lines of a signal, its picture and its plot.
#include <cstdio>
#include <memory>

#include "analysis/analysis.h"
#include "commands/commands.h"
#include "commands/input_options.h"
#include "input/source.h"
#include "output/report.h"
#include "output/writer.h"
#include "pictures/scale.h"
#include "pictures/svg.h"
#include "pictures/terminal.h"

namespace tool {
namespace {

constexpr std::size_t longest_segment = std::size_t{1} << 22;

struct spectrum_command {
  std::string name;
  std::string svg;
  std::string window = "Hann";
  std::size_t lines = 10;
  std::string axis;  // linear or log; empty for what suits the signal
  input_options input;
  analysis_options analysis;
};

std::string shown_name(const std::string& name) { return name == "-" ? "standard input" : name; }

void write_file(const std::string& name, const std::string& text) {
  writer out(name);
  out.write(text);
  out.commit();
}

spectrum analysed(const spectrum_command& command, subject& about) {
  const auto in = open_source(command.name, command.input);
  progress_line progress(shown_name(command.name));
  spectrum s = analyse(*in, command.analysis, [&progress](double part) { progress.show(part); });
  about = in->about();
  return s;
}

void run(const spectrum_command& command) {
  subject about;
  const spectrum s = at_place(shown_name(command.name), [&] { return analysed(command, about); });
  const auto lines = strongest_lines(s, command.lines);
  print_report(stdout, about, command.window, s, lines);
  const frequency_axis axis(s, command.axis.empty() ? s.full_scale : command.axis == "log");
  if (is_terminal(stdout)) {
    std::putchar('\n');
    print_plot(stdout, s, axis);
  }
  if (!command.svg.empty()) {
    std::fflush(stdout);
    write_file(command.svg, svg_of(about, command.window, s, lines, axis));
  }
}

// Takes any name of the catalogue and keeps the usual one.
taker window_taker(spectrum_command& command) {
  return [&command](const std::string& name) -> std::string {
    if (dsp_window_from_str(name.c_str(), &command.analysis.window) != 0) return "there is no window " + name;
    char text[64];
    if (dsp_window_to_str(command.analysis.window, text, sizeof text) == 0) command.window = text;
    return {};
  };
}

constexpr const char* about_files =
    "FILE is a sound file (WAV, FLAC, ...), a vector file of the library (the first vector of it, complex\n"
    "ones too), or text with columns of numbers. One column holds samples; with more, the first is the time "
    "in\n"
    "seconds, evenly spaced, and the others are channels. Blanks, commas or semicolons part the columns; "
    "where\n"
    "there is a semicolon, a comma is the decimal point. Headings before the numbers, empty lines, and "
    "whatever\n"
    "follows # or % are passed over.\n\n"
    "The mean is taken out. A long signal is cut into segments that overlap by half, and their powers are\n"
    "averaged. Amplitudes are those of sines: a sine of amplitude 1 has 0 dB.\n\n"
    "Exit status: 0, 1 when the data cannot be used, 2 for wrong usage, 3 when memory or disk is used up.";

}  // namespace

work add_spectrum(options& o) {
  const auto command = std::make_shared<spectrum_command>();
  o.place("FILE", "The file; - is standard input", command->name);
  o.add("-w,--window", "NAME", "Window, by any name of the catalogue", window_taker(*command),
        command->window);
  o.count("-n,--lines", "Print at most so many lines", command->lines, 1, 1000);
  o.count("-s,--segment", "Samples that are transformed at a time", command->analysis.segment, 16,
          longest_segment);
  add_input_options(o, command->input);
  o.text("--svg", "FILE", "Write a picture of the spectrum", command->svg);
  o.choice("--axis", "Frequency axis; log suits sound files", command->axis, {"linear", "log"});
  o.footer(about_files);
  return [command] { run(*command); };
}

}  // namespace tool
