// SPDX-License-Identifier: MIT
// What is told about a spectrum: as a table for people, or as JSON for programs.
#include "output/report.h"

#include <algorithm>
#include <cmath>

#include "output/json.h"
#include "output/number.h"
#include "output/summary.h"

namespace tool {
namespace {

constexpr std::size_t narrow = 40;  // columns that tables fit into

using row = std::vector<std::string>;

std::string with_unit(double x, const std::string& unit) {
  return number_text(x, 5) + (unit.empty() ? "" : ' ' + unit);
}

std::string sample_unit(const spectrum& s) { return s.full_scale && s.unit.empty() ? "FS" : s.unit; }

// With the digits that the spectrum resolves.
std::string frequency_text(const spectrum& s, double frequency) {
  constexpr double part_of_resolution = 1e3;
  const double digits = std::ceil(-std::log10(s.resolution() / part_of_resolution));
  return fixed_text(frequency, static_cast<int>(std::clamp(digits, 0.0, 12.0)));
}

row heading(const finding& f) {
  const std::string unit = f.told.unit().empty() ? quantity_name(f.told.what()) : f.told.unit();
  return {frequency_unit(f.s), unit, f.told.level_unit(), "SNR dB"};
}

row row_of(const finding& f, const line& l) {
  return {frequency_text(f.s, l.frequency), padded_text(f.told.value(l.power), 5),
          fixed_text(f.told.level(l.power), 2), fixed_text(l.snr, 1)};
}

std::vector<std::size_t> widths_of(const std::vector<row>& rows) {
  std::vector<std::size_t> widths(rows.front().size());
  for (const row& r : rows) {
    for (std::size_t i = 0; i < r.size(); ++i) widths[i] = std::max(widths[i], r[i].size() + 2);
  }
  return widths;
}

// Levels stand in the place of values where they are asked for, and beside them where there is room.
void drop_a_column(std::vector<row>& rows, bool as_level) {
  std::size_t total = 0;
  for (const std::size_t w : widths_of(rows)) total += w;
  if (!as_level && total <= narrow + 2) return;
  for (row& r : rows) r.erase(r.begin() + (as_level ? 1 : 2));
}

std::string lined_up(const std::vector<row>& rows) {
  const auto widths = widths_of(rows);
  std::string out;
  for (const row& r : rows) {
    for (std::size_t i = 0; i < r.size(); ++i)
      out += std::string(widths[i] - r[i].size() - (i == 0 ? 2 : 0), ' ') + r[i];
    out += '\n';
  }
  return out;
}

std::string band_text(const finding& f) {
  const auto place = [](double x) { return number_text(x, 6); };
  return "band " + place(f.band->from) + " to " + place(f.band->to) + ' ' + frequency_unit(f.s) + ": rms " +
         with_unit(f.band->rms, sample_unit(f.s)) + '\n';
}

// Where several channels of a file are told, each says which it is.
std::string title_of(const spectrum& s) {
  return s.among_others ? s.name + ", channel '" + s.channel + '\'' : s.name;
}

void write_lines(json& out, const finding& f) {
  out.key("lines").open('[');
  for (const line& l : f.lines) {
    out.open('{').member("frequency", l.frequency).member("amplitude", f.told.value(l.power));
    out.member("level_db", f.told.level(l.power)).member("snr_db", l.snr).close();
  }
  out.close();
}

void write_source(json& out, const spectrum& s) {
  out.key("source").open('{').member("name", s.name).member("kind", s.kind).member("channel", s.channel);
  out.member("rate", s.time_unit.empty() ? std::nan("") : s.rate).member("time_unit", s.time_unit);
  out.member("samples", s.samples).member("truncated", s.truncated).member("gaps", s.gaps).close();
}

void write_analysis(json& out, const spectrum& s) {
  out.key("analysis").open('{').member("window", s.window_name()).member("segment", std::uint64_t{s.segment});
  out.member("overlap", std::uint64_t{s.overlap})
      .member("segments", s.segments)
      .member("average", averaging_name(s.average));
  out.member("unused", s.unused).member("enbw_hz", s.enbw()).member("resolution_hz", s.resolution()).close();
}

}  // namespace

std::string table_of(const finding& f) {
  const spectrum& s = f.s;
  std::string out = title_of(s) + ": " + source_text(s) + '\n' + analysis_text(s) + '\n';
  if (!s.two_sided) out += "mean " + with_unit(s.mean, sample_unit(s)) + ", ";
  out += "rms " + with_unit(s.rms, sample_unit(s)) + ", noise floor " + floor_text(f.told, f.floor) + '\n';
  if (f.band) out += band_text(f);
  out += '\n';
  if (f.lines.empty()) return out + "no line above the noise\n";
  std::vector<row> rows{heading(f)};
  for (const line& l : f.lines) rows.push_back(row_of(f, l));
  drop_a_column(rows, f.told.as_level());
  return out + lined_up(rows);
}

std::string json_of(const finding& f, bool all) {
  const measure density = f.told.density();
  json out;
  out.open('{');
  write_source(out, f.s);
  write_analysis(out, f.s);
  out.member("unit", f.told.unit())
      .member("level_unit", f.told.level_unit())
      .member("quantity", quantity_name(f.told.what()));
  out.member("mean", f.s.two_sided ? std::nan("") : f.s.mean).member("rms", f.s.rms);
  if (f.band) {
    out.key("band").open('{').member("from", f.band->from).member("to", f.band->to);
    out.member("rms", f.band->rms).close();
  }
  out.member("noise_floor", density.value(f.floor)).member("noise_floor_unit", density.unit());
  write_lines(out, f);
  if (all) {
    out.key("spectrum")
        .open('{')
        .member("first", f.s.first())
        .member("step", f.s.step())
        .key("values")
        .open('[');
    for (const double power : f.s.power.scalars()) out.value(f.told.shown(power));
    out.close().close();
  }
  return out.close().text() + '\n';
}

}  // namespace tool
