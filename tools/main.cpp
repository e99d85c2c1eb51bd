// The program: its options, and what each command does.
#include <CLI/CLI.hpp>

#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <new>

#include "analysis.h"
#include "report.h"
#include "scale.h"
#include "source.h"
#include "svg.h"
#include "terminal.h"

namespace {

using namespace tool;

constexpr int data_status = 1;
constexpr int usage_status = 2;
constexpr std::size_t longest_segment = std::size_t{1} << 22;

struct spectrum_command {
  std::string name;
  std::string svg;
  std::string window = "Hann";
  std::size_t lines = 10;
  std::string axis;  // linear or log; empty for what suits the signal
  source_options input;
  analysis_options analysis;
};

// An error and the file that it is about.
struct file_error {
  std::string name;
  std::string reason;
};

std::string shown_name(const std::string& name) { return name == "-" ? "standard input" : name; }

void write_file(const std::string& name, const std::string& text) {
  file f(std::fopen(name.c_str(), "wb"));
  if (f == nullptr) throw file_error{name, std::strerror(errno)};
  const bool written = std::fwrite(text.data(), 1, text.size(), f.get()) == text.size();
  if (!written || std::fclose(f.release()) != 0) throw file_error{name, std::strerror(errno)};
}

spectrum analysed(const spectrum_command& command, std::string& description) {
  try {
    const auto in = open_source(command.name, command.input);
    description = in->description();
    progress_line progress(shown_name(command.name));
    return analyse(*in, command.analysis, [&progress](double part) { progress.show(part); });
  } catch (const data_error& e) {
    throw file_error{shown_name(command.name), e.what()};
  } catch (const std::bad_alloc&) {
    throw file_error{shown_name(command.name), "not enough memory"};
  }
}

void run(const spectrum_command& command) {
  subject about{shown_name(command.name), "", command.window};
  const spectrum s = analysed(command, about.description);
  const auto lines = strongest_lines(s, command.lines);
  print_report(stdout, about, s, lines);
  const frequency_axis axis(s, command.axis.empty() ? s.full_scale : command.axis == "log");
  if (is_terminal(stdout)) {
    std::putchar('\n');
    print_plot(stdout, s, axis);
  }
  if (!command.svg.empty()) write_file(command.svg, svg_of(about, s, lines, axis));
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
    throw file_error{"standard output", std::strerror(errno)};
}

// Takes any name of the catalogue and puts the usual one in its place.
std::string canonical_window(std::string& name) {
  std::int32_t window = 0;
  if (dsp_window_from_str(name.c_str(), &window) != 0) return "there is no window " + name;
  char text[64];
  if (dsp_window_to_str(window, text, sizeof text) == 0) name = text;
  return {};
}

// Rates that frequencies can be printed for.
std::string checked_rate(const std::string& text) {
  const char* const end = text.data() + text.size();
  double rate = 0;
  const auto [parsed, error] = std::from_chars(text.data() + (text.starts_with('+') ? 1 : 0), end, rate);
  const bool fits = error == std::errc() && parsed == end && rate >= 1e-9 && rate <= 1e15;
  return fits ? std::string() : text + " is no number from 1e-9 to 1e15";
}

void add_options(CLI::App& app, spectrum_command& command) {
  app.add_option("FILE", command.name, "The file; - is standard input")->required();
  app.add_option("-w,--window", command.window, "Window, by any name of the catalogue")
      ->transform(CLI::Validator(canonical_window, "NAME"))
      ->capture_default_str();
  app.add_option("-n,--lines", command.lines, "Print at most so many lines")
      ->check(CLI::Range(1, 1000))
      ->capture_default_str();
  app.add_option("-s,--segment", command.analysis.segment, "Samples that are transformed at a time")
      ->check(CLI::Range(std::size_t{16}, longest_segment))
      ->capture_default_str();
  app.add_option("-c,--channel", command.input.channel, "Channel of a sound file, or of a table")
      ->check(CLI::Range(1, 1024))
      ->capture_default_str();
  app.add_option("-r,--rate", command.input.rate, "Samples per second, in place of the file's own")
      ->check(CLI::Validator(checked_rate, "POSITIVE"));
  app.add_option("--svg", command.svg, "Write a picture of the spectrum")->type_name("FILE");
  app.add_option("--axis", command.axis, "Frequency axis: linear, or log as sound files have it")
      ->check(CLI::IsMember({"linear", "log"}));
  app.footer(
      "FILE is a sound file (WAV, FLAC, ...), a vector file of the library (the first vector of it, complex\n"
      "ones too), or text with columns of numbers. One column holds samples; with more, the first is the "
      "time in\n"
      "seconds, evenly spaced, and the others are channels. Blanks, commas or semicolons part the columns; "
      "where\n"
      "there is a semicolon, a comma is the decimal point. Headings before the numbers, empty lines, and "
      "whatever\n"
      "follows # or % are passed over.\n\n"
      "The mean is taken out. A long signal is cut into segments that overlap by half, and their powers are\n"
      "averaged. Amplitudes are those of sines: a sine of amplitude 1 has 0 dB.\n\n"
      "Exit status: 0, 1 when the data cannot be used, 2 for wrong usage.");
}

int run_guarded(spectrum_command& command) {
  try {
    dsp_window_from_str(command.window.c_str(), &command.analysis.window);
    run(command);
    return 0;
  } catch (const file_error& e) {
    std::fprintf(stderr, "sigpak: %s: %s\n", e.name.c_str(), e.reason.c_str());
  } catch (const std::exception& e) {
    std::fprintf(stderr, "sigpak: %s: %s\n", shown_name(command.name).c_str(), e.what());
  }
  return data_status;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Digital signal processing at the command line", "sigpak");
  app.set_version_flag("--version", "sigpak " SIGPAK_TOOL_VERSION);
  app.require_subcommand(1);
  app.failure_message([](const CLI::App*, const CLI::Error& e) {
    return std::string("sigpak: ") + e.what() + "\nsigpak spectrum --help tells the options.\n";
  });
  spectrum_command command;
  CLI::App* const spectrum =
      app.add_subcommand("spectrum", "The strongest lines of a signal, and its spectrum");
  add_options(*spectrum, command);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : usage_status;
  }
  return run_guarded(command);
}
