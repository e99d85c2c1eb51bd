// Where the spectra of a command go: a table, JSON, CSV or vectors, and a picture of all of them.
#include "commands/results.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "analysis/noise.h"
#include "output/screen.h"
#include "output/spectrum_file.h"
#include "output/vector_text.h"
#include "pictures/svg.h"
#include "pictures/terminal.h"

namespace tool {
namespace {

constexpr std::size_t most_drawn = 8;

std::string format_of(const result_options& result) {
  if (result.csv) return "csv";
  return result.json ? "json" : result.format;
}

record shown_values(const spectrum& s, const measure& told) {
  record out(s.power.points);
  std::ranges::transform(s.power.scalars(), out.data, [&told](double power) { return told.shown(power); });
  out.delta = s.step();
  return out;
}

void write_text(const std::string& name, const std::string& text) {
  writer out(name);
  out.write(text);
  out.commit();
}

}  // namespace

void add_result_options(options& o, result_options& result) {
  o.choice("--format", "What is written", result.format, {"table", "csv", "json", "vector"});
  o.flag("--csv", "As --format csv: the spectrum as data", result.csv);
  o.flag("--json", "As --format json: an object for each spectrum", result.json);
  o.flag("--all", "In JSON the values of the spectrum too", result.all);
  o.text("-o,--output", "FILE", "Write there; - is standard output", result.file);
  o.flag("--keep-going", "Leave out files that cannot be used", result.keep_going);
  o.flag("-q,--quiet", "No warnings, no progress", result.quiet);
}

results::results(const telling_options& telling, const picture_options& drawing, const result_options& result)
    : telling_(telling), drawing_(drawing), result_(result), format_(format_of(result)), out_(result.file) {
  if (drawing.svg == "-" && result.file == "-") format_ = "none";  // the picture takes its place
  if (format_ == "vector" && out_.is_terminal()) throw usage_error("a vector is not for a terminal; -o FILE, or a pipe");
}

void results::take(spectrum s, const measure& told) {
  line_options wanted{telling_.lines, telling_.least_snr, telling_.limits.from, telling_.limits.to};
  auto k = std::make_unique<kept>(kept{std::move(s), told, {}, 0});
  k->lines = strongest_lines(k->s, wanted);
  if (!telling_.limits.is_whole()) crop(k->s, telling_.limits.from, telling_.limits.to);
  k->floor = noise_floor(k->s);
  write(*k);
  const bool plotted = format_ == "table" && out_.is_terminal();
  if ((plotted || !drawing_.svg.empty()) && kept_.size() < most_drawn) kept_.push_back(std::move(k));
}

void results::write(const kept& k) {
  if (format_ == "csv") return write_csv(out_, k.s, k.told);
  if (format_ == "vector") return out_.write(vector_text(shown_values(k.s, k.told)));
  const finding f{k.s, k.told, k.lines, k.floor};
  if (format_ == "json") return out_.write(json_of(f, result_.all));
  if (format_ != "table") return;
  const std::string text = (count_++ == 0 ? "" : "\n") + table_of(f);
  rows_ += static_cast<int>(std::ranges::count(text, '\n'));
  out_.write(text);
}

picture results::picture_of() const {
  picture p;
  p.title = drawing_.title;
  p.dark = drawing_.theme == "dark";
  const spectrum& first = kept_.front()->s;
  p.logarithmic = drawing_.axis.empty() ? first.full_scale : drawing_.axis == "log";
  for (const auto& k : kept_) {
    if (k->told.unit() != kept_.front()->told.unit())
      throw data_error("one picture cannot show both " + kept_.front()->told.unit() + " and " + k->told.unit());
    if (frequency_unit(k->s) != frequency_unit(first))
      throw data_error("one picture cannot show both " + frequency_unit(first) + " and " + frequency_unit(k->s));
    p.curves.push_back({k->s, k->told, k->lines, k->floor});
  }
  return p;
}

void results::draw() {
  if (kept_.empty()) return;
  const picture p = picture_of();
  if (!drawing_.svg.empty()) write_text(drawing_.svg, svg_of(p));
  if (format_ != "table" || !out_.is_terminal()) return;
  const screen_size size = size_of(stdout);
  constexpr int least = 7;
  constexpr int others = 3;  // a line between, the title's, and the prompt
  out_.write("\n" + plot_of(p, {size.columns - 1, std::max(size.rows - rows_ - others, least), shows_utf8(),
                                shows_color(stdout, drawing_.color)}));
}

void results::finish() {
  draw();
  out_.commit();
}

std::vector<std::string> inputs_of(const std::vector<std::string>& names) {
  if (!names.empty()) return names;
  if (is_terminal(stdin)) throw usage_error("no FILE is named, and standard input is a terminal");
  return {"-"};
}

std::size_t for_each_file(const std::vector<std::string>& names, bool keep_going,
                   const std::function<void(const std::string&)>& act) {
  std::size_t left_out = 0;
  for (const auto& name : names) {
    try {
      act(name);
    } catch (const failure& e) {
      if (!keep_going || e.status() != 1) throw;
      std::fprintf(stderr, "sigpak: %s\n", e.what());
      ++left_out;
    }
  }
  return left_out;
}

void tell_left_out(std::size_t count) {
  if (count > 0) throw data_error(std::to_string(count) + (count == 1 ? " file was" : " files were") + " left out");
}

void warn(const std::vector<std::string>& warnings) {
  for (const auto& warning : warnings) std::fprintf(stderr, "sigpak: warning: %s\n", warning.c_str());
}

}  // namespace tool
