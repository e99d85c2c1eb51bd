// SPDX-License-Identifier: MIT
// Where the spectra of a command go: a table, JSON, CSV or vectors, and a picture of all of them.
#include "commands/results.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "output/report.h"
#include "output/screen.h"
#include "output/spectrum_file.h"
#include "output/vector_text.h"

namespace tool {
namespace {

record shown_values(const spectrum& s, const measure& told) {
  record out(s.power.points);
  std::ranges::transform(s.power.scalars(), out.data, [&told](double power) { return told.shown(power); });
  out.delta = s.step();
  return out;
}

}  // namespace

void add_result_options(options& o, result_options& result, std::initializer_list<const char*> formats) {
  o.choice("--format", "What is written", result.format, formats);
  o.flag("--csv", "As --format csv", result.csv);
  o.flag("--json", "As --format json: an object on a line", result.json);
  o.text("-o,--output", "FILE", "Write there; - is standard output", result.file);
  o.flag("--keep-going", "Leave out files that cannot be used", result.keep_going);
  o.flag("-q,--quiet", "No warnings, no progress", result.quiet);
  o.rarely({"--format", "--keep-going", "--quiet"});
}

results::results(const telling_options& telling, const picture_options& drawing, const result_options& result)
    : telling_(telling),
      drawing_(drawing),
      result_(result),
      format_(result.chosen_format()),
      out_(result.file),
      drawn_(telling, drawing) {
  if (drawing.svg == "-" && result.file == "-") format_ = "none";  // the picture takes its place
  if (format_ == "vector" && out_.is_terminal())
    throw usage_error("a vector is not for a terminal; -o FILE, or a pipe");
}

void results::take(spectrum s, const measure& told) {
  auto shown = std::make_unique<shown_spectrum>(std::move(s), told, telling_);
  write(*shown);
  if (!drawing_.svg.empty() || (format_ == "table" && out_.is_terminal())) drawn_.take(std::move(shown));
}

void results::write(const shown_spectrum& k) {
  if (format_ == "csv") return write_csv(out_, k.s, k.told);
  if (format_ == "vector") return out_.write(vector_text(shown_values(k.s, k.told)));
  const finding f{k.s, k.told, k.lines, k.band, k.floor};
  if (format_ == "json") return out_.write(json_of(f, result_.all));
  if (format_ != "table") return;
  const std::string text = (count_++ == 0 ? "" : "\n") + table_of(f);
  rows_ += static_cast<int>(std::ranges::count(text, '\n'));
  out_.write(text);
}

void results::finish() {
  constexpr int others = 2;  // an empty row between, and the prompt
  if (!drawn_.is_empty()) {
    if (!drawing_.svg.empty()) drawn_.write_svg();
    if (format_ == "table" && out_.is_terminal())
      out_.write('\n' + drawn_.plot(size_of(stdout), rows_ + others));
  }
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
  if (count > 0)
    throw data_error(std::to_string(count) + (count == 1 ? " file was" : " files were") + " left out");
}

void warn(const std::vector<std::string>& warnings) {
  for (const auto& warning : warnings) std::fprintf(stderr, "sigpak: warning: %s\n", warning.c_str());
}

}  // namespace tool
