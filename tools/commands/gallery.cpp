// SPDX-License-Identifier: MIT
// The spectra of a command that go into one picture.
#include "commands/gallery.h"

#include <algorithm>
#include <cmath>

#include "analysis/noise.h"
#include "output/writer.h"
#include "pictures/svg.h"
#include "pictures/terminal.h"

namespace tool {
namespace {

constexpr std::size_t most_drawn = 8;
constexpr int fewest_rows = 7;

void refuse_unlike(const std::string& a, const std::string& b) {
  if (a != b)
    throw data_error("one picture cannot show both " + (a.empty() ? "plain numbers" : a) + " and " +
                     (b.empty() ? "plain numbers" : b));
}

// Only means tell a power; what is left of the greatest or least of the segments belongs to none of them.
std::optional<told_band> band_of(const spectrum& s, const band& limits) {
  const bool is_mean = s.average == averaging::mean || s.average == averaging::exponential;
  if (limits.is_whole() || !is_mean) return std::nullopt;
  const double from = std::max(limits.from, s.first());
  const double to = std::min(limits.to, s.last());
  return told_band{from, to, std::sqrt(power_in(s, from, to))};
}

}  // namespace

shown_spectrum::shown_spectrum(spectrum of, const measure& in, const telling_options& telling)
    : s(std::move(of)), told(in) {
  lines = strongest_lines(s, {telling.lines, telling.least_snr, telling.limits.from, telling.limits.to});
  band = band_of(s, telling.limits);
  if (!telling.limits.is_whole()) crop(s, telling.limits.from, telling.limits.to);
  floor = noise_floor(s);
}

void gallery::take(std::unique_ptr<shown_spectrum> s) {
  if (shown_.size() < most_drawn) shown_.push_back(std::move(s));
}

picture gallery::drawn() const {
  const shown_spectrum& first = *shown_.front();
  picture p;
  p.title = drawing_.title;
  p.dark = drawing_.theme == "dark";
  p.logarithmic = drawing_.axis.empty() ? first.s.full_scale : drawing_.axis == "log";
  for (const auto& k : shown_) {
    refuse_unlike(first.told.level_unit(), k->told.level_unit());
    refuse_unlike(frequency_unit(first.s), frequency_unit(k->s));
    p.curves.push_back({k->s, k->told, k->lines, k->floor, ""});
  }
  name_apart(p.curves);
  return p;
}

void gallery::write_svg() const {
  writer out(drawing_.svg);
  out.write(svg_of(drawn()));
  out.commit();
}

std::string gallery::plot(screen_size size, int rows_besides) const {
  return plot_of(drawn(), {size.columns - 1, std::max(size.rows - rows_besides, fewest_rows), shows_utf8(),
                           shows_color(stdout, drawing_.color)});
}

}  // namespace tool
