// SPDX-License-Identifier: MIT
// sigpak gen: what the library generates.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>

#include "commands/commands.h"
#include "output/signal_writer.h"
#include "record.h"

namespace tool {
namespace {

constexpr std::size_t most_points = 0x7FFFFFFF;

// The arguments that a generator may take; each is an option.
enum argument : std::size_t {
  frequency,
  phase,
  slope,
  start,
  distribution,
  seed,
  kind,
  param1,
  param2,
  code,
  up,
  down,
  passband,
  attenuation,
  span,
  rolloff,
  arguments
};

struct argument_text {
  const char* names;
  const char* kind;
  const char* help;
  double usual;
};
constexpr argument_text texts[arguments] = {
    {"-f,--frequency", "FREQ", "Cycles per unit of time", 0},
    {"--phase", "RAD", "Of the first sample", 0},
    {"--slope", "X", "Per unit of time", 1},
    {"--start", "X", "The first sample", 0},
    {"--distribution", "NAME", "uniform, normal, exponential, laplace", DSP_RAND_NORMAL},
    {"--seed", "N", "For numbers that come again", -1},
    {"--kind", "NAME",
     "low-pass, high-pass, band-pass, band-stop, cosine-sum, delayed,\ndifferentiator, gaussian, hilbert, "
     "kaiser, ramp",
     DSP_FIR_LOW_PASS},
    {"--param1", "X", "Of the filter: a cut-off, a shape", 0.25},
    {"--param2", "X", "Of the filter: the upper cut-off", 0},
    {"--code", "N", "100 or 101", 100},
    {"--up", "N", "Resampling by up / down", 1},
    {"--down", "N", "", 1},
    {"--passband", "PART", "Of the lower Nyquist frequency", 0.9},
    {"--attenuation", "DB", "Of the stop band", 120},
    {"--span", "N", "Symbols to either side", 8},
    {"--rolloff", "PART", "From 0 to 1", 0.25},
};

constexpr std::array distributions = {"uniform", "normal", "exponential", "laplace"};
constexpr std::array kinds = {"band-pass",      "band-stop", "high-pass", "low-pass", "cosine-sum", "delayed",
                              "differentiator", "gaussian",  "hilbert",   "kaiser",   "ramp"};

struct values {
  std::array<std::optional<double>, arguments> given;

  double of(argument a) const { return given[a].value_or(texts[a].usual); }
  std::int32_t whole(argument a) const { return static_cast<std::int32_t>(of(a)); }
};

struct generator {
  const char* name;
  const char* help;
  std::vector<argument> takes;
  bool sets_points;
  std::int32_t (*make)(record& v, const values& a);
};

std::int32_t make_random(record& v, const values& a) {
  if (a.given[seed]) {
    record first(1);
    if (dspc_rand(&first, DSP_RAND_UNIFORM) != 0) return -1;  // the library seeds before its first draw
    std::srand(static_cast<unsigned>(a.of(seed)));
  }
  return dspc_rand(&v, a.whole(distribution));
}

const std::vector<generator>& generators() {
  static const std::vector<generator> all = {
      {"cos",
       "a cosine",
       {frequency, phase},
       false,
       [](record& v, const values& a) { return dspc_cos(&v, a.of(frequency), a.of(phase)); }},
      {"cexp",
       "a complex rotation",
       {frequency, phase},
       false,
       [](record& v, const values& a) { return dspc_cexp(&v, a.of(frequency), a.of(phase)); }},
      {"line",
       "a straight line",
       {slope, start},
       false,
       [](record& v, const values& a) { return dspc_line(&v, a.of(slope), a.of(start)); }},
      {"rand", "random numbers", {distribution, seed}, false, make_random},
      {"fir",
       "the taps of a filter; frequencies in cycles per sample",
       {kind, param1, param2},
       false,
       [](record& v, const values& a) { return dspc_fir(&v, a.whole(kind), a.of(param1), a.of(param2)); }},
      {"fir2",
       "a stored filter",
       {code},
       true,
       [](record& v, const values& a) { return dspc_fir2(&v, a.whole(code)); }},
      {"rsmp",
       "the taps of a change of rate",
       {up, down, passband, attenuation},
       true,
       [](record& v, const values& a) {
         return dspc_rsmp(&v, a.whole(up), a.whole(down), a.of(passband), a.of(attenuation));
       }},
      {"rsmp_cos",
       "raised cosine",
       {up, span, rolloff},
       true,
       [](record& v, const values& a) {
         return dspc_rsmp_cos(&v, a.whole(up), a.whole(span), a.of(rolloff));
       }},
      {"rsmp_pcos",
       "root of raised cosine",
       {up, span, rolloff},
       true,
       [](record& v, const values& a) {
         return dspc_rsmp_pcos(&v, a.whole(up), a.whole(span), a.of(rolloff));
       }},
  };
  return all;
}

struct gen_command {
  std::string name;
  std::size_t points = 1024;
  bool points_given = false;
  double rate = 1;
  double amplitude = 1;
  bool complex = false;
  values arguments;
  signal_format format;
  std::string file = "-";
};

const generator& generator_named(const std::string& name) {
  const auto& all = generators();
  const auto found = std::ranges::find(all, name, &generator::name);
  if (found != all.end()) return *found;
  std::string names;
  for (const auto& g : all) names += (names.empty() ? "" : ", ") + std::string(g.name);
  throw usage_error("there is no generator " + name + " among " + names);
}

void check(const gen_command& command, const generator& g) {
  for (std::size_t a = 0; a < arguments; ++a) {
    if (!command.arguments.given[a]) continue;
    if (std::ranges::find(g.takes, a) != g.takes.end()) continue;
    throw usage_error(std::string(g.name) + " takes no " + texts[a].names);
  }
  if (g.sets_points && command.points_given)
    throw usage_error(std::string(g.name) + " has a length of its own");
}

record generated(const gen_command& command, const generator& g) {
  record v;
  v.points = static_cast<std::uint32_t>(command.points);
  v.complex = command.complex || command.name == "cexp" ? 1 : 0;
  v.delta = 1 / command.rate;
  if (g.make(v, command.arguments) != 0) {
    if (dsp_alloc(&v) != 0)
      throw resource_error("not enough memory for " + std::to_string(v.points) + " points");
    throw usage_error(std::string(g.name) + " refuses these arguments");
  }
  if (command.amplitude != 1) require(dspi_scale(&v, command.amplitude));
  return v;
}

void run(const gen_command& command) {
  const generator& g = generator_named(command.name);
  check(command, g);
  signal_format format = command.format;
  if (format.name.empty()) format.name = format_of_name(command.file);
  writer out(command.file);
  if (format.name == "vector" && out.is_terminal())
    throw usage_error("a vector is not for a terminal; -o FILE, a pipe, or --format csv");
  const record v = generated(command, g);
  subject about;
  about.channels = {{g.name, ""}};
  about.rate = 1 / v.delta;
  about.is_complex = v.is_complex();
  const auto to = open_signal_writer(out, format, about);
  to->write(v.scalars());
  to->finish();
  out.commit();
}

template <std::size_t N>
std::string take_word(const std::array<const char*, N>& words, const std::string& word,
                      std::optional<double>& value) {
  const auto found = std::ranges::find(words, word);
  if (found == words.end()) return word + " is no name for it";
  value = static_cast<double>(found - words.begin());
  return {};
}

taker argument_taker(gen_command& command, std::size_t a) {
  return [&value = command.arguments.given[a], a](const std::string& word) -> std::string {
    if (a == distribution) return take_word(distributions, word, value);
    if (a == kind) return take_word(kinds, word, value);
    double x = 0;
    const bool whole = a == seed || a == code || a == up || a == down || a == argument::span;
    const bool fits =
        parse_number(word, x) &&
        (!whole || (x >= 0 && x <= 2147483647 && x == static_cast<double>(static_cast<std::int64_t>(x))));
    if (!fits) return word + (whole ? " is no whole number" : " is no number");
    value = x;
    return {};
  };
}

constexpr const char* about =
    "NAME is cos, cexp, line, rand, fir, fir2, rsmp, rsmp_cos or rsmp_pcos; what each takes is in sigpak.h.\n"
    "The end of the name in -o tells the form, as in convert; standard output gets a vector.\n\n"
    "  sigpak gen cos -n 4096 -f 50 -r 1000 | sigpak spectrum -w flattop --as rms\n"
    "  sigpak gen rand -n 48k -r 48k --seed 1 --amplitude 0.1 -o noise.wav";

}  // namespace

work add_gen(options& o) {
  const auto command = std::make_shared<gen_command>();
  o.place("NAME", "What to generate", command->name);
  o.add("-n,--points", "N", "Samples, 1024 if not given", [command](const std::string& word) -> std::string {
    double x = 0;
    if (!parse_number(word, x) || !(x >= 1 && x <= most_points) ||
        x != static_cast<double>(static_cast<std::size_t>(x)))
      return word + " is no whole number from 1 to " + std::to_string(most_points);
    command->points = static_cast<std::size_t>(x);
    command->points_given = true;
    return {};
  });
  o.number("-r,--rate", "RATE", "Samples per unit of time, 1 if not given", command->rate, 1e-9, 1e15);
  o.number("--amplitude", "X", "Every sample is multiplied by it", command->amplitude, -1e30, 1e30);
  o.flag("--complex", "A complex record", command->complex);
  for (std::size_t a = 0; a < arguments; ++a) {
    o.add(texts[a].names, texts[a].kind, texts[a].help, argument_taker(*command, a));
  }
  o.choice("--format", "In place of what the name tells", command->format.name,
           {"vector", "npy", "wav", "flac", "aiff", "csv"});
  o.count("--bits", "Of a sample in npy and sound", command->format.bits, 8, 64);
  o.text("-o,--output", "FILE", "Write there; - is standard output", command->file);
  o.rarely({"--slope", "--start", "--code", "--up", "--down", "--passband", "--span", "--rolloff", "--phase",
            "--bits"});
  o.footer(about);
  return [command] { run(*command); };
}

}  // namespace tool
