// SPDX-License-Identifier: MIT
// sigpak convert: any input as a vector, an array of NumPy, sound or CSV, at its rate or another.
#include <memory>
#include <optional>

#include "analysis/resampler.h"
#include "commands/commands.h"
#include "commands/input_options.h"
#include "commands/results.h"
#include "output/screen.h"
#include "output/signal_writer.h"

namespace tool {
namespace {

constexpr std::size_t block_frames = 4096;

struct convert_command {
  std::vector<std::string> names;
  input_options input;
  std::optional<double> rate;  // of the output
  double gain = 1;
  signal_format format;
  std::string file = "-";
  bool quiet = false;
};

void copy_signal(source& in, const convert_command& c, signal_writer& to, progress_line& progress) {
  const subject& about = in.about();
  std::optional<resampler> change;
  if (c.rate && *c.rate != about.rate)
    change.emplace(about.rate, *c.rate, about.channels.size(), about.is_complex);
  const auto write = [&to](std::span<const double> frames) { to.write(frames); };
  std::vector<double> frames(block_frames * about.scalars_per_frame());
  while (const std::size_t got = in.read(frames)) {
    const auto block = std::span(frames).first(got);
    if (c.gain != 1) {
      for (double& x : block) x *= c.gain;
    }
    if (change) {
      change->process(block, write);
    } else {
      write(block);
    }
    progress.show(in);
  }
  if (change) change->finish(write);
}

void convert_file(const std::string& name, const convert_command& c, writer& out) {
  const auto in = open_source(name, c.input);
  subject result = in->about();
  progress_line progress(c.quiet);
  at_place(result.name, [&] {
    if (c.rate && !(result.rate > 0)) throw data_error("no rate to start from; give --rate");
    if (c.rate) result.rate = *c.rate;
    signal_format format = c.format;
    if (format.name.empty()) format.name = format_of_name(c.file);
    const auto to = open_signal_writer(out, format, result);
    copy_signal(*in, c, *to, progress);
    if (in->next_piece()) throw data_error("a gap would close up; --gaps linear bridges it");
    to->finish();
    progress.clear();
    if (c.quiet) return;
    warn(in->about().warnings);
    warn(to->warnings());
  });
}

void run(const convert_command& command) {
  const auto names = inputs_of(command.names);
  if (names.size() > 1) throw usage_error("one FILE at a time");
  writer out(command.file);
  convert_file(names.front(), command, out);
  out.commit();
}

constexpr const char* about =
    "The end of the name in -o tells the form: .npy .wav .flac .aiff .csv .txt; .vec, .dat, .bin or none\n"
    "is a vector file. Every channel is converted, unless -c chooses. Another rate comes of a filter that\n"
    "keeps 0.9 of the band, 120 dB.\n\n"
    "  sigpak convert -c ch2 scope.csv -o scope.npy\n"
    "  sigpak convert --to-rate 48k --bits 24 in.flac -o out.wav";

}  // namespace

work add_convert(options& o) {
  const auto command = std::make_shared<convert_command>();
  o.files("Signal; - is standard input", command->names);
  o.text("-o,--output", "FILE", "Write there; - is standard output", command->file);
  o.choice("--format", "In place of what the name tells", command->format.name,
           {"vector", "npy", "wav", "flac", "aiff", "csv"});
  o.count("--bits", "Of a sample in npy (32, 64) and sound (16, 24, 32, 64)", command->format.bits, 8, 64);
  o.number("--to-rate", "RATE", "Resample to so many samples per unit of time", command->rate, 1e-9, 1e15);
  o.number("--gain", "X", "Every sample is multiplied by it", command->gain, -1e30, 1e30);
  o.flag("-q,--quiet", "No warnings, no progress", command->quiet);
  add_input_options(o, command->input);
  o.footer(about);
  return [command] {
    if (command->input.channels.empty()) command->input.channels = {"all"};
    run(*command);
  };
}

}  // namespace tool
