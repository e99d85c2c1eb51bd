// SPDX-License-Identifier: MIT
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
#include "output/signal_writer.h"

namespace tool {
namespace {

// A short first block tells the rate that the filter is designed for; the others are longer than the filter,
// so that it goes through the transform.
constexpr std::size_t first_points = 256;
constexpr std::size_t block_points = std::size_t{1} << 16;
constexpr std::size_t blocks_of_taps = 4;

struct filter_command {
  std::vector<std::string> names;
  input_options input;
  std::optional<double> low_pass;
  std::optional<double> high_pass;
  std::vector<double> band_pass;
  std::vector<double> band_stop;
  std::size_t taps = 0;
  double transition = 0;
  double attenuation = 80;
  std::optional<int> window;
  std::size_t factor = 1;
  double gain = 1;
  signal_format format;
  std::string file = "-";
  bool quiet = false;
};

// The kind, and its edges in units of frequency.
filter_design wanted(const filter_command& c) {
  if (c.low_pass.has_value() + c.high_pass.has_value() + !c.band_pass.empty() + !c.band_stop.empty() != 1)
    throw usage_error("one of --low-pass, --high-pass, --band-pass and --band-stop is wanted");
  if (c.taps > 0 && c.taps % 2 == 0)
    throw usage_error("--taps is odd, so that the signal stays in its place");
  if (c.taps > 0 && c.transition > 0) throw usage_error("--taps and --transition tell the same");
  filter_design d;
  if (c.low_pass) d.kind = DSP_FIR_LOW_PASS, d.low = *c.low_pass;
  if (c.high_pass) d.kind = DSP_FIR_HIGH_PASS, d.low = *c.high_pass;
  if (!c.band_pass.empty()) d.kind = DSP_FIR_BAND_PASS, d.low = c.band_pass[0], d.high = c.band_pass[1];
  if (!c.band_stop.empty()) d.kind = DSP_FIR_BAND_STOP, d.low = c.band_stop[0], d.high = c.band_stop[1];
  d.taps = c.taps;
  d.transition = c.transition;
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
  d.transition /= rate;
  return d;
}

std::vector<std::string> warnings_of(const filter_design& d, double rate) {
  const std::size_t taps = length_of(d);
  const double width = transition_of(d, taps);
  if (width <= narrowest_band(d)) return {};
  return {std::to_string(taps) + " taps make an edge " + number_text(width * rate, 6) +
          " wide, and a band between them is " + number_text(narrowest_band(d) * rate, 6) +
          "; more --taps or a lower rate first"};
}

record designed(const filter_command& c, double rate) {
  const bool decimates_alone =
      c.factor > 1 && !c.low_pass && !c.high_pass && c.band_pass.empty() && c.band_stop.empty();
  if (decimates_alone) return decimation_taps(c.factor);
  const filter_design d = in_cycles_per_sample(wanted(c), c, rate);
  if (transition_of(d, most_taps) > d.transition && d.transition > 0)
    throw data_error("edges that narrow need more than " + std::to_string(most_taps) +
                     " taps; a lower rate first");
  if (!c.quiet) warn(warnings_of(d, rate));
  return taps_of(d);
}

// The channels of a piece through filters of their own, and together again.
class bank {
 public:
  bank(const record& taps, std::size_t factor, std::size_t channels) : channels_(channels) {
    for (std::size_t c = 0; c < channels; ++c) filters_.emplace_back(taps, factor);
  }

  void process(block_reader& blocks, signal_writer& to) {
    for (std::size_t c = 0; c < channels_; ++c) place(filters_[c].process(blocks.channel(c)), c);
    to.write(frames_);
  }

  void finish(block_reader& blocks, signal_writer& to) {
    for (std::size_t c = 0; c < channels_; ++c) place(filters_[c].finish(blocks.channel(c)), c);
    to.write(frames_);
  }

 private:
  void place(const record& v, std::size_t channel) {
    const std::size_t width = v.is_complex() ? 2 : 1;
    const auto scalars = v.scalars();
    if (channel == 0) frames_.resize(scalars.size() * channels_);
    for (std::size_t i = 0; i < scalars.size(); ++i)
      frames_[(i / width * channels_ + channel) * width + i % width] = scalars[i];
  }

  std::size_t channels_;
  std::vector<filter> filters_;
  std::vector<double> frames_;
};

void filter_piece(source& in, const filter_command& c, writer& out, progress_line& progress) {
  block_reader blocks(in, first_points, c.gain);
  if (blocks.read() == 0) throw data_error("there are no samples in it");
  subject result = in.about();  // what it tells is known when samples are
  const record taps = designed(c, result.rate > 0 ? result.rate : 1);
  result.rate /= static_cast<double>(c.factor);
  signal_format format = c.format;
  if (format.name.empty()) format.name = format_of_name(c.file);
  const auto to = open_signal_writer(out, format, result);
  bank filters(taps, c.factor, result.channels.size());
  filters.process(blocks, *to);
  blocks.lengthen(std::max(block_points, blocks_of_taps * taps.points));
  while (blocks.read() >= taps.points) {
    filters.process(blocks, *to);
    progress.show(in);
  }
  filters.finish(blocks, *to);
  to->finish();
  if (!c.quiet) warn(to->warnings());
}

void run(const filter_command& c) {
  writer out(c.file);
  const auto names = inputs_of(c.names);
  if (names.size() > 1) throw usage_error("one FILE at a time");
  const auto in = open_source(names.front(), c.input);
  progress_line progress(c.quiet);
  at_place(in->about().name, [&] {
    filter_piece(*in, c, out, progress);
    while (in->next_piece()) {
      if (!c.input.each) throw data_error("a gap would close up; --gaps linear bridges it");
      filter_piece(*in, c, out, progress);
    }
  });
  progress.clear();
  out.commit();
  if (!c.quiet) warn(in->about().warnings);
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
    "  sigpak filter --low-pass 1k --decimate 4 in.flac | sigpak spectrum\n"
    "  sigpak filter --band-stop 49,51 ecg.csv -o clean.vec";

}  // namespace

work add_filter(options& o) {
  const auto command = std::make_shared<filter_command>();
  constexpr double highest = 1e15;
  o.files("Signal; - is standard input", command->names);
  o.number("--low-pass", "FREQ", "Keep what lies below", command->low_pass, 1e-12, highest);
  o.number("--high-pass", "FREQ", "Keep what lies above", command->high_pass, 1e-12, highest);
  o.add("--band-pass", "F1,F2", "Keep what lies between", band_taker(command->band_pass));
  o.add("--band-stop", "F1,F2", "Keep the rest", band_taker(command->band_stop));
  o.number("--transition", "FREQ", "Width of an edge, half the narrowest band if not given",
           command->transition, 1e-12, highest);
  o.add("--taps", "N", "Length of the filter, odd, in its place",
        options::count_taker(command->taps, 3, most_taps));
  o.number("--attenuation", "DB", "Of the stop band, 80 if not given", command->attenuation, 20, 200);
  o.add("-w,--window", "NAME", "A window of the catalogue in its place", [command](const std::string& name) {
    int window = 0;
    const std::string wrong = find_window(name, window);
    if (wrong.empty()) command->window = window;
    return wrong;
  });
  o.count("--decimate", "Keep every so-many-th sample", command->factor, 1, 1 << 16);
  o.number("--gain", "X", "Every sample is multiplied by it", command->gain, -1e30, 1e30);
  o.choice("--format", "In place of what the name tells", command->format.name,
           {"vector", "npy", "wav", "flac", "aiff", "csv"});
  o.text("-o,--output", "FILE", "Write there; - is standard output", command->file);
  o.flag("-q,--quiet", "No warnings, no progress", command->quiet);
  o.rarely({"--quiet"});
  add_input_options(o, command->input);
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
