// SPDX-License-Identifier: MIT
// sigpak spectrum: the lines and the noise of signals, their spectra as data and as pictures.
#include <algorithm>
#include <cstdio>
#include <memory>

#include "analysis/analysis.h"
#include "commands/commands.h"
#include "commands/input_options.h"
#include "commands/results.h"
#include "commands/spectrum_options.h"

namespace tool {
namespace {

struct spectrum_command {
  std::vector<std::string> names;
  input_options input;
  analysis_options analysis;
  telling_options telling;
  picture_options drawing;
  result_options result;
};

void analyse_file(const std::string& name, const spectrum_command& command, results& out) {
  const auto in = open_source(name, command.input);
  progress_line progress(command.result.quiet);
  const auto take = [&] {
    for (spectrum& s : analyse(*in, command.analysis, [&] { progress.show(*in); })) {
      progress.clear();
      const measure told = command.telling.measure_for(s);
      out.take(std::move(s), told);
    }
  };
  at_place(in->about().name, [&] {
    do take();
    while (command.input.each && in->next_piece());
  });
  if (!command.result.quiet) warn(in->about().warnings);
}

void run(spectrum_command& command) {
  command.analysis.each = command.input.each;
  results out(command.telling, command.drawing, command.result);
  const std::size_t left_out =
      for_each_file(inputs_of(command.names), command.result.keep_going,
                    [&](const std::string& name) { analyse_file(name, command, out); });
  out.finish();
  tell_left_out(left_out);
}

constexpr const char* about =
    "Averages segments (Welch), the mean taken out; lists lines that noise shows in 1 of 1000 spectra.\n"
    "  sigpak spectrum -w flattop --unit V --as rms scope.csv     amplitudes of lines, in V rms\n"
    "  arecord -d 5 -f S16_LE | sigpak spectrum --as asd --csv    a noise density, as data";

}  // namespace

work add_spectrum(options& o) {
  const auto command = std::make_shared<spectrum_command>();
  o.files("Signals; - is standard input", command->names);
  add_analysis_options(o, command->analysis);
  add_telling_options(o, command->telling);
  add_result_options(o, command->result, {"table", "csv", "json", "vector"});
  add_picture_options(o, command->drawing);
  add_input_options(o, command->input);
  o.flag("--all", "In JSON the values of the spectrum too", command->result.all);
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
