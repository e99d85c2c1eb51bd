// sigpak filter: low-pass, high-pass, band-pass and band-stop, and a lower rate.
#include <memory>
#include <optional>

#include "analysis/blocks.h"
#include "analysis/filter.h"
#include "commands/commands.h"
#include "commands/input_options.h"
#include "commands/results.h"
#include "commands/spectrum_options.h"
#include "output/number.h"
#include "output/screen.h"
#include "output/vector_text.h"

namespace tool {
namespace {

constexpr std::size_t block_points = std::size_t{1} << 16;

struct filter_command {
  std::vector<std::string> names;
  input_options input;
  std::optional<double> low_pass;
  std::optional<double> high_pass;
  std::vector<double> band_pass;
  std::vector<double> band_stop;
  std::size_t taps = 129;
  double attenuation = 80;
  std::optional<int> window;
  std::size_t factor = 1;
  double gain = 1;
  std::string file = "-";
  std::string format = "vector";
  bool quiet = false;
};

// The kind, and its edges in units of frequency.
filter_design wanted(const filter_command& c) {
  if (c.low_pass.has_value() + c.high_pass.has_value() + !c.band_pass.empty() + !c.band_stop.empty() != 1)
    throw usage_error("one of --low-pass, --high-pass, --band-pass and --band-stop is wanted");
  if (c.taps % 2 == 0) throw usage_error("--taps is odd, so that the signal stays in its place");
  filter_design d;
  if (c.low_pass) d.kind = DSP_FIR_LOW_PASS, d.low = *c.low_pass;
  if (c.high_pass) d.kind = DSP_FIR_HIGH_PASS, d.low = *c.high_pass;
  if (!c.band_pass.empty()) d.kind = DSP_FIR_BAND_PASS, d.low = c.band_pass[0], d.high = c.band_pass[1];
  if (!c.band_stop.empty()) d.kind = DSP_FIR_BAND_STOP, d.low = c.band_stop[0], d.high = c.band_stop[1];
  d.taps = c.taps;
  d.attenuation = c.attenuation;
  d.window = c.window;
  return d;
}

// Refuses what would alias, and edges beyond half the rate.
filter_design in_cycles_per_sample(filter_design d, const filter_command& c, double rate) {
  const double top = std::max(d.low, d.high);
  if (!(top < rate / 2))
    throw data_error(number_text(top, 6) + " is not below half the rate, " + number_text(rate / 2, 6));
  const bool passes_top = d.kind == DSP_FIR_HIGH_PASS || d.kind == DSP_FIR_BAND_STOP;
  const double limit = rate / 2 / static_cast<double>(c.factor);
  if (c.factor > 1 && (passes_top || top > limit))
    throw data_error("decimation by " + std::to_string(c.factor) + " leaves frequencies up to " +
                     number_text(limit, 6) + " alone; the filter passes others");
  d.low /= rate;
  d.high /= rate;
  return d;
}

record designed(const filter_command& c, double rate) {
  const bool decimates_alone =
      c.factor > 1 && !c.low_pass && !c.high_pass && c.band_pass.empty() && c.band_stop.empty();
  return decimates_alone ? decimation_taps(c.factor) : taps_of(in_cycles_per_sample(wanted(c), c, rate));
}

void write_block(writer& out, const record& v, const std::string& format) {
  if (format == "vector") return out.write(vector_text(v));
  const std::size_t width = v.is_complex() ? 2 : 1;
  const auto scalars = v.scalars();
  for (std::size_t i = 0; i < scalars.size(); ++i)
    out.write(exact_text(scalars[i]) + ((i + 1) % width == 0 ? '\n' : ','));
}

void filter_file(const std::string& name, const filter_command& c, writer& out) {
  const auto in = open_source(name, c.input);
  const subject& about = in->about();
  progress_line progress(c.quiet);
  at_place(about.name, [&] {
    if (about.channels.size() != 1) throw data_error("a vector holds one channel; choose it with --channel");
    const double rate = about.rate > 0 ? about.rate : 1;
    block_reader blocks(*in, block_points, c.gain);
    const auto take = [&](const record& v) { write_block(out, v, c.format); };
    do {
      filter f(designed(c, rate), c.factor, 1 / rate);
      while (blocks.read() > 0) {
        f.process(blocks.channel(0), take);
        progress.show(*in);
      }
      f.finish(take);
    } while (in->next_piece());
  });
  if (!c.quiet) warn(about.warnings);
}

void run(const filter_command& command) {
  writer out(command.file);
  if (command.format == "vector" && out.is_terminal())
    throw usage_error("a vector is not for a terminal; -o FILE, a pipe, or --format csv");
  const auto names = inputs_of(command.names);
  if (names.size() > 1) throw usage_error("one FILE at a time");
  filter_file(names.front(), command, out);
  out.commit();
}

taker band_taker(std::vector<double>& edges) {
  return [&edges](const std::string& word) -> std::string {
    const auto comma = word.find(',');
    double low = 0;
    double high = 0;
    if (comma == std::string::npos || !parse_number(word.substr(0, comma), low) ||
        !parse_number(word.substr(comma + 1), high) || !(low > 0 && low < high))
      return word + " is no band; 300,3k is one";
    edges = {low, high};
    return {};
  };
}

constexpr const char* about =
    "Linear phase: the signal stays in its place, and as long as it is. The result is a stream of "
    "vectors.\n\n"
    "  sigpak filter --low-pass 1k --taps 129 --decimate 4 in.flac | sigpak spectrum\n"
    "  sigpak filter --band-stop 49,51 --taps 2001 ecg.csv -o clean.vec";

}  // namespace

work add_filter(options& o) {
  const auto command = std::make_shared<filter_command>();
  constexpr double highest = 1e15;
  o.files("Signal; - is standard input", command->names);
  o.number("--low-pass", "FREQ", "Keep what lies below", command->low_pass, 1e-12, highest);
  o.number("--high-pass", "FREQ", "Keep what lies above", command->high_pass, 1e-12, highest);
  o.add("--band-pass", "F1,F2", "Keep what lies between", band_taker(command->band_pass));
  o.add("--band-stop", "F1,F2", "Keep the rest", band_taker(command->band_stop));
  o.count("--taps", "Length of the filter, odd", command->taps, 3, 1000001);
  o.number("--attenuation", "DB", "Of the stop band, 80 if not given", command->attenuation, 20, 200);
  o.add("-w,--window", "NAME", "A window of the catalogue in its place", [command](const std::string& name) {
    int window = 0;
    const std::string wrong = find_window(name, window);
    if (wrong.empty()) command->window = window;
    return wrong;
  });
  o.count("--decimate", "Keep every so-many-th sample", command->factor, 1, 1 << 16);
  o.number("--gain", "X", "Every sample is multiplied by it", command->gain, -1e30, 1e30);
  o.choice("--format", "What is written", command->format, {"vector", "csv"});
  o.text("-o,--output", "FILE", "Write there; - is standard output", command->file);
  o.flag("-q,--quiet", "No warnings, no progress", command->quiet);
  add_input_options(o, command->input);
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
