// SPDX-License-Identifier: MIT
// sigpak plot: spectra that were written as CSV, drawn in one picture.
#include <memory>

#include "commands/commands.h"
#include "commands/results.h"
#include "commands/spectrum_options.h"
#include "output/screen.h"
#include "output/spectrum_file.h"

namespace tool {
namespace {

struct plot_command {
  std::vector<std::string> names;
  telling_options telling;
  picture_options drawing;
};

void run(const plot_command& command) {
  gallery shown(command.telling, command.drawing);
  for (told_spectrum& t : read_spectra(inputs_of(command.names))) {
    const measure told = command.telling.measure_for(t.s, t.what, t.as_level);
    shown.take(std::move(t.s), told);
  }
  if (!command.drawing.svg.empty()) return shown.write_svg();
  writer out("-");
  out.write(shown.plot(size_of(stdout), 1));
  out.commit();
}

constexpr const char* about =
    "Draws on the terminal, or with --svg into a file. Several spectra share one picture.\n\n"
    "  sigpak plot a.csv b.csv                                   two spectra, one over the other\n"
    "  sigpak spectrum --csv x.wav | sigpak plot --svg x.svg     through a pipe";

}  // namespace

work add_plot(options& o) {
  const auto command = std::make_shared<plot_command>();
  o.files("Spectra, from sigpak spectrum --csv; - is standard input", command->names);
  add_telling_options(o, command->telling);
  add_picture_options(o, command->drawing);
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
