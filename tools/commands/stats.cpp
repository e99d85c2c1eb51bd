// SPDX-License-Identifier: MIT
// sigpak stats: mean, spread, extremes, median and histogram of signals.
#include <limits>
#include <memory>
#include <optional>

#include "analysis/blocks.h"
#include "analysis/statistics.h"
#include "commands/commands.h"
#include "commands/input_options.h"
#include "commands/results.h"
#include "output/screen.h"
#include "output/statistics_report.h"

namespace tool {
namespace {

constexpr std::size_t block_points = std::size_t{1} << 16;
constexpr std::size_t usual_bins = 10;

// Samples that are kept for the median: 32 MiB of each channel.
constexpr std::uint64_t most_kept = std::uint64_t{1} << 22;
constexpr auto all_samples = std::numeric_limits<std::uint64_t>::max();

struct stats_command {
  std::vector<std::string> names;
  input_options input;
  std::size_t bins = 0;
  std::optional<double> low;
  std::optional<double> high;
  std::optional<std::string> unit;
  double gain = 1;
  result_options result;

  std::optional<range> limits() const { return low ? std::optional(range{*low, *high}) : std::nullopt; }
};

void read_all(source& in, const stats_command& command, std::vector<statistics>& channels) {
  progress_line progress(command.result.quiet);
  if (in.about().is_complex)
    throw data_error("its samples are complex; sigpak apply mag makes magnitudes of them");
  block_reader blocks(in, block_points, command.gain);
  do {
    while (blocks.read() > 0) {
      for (std::size_t c = 0; c < channels.size(); ++c) channels[c].add(blocks.channel(c));
      progress.show(in);
    }
  } while (in.next_piece());
  if (channels.front().sums().count == 0) throw data_error("there are no samples in it");
}

std::string told(const figures& f, const result_options& result) {
  const std::string format = result.chosen_format();
  return format == "json" ? json_of(f) : format == "csv" ? csv_of(f) : table_of(f);
}

void tell_file(const std::string& name, const stats_command& command, writer& out) {
  const auto in = open_source(name, command.input);
  const subject& about = in->about();
  std::vector<statistics> channels;
  for (std::size_t c = 0; c < about.channels.size(); ++c)
    channels.emplace_back(command.bins, command.limits(), command.result.all ? all_samples : most_kept);
  at_place(about.name, [&] { read_all(*in, command, channels); });
  for (std::size_t c = 0; c < channels.size(); ++c) {
    const channel& named = about.channels[c];
    const std::string label = named.name.empty() ? std::to_string(c + 1) : named.name;
    const figures f{about,
                    label,
                    command.unit.value_or(named.unit),
                    channels[c].sums(),
                    channels[c].median(),
                    channels[c].bins()};
    out.write(told(f, command.result));
  }
  if (!command.result.quiet) warn(about.warnings);
}

void run(stats_command& command) {
  if (command.low.has_value() != command.high.has_value() || (command.low && !(*command.low < *command.high)))
    throw usage_error("a range is --low X --high Y with X below Y");
  if (command.bins == 0 && (command.low || command.result.chosen_format() == "csv"))
    command.bins = usual_bins;
  writer out(command.result.file);
  const std::size_t left_out = for_each_file(inputs_of(command.names), command.result.keep_going,
                                             [&](const std::string& name) { tell_file(name, command, out); });
  out.commit();
  tell_left_out(left_out);
}

constexpr const char* about =
    "Counts, means and deviations of two signals join to those of both, and so do histograms of one "
    "range.\n\n"
    "  sigpak stats --bins 20 scope.csv         figures, and a histogram over their range\n"
    "  sigpak stats --json -c all *.wav         an object for each channel of each file";

}  // namespace

work add_stats(options& o) {
  const auto command = std::make_shared<stats_command>();
  o.files("Signals; - is standard input", command->names);
  o.count("--bins", "Bins of the histogram", command->bins, 0, 1000000);
  o.number("--low", "X", "Where its first bin begins", command->low, -1e100, 1e100);
  o.number("--high", "X", "Where its last bin ends", command->high, -1e100, 1e100);
  o.flag("--all", "Keep more than 4194304 samples for the median", command->result.all);
  add_sample_options(o, command->unit, command->gain);
  add_result_options(o, command->result, {"table", "csv", "json"});
  add_input_options(o, command->input);
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
