// SPDX-License-Identifier: MIT
// What is told about the samples of a channel.
#include "output/statistics_report.h"

#include <cmath>

#include "output/json.h"
#include "output/number.h"

namespace tool {
namespace {

constexpr int digits = 9;
constexpr std::size_t name_width = 10;
constexpr std::size_t value_width = 16;

std::string bin_lines(const histogram& h, const char* separator) {
  std::string out;
  for (std::size_t i = 0; i < h.counts.points; ++i) {
    out += exact_text(h.edge(i)) + separator + exact_text(h.edge(i + 1)) + separator +
           exact_text(h.counts.data[i]) + '\n';
  }
  return out;
}

std::string row(std::string name, const std::string& value, const std::string& unit) {
  name.resize(name_width, ' ');
  const std::string gap(value_width - std::min(value_width, value.size()), ' ');
  return name + gap + value + (unit.empty() ? "" : ' ' + unit) + '\n';
}

}  // namespace

std::string table_of(const figures& f) {
  const auto figure = [&f](const char* name, double x) { return row(name, number_text(x, digits), f.unit); };
  std::string out = f.about.name + ": " + (f.about.understood.empty() ? f.about.kind : f.about.understood) +
                    ", channel " + f.channel + '\n' + row("count", std::to_string(f.sums.count), "");
  out += figure("mean", f.sums.mean) + figure("rms", f.sums.rms());
  out += row("variance", number_text(f.sums.variance(), digits), f.unit.empty() ? "" : f.unit + "^2");
  out += figure("min", f.sums.least) + figure("max", f.sums.greatest);
  out += f.median ? figure("median", *f.median) : row("median", "needs --all", "");
  return f.bins.counts.points > 0 ? out + '\n' + bin_lines(f.bins, "  ") : out;
}

std::string csv_of(const figures& f) {
  return "# source: " + f.about.name + "\n# channel: " + f.channel + "\n# unit: " + f.unit +
         "\n# count: " + std::to_string(f.sums.count) + "\nfrom,to,count\n" + bin_lines(f.bins, ",");
}

std::string json_of(const figures& f) {
  json out;
  out.open('{').key("source").open('{').member("name", f.about.name).member("kind", f.about.kind);
  out.member("channel", f.channel)
      .member("truncated", f.about.truncated)
      .member("gaps", f.about.gaps)
      .close();
  out.member("unit", f.unit)
      .member("count", f.sums.count)
      .member("mean", f.sums.mean)
      .member("rms", f.sums.rms());
  out.member("variance", f.sums.variance()).member("deviations", f.sums.deviations);
  out.member("min", f.sums.least).member("max", f.sums.greatest);
  out.member("median", f.median.value_or(std::nan("")));
  if (f.bins.counts.points > 0) {
    out.key("histogram").open('{').member("low", f.bins.low).member("high", f.bins.high);
    out.key("counts").open('[');
    for (const double n : f.bins.counts.scalars()) out.value(static_cast<std::uint64_t>(n));
    out.close().close();
  }
  return out.close().text() + '\n';
}

}  // namespace tool
