// SPDX-License-Identifier: MIT
// sigpak apply: any operation of the library that works in place.
#include <algorithm>
#include <memory>

#include "commands/commands.h"
#include "commands/in_place.h"
#include "commands/input_options.h"
#include "commands/results.h"
#include "output/screen.h"
#include "output/vector_text.h"

namespace tool {
namespace {

constexpr std::size_t block_frames = std::size_t{1} << 16;

struct apply_command {
  std::vector<std::string> words;  // the operation, its arguments, and a file
  input_options input;
  std::string file = "-";
  bool list = false;
  bool quiet = false;
};

std::string usage_of(const in_place_operation& operation) {
  std::string out = operation.name;
  for (const char* const argument : operation.arguments) out += std::string(" ") + argument;
  return out;
}

const in_place_operation& operation_named(const std::string& name) {
  const auto& all = in_place_operations();
  const auto found = std::ranges::find(all, name, &in_place_operation::name);
  if (found == all.end())
    throw usage_error("there is no operation " + name + "; sigpak apply --list tells them");
  return *found;
}

// Everything up to the end of the piece.
record read_signal(source& in) {
  const subject& about = in.about();
  if (about.channels.size() != 1) throw data_error("a vector holds one channel; choose it with --channel");
  const std::size_t width = about.is_complex ? 2 : 1;
  record v(0, about.is_complex);
  record block(block_frames, about.is_complex);
  for (std::size_t got = block_frames; got == block_frames;) {
    got = in.read({block.data, block_frames * width}) / width;
    block.points = static_cast<std::uint32_t>(got);
    require(dsp_append(&v, &block));
  }
  return v;
}

void run(const apply_command& command) {
  writer out(command.file);
  if (command.list) {
    for (const auto& operation : in_place_operations()) out.write(usage_of(operation) + '\n');
    return out.commit();
  }
  if (command.words.empty()) throw usage_error("which operation? sigpak apply --list tells them");
  if (out.is_terminal()) throw usage_error("a vector is not for a terminal; -o FILE, or a pipe");
  const auto& operation = operation_named(command.words.front());
  const std::size_t wanted = operation.arguments.size();
  const std::span<const std::string> words(command.words.begin() + 1, command.words.end());
  if (words.size() < wanted || words.size() > wanted + 1)
    throw usage_error(usage_of(operation) + " [FILE] is what it takes");
  const auto names = inputs_of({words.begin() + static_cast<std::ptrdiff_t>(wanted), words.end()});
  const auto in = open_source(names.front(), command.input);
  at_place(in->about().name, [&] {
    do {
      record v = read_signal(*in);
      v.delta = in->about().rate > 0 ? 1 / in->about().rate : 1;
      if (operation.apply(v, words.first(wanted)) != 0)
        throw data_error(usage_of(operation) + " refuses " + std::to_string(v.points) +
                         (v.is_complex() ? " complex" : " real") + " points or its arguments");
      out.write(vector_text(v));
    } while (in->next_piece());
  });
  out.commit();
  if (!command.quiet) warn(in->about().warnings);
}

constexpr const char* about =
    "The operations are those of the library that work in place, by their names in C without dspi_; "
    "sigpak.h\n"
    "describes them. A window may stand for an integer by its name.\n\n"
    "  sigpak apply window Hann 32 x.vec | sigpak apply rfft | sigpak apply mag -o spectrum.vec\n"
    "  sigpak apply scale 2 x.vec | sigpak stats";

}  // namespace

work add_apply(options& o) {
  const auto command = std::make_shared<apply_command>();
  o.words("NAME", "Operation, its arguments, and a file; standard input without", command->words);
  o.flag("--list", "List the operations", command->list);
  o.text("-o,--output", "FILE", "Write there; - is standard output", command->file);
  o.flag("-q,--quiet", "No warnings", command->quiet);
  add_input_options(o, command->input);
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
