// SPDX-License-Identifier: MIT
// sigpak info: what was understood of a file.
#include <memory>

#include "commands/commands.h"
#include "commands/input_options.h"
#include "commands/results.h"
#include "output/json.h"
#include "output/number.h"
#include "output/screen.h"

namespace tool {
namespace {

constexpr std::size_t block_scalars = std::size_t{1} << 16;

struct info_command {
  std::vector<std::string> names;
  input_options input;
  bool json = false;
  bool quiet = false;
  bool keep_going = false;
  std::string file = "-";
};

std::string plural(std::uint64_t count, const std::string& word) {
  return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

std::string channel_text(const subject& about) {
  std::string text;
  for (const auto& c : about.channels) {
    text += (text.empty() ? "" : ", ") + c.name;
    if (!c.unit.empty() && c.name.find(c.unit) == std::string::npos) text += " [" + c.unit + "]";
  }
  return text;
}

std::string length_text(const subject& about) {
  std::string text = plural(about.samples, about.is_complex ? "complex sample" : "sample");
  if (!(about.rate > 0)) return text + ", no rate";
  const bool hertz = about.time_unit == "s";
  text += " at " + number_text(about.rate, 9) + (hertz ? " Hz" : " per " + about.time_unit);
  return text + ", " + number_text(static_cast<double>(about.samples) / about.rate, 6) + " " +
         about.time_unit;
}

std::string text_of(const subject& about) {
  std::string text = about.name + ": " + about.kind + "\n";
  const auto row = [&text](const char* name, const std::string& value) {
    text += "  " + std::string(name) + value + "\n";
  };
  if (about.understood != about.kind) row("understood  ", about.understood);
  row("channels    ", channel_text(about));
  row("samples     ", length_text(about));
  if (about.truncated && about.promised > 0) row("promised    ", plural(about.promised, "sample"));
  if (about.gaps > 0) {
    row("gaps        ",
        std::to_string(about.gaps) +
            (about.filled > 0 ? ", " + std::to_string(about.filled) + " samples filled" : ""));
  }
  for (const auto& warning : about.warnings) row("warning     ", warning);
  return text;
}

std::string json_of(const subject& about) {
  json j;
  j.open('{').member("name", about.name).member("kind", about.kind).member("understood", about.understood);
  j.key("channels").open('[');
  for (const auto& c : about.channels) j.open('{').member("name", c.name).member("unit", c.unit).close();
  j.close();
  if (about.rate > 0) j.member("rate", about.rate);
  j.member("time_unit", about.time_unit).member("samples", about.samples);
  j.member("complex", about.is_complex).member("full_scale", about.is_full_scale);
  j.member("truncated", about.truncated);
  if (about.promised > 0) j.member("promised", about.promised);
  j.member("gaps", about.gaps).member("filled", about.filled);
  j.key("warnings").open('[');
  for (const auto& warning : about.warnings) j.value(warning);
  return j.close().close().text() + "\n";
}

void tell(const std::string& name, const info_command& command, writer& out) {
  const auto in = open_source(name, command.input);
  std::vector<double> frames(block_scalars / in->about().scalars_per_frame() *
                                 in->about().scalars_per_frame() +
                             in->about().scalars_per_frame());
  {
    progress_line progress(command.quiet);
    do {
      while (in->read(frames) > 0) progress.show(*in);
    } while (in->next_piece());
  }
  out.write(command.json ? json_of(in->about()) : text_of(in->about()));
}

void run(info_command& command) {
  if (command.input.channels.empty()) command.input.channels = {"all"};
  if (command.input.gaps == gap_rule::refuse) command.input.gaps = gap_rule::split;  // and told
  writer out(command.file);
  const std::size_t left_out = for_each_file(inputs_of(command.names), command.keep_going,
                                             [&](const std::string& name) { tell(name, command, out); });
  out.commit();
  tell_left_out(left_out);
}

constexpr const char* about =
    "Reads everything and tells the kind, channels with their units, rate, length, gaps, and what is "
    "wrong.\n\n"
    "  sigpak info scope.csv\n"
    "  sigpak info --json *.wav | jq -r '[.name, .rate, .samples] | @tsv'";

}  // namespace

work add_info(options& o) {
  const auto command = std::make_shared<info_command>();
  o.files("Signals; - is standard input", command->names);
  o.flag("--json", "One object for each file", command->json);
  o.text("-o,--output", "FILE", "Write there; - is standard output", command->file);
  o.flag("--keep-going", "Leave out files that cannot be read, and go on", command->keep_going);
  o.flag("-q,--quiet", "No progress", command->quiet);
  add_input_options(o, command->input);
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
