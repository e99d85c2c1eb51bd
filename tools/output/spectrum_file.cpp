// SPDX-License-Identifier: MIT
// Spectra as text: a title, lines "# name: value", a heading, and a line for each point.
#include "output/spectrum_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <functional>

#include "output/number.h"
#include "output/utf8.h"

namespace tool {
namespace {

constexpr std::string_view title = "# sigpak spectrum";
constexpr std::size_t longest_line = 1 << 16;

double number_of(const std::string& text) {
  double x = 0;
  const char* const end = text.data() + text.size();
  const auto [parsed, error] = std::from_chars(text.data(), end, x);
  if (error != std::errc() || parsed != end) throw data_error('"' + text + "\" is no number");
  return x;
}

std::uint64_t count_of(const std::string& text) {
  const double x = number_of(text);
  if (!(x >= 0 && x < 0x1p53) || x != std::floor(x)) throw data_error('"' + text + "\" is no count");
  return static_cast<std::uint64_t>(x);
}

bool truth_of(const std::string& text) { return text == "yes"; }
std::string text_of(bool x) { return x ? "yes" : "no"; }
std::string text_of(double x) { return exact_text(x); }
std::string text_of(std::uint64_t x) { return std::to_string(x); }

// A line of text, whatever stood in a name.
std::string text_of(const std::string& text) {
  return utf8_text(text, [](char) { return std::string_view(); });
}

int window_named(const std::string& name) {
  int window = 0;
  if (dsp_window_from_str(name.c_str(), &window) != 0) throw data_error("there is no window " + name);
  return window;
}

// A line of the head: how it is written, and read.
struct head_line {
  const char* name;
  bool needed;
  std::function<std::string(const spectrum&, const measure&)> write;
  std::function<void(told_spectrum&, const std::string&)> read;
};

template <class T> head_line text_line(const char* name, T spectrum::*member) {
  return {name, false, [member](const spectrum& s, const measure&) { return text_of(s.*member); },
          [member](told_spectrum& t, const std::string& text) { t.s.*member = text; }};
}

template <class T, class Read>
head_line number_line(const char* name, bool needed, T spectrum::*member, Read read) {
  return {name, needed, [member](const spectrum& s, const measure&) { return text_of(s.*member); },
          [member, read](told_spectrum& t, const std::string& text) {
            t.s.*member = static_cast<T>(read(text));
          }};
}

const std::vector<head_line>& head_lines() {
  static const std::vector<head_line> lines = {
      text_line("source", &spectrum::name),
      text_line("kind", &spectrum::kind),
      text_line("channel", &spectrum::channel),
      text_line("unit", &spectrum::unit),
      {"quantity", true,
       [](const spectrum&, const measure& m) { return std::string(quantity_name(m.what())); },
       [](told_spectrum& t, const std::string& text) { t.what = quantity_named(text); }},
      {"level", true, [](const spectrum&, const measure& m) { return text_of(m.as_level()); },
       [](told_spectrum& t, const std::string& text) { t.as_level = truth_of(text); }},
      number_line("full scale", true, &spectrum::full_scale, truth_of),
      number_line("two-sided", true, &spectrum::two_sided, truth_of),
      text_line("time unit", &spectrum::time_unit),
      number_line("rate", true, &spectrum::rate, number_of),
      {"window", true, [](const spectrum& s, const measure&) { return s.window_name(); },
       [](told_spectrum& t, const std::string& text) { t.s.window = window_named(text); }},
      {"enbw", false, [](const spectrum& s, const measure&) { return exact_text(s.enbw()); },
       [](told_spectrum&, const std::string&) {}},
      number_line("segment", true, &spectrum::segment, count_of),
      number_line("overlap", true, &spectrum::overlap, count_of),
      {"average", true,
       [](const spectrum& s, const measure&) { return std::string(averaging_name(s.average)); },
       [](told_spectrum& t, const std::string& text) { t.s.average = averaging_named(text); }},
      number_line("segments", true, &spectrum::segments, count_of),
      number_line("degrees of freedom", true, &spectrum::degrees, number_of),
      number_line("samples", false, &spectrum::samples, count_of),
      number_line("unused", false, &spectrum::unused, count_of),
      number_line("truncated", false, &spectrum::truncated, truth_of),
      number_line("gaps", false, &spectrum::gaps, count_of),
      number_line("mean", false, &spectrum::mean, number_of),
      number_line("rms", false, &spectrum::rms, number_of),
      {"points", false,
       [](const spectrum& s, const measure&) { return text_of(std::uint64_t{s.power.points}); },
       [](told_spectrum& t, const std::string& text) { t.points = count_of(text); }},
  };
  return lines;
}

std::string heading_of(const spectrum& s, const measure& told) {
  const std::string name = told.as_level() ? "level" : quantity_name(told.what());
  const std::string unit = told.shown_unit();
  return "frequency [" + frequency_unit(s) + "]," + name + (unit.empty() ? "" : " [" + unit + ']') + '\n';
}

// What other numbers rely on; they come from outside.
void check(const spectrum& s) {
  const bool usable = s.rate > 0 && s.rate < 1e300 && s.segment >= 1 && s.segment <= longest_segment &&
                      s.overlap < s.segment && s.segments >= 1 && s.degrees > 0 && s.degrees < 1e18;
  if (!usable) throw data_error("what its # lines tell cannot be");
}

}  // namespace

void write_csv(writer& out, const spectrum& s, const measure& told) {
  out.write(std::string(title) + ", version " SIGPAK_TOOL_VERSION "\n");
  for (const auto& line : head_lines())
    out.write(std::string("# ") + line.name + ": " + line.write(s, told) + '\n');
  out.write(heading_of(s, told));
  for (std::size_t i = 0; i < s.power.points; ++i) {
    const double frequency = s.frequency(static_cast<double>(i));
    out.write(exact_text(frequency) + ',' + exact_text(told.shown(s.power.data[i])) + '\n');
  }
}

spectrum_reader::spectrum_reader(const std::string& name)
    : name_(name == "-" ? "standard input" : name),
      file_(name == "-" ? stdin : std::fopen(name.c_str(), "rb")) {
  if (file_ == nullptr) throw data_error(name_ + ": " + std::strerror(errno));
}

spectrum_reader::~spectrum_reader() {
  if (file_ != stdin) std::fclose(file_);
}

std::string spectrum_reader::place() const { return name_ + ':' + std::to_string(number_); }

// Keeps the line until it is used.
bool spectrum_reader::read_line() {
  if (waiting_) return true;
  line_.clear();
  ++number_;
  for (int c = 0; (c = std::getc(file_)) != EOF && c != '\n';) {
    if (line_.size() == longest_line) throw data_error("too long for a line of a spectrum");
    line_.push_back(static_cast<char>(c));
  }
  if (std::ferror(file_) != 0) throw data_error(std::strerror(errno));
  if (line_.ends_with('\r')) line_.pop_back();
  waiting_ = !line_.empty() || std::feof(file_) == 0;
  return waiting_;
}

void spectrum_reader::read_head(told_spectrum& t) {
  std::vector<std::string> missing;
  for (const auto& line : head_lines()) {
    if (line.needed) missing.push_back(line.name);
  }
  for (waiting_ = false; read_line() && line_.starts_with("# "); waiting_ = false) {
    const auto colon = line_.find(": ");
    if (colon == std::string::npos) continue;
    const std::string name = line_.substr(2, colon - 2);
    const auto known = std::ranges::find(head_lines(), name, &head_line::name);
    if (known == head_lines().end()) continue;
    known->read(t, line_.substr(colon + 2));
    std::erase(missing, name);
  }
  if (!missing.empty()) throw data_error("the spectrum has no line \"# " + missing.front() + ": ...\"");
  check(t.s);
  waiting_ = false;  // the heading
}

void spectrum_reader::read_values(told_spectrum& t) {
  const measure told = t.told();
  std::vector<double> powers;
  for (; read_line() && line_ != "" && !line_.starts_with('#'); waiting_ = false) {
    const auto comma = line_.find(',');
    if (comma == std::string::npos) throw data_error("no comma between frequency and value");
    const double frequency = number_of(line_.substr(0, comma));
    const double power = told.power(number_of(line_.substr(comma + 1)));
    if (!(power >= 0 && power <= 1e300)) throw data_error("the value is no power");
    if (powers.empty()) t.s.start = std::llround(frequency / t.s.step());
    const double place = static_cast<double>(t.s.start) + static_cast<double>(powers.size());
    if (!(std::abs(frequency / t.s.step() - place) < 1e-3))
      throw data_error("the frequencies are not those of its rate and segment");
    powers.push_back(power);
  }
  const auto lowest = t.s.two_sided ? -static_cast<std::int64_t>(t.s.whole() / 2) : 0;
  if (powers.empty()) throw data_error("the spectrum has no values");
  if (t.points != 0 && t.points != powers.size())
    throw data_error("the spectrum is cut short: " + text_of(std::uint64_t{powers.size()}) + " points of " +
                     text_of(t.points));
  if (t.s.start < lowest || t.s.offset() + powers.size() > t.s.whole())
    throw data_error("the frequencies are not those of its rate and segment");
  t.s.power.resize(powers.size());
  std::ranges::copy(powers, t.s.power.data);
}

std::optional<told_spectrum> spectrum_reader::next() {
  try {
    while (read_line() && line_.empty()) waiting_ = false;
    if (!waiting_) return std::nullopt;
    if (!line_.starts_with(title))
      throw data_error("no spectrum begins here; sigpak spectrum --csv makes them");
    told_spectrum t{};
    read_head(t);
    read_values(t);
    return t;
  } catch (failure& e) {
    e.name_place(place());
    throw;
  }
}

std::vector<told_spectrum> read_spectra(const std::vector<std::string>& names) {
  std::vector<told_spectrum> spectra;
  for (const auto& name : names) {
    spectrum_reader in(name);
    while (auto t = in.next()) spectra.push_back(std::move(*t));
    if (spectra.empty()) throw data_error(in.name() + ": there is no spectrum in it");
  }
  return spectra;
}

}  // namespace tool
